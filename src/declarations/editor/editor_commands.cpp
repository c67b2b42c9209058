// Commands on many lines at once.

#include "declarations/editor/editor.h"

namespace declarations {

std::vector<ConditionOperator> Editor::Operators(int column) const {
  try {
    return ConditionOperators(*session_, columns_[Index(column)].fel());
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return {};
  }
}

bool Editor::CanUpdate(std::string_view field) {
  const int column = ColumnOf(field);
  if (column >= 0 && !columns_[Index(column)].read_only) return true;
  session_->host.prompter.Info("Coloana " + std::string(field) + " NU SE POATE ACTUALIZA");
  return false;
}

bool Editor::ExecuteUpdate(std::string_view CmbColoanaUpdate, std::string_view Txt_ValueUpdate,
                           const Condition& condition) {
  if (RefuseWriting() || !SaveLine()) return false;
  platform::Prompter& prompter = session_->host.prompter;
  const bool no_column = store::IsEmpty(CmbColoanaUpdate), no_value = store::IsEmpty(Txt_ValueUpdate);
  if (no_column) platform::ShowRequired(prompter, "Coloana Actulizata");
  if (no_value) platform::ShowRequired(prompter, "Valoare Nou");
  if (no_column || no_value || !CanUpdate(CmbColoanaUpdate) || !IsComplete(condition)) return false;
  if (condition.empty() &&
      !prompter.Ask("NU ati selectat nici o conditie, se vor actualiza toate inregistrarile. Continuati ?",
                    "RASPUNDETI", platform::Icon::kQuestion)) {
    return false;
  }
  const EditorColumn& column = columns_[Index(ColumnOf(CmbColoanaUpdate))];
  const ColumnKind kind = column.kind;
  std::string value(Txt_ValueUpdate);
  if (kind != ColumnKind::kText) {
    value = StatementValue(kind, Txt_ValueUpdate, decimal_mark_, column.lone_mark());
  }
  if (kind == ColumnKind::kDate && value != Txt_ValueUpdate) value = "#" + value + "#";
  try {
    const std::int64_t touched = session_->company.Execute(BulkUpdateHead(CmbColoanaUpdate, kind, value) +
                                                           IdentityFilter(identity()) + TextOf(condition));
    prompter.Info(fmt::format("Inregistrari modificate : {}", touched));
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  return Reload();
}

std::optional<std::string> Editor::CalculationFilter() {
  if (RefuseWriting() || !SaveLine()) return std::nullopt;
  return EditorFilter(identity());
}

std::optional<std::string> Editor::RecalcValStatFilter() {
  if (!request_.Check_ValStatistica) {
    session_->host.prompter.Info(
        "Nu este bifata optiunea calcul valoare statistica\r\n"
        "Pentru a determina necesitatea calculului valorii statistice va rugam consultati legislatia in "
        "vigoare");
    return std::nullopt;
  }
  return CalculationFilter();
}

}  // namespace declarations
