// Changing lines: cells, saving, copies, deletion.

#include "declarations/editor/editor.h"
#include "declarations/editor/typed_text.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

/// Beyond it lies nothing that a declaration could hold, and products stay finite.
constexpr double kLargestNumber = 1e15;

}  // namespace

bool Editor::RefuseWriting() {
  if (can_edit()) return false;
  session_->host.prompter.Error(*WhyNot(0, 0));
  return true;
}

std::optional<store::Value> Editor::Parse(const EditorColumn& column, std::string_view text,
                                          std::string* why_not) const {
  const auto refuse = [&](std::string_view reason) {
    *why_not = fmt::format("Coloana {}: '{}' {}", column.caption, text, reason);
    return std::nullopt;
  };
  if (text.empty()) return store::Value();
  switch (column.kind) {
    case ColumnKind::kNumber: {
      const std::optional<double> number = calc::ParseTypedNumber(text, decimal_mark_, column.lone_mark());
      if (!number) return refuse("nu este un numar");
      if (std::abs(*number) >= kLargestNumber) return refuse("este un numar prea mare");
      return store::Value(*number);
    }
    case ColumnKind::kDate: {
      const std::optional<store::Date> date = ParseTypedDate(text, identity().Anul, identity().Luna);
      if (!date) return refuse("nu este o data (zz.ll.aaaa)");
      if (!IsLineDate(*date)) return refuse("este o data in afara anilor 2000 - 2099");
      return store::Value(*date);
    }
    case ColumnKind::kYesNo:
      return store::Value(store::Value(text).ToBoolean());
    case ColumnKind::kText:
      break;
  }
  if (column.size > 0 && platform::Utf8Length(text) > static_cast<std::size_t>(column.size)) {
    return refuse(fmt::format("are mai mult de {} caractere", column.size));
  }
  return store::Value(text);
}

std::optional<std::string> Editor::Enter(int row) {
  if (row == pending_row_) return std::nullopt;
  if (!SaveLine()) return "Linia inceputa nu s-a putut salva";
  if (row == row_count()) {
    try {
      BeginLine();
    } catch (const store::Error& error) {
      return error.what();
    }
    return std::nullopt;
  }
  lines_.set_position(row);
  pending_row_ = row;
  amounts_before_ = PendingAmounts();
  return std::nullopt;
}

EditResult Editor::Put(int column, const store::Value& value) {
  try {
    EditResult result{.message = rules_.Set(lines_, column, value)};
    touched_ = true;
    return result;
  } catch (const store::Error& error) {
    return {false, error.what()};
  }
}

EditResult Editor::PutText(int column, std::string_view text) {
  const EditorColumn& shown = columns_[Index(column)];
  if (text == TypedText(lines_.Get(column), decimal_mark_)) return {};
  std::string why_not;
  const std::optional<store::Value> value = Parse(shown, text, &why_not);
  if (!value) return {false, why_not};
  if (shown.codes != nullptr && !store::IsEmpty(*value)) {
    // Known codes stand as their list spells them, unknown ones as typed.
    const CodeBook::Entry& entry = codes_.LookAnew(*shown.codes, value->text());
    if (entry.known) return Put(column, entry.code);
  }
  return Put(column, *value);
}

EditResult Editor::SetText(int row, int column, std::string_view text) {
  if (const std::optional<std::string> why_not = WhyNot(row, column)) return {false, *why_not};
  if (text == TextAt(row, column)) return {};
  if (const std::optional<std::string> why_not = Enter(row)) return {false, *why_not};
  return PutText(column, text);
}

EditResult Editor::CopyAbove(int row, int column) {
  if (const std::optional<std::string> why_not = WhyNot(row, column)) return {false, *why_not};
  if (row == 0) return {false, "Deasupra nu este nici o linie"};
  const store::Value value = ValueAt(row - 1, column);
  if (const std::optional<std::string> why_not = Enter(row)) return {false, *why_not};
  if (lines_.Get(column) == value) return {};
  return Put(column, value);
}

void Editor::BeginLine() {
  const int row = row_count();
  try {
    lines_.AddNew();
    rules_.FillNew(lines_);
  } catch (const store::Error&) {
    lines_.CancelUpdate();
    throw;
  }
  pending_row_ = row;
  is_new_ = true;
  touched_ = false;
  amounts_before_ = {};
}

int Editor::NewLine() {
  if (RefuseWriting() || !SaveLine()) return -1;
  if (!rules_.can_add()) {
    session_->host.prompter.Error(kCannotAdd);
    return -1;
  }
  if (const std::optional<std::string> why_not = Enter(row_count())) {
    session_->host.prompter.Error(*why_not);
    return -1;
  }
  return pending_row_;
}

LineTotals Editor::PendingAmounts() const {
  const auto amount = [this](std::string_view field) {
    const int column = ColumnOf(field);
    return column < 0 ? 0 : lines_.Get(column).ToDouble();
  };
  return {amount("Val_Fiscala"), amount("Val_Stat"), amount("Net"), amount("Valoare_Valuta")};
}

void Editor::ForgetPending() {
  pending_row_ = -1;
  is_new_ = touched_ = false;
}

void Editor::Store() {
  const LineTotals amounts = PendingAmounts();
  const int description = ColumnOf("Descriere");
  lines_.Update();
  totals_.Val_Fiscala += amounts.Val_Fiscala - amounts_before_.Val_Fiscala;
  totals_.Val_Stat += amounts.Val_Stat - amounts_before_.Val_Stat;
  totals_.Net += amounts.Net - amounts_before_.Net;
  totals_.Valoare_Valuta += amounts.Valoare_Valuta - amounts_before_.Valoare_Valuta;
  if (is_new_) {
    reader_ = lines_;
    ++expected_;
  }
  ForgetPending();
  if (description >= 0) KeepDescription(lines_.Get(description).ToText());
}

