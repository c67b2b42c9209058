#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// One column of the stored lines as the floor inserts it again.
struct RawCell {
  enum class Kind : std::uint8_t { kNull, kInteger, kReal, kText } kind = Kind::kNull;
  std::int64_t integer = 0;
  double real = 0;
  std::string text;
};

/// The stored lines as SQLite holds them, in memory.
struct RawLines {
  std::vector<std::string> columns, types;  ///< names and declared types
  std::vector<RawCell> cells;               ///< row after row
  std::size_t rows() const { return cells.size() / columns.size(); }
  const RawCell& at(std::size_t row, std::size_t column) const {
    return cells[row * columns.size() + column];
  }
  std::size_t Column(const std::string& name) const;
};

RawLines ReadRaw(const std::string& database_file, const std::string& table);

/// What no implementation can do without: each measured in seconds.
struct Floor {
  double read_cells = 0;  ///< streaming every cell of the worksheet through the reader
  double insert =
      0;  ///< the same rows into an empty table without index, one transaction, prepared statement
  double aggregate = 0;  ///< hash-aggregating them into items and writing the declaration's text to a file
  std::size_t cells = 0, items = 0;
  double total() const { return read_cells + insert + aggregate; }
};

Floor MeasureFloor(const std::string& worksheet, const std::string& sheet, const RawLines& lines,
                   const std::string& folder);

}  // namespace bench
