#pragma once

#include <string>
#include <vector>

#include "tariff/levels.h"
#include "ui/list_screen.h"

class QTextBrowser;

namespace tariff {

/// The tariff browser: one level of the nomenclature at a time, from sections down to the goods codes, read
/// from the tariff that is open at that moment. The constructor reads the level and throws store::Error.
class Frm_Tarif : public ui::ListScreen {
  Q_OBJECT
 public:
  /// With a data folder (the layout of tariff files) the screen offers the maintenance of tariffs.
  Frm_Tarif(ui::Context& context, const Level& level, QWidget* parent = nullptr,
            std::string data_folder = {});

  /// The children of the current row's code; nothing happens without a code or at the last level.
  void DrillDown();
  /// The level above: the list that was drilled from, or else that level whole, at the parent's row.
  void GoUp();
  void ShowAll();
  void OpenSearch();

 private:
  struct View {
    const Level* level;
    std::string select;
    QString place;  ///< the codes drilled through, "16 / 84"
  };
  struct Step {
    View view;
    std::string code;  ///< of the row drilled from
  };

  void Show(View view, const store::Recordset& rows);
  void ShowNote();
  void SelectCode(const std::string& code);
  void OpenVersions();
  std::string CodeAt(int row) const;  ///< "" for Null

  std::string data_folder_;
  View view_;
  std::vector<Step> steps_;  ///< way here, the outermost first
  ui::RecordsetModel* model_ = nullptr;
  QPushButton *link_ = nullptr, *up_ = nullptr;
  QTextBrowser* note_ = nullptr;
};

}  // namespace tariff
