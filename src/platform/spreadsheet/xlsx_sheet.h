#pragma once

#include <cstdint>
#include <string>

#include "platform/spreadsheet/cell_value.h"
#include "platform/spreadsheet/xlsx_parts.h"

namespace platform::spreadsheet {

/// Streams the cells of one worksheet part.
class XlsxSheetHandler : public XmlHandler {
 public:
  XlsxSheetHandler(const XlsxParts& parts, const TextPool& strings, CellSink& sink)
      : parts_(&parts), strings_(&strings), sink_(&sink) {}

  void OnStart(std::string_view name, const XmlAttributes& attributes) override;
  void OnEnd(std::string_view name) override;
  void OnText(std::string_view text) override;
  bool Done() const override { return stopped_; }
  /// Whether the part had cells' data at all, however little.
  bool has_data() const { return has_data_; }

 private:
  enum class Type : std::uint8_t { kNumber, kShared, kFormulaText, kInline, kBoolean, kError, kDate };

  void StartRow(const XmlAttributes& attributes);
  void StartCell(const XmlAttributes& attributes);
  void FinishCell();
  bool SetValue(CellEvent& cell);

  const XlsxParts* parts_;
  const TextPool* strings_;
  CellSink* sink_;
  bool has_data_ = false, in_data_ = false, in_cell_ = false, in_value_ = false, stopped_ = false;
  std::uint32_t next_row_ = 0, next_column_ = 0;  ///< where a row or cell without address stands
  CellEvent cell_;
  Type type_ = Type::kNumber;
  std::size_t style_ = 0;
  std::string value_;
  XlsxText inline_text_;
  std::size_t cells_ = 0;
};

}  // namespace platform::spreadsheet
