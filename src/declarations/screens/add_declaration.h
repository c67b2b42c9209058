#pragma once

#include <optional>

#include "declarations/nil.h"
#include "ui/form.h"

namespace declarations {

class Places;

/// Names the declaration to work on, or writes the nil declaration of a month without trade. Accepted with
/// opening() set once a declaration is named; nil declarations are written from within and leave the dialog
/// open for the other flow.
class Frm_Intrastat_Add : public ui::Form {
  Q_OBJECT
 public:
  enum class Purpose { kDeclaration, kNil };  ///< which of the two commands Enter runs

  Frm_Intrastat_Add(ui::Context& context, Purpose purpose, QWidget* parent);

  const std::optional<EditorOpening>& opening() const { return opening_; }

 private:
  void AddPeriod();
  void AddAgent();
  AddDialog Typed() const;
  bool WithAgent() const;
  void SwitchAgent(bool on);
  /// The agent's fields into a header; keeps them as last used.
  void TakeAgent(Header& header);
  void ReadAgent();
  void FocusMissing();
  void Confirm();
  void AddNula();
  /// A header field as the user knows it, with the screen that it is typed on.
  QString CaptionOf(const QString& field) const;

  Places* places_ = nullptr;
  std::vector<QWidget*> agent_fields_;
  Header agent_;  ///< as last used
  std::optional<EditorOpening> opening_;
};

/// Shows the dialog; the declaration to open, nothing where it was left otherwise.
std::optional<EditorOpening> AskForDeclaration(ui::Context& context, QWidget* parent,
                                               Frm_Intrastat_Add::Purpose purpose);

}  // namespace declarations
