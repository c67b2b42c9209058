#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/bytes.h"

namespace platform::spreadsheet::biff {

/// Record numbers of a BIFF5 or BIFF8 stream ([MS-XLS] 2.3) that the reader looks at.
enum RecordId : std::uint16_t {
  kEof = 0x000A,
  kDate1904 = 0x0022,
  kFilePass = 0x002F,
  kContinue = 0x003C,
  kCodePage = 0x0042,
  kBoundSheet = 0x0085,
  kSharedFormulaOld = 0x00BC,
  kMulRk = 0x00BD,
  kRString = 0x00D6,
  kXf = 0x00E0,
  kSst = 0x00FC,
  kLabelSst = 0x00FD,
  kFormula = 0x0006,
  kNumber = 0x0203,
  kLabel = 0x0204,
  kBoolErr = 0x0205,
  kFormulaBiff3 = 0x0206,
  kString = 0x0207,
  kArray = 0x0221,
  kTable = 0x0236,
  kRk = 0x027E,
  kFormulaBiff4 = 0x0406,
  kFormat = 0x041E,
  kSharedFormula = 0x04BC,
  kBof = 0x0809,
};

/// What a BOF record says its substream is.
enum SubstreamType : std::uint16_t { kGlobals = 0x0005, kWorksheet = 0x0010 };

struct Record {
  std::uint16_t id = 0;
  std::size_t offset = 0;  ///< of the record's head in the stream
  std::string_view data;
};

/// Walks a stream record by record.
class RecordReader {
 public:
  RecordReader(std::string_view stream, std::size_t offset) : stream_(stream), next_(offset) {}

  /// False where no whole record is left: at the stream's end, or where it is cut.
  bool Next(Record& record) {
    if (next_ > stream_.size() || stream_.size() - next_ < 4) return false;
    const std::size_t length = LoadU16(stream_.data() + next_ + 2);
    if (stream_.size() - next_ - 4 < length) return false;
    record = {LoadU16(stream_.data() + next_), next_, stream_.substr(next_ + 4, length)};
    next_ += 4 + length;
    return true;
  }

  /// The payload of `record`, just read, and of the CONTINUE records behind it, which are passed over.
  std::vector<std::string_view> WithContinuations(const Record& record) {
    std::vector<std::string_view> segments = {record.data};
    RecordReader ahead = *this;
    for (Record next; ahead.Next(next) && next.id == kContinue; *this = ahead) segments.push_back(next.data);
    return segments;
  }

 private:
  std::string_view stream_;
  std::size_t next_;
};

}  // namespace platform::spreadsheet::biff
