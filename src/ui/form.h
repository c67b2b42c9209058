#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "companies/fields.h"
#include "ui/code_box.h"
#include "ui/screen.h"

class QCheckBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace ui {

/// A data-entry screen. Fields carry their column's name as object name; those tagged "DA" take part in
/// reading and saving, name for name. Entering a field selects its text and shows its help line at the
/// bottom; Enter moves on. Confirm and cancel stand at the bottom right.
///
/// Building goes top down: AddTab (for tabbed screens), then AddColumn (side by side), then AddSection, then
/// fields; each call adds to the part begun last. Missing outer parts are begun by themselves.
class Form : public Screen {
  Q_OBJECT
 public:
  Form(Context& context, const QString& name, QWidget* parent);

  void AddTab(const QString& title);
  void AddColumn();
  void AddSection(const QString& title = {});

  enum class Kind { kBound, kFree };  ///< bound fields are tagged "DA"
  /// `characters` is what the field is as wide as.
  QLineEdit* AddText(const QString& name, const QString& label, int characters, const QString& help = {},
                     Kind kind = Kind::kBound);
  QCheckBox* AddTick(const QString& name, const QString& caption, const QString& help = {},
                     Kind kind = Kind::kBound);
  /// A look-up field with its description beside it.
  CodeBox* AddCode(const QString& name, const QString& label, CodeList list, int characters,
                   const QString& help = {}, Kind kind = Kind::kBound);
  /// Any other widget as a field; null label spans both columns.
  void AddField(const QString& label, QWidget* field, const QString& help = {}, Kind kind = Kind::kFree);
  /// A read-only text that shows more of what is chosen elsewhere on the screen.
  QLineEdit* AddShown(const QString& name, const QString& label);
  /// What is no field (a picture, a list), as wide as the section; one that fills takes the height left over.
  enum class Height { kOwn, kFills };
  void AddWide(QWidget* widget, Height height = Height::kOwn);
  /// A widget right of the field added last (a help or browse button).
  void AddBeside(QWidget* widget);
  void AddNote(const QString& text);  ///< a wrapped line of explanation

  /// Confirm (default look, object name "CmdOK") and cancel ("CmdRenunt").
  void SetButtons(const QString& confirm, std::function<void()> on_confirm,
                  const QString& cancel = "&Renunta");
  QPushButton* confirm_button() const { return confirm_; }
  QPushButton* cancel_button() const { return cancel_; }
  /// A further command at the bottom left.
  QPushButton* AddCommand(const QString& name, const QString& caption, std::function<void()> on_click);

  /// Marks a field as required beside its label.
  void MarkRequired(const QString& name);
  /// Required-value check: shows the label's message and goes to the field where it is blank.
  bool Require(const QString& name, const QString& label);

  /// Goes to a field, on whatever tab it is.
  void FocusField(const QString& name);

  /// Called when the focus leaves a field for another one of this form (not for cancel or another window).
  /// False keeps the cursor in the field.
  void OnLeave(const QString& name, std::function<bool()> check);

  /// Names of the bound fields in order of building.
  std::vector<std::string> BoundNames() const;
  companies::Fields Collect() const;
  void Fill(const companies::Fields& fields);
  /// Lets no text become longer than the column of its name takes.
  void LimitTexts(const store::Recordset& columns);
  QString Text(const QString& name) const;  ///< of any field; ticks "1" or "0"
  void SetText(const QString& name, const QString& text);

  /// From here on, closing without confirming asks first where a bound field has changed.
  void GuardChanges();
  void reject() override;

  void SetHelp(QWidget* field, const QString& help);
  void ShowMessage(const QString& text);  ///< in the line at the bottom

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  QVBoxLayout* body() { return outer_; }

 private:
  QGridLayout* section();
  /// To the next field or the button that Enter presses; helping buttons are for Tab and the mouse.
  void MoveOn();
  void AddRow(const QString& name, const QString& label, QWidget* field);
  void Watch(QWidget* field, const QString& help);
  QWidget* FieldOf(QObject* watched) const;
  std::vector<std::string> BoundTexts() const;

  QVBoxLayout* outer_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  QHBoxLayout* columns_ = nullptr;
  QVBoxLayout* column_ = nullptr;
  QGridLayout* section_ = nullptr;
  QHBoxLayout* last_row_ = nullptr;
  QHBoxLayout* buttons_ = nullptr;
  QLabel* message_ = nullptr;
  QPushButton* confirm_ = nullptr;
  QPushButton* cancel_ = nullptr;
  std::vector<QWidget*> fields_;
  std::map<QString, QLabel*> labels_;
  std::map<QString, std::function<bool()>> leave_checks_;
  bool checking_ = false, guarded_ = false;
  std::vector<std::string> as_opened_;
};

}  // namespace ui
