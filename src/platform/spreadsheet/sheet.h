#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platform::spreadsheet {

/// A worksheet that cannot be read. what() says why in Romanian without diacritics ("fisierul este criptat
/// …").
class SheetError : public std::runtime_error {
 public:
  enum class Reason { kNotAWorksheet, kEncrypted, kDamaged, kNoSuchSheet, kUnsupported, kUnreadable };
  SheetError(Reason reason, const std::string& message) : std::runtime_error(message), reason_(reason) {}
  Reason reason() const { return reason_; }

 private:
  Reason reason_;
};

enum class CellKind : std::uint8_t { kEmpty, kNumber, kDate, kText, kBoolean, kError };

/// One cell as a reader delivers it. Text views live as long as the call.
struct CellEvent {
  std::uint32_t row = 0;     ///< from 0
  std::uint32_t column = 0;  ///< from 0
  CellKind kind = CellKind::kEmpty;
  double number = 0;  ///< kNumber; kDate as days since 1899-12-30 whatever the file's base; kBoolean 0 or 1
  std::string_view text;      ///< kText; for kError the error's name ("#N/A")
  std::uint8_t zero_pad = 0;  ///< kNumber: digits of a zero-padding format such as 00000000, else 0
};

struct SheetInfo {
  std::string name;  ///< UTF-8
  bool hidden = false;
};

/// Receives a worksheet's cells row by row, left to right. Returning false stops the reading.
class CellSink {
 public:
  virtual ~CellSink() = default;
  virtual bool OnCell(const CellEvent& cell) = 0;
};

/// A workbook open for reading, whatever its format.
class Workbook {
 public:
  virtual ~Workbook() = default;
  /// Worksheets in the book's order; chart and macro sheets are left out.
  virtual const std::vector<SheetInfo>& sheets() const = 0;
  /// Streams the cells of the sheet of that name (without regard to case). Throws SheetError.
  virtual void Read(std::string_view sheet, CellSink& sink) = 0;
};

/// Opens a worksheet file of this host: .xls (BIFF5 or BIFF8), .xlsx, .ods, or delimited text. The content
/// tells which, so a workbook under another format's name is read too; only delimited text, which has no mark
/// of its own, needs an extension that says so (csv, tsv, tab, txt, asc). Throws SheetError.
std::unique_ptr<Workbook> OpenWorkbook(const std::string& host_path);

/// The same on a file's content; the name, without folders, is for its extension and for messages.
std::unique_ptr<Workbook> OpenWorkbookContent(std::string content, std::string_view file_name);

}  // namespace platform::spreadsheet