bool Editor::SaveLine() {
  if (!pending()) return true;
  if (!touched_) {
    CancelLine();
    return true;
  }
  try {
    Store();
    return true;
  } catch (const store::Error& error) {
    if (LineIsGone()) return SaveAgain();
    session::ShowError(*session_, error);
    return false;
  }
}

void Editor::CancelLine() {
  if (!pending()) return;
  lines_.CancelUpdate();
  ForgetPending();
}

bool Editor::LineIsGone() {
  if (is_new_ || record_id_ < 0) return false;
  try {
    return !session_->company.Any(fmt::format("SELECT Record_ID FROM INTRASTAT{} AND [Record_ID]={}",
                                              IdentityFilter(identity()),
                                              lines_.Get(record_id_).ToInteger()));
  } catch (const store::Error&) {
    return false;  // the failure that led here is the one to show
  }
}

bool Editor::SaveAgain() {
  const bool again = session_->host.prompter.Ask(
      fmt::format("Linia {} a fost stearsa intre timp din declaratia {}.\r\nO salvati ca linie noua, cu "
                  "valorile din grila ?",
                  lines_.Get(record_id_).ToInteger(), Particulars()),
      "RASPUNDETI", platform::Icon::kQuestion);
  if (!again) {
    CancelLine();
    --expected_;  // just said
    return Reload();
  }
  const std::vector<store::Value> values = LineValues(lines_);
  lines_.CancelUpdate();
  ForgetPending();
  --expected_;
  try {
    BeginLine();
    SetLineValues(values);
    Store();
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  return Reload();
}

std::vector<store::Value> Editor::LineValues(const store::Recordset& line) const {
  std::vector<store::Value> values;
  values.reserve(Index(line.field_count()));
  for (int i = 0; i < line.field_count(); ++i) values.push_back(line.Get(i));
  return values;
}

void Editor::SetLineValues(const std::vector<store::Value>& values) {
  touched_ = true;
  for (int i = 0; i < static_cast<int>(values.size()); ++i) {
    if (i != record_id_ && !lines_.field(i).base_column.empty()) lines_.Set(i, values[Index(i)]);
  }
}

int Editor::DuplicateLine(int row) {
  if (row < 0 || row >= row_count() || RefuseWriting() || !SaveLine() || row >= row_count()) return -1;
  const std::vector<store::Value> values = LineValues(At(row));
  if (NewLine() < 0) return -1;
  try {
    SetLineValues(values);
    rules_.FreshenCopy(lines_);
    Store();
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    CancelLine();
    return -1;
  }
  return row_count() - 1;
}

bool Editor::DeleteLines(const std::vector<int>& rows) {
  if (RefuseWriting()) return false;
  if (is_new_ && rows.size() == 1 && rows[0] == pending_row_) {
    CancelLine();
    return true;
  }
  if (!SaveLine()) return false;
  std::vector<std::int64_t> ids;
  for (const int row : rows) {
    if (row >= 0 && row < row_count() && record_id_ >= 0) ids.push_back(ValueAt(row, record_id_).ToInteger());
  }
  if (ids.empty()) {
    session_->host.prompter.Error("Selectati liniile de sters");
    return false;
  }
  const std::string what = ids.size() == 1 ? "linia selectata" : fmt::format("{} linii", ids.size());
  if (!session_->host.prompter.Ask(fmt::format("Stergeti {} din declaratia {} ?", what, Particulars()),
                                   "RASPUNDETI", platform::Icon::kQuestion)) {
    return false;
  }
  constexpr std::size_t kAtOnce = 500;
  std::int64_t deleted = 0;
  try {
    store::Transaction transaction(session_->company);
    for (std::size_t begin = 0; begin < ids.size(); begin += kAtOnce) {
      std::string list;
      for (std::size_t i = begin; i < std::min(begin + kAtOnce, ids.size()); ++i) {
        list += (list.empty() ? "" : ",") + std::to_string(ids[i]);
      }
      deleted += session_->company.Execute(
          fmt::format("DELETE FROM INTRASTAT{} AND [Record_ID] IN ({})", IdentityFilter(identity()), list));
    }
    transaction.Commit();
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  expected_ -= deleted;
  return Reload();
}

const Editor::DescriptionSet& Editor::Descriptions() {
  if (!descriptions_) {
    descriptions_.emplace();
    store::PassOver(session_->host.errors, "Frm_INTRASTAT", [this] {
      store::Recordset rows = session_->company.Query("SELECT * FROM Denumiri_Intrastat");
      for (; !rows.eof(); rows.MoveNext()) descriptions_->insert(rows["Denumire"].ToText());
    });
  }
  return *descriptions_;
}

void Editor::KeepDescription(const std::string& description) {
  if (store::IsEmpty(description) || Descriptions().contains(description)) return;
  descriptions_->insert(description);
  // Another program may have added it meanwhile, which the log takes.
  store::PassOver(session_->host.errors, "Frm_INTRASTAT", [&] {
    store::Recordset rows =
        session_->company.QueryForUpdate("SELECT * FROM Denumiri_Intrastat WHERE Denumire=''");
    rows.AddNew();
    rows.Set("Denumire", description);
    rows.Update();
  });
}

}  // namespace declarations
