#include "declarations/list/declaration_list.h"

#include "calc/checker.h"
#include "declarations/editor/condition.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

constexpr std::string_view kSelect = "SELECT * FROM [Lista_Intrastat]";
constexpr std::string_view kMoney = "##,##0.00";

/// A direction typed as it is shown, as the column holds it.
std::string Direction(std::string_view expression) {
  const std::string typed = platform::ToUpper(platform::Trim(expression));
  for (const std::string_view TIP : {"I", "O"}) {
    if (typed.size() > 1 && DeclarationList::DirectionText(TIP).find(typed) != std::string_view::npos) {
      return std::string(TIP);
    }
  }
  return std::string(expression);
}

std::string Title(std::string_view what, const Identity& identity) {
  return fmt::format("{}{} / {} / {}", what, identity.TIP, identity.Anul, identity.Luna);
}

}  // namespace

const std::vector<ListColumn>& DeclarationList::columns() {
  static const std::vector<ListColumn> kColumns = {
      {"TIP", "Sens", ""},
      {"Tip_Declaratie", "Tip declaratie", ""},
      {"Anul", "Anul", ""},
      {"Luna", "Luna", ""},
      {"Total_Valoare_Valuta", "Valoare valuta", kMoney},
      {"Total_Val_Fiscala", "Valoare RON", kMoney},
      {"Total_Net", "Greutate Neta [Kg]", kMoney},
      {"Pozitii", "Pozitii", "##,##0"},
  };
  return kColumns;
}

bool DeclarationList::Open() { return Read(order_); }

bool DeclarationList::Sort() {
  column_order_.clear();
  return Read(" ORDER BY [Anul] DESC, [Luna] DESC");
}

void DeclarationList::SortBy(int column, bool descending) {
  column_order_.clear();
  if (column >= 0) {
    column_order_ =
        fmt::format("[{}]{}", columns()[static_cast<std::size_t>(column)].field, descending ? " DESC" : "");
  }
  if (rows_.field_count() > 0) rows_.SetSort(column_order_);
}

