#pragma once

#include <string>
#include <vector>

#include "ui/list_screen.h"

namespace tariff {

/// A reference table as the menu names it.
struct ReferenceTable {
  std::string query;                  ///< on the common connection
  std::string title;                  ///< of the window; the report's is "  REPORT - " and the title
  std::vector<std::string> captions;  ///< of the query's columns; empty ones at the end are ignored
  std::string report = {};            ///< of the report definitions
};

/// The read-only list of any reference table: grid, count, search, find dialog, print, spreadsheet. The
/// constructor reads the table and throws store::Error.
class Frm_Tabel : public ui::ListScreen {
  Q_OBJECT
 public:
  Frm_Tabel(ui::Context& context, const ReferenceTable& table, QWidget* parent = nullptr);

 private:
  void Show(const std::string& select, const store::Recordset& rows);

  std::string whole_, select_;  ///< the table's statement and the one shown now
  ui::RecordsetModel* model_ = nullptr;
};

}  // namespace tariff
