#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "store/value.h"

namespace store {

/// One value of a recordset: 16 bytes. Texts of up to eight bytes lie in the cell itself, longer ones in the
/// block's arena.
struct Cell {
  enum class Kind : std::uint8_t { kNull, kBoolean, kInteger, kDouble, kDate, kShortText, kText };

  union {
    std::int64_t integer;
    double number;
    const char* text;
    char chars[8];
  };
  std::uint32_t length = 0;
  Kind kind = Kind::kNull;

  Cell() : integer(0) {}
  static Cell Boolean(bool value);
  static Cell Integer(std::int64_t value);
  static Cell Double(double value);
  static Cell DateOf(double days);
  /// A short text is copied into the cell, a longer one stays where it is.
  static Cell TextRef(std::string_view text);

  bool is_text() const { return kind == Kind::kShortText || kind == Kind::kText; }
  bool is_null() const { return kind == Kind::kNull; }
  std::string_view AsText() const {
    return {kind == Kind::kShortText ? chars : text, kind == Kind::kNull ? 0U : length};
  }
  double AsNumber() const;  ///< numbers, dates and booleans
  Value ToValue() const;
};
static_assert(sizeof(Cell) == 16);

/// Growing storage of texts that stay where they are.
class TextArena {
 public:
  const char* Store(std::string_view text);
  std::size_t bytes() const { return total_; }

 private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t used_ = 0, capacity_ = 0, total_ = 0;
};

/// Rows of cells in chunks, so that growing never copies the whole.
class RowBlock {
 public:
  explicit RowBlock(int columns = 0) : columns_(columns) {}

  std::int64_t size() const { return size_; }
  /// A new row of Nulls; earlier row pointers may become invalid.
  Cell* Add();
  void RemoveLast() { --size_; }
  Cell* row(std::int64_t index) {
    return &chunks_[static_cast<std::size_t>(index >> kShift)]
                   [static_cast<std::size_t>((index & kMask) * columns_)];
  }
  const Cell* row(std::int64_t index) const { return const_cast<RowBlock*>(this)->row(index); }

  /// Puts a text into a cell of the last row; equal to the cell above, it shares its storage.
  void StoreText(Cell* cell, int column, std::string_view text);
  /// A cell whose text lies in this block.
  Cell Keep(const Cell& cell);

 private:
  static constexpr int kShift = 8;
  static constexpr std::int64_t kRows = 1 << kShift, kMask = kRows - 1;

  int columns_;
  std::int64_t size_ = 0;
  std::int64_t first_capacity_ = 0;  // rows of the first chunk, which starts small
  std::vector<std::unique_ptr<Cell[]>> chunks_;
  TextArena arena_;
};

}  // namespace store