bool DeclarationList::Read(std::string_view order) {
  try {
    store::Recordset rows = session_->company.Query(std::string(kSelect) + std::string(order));
    rows.SetFilter(filter_);
    rows.SetSort(column_order_);
    rows_ = std::move(rows);
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  order_ = order;
  return true;
}

store::Value DeclarationList::ValueAt(int row, int column) const {
  rows_.set_position(row);
  return rows_.Get(columns()[static_cast<std::size_t>(column)].field);
}

bool DeclarationList::arrivals(int row) const { return ValueAt(row, 0).ToText() == "I"; }

std::optional<Identity> DeclarationList::Selected(int row) const {
  if (row < 0 || row >= row_count()) {
    session_->host.prompter.Error("Selectati un document", "MESAJ");
    return std::nullopt;
  }
  rows_.set_position(row);
  return Identity{rows_["TIP"].ToText(), session_->current.Cod_Fiscal,
                  static_cast<int>(rows_["Anul"].ToInteger()), static_cast<int>(rows_["Luna"].ToInteger())};
}

int DeclarationList::RowOf(const Identity& identity) const {
  for (int row = 0; row < row_count(); ++row) {
    rows_.set_position(row);
    if (rows_["TIP"].ToText() == identity.TIP && rows_["Anul"].ToInteger() == identity.Anul &&
        rows_["Luna"].ToInteger() == identity.Luna) {
      return row;
    }
  }
  return -1;
}

EditorOpening DeclarationList::Opening(const Identity& identity, bool view) {
  EditorOpening opening;
  opening.identity = identity;
  opening.modify = true;
  opening.title = view ? ViewTitle(identity) : ModifyTitle(identity);
  return opening;
}

std::optional<EditorOpening> DeclarationList::OpeningAt(session::Session& session, std::int64_t Record_ID) {
  const store::Recordset line = session.company.Query(
      fmt::format("SELECT TIP, Cod_Fiscal, Anul, Luna FROM Intrastat WHERE Record_ID={}", Record_ID));
  if (line.record_count() == 0) return std::nullopt;
  EditorOpening opening =
      Opening({line["TIP"].ToText(), line["Cod_Fiscal"].ToText(), static_cast<int>(line["Anul"].ToInteger()),
               static_cast<int>(line["Luna"].ToInteger())},
              false);
  opening.Record_ID = Record_ID;
  return opening;
}

std::string DeclarationList::ModifyTitle(const Identity& identity) {
  return Title("Modificare Declaratie : ", identity);
}

std::string DeclarationList::ViewTitle(const Identity& identity) {
  return Title("Vizualizare Declaratie : ", identity);
}

bool DeclarationList::Delete(int row) {
  const std::optional<Identity> identity = Selected(row);
  if (!identity) return false;
  if (!session_->host.prompter.Ask(fmt::format("STERGETI ACESTA DECLARATIE ?\r\n{} - {} - {}", identity->TIP,
                                               identity->Anul, identity->Luna),
                                   "RASPUNDETI", platform::Icon::kQuestion)) {
    return false;
  }
  try {
    session_->company.Execute("DELETE FROM [Intrastat]" + EditorFilter(*identity));
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  // Its problems would show up in a later declaration of the same month.
  try {
    session_->host.files.Remove(calc::ProblemsReportPath(*session_, *identity));
  } catch (const platform::FileError& error) {
    session_->host.errors.Write("Frm_Intrastat_Lista", error.what());
  }
  return Open();
}

std::optional<PrintCompany> DeclarationList::Print(int row) const {
  if (!Selected(row)) return std::nullopt;
  try {
    const store::Recordset company =
        session_->common.Query("SELECT Cod_Fiscal, Nume_Firma, XML_Detaliat FROM Firme WHERE Cod_Fiscal='" +
                               session_->current.Cod_Fiscal + "'");
    if (company.record_count() == 0) {
      session_->host.prompter.Error("Firma " + session_->current.Cod_Fiscal +
                                    " nu mai este in registrul firmelor");
      return std::nullopt;
    }
    return PrintCompany{company["Cod_Fiscal"].ToText(), company["Nume_Firma"].ToText(),
                        company["XML_Detaliat"].ToBoolean()};
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return std::nullopt;
  }
}

void DeclarationList::Hint() const {
  session_->host.prompter.Info("Apasati butonul Genereaza fisier Intrastat. Stanga Sus");
}

std::optional<std::string> DeclarationList::Criterion(int column, std::string_view expression) const {
  const bool no_column = column < 0 || static_cast<std::size_t>(column) >= columns().size();
  const bool no_expression = store::IsEmpty(expression);
  if (no_column) platform::ShowRequired(session_->host.prompter, "Coloana de cautare");
  if (no_expression) platform::ShowRequired(session_->host.prompter, "Expresie de cautare");
  if (no_column || no_expression) return std::nullopt;
  const std::string field(columns()[static_cast<std::size_t>(column)].field);
  const store::ColumnType type = rows_.field(rows_.FieldIndex(field)).type;
  if (type == store::ColumnType::kText || type == store::ColumnType::kMemo) {
    return "[" + field + "] LIKE '%" + (field == "TIP" ? Direction(expression) : std::string(expression)) +
           "%'";
  }
  if (type == store::ColumnType::kDateTime) return "[" + field + "]='" + std::string(expression) + "'";
  return "[" + field + "]=" + StatementValue(ColumnKind::kNumber, expression, decimal_mark_);
}

int DeclarationList::Search(int column, std::string_view expression, int from) const {
  const std::optional<std::string> criterion = Criterion(column, expression);
  if (!criterion) return -1;
  try {
    for (const int start : {from, 0}) {
      if (rows_.Find(*criterion, std::max(start, 0))) return static_cast<int>(rows_.position());
    }
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return -1;
  }
  session_->host.prompter.Error("Nici o inregistrare NU corespunde criteriului de cautare", "Mesaj");
  return -1;
}

bool DeclarationList::Filter(int column, std::string_view expression) {
  const std::optional<std::string> criterion = Criterion(column, expression);
  if (!criterion) return false;
  try {
    rows_.SetFilter(*criterion);
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  filter_ = *criterion;
  return true;
}

void DeclarationList::ShowAll() {
  filter_.clear();
  rows_.SetFilter("");
}

std::string DeclarationList::CountText() const { return fmt::format("Inregistrari: {}", row_count()); }

double DeclarationList::total_Val_Fiscala() const {
  double total = 0;
  for (int row = 0; row < row_count(); ++row) total += ValueAt(row, 5).ToDouble();
  return total;
}

}  // namespace declarations
