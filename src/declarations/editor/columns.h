#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calc/rounding/typed_number.h"
#include "store/recordset.h"
#include "tariff/codes.h"

namespace declarations {

/// What a column holds: the kind by which conditions choose their operators and bulk updates their quoting.
enum class ColumnKind : char { kText = 'T', kNumber = 'N', kDate = 'D', kYesNo = 'B' };

/// One column of the editor's grid.
struct EditorColumn {
  std::string field;    ///< as the query returns it
  std::string caption;  ///< heading; hidden columns have their field's name
  std::string format;   ///< "##,##0.00", "##,##0.0000", "##,##0", "dd.mm.yyyy[ hh:mm]"; empty: as it is
  ColumnKind kind = ColumnKind::kText;
  int size = 0;  ///< characters a text may have; 0: no limit
  bool hidden = false;
  bool read_only = false;
  const tariff::CodeCheck* codes = nullptr;  ///< the list that its codes come from

  std::string fel() const { return {static_cast<char>(kind)}; }  ///< "T", "N", "D" or "B"
  /// How numbers typed into it are read: the number pad's point in a rate is its decimal mark.
  calc::LoneMark lone_mark() const;
};

/// The columns of a line query, in its order. Columns that only a query of the installation's own has are
/// shown under their names. In the provenance view the columns that tell the source are shown too.
std::vector<EditorColumn> EditorColumns(const store::Recordset& lines, bool arrivals, bool provenance);

/// Statement of a code column's drop-down list: code and description, ordered by code.
std::string CodeListStatement(const tariff::CodeCheck& codes);

}  // namespace declarations
