#pragma once

#include "ui/form.h"

namespace app {

/// The machine-wide settings: colours, decimals, folders and the rest. Accepted once they are written and
/// read anew.
class Frm_Setari : public ui::Form {
  Q_OBJECT
 public:
  Frm_Setari(ui::Context& context, QWidget* parent);

  /// Called after the new settings hold, before the screen closes: the main window takes the menu's colour.
  void OnApplied(std::function<void()> action) { on_applied_ = std::move(action); }

 private:
  void AddColour(const QString& name, const QString& label, const QString& help);
  void AddFolder(const QString& name, const QString& label, const QString& help);
  void Browse(const QString& name);
  void Confirm();

  std::function<void()> on_applied_;
};

}  // namespace app
