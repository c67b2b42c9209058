#include "import/template_draft.h"

#include <algorithm>
#include <set>

#include "import/proposal.h"
#include "import/template_rows.h"
#include "platform/encoding.h"

namespace importer {
namespace {

store::Value OrNull(std::string_view text) {
  return store::IsEmpty(text) ? store::Value() : store::Value(text);
}
store::Value OrNull(const std::optional<int>& number) {
  return number ? store::Value(*number) : store::Value();
}
std::optional<int> Whole(const store::Value& value) {
  return value.is_null() ? std::nullopt : std::optional<int>(static_cast<int>(value.ToInteger()));
}

}  // namespace

TemplateDraft::TemplateDraft(session::Session& session) : session_(&session) {
  header.Work_Sheet_Name = kDefaultSheet;
  stored_header_ = header;
}

bool TemplateDraft::Open(std::string_view Nume_Structura) {
  TemplateEditor editor(*session_);
  if (!editor.Open(Nume_Structura)) return false;
  const store::Recordset& from = editor.header();
  header = {from["Nume_Structura"].ToText(), from["TIP"].ToText(), from["Locatie_Implicita"].ToText(),
            from["Work_Sheet_Name"].ToText(), from["SampleExcelFile"].ToText()};
  if (store::IsEmpty(header.Work_Sheet_Name)) header.Work_Sheet_Name = kDefaultSheet;
  rows_.clear();
  store::Recordset columns = editor.columns();
  for (; !columns.eof(); columns.MoveNext()) {
    TemplateRow row;
    row.Record_ID = columns["Record_ID"].ToInteger();
    row.Dest_ColumnName = columns["Dest_ColumnName"].ToText();
    row.Dest_ColumnDescription =
        ShownDescription(row.Dest_ColumnName, columns["Dest_ColumnDescription"].ToText());
    row.Exista_Coloana = columns["Exista_Coloana"].ToBoolean();
    row.Numar_Coloana = Whole(columns["Numar_Coloana"]);
    row.Valoare_Implicita = columns["Valoare_Implicita"].ToText();
    row.Marime_Maxima = Whole(columns["Marime_Maxima"]);
    row.Format = columns["Format"].ToText();
    rows_.push_back(std::move(row));
  }
  opened_name_ = header.Nume_Structura;
  stored_header_ = header;
  stored_rows_ = rows_;
  return true;
}

void TemplateDraft::SetPresent(std::size_t row, bool present) {
  rows_[row].Exista_Coloana = present;
  if (!present) rows_[row].Numar_Coloana.reset();
}

std::optional<int> TemplateDraft::WholeAboveZero(std::string_view typed, std::string_view what) {
  const std::optional<double> number = store::ParseNumber(typed);
  if (number && *number >= 1 && *number <= 65535 && *number == static_cast<int>(*number)) {
    return static_cast<int>(*number);
  }
  session_->host.prompter.Error(std::string(what) + ": \"" + std::string(typed) +
                                "\" nu este un numar intreg de la 1 in sus");
  return std::nullopt;
}

bool TemplateDraft::SetNumber(std::size_t row, std::string_view typed) {
  typed = platform::Trim(typed);
  if (typed.empty()) {
    rows_[row].Numar_Coloana.reset();
    return true;
  }
  if (!AcceptColumnNumber(session_->host.prompter, rows_[row].Exista_Coloana)) return false;
  const std::optional<int> number = WholeAboveZero(typed, "Numar coloana fisier excel");
  if (number) rows_[row].Numar_Coloana = number;
  return number.has_value();
}

bool TemplateDraft::SetSize(std::size_t row, std::string_view typed) {
  typed = platform::Trim(typed);
  if (typed.empty()) {
    rows_[row].Marime_Maxima.reset();
    return true;
  }
  const std::optional<int> size = WholeAboveZero(typed, "Caractere maxime admise");
  if (size) rows_[row].Marime_Maxima = size;
  return size.has_value();
}

bool TemplateDraft::SetFormat(std::size_t row, std::string_view text, const std::vector<std::string>& list) {
  if (!AcceptFromList(session_->host.prompter, text, list)) return false;
  rows_[row].Format = text;
  return true;
}

void TemplateDraft::Assign(std::size_t row, int number) {
  rows_[row].Exista_Coloana = true;
  rows_[row].Numar_Coloana = number;
}

bool TemplateDraft::Delete(std::size_t row) {
  if (!ConfirmRowDelete(session_->host.prompter)) return false;
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
  return true;
}

int TemplateDraft::Propose(const std::vector<SampleColumn>& columns) {
  std::vector<Wanted> wanted;
  std::set<int> taken;
  for (const TemplateRow& row : rows_) {
    if (row.Numar_Coloana) {
      taken.insert(*row.Numar_Coloana);
    } else {
      wanted.push_back({row.Dest_ColumnName, row.Dest_ColumnDescription});
    }
  }
  std::vector<SampleColumn> free;
  for (const SampleColumn& column : columns) {
    if (!taken.contains(column.number)) free.push_back(column);
  }
  const std::vector<Proposal> proposals = ProposeColumns(free, wanted);
  for (const Proposal& proposal : proposals) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (rows_[i].Dest_ColumnName == proposal.Dest_ColumnName) Assign(i, proposal.number);
    }
  }
  return static_cast<int>(proposals.size());
}

