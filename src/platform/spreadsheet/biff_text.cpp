#include "platform/spreadsheet/biff_text.h"

#include <algorithm>

#include "platform/spreadsheet/bytes.h"

namespace platform::spreadsheet {
namespace {

constexpr std::uint8_t kWideFlag = 0x01;
constexpr std::uint8_t kExtendedFlag = 0x04;
constexpr std::uint8_t kRichFlag = 0x08;
constexpr std::uint32_t kReplacement = 0xFFFD;

}  // namespace

void Utf8Writer::Put(std::uint32_t code_point) {
  if (code_point < 0x80) {
    if (code_point != 0) out_->push_back(static_cast<char>(code_point));  // some writers pad with zeros
  } else if (code_point < 0x800) {
    out_->push_back(static_cast<char>(0xC0 | (code_point >> 6)));
    out_->push_back(static_cast<char>(0x80 | (code_point & 0x3F)));
  } else if (code_point < 0x10000) {
    out_->push_back(static_cast<char>(0xE0 | (code_point >> 12)));
    out_->push_back(static_cast<char>(0x80 | ((code_point >> 6) & 0x3F)));
    out_->push_back(static_cast<char>(0x80 | (code_point & 0x3F)));
  } else {
    out_->push_back(static_cast<char>(0xF0 | (code_point >> 18)));
    out_->push_back(static_cast<char>(0x80 | ((code_point >> 12) & 0x3F)));
    out_->push_back(static_cast<char>(0x80 | ((code_point >> 6) & 0x3F)));
    out_->push_back(static_cast<char>(0x80 | (code_point & 0x3F)));
  }
}

void Utf8Writer::Narrow(std::string_view bytes) {
  Finish();
  const auto plain = [](char c) { return static_cast<signed char>(c) > 0; };
  while (!bytes.empty()) {
    const auto stop = std::find_if_not(bytes.begin(), bytes.end(), plain);
    out_->append(bytes.begin(), stop);
    bytes.remove_prefix(static_cast<std::size_t>(stop - bytes.begin()));
    if (bytes.empty()) break;
    Put(LoadU8(bytes.data()));
    bytes.remove_prefix(1);
  }
}

void Utf8Writer::Wide(std::string_view bytes) {
  for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
    const std::uint16_t unit = LoadU16(bytes.data() + i);
    if (unit >= 0xDC00 && unit < 0xE000 && high_ != 0) {
      Put(0x10000 + ((static_cast<std::uint32_t>(high_) - 0xD800) << 10) + (unit - 0xDC00u));
      high_ = 0;
      continue;
    }
    Finish();
    if (unit >= 0xD800 && unit < 0xDC00) {
      high_ = unit;
    } else {
      Put(unit >= 0xDC00 && unit < 0xE000 ? kReplacement : unit);
    }
  }
}

void Utf8Writer::Finish() {
  if (high_ != 0) Put(kReplacement);
  high_ = 0;
}

bool ContinuedReader::AtEnd() {
  while (segment_ < segments_.size() && at_ >= segments_[segment_].size()) {
    ++segment_;
    at_ = 0;
  }
  return segment_ >= segments_.size();
}

bool ContinuedReader::U8(std::uint8_t& value) {
  if (AtEnd()) return false;
  value = LoadU8(segments_[segment_].data() + at_++);
  return true;
}

bool ContinuedReader::U16(std::uint16_t& value) {
  std::uint8_t low = 0;
  std::uint8_t high = 0;
  if (!U8(low) || !U8(high)) return false;
  value = static_cast<std::uint16_t>(low | (high << 8));
  return true;
}

bool ContinuedReader::U32(std::uint32_t& value) {
  std::uint16_t low = 0;
  std::uint16_t high = 0;
  if (!U16(low) || !U16(high)) return false;
  value = low | (static_cast<std::uint32_t>(high) << 16);
  return true;
}

bool ContinuedReader::Skip(std::size_t bytes) {
  while (bytes > 0) {
    if (AtEnd()) return false;
    const std::size_t step = std::min(bytes, segments_[segment_].size() - at_);
    at_ += step;
    bytes -= step;
  }
  return true;
}

bool ContinuedReader::Characters(std::size_t count, bool wide, std::string& out) {
  Utf8Writer writer(out);
  while (count > 0) {
    if (segment_ >= segments_.size()) return false;
    const std::string_view rest = segments_[segment_].substr(at_);
    const std::size_t width = wide ? 2 : 1;
    const std::size_t here = std::min(count, rest.size() / width);
    wide ? writer.Wide(rest.substr(0, here * width)) : writer.Narrow(rest.substr(0, here));
    at_ += here * width;
    count -= here;
    if (count == 0) break;
    // An odd byte before the boundary belongs to no character.
    ++segment_;
    at_ = 0;
    std::uint8_t flags = 0;
    if (!U8(flags)) return false;
    wide = (flags & kWideFlag) != 0;
  }
  writer.Finish();
  return true;
}

bool ContinuedReader::UnicodeText(std::string& out) {
  std::uint16_t count = 0;
  std::uint8_t flags = 0;
  std::uint16_t runs = 0;
  std::uint32_t extended = 0;
  if (!U16(count) || !U8(flags)) return false;
  if ((flags & kRichFlag) != 0 && !U16(runs)) return false;
  if ((flags & kExtendedFlag) != 0 && !U32(extended)) return false;
  if (!Characters(count, (flags & kWideFlag) != 0, out)) return false;
  return Skip(std::size_t{runs} * 4) && Skip(extended);
}

TextPool ReadSharedStrings(ContinuedReader reader) {
  TextPool pool;
  std::uint32_t total = 0;
  std::uint32_t unique = 0;
  if (!reader.U32(total) || !reader.U32(unique)) return pool;
  // The counts are only a claim, and some writers get them wrong: the data says how many texts there are.
  for (std::string text; !reader.AtEnd(); text.clear()) {
    if (!reader.UnicodeText(text)) break;
    pool.Add(text);
  }
  return pool;
}

}  // namespace platform::spreadsheet
