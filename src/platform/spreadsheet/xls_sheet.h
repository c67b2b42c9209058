#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/biff_records.h"
#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/xls_globals.h"

namespace platform::spreadsheet {

/// Reads the cells of one worksheet substream.
///
/// A first pass walks the whole substream and notes where its cells are, so a cut or inconsistent sheet is
/// refused before the first cell is delivered; it also puts in order what a writer did not.
class XlsSheetReader {
 public:
  XlsSheetReader(std::string_view stream, const XlsGlobals& globals, const TextPool& strings)
      : stream_(stream), globals_(&globals), strings_(&strings) {}

  /// Throws SheetError (kDamaged).
  void Read(std::size_t offset, CellSink& sink);

 private:
  struct CellRecord {
    std::uint32_t offset;
    std::uint16_t row;
    std::uint16_t column;
  };

  void Collect(std::size_t offset);
  bool Deliver(const biff::Record& record, biff::RecordReader ahead, CellSink& sink);
  bool Emit(const CellEvent& cell, CellSink& sink);
  bool DeliverMulRk(const biff::Record& record, CellEvent cell, CellSink& sink);
  void SetNumber(CellEvent& cell, std::uint16_t xf, double number) const;
  void SetFormulaResult(CellEvent& cell, std::string_view data, biff::RecordReader ahead);
  std::string_view InlineText(const biff::Record& record, biff::RecordReader ahead, std::size_t at);

  std::string_view stream_;
  const XlsGlobals* globals_;
  const TextPool* strings_;
  std::vector<CellRecord> cells_;
  std::uint64_t next_place_ = 0;  ///< cells before it are covered by a run of cells already delivered
  std::string text_;              ///< of the cell being delivered
};

}  // namespace platform::spreadsheet