std::optional<std::size_t> TemplateDraft::IncompleteRow() const {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].Exista_Coloana && !rows_[i].Numar_Coloana) return i;
  }
  return std::nullopt;
}

std::vector<ColumnRule> TemplateDraft::Rules() const {
  std::vector<ColumnRule> rules;
  for (const TemplateRow& row : rows_) {
    rules.push_back({row.Dest_ColumnName, row.Exista_Coloana, row.Numar_Coloana, row.Valoare_Implicita,
                     row.Marime_Maxima ? std::to_string(*row.Marime_Maxima) : ""});
  }
  return rules;
}

bool TemplateDraft::Save() {
  if (const auto row = IncompleteRow()) {
    AcceptRow(session_->host.prompter, true, rows_[*row].Numar_Coloana);
    return false;
  }
  try {
    if (!NameIsFree() || !Store()) return false;
  } catch (const store::Error& error) {
    session_->host.prompter.Error(error.description());
    return false;
  }
  return Open(header.Nume_Structura);
}

bool TemplateDraft::NameIsFree() {
  const std::string& name = header.Nume_Structura;
  if (store::IsEmpty(name)) return true;  // asked for with the other required fields
  if (name.find('\'') != std::string::npos) {
    session_->host.prompter.Error("Numele machetei nu poate contine apostrof: " + name);
    return false;
  }
  if (platform::EqualsNoCase(name, opened_name_) || !TemplateEditor(*session_).Open(name)) return true;
  session_->host.prompter.Error("Exista deja macheta: " + name);
  return false;
}

bool TemplateDraft::Store() {
  TemplateEditor editor(*session_);
  if (is_new()) {
    editor.New();
  } else if (!editor.Open(opened_name_)) {
    session_->host.prompter.Error("Macheta " + opened_name_ + " a fost stearsa intre timp");
    return false;
  }
  editor.header().Set("Nume_Structura", OrNull(header.Nume_Structura));
  editor.header().Set("TIP", OrNull(header.TIP));
  editor.header().Set("Locatie_Implicita", OrNull(header.Locatie_Implicita));
  editor.header().Set("Work_Sheet_Name", OrNull(header.Work_Sheet_Name));
  editor.header().Set("SampleExcelFile", OrNull(header.SampleExcelFile));

  store::Transaction transaction(session_->company);
  if (!editor.Save()) return false;
  if (!is_new()) {
    store::Recordset stored = session_->company.QueryForUpdate(
        "SELECT * FROM StructuraFisiereContinut WHERE Nume_Structura='" + header.Nume_Structura + "'");
    while (!stored.eof()) {
      const std::int64_t id = stored["Record_ID"].ToInteger();
      const auto row = std::find_if(rows_.begin(), rows_.end(),
                                    [id](const TemplateRow& each) { return each.Record_ID == id; });
      if (row == rows_.end()) {
        stored.Delete();  // the next row is the current one then
        continue;
      }
      if (std::find(stored_rows_.begin(), stored_rows_.end(), *row) == stored_rows_.end()) {
        stored.Set("Exista_Coloana", row->Exista_Coloana);
        stored.Set("Numar_Coloana", OrNull(row->Numar_Coloana));
        stored.Set("Valoare_Implicita", OrNull(row->Valoare_Implicita));
        stored.Set("Marime_Maxima", OrNull(row->Marime_Maxima));
        stored.Set("Format", OrNull(row->Format));
        stored.Update();
      }
      stored.MoveNext();
    }
  }
  transaction.Commit();
  return true;
}

}  // namespace importer
