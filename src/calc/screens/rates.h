#pragma once

#include "calc/manual_rates.h"
#include "ui/code_box.h"
#include "ui/list_screen.h"

namespace calc {

/// The exchange rates of the open company: a list narrowed by currency and days, with adding, changing,
/// deleting, and taking a rates file of the National Bank.
class Frm_Curs_Manual : public ui::ListScreen {
  Q_OBJECT
 public:
  /// Asks for a file; its Windows path, or "" where the user gives up.
  using FileChooser = std::function<std::string()>;

  /// `update_rates` runs the automatic update with all its messages. The constructor reads the table and
  /// throws store::Error.
  Frm_Curs_Manual(ui::Context& context, std::function<void()> update_rates, QWidget* parent = nullptr,
                  FileChooser choose_file = {});

  void Reload();

 private:
  void AddFilterRow();
  /// Reads the filter's fields and shows what it lets through, where it has changed.
  void ApplyFilter();
  void ClearFilter();
  void ShowEmptyText();
  std::optional<store::Date> DayIn(QLineEdit* field);

  std::vector<RateKey> Selected();
  RateKey KeyAt(int row) const;
  void Select(const RateKey& key);
  void Edit(const std::optional<RateKey>& key);
  void Delete();
  void TakeFile();
  std::string AskForFile();
  void Update();

  std::function<void()> update_rates_;
  FileChooser choose_file_;
  RateFilter filter_;
  ui::RecordsetModel* model_;
  ui::CodeBox* currency_ = nullptr;
  QLineEdit *from_ = nullptr, *to_ = nullptr;
};

}  // namespace calc
