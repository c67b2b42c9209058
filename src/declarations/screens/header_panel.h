#pragma once

#include <QWidget>
#include <vector>

#include "declarations/editor/editor.h"
#include "ui/context.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QToolButton;

namespace ui {
class CodeBox;
class ElidedLabel;
}  // namespace ui

namespace declarations {

class Places;

/// The editor's folding header: what the declaration file says of the company, its contact and its declaring
/// agent. What is typed goes into the editor's request at once. Folded it is one line.
class HeaderPanel : public QWidget {
  Q_OBJECT
 public:
  /// `title` stands in front of the folded line: "Modificare Declaratie : I / 2026 / 3".
  HeaderPanel(ui::Context& context, Editor& editor, const QString& title, QWidget* parent);

  /// Puts the request's values into the fields.
  void Fill();
  void SetReadOnly();
  void Unfold(bool on);
  /// Unfolds and goes to the field of that name; false where the header has none.
  bool GoTo(const QString& field);
  /// What a field is called on screen ("Declarant tert - Judet"); the name itself for what is none.
  QString CaptionOf(const QString& field) const;

 Q_SIGNALS:
  void HelpWanted(const QString& help);  ///< of the field entered; empty when it is left
  void Left();                           ///< Enter in the last field

 protected:
  /// Entering a field selects its text and shows its help line; Enter moves on.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void WatchFields();
  QWidget* FieldOf(QObject* watched) const;
  void MoveOn();
  QLineEdit* AddLine(QGridLayout* grid, const char* name, const char* label, int characters,
                     std::string Header::*value);
  QLineEdit* AddShown(QGridLayout* grid, const char* name, const char* label);
  QCheckBox* AddTick(QGridLayout* grid, const char* name, const char* caption, bool* value);
  void AddDeclaration(QGridLayout* grid);
  void AddCompany(QGridLayout* grid);
  void AddAgent(QGridLayout* grid);
  /// Several short fields in one row.
  void AddShort(QGridLayout* grid, const char* label, const std::vector<QWidget*>& fields);
  QLineEdit* NewLine(const char* name, int characters, std::string Header::*value);
  ui::CodeBox* NewPlace(const char* name);
  void ShowPlaces();
  void ShowSummary();
  void ShowAgent();

  struct BoundLine {
    QLineEdit* field;
    std::string Header::*value;
  };
  struct BoundTick {
    QCheckBox* field;
    bool* value;
  };

  ui::Context* context_;
  Editor* editor_;
  Header* header_;
  QToolButton* fold_;
  ui::ElidedLabel* summary_;
  QWidget* fields_;
  QWidget* agent_ = nullptr;
  std::vector<BoundLine> lines_;
  std::vector<BoundTick> ticks_;
  std::vector<QWidget*> watched_;
  QComboBox* kind_ = nullptr;
  QLineEdit* file_ = nullptr;
  ui::CodeBox* county_ = nullptr;
  ui::CodeBox* town_ = nullptr;
  Places* places_ = nullptr;  ///< from the first unfolding on
  bool filling_ = false;
};

}  // namespace declarations
