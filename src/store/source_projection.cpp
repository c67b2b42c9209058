#include "store/source_projection.h"

#include "platform/encoding.h"
#include "store/recordset_data.h"

namespace store {

namespace {

using platform::spreadsheet::ColumnKind;
using SourceCell = platform::spreadsheet::Cell;

/// One item of the projection, with its literals read.
struct Item {
  int column = -1;  ///< of the source's table
  bool yes_no = false;
  std::optional<std::size_t> cut;
  Value otherwise_value;  ///< storage of `otherwise`
  Cell otherwise;
};

Cell LiteralCell(const dialect::ResultColumn& column, const Value& value) {
  if (value.is_text()) return Cell::TextRef(value.text());
  if (value.is_integer()) return IntegerCell(column, value.ToInteger());
  return NumberCell(column, value.ToDouble());
}

class Reader {
 public:
  Reader(const SourceSchema::Source& source, const dialect::Translation& translation)
      : source_(&source), columns_(&translation.columns) {}

  /// False where a literal has no plain value (a count beyond all texts).
  bool Prepare(const std::vector<dialect::Projected>& projection, const dialect::Normalized& literals) {
    items_.resize(projection.size());
    for (std::size_t i = 0; i < projection.size(); ++i) {
      const dialect::Projected& wanted = projection[i];
      Item& item = items_[i];
      const auto literal = [&](int index) {
        return dialect::LiteralValue(literals.literals[static_cast<std::size_t>(index)]);
      };
      if (wanted.column >= 0) {
        item.column = wanted.column + static_cast<int>(source_->first_column);
        item.yes_no =
            source_->table.columns()[static_cast<std::size_t>(item.column)].kind == ColumnKind::kBoolean;
      }
      if (wanted.otherwise >= 0) {
        item.otherwise_value = literal(wanted.otherwise);
        item.otherwise = LiteralCell((*columns_)[i], item.otherwise_value);
      }
      if (wanted.cut >= 0) {
        const Value count = literal(wanted.cut);
        if (!count.is_integer() || count.ToInteger() > INT32_MAX) return false;
        item.cut = static_cast<std::size_t>(count.ToInteger());
      }
    }
    return true;
  }

  void ReadRow(std::size_t row, RowBlock& rows) {
    Cell* cells = rows.Add();
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const Item& item = items_[i];
      Cell cell = item.otherwise;
      if (item.column >= 0) {
        const SourceCell& stored = source_->table.at(row, static_cast<std::size_t>(item.column));
        if (stored.kind != SourceCell::Kind::kNull) cell = Convert(stored, item, (*columns_)[i]);
      }
      if (!cell.is_text()) {
        cells[i] = cell;
        continue;
      }
      std::string_view text = cell.AsText();
      if (item.cut && text.size() > *item.cut) text = platform::Utf8Prefix(text, *item.cut);
      rows.StoreText(&cells[i], static_cast<int>(i), text);
    }
  }

 private:
  Cell Convert(const SourceCell& stored, const Item& item, const dialect::ResultColumn& column) {
    if (stored.kind == SourceCell::Kind::kText) return Cell::TextRef(stored.AsText());
    if (item.yes_no) return IntegerCell(column, stored.number != 0 ? -1 : 0);
    if (stored.zero_pad == 0) return NumberCell(column, stored.number);
    padded_ = platform::spreadsheet::NumberToText(stored.number, stored.zero_pad);
    return Cell::TextRef(padded_);
  }

  const SourceSchema::Source* source_;
  const std::vector<dialect::ResultColumn>* columns_;
  std::vector<Item> items_;
  std::string padded_;
};

}  // namespace

bool LoadProjection(const SourceSchema& sources, const dialect::Translation& translation,
                    const dialect::Normalized& literals, RowBlock& rows) {
  if (translation.projection.empty()) return false;
  const SourceSchema::Source* source = sources.Loaded(translation.projected_source);
  if (source == nullptr) return false;
  Reader reader(*source, translation);
  if (!reader.Prepare(translation.projection, literals)) return false;
  for (std::size_t row = 0; row < source->row_count; ++row) reader.ReadRow(row, rows);
  return true;
}

}  // namespace store
