#pragma once

#include <optional>

#include "import/preview.h"
#include "import/screens/choices.h"
#include "import/template_draft.h"
#include "ui/form.h"

class QTimer;

namespace ui {
class Grid;
}

namespace importer {

class PreviewModel;
class SampleModel;
class TemplateRowModel;

/// The template editor: header, column rows, the columns of a sample file beside them, and below the first
/// lines that the template makes of it, read anew after each change. Stays open after saving: a new template
/// gets its rows then.
///
/// A sample column comes to a row by typing its number, by a click on the column and one on the row, by
/// dragging it there, by a double click (or Enter) for the current row, or by proposal from the headings.
class Frm_Macheta : public ui::Form {
  Q_OBJECT
 public:
  /// An empty name makes a new template. Throws store::Error.
  Frm_Macheta(ui::Context& context, const std::string& Nume_Structura, QWidget* parent,
              FileChooser choose_file = {});

  /// Begins a new template at a worksheet that waits to be imported.
  void BeginWith(const std::string& sample, const std::string& TIP);

  /// Of the template as it is stored; empty while it is not.
  const std::string& Nume_Structura() const { return stored_name_; }

  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* key) override;

 private:
  enum class Telling { kShow, kQuiet };  ///< whether an unreadable sample is a message box

  void AddHeader();
  void AddCommands();
  void AddGrids();
  void ShowHeader();
  void TakeHeader();
  void ShowTitle();
  void Save();
  void ChooseFolder();
  void ChooseSample();
  void TakeSample(const std::string& path, Telling telling);
  void ReadColumns(Telling telling);
  void Propose();
  /// The next click on a row gives it this sample column.
  void Arm(std::optional<int> number);
  void AssignTo(int row, int number);
  void DeleteRow();
  void ShowPreview();
  void GoToNextPart();  ///< header, rows, sample, lines
  void TellLineProblem();
  int SampleNumber() const;  ///< of the current sample column; 0: none

  TemplateDraft draft_;
  Preview preview_;
  FileChooser choose_file_;
  std::string stored_name_, read_sheet_;
  std::optional<int> armed_;
  TemplateRowModel* rows_ = nullptr;
  SampleModel* sample_ = nullptr;
  PreviewModel* lines_ = nullptr;
  ui::Grid *row_grid_ = nullptr, *sample_grid_ = nullptr, *line_grid_ = nullptr;
  QComboBox *flow_ = nullptr, *sheet_ = nullptr;
  QLabel *sample_label_ = nullptr, *line_label_ = nullptr;
  QTimer* refresh_;
};

}  // namespace importer
