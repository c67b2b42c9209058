#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "platform/spreadsheet/cell_value.h"
#include "platform/spreadsheet/ods_styles.h"
#include "platform/spreadsheet/text_arena.h"

namespace platform::spreadsheet {

/// The sheets of an .ods file. All lie in one part, so they are read at once and kept compactly: only cells
/// that hold something, repeated ones and repeated rows as their count.
struct OdsContent {
  struct Cell {
    std::uint16_t column = 0, repeat = 1;
    CellKind kind = CellKind::kEmpty;
    std::uint8_t zero_pad = 0;
    double number = 0;
    std::string_view text;  ///< in `texts`
  };
  struct Row {
    std::uint32_t row = 0, repeat = 1;
    std::size_t first = 0, last = 0;  ///< of `cells`; behind the last one
  };
  struct Sheet {
    SheetInfo info;
    std::vector<Row> rows;
  };
  std::vector<Sheet> sheets;
  std::deque<Cell> cells;  // in small blocks: a vector of a million cells would be copied as it grows
  TextArena texts;
};

/// Fills the content from content.xml; takes styles from it and from styles.xml, which is read first.
class OdsHandler : public XmlHandler {
 public:
  explicit OdsHandler(OdsContent& content) : content_(&content) {}
  void OnStart(std::string_view name, const XmlAttributes& attributes) override;
  void OnEnd(std::string_view name) override;
  void OnText(std::string_view text) override;
  bool has_spreadsheet() const { return has_spreadsheet_; }

 private:
  void StartTable(const XmlAttributes& attributes);
  void StartColumn(const XmlAttributes& attributes);
  void StartRow(const XmlAttributes& attributes);
  void EndRow();
  void StartCell(const XmlAttributes& attributes);
  void EndCell();
  void SetValue(const XmlAttributes& attributes);
  void StartInText(std::string_view name, const XmlAttributes& attributes);
  std::uint8_t PadOf(std::string_view style);
  std::uint8_t PadOfColumn(std::uint64_t column) const;

  OdsContent* content_;
  OdsStyles styles_;
  std::unordered_map<std::string, std::uint8_t> pads_;
  bool has_spreadsheet_ = false, in_styles_ = false, in_table_ = false, in_row_ = false, in_cell_ = false;
  int skip_ = 0;       ///< depth within an element that says nothing about cells
  int paragraph_ = 0;  ///< depth within a paragraph of the cell
  struct ColumnRun {
    std::uint64_t end;
    std::uint8_t pad;
  };
  std::vector<ColumnRun> columns_;
  std::uint64_t next_row_ = 0, next_column_ = 0, row_repeat_ = 1, cell_repeat_ = 1;
  std::uint8_t row_pad_ = 0;
  bool row_styled_ = false;
  OdsContent::Row row_;
  OdsContent::Cell cell_;
  bool text_given_ = false;    ///< the value is an attribute, the paragraphs only show it
  bool paragraphs_ = false;    ///< the cell has one already
  bool blank_before_ = false;  ///< white space runs together
  std::string text_;
};

}  // namespace platform::spreadsheet
