#include "declarations/editor/editor.h"

#include "declarations/editor/typed_text.h"
#include "declarations/lines/line_query.h"
#include "platform/encoding.h"
#include "store/functions.h"
#include "tariff/lookup.h"

namespace declarations {

bool TextOrder::operator()(std::string_view a, std::string_view b) const {
  return store::CompareText(a, b) < 0;
}

Editor::Editor(session::Session& session, const Identity& identity, Mode mode, std::string_view decimal_mark)
    : session_(&session),
      mode_(mode),
      decimal_mark_(decimal_mark),
      codes_(session),
      rules_(session, identity, codes_) {
  request_.identity = identity;
}

bool Editor::Open() {
  int month = identity().Luna, year = identity().Anul;
  session_->Anul = year;
  session_->Luna = month;
  tariff::ConexiuneTarif(*session_, month, year);  // refused: shown there, the earlier tariff serves
  try {
    const EditorDefaults defaults = ReadEditorDefaults(*session_);
    request_.header = defaults.header;
    request_.Check_ValStatistica = defaults.ValoareStatistica;
    request_.Check_XML_Detaliat = defaults.XML_Detaliat;
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  ReadDeclaringAgent(*session_, request_.header);
  agent_as_read_ = request_.header;
  if (!Load("")) return false;
  ReadReport();
  return true;
}

void Editor::TakeReport(std::string report) {
  report_ = std::move(report);
  problems_ = LineProblems(report_);
}

void Editor::ReadReport() {
  const std::string path = calc::ProblemsReportPath(*session_, identity());
  if (row_count() == 0 || !session_->host.files.Exists(path)) return;
  try {
    std::string report = session_->host.files.Read(path);
    const std::vector<LineProblem> all = LineProblems(report).all();
    const bool is_ours = all.empty() || record_id_ < 0 ||
                         std::any_of(all.begin(), all.end(), [this](const LineProblem& problem) {
                           return RowOf(problem.Record_ID) >= 0;
                         });
    if (is_ours) TakeReport(std::move(report));
  } catch (const platform::FileError& error) {
    session_->host.errors.Write("Frm_INTRASTAT", error.what());
  }
}

bool Editor::Close() {
  if (!SaveLine()) return false;
  if (mode_ == Mode::kModify) KeepDeclaringAgent(*session_, request_.header, agent_as_read_);
  return true;
}

std::string Editor::FileName() const {
  return DeclarationFileName(request_.header.TXT_CodFiscal, identity(),
                             declarations::KindOf(request_.Combo_Tip));
}

std::string Editor::Particulars() const {
  return fmt::format("{} {} / {}", identity().arrivals() ? "ACHIZITIE" : "LIVRARE", identity().Anul,
                     identity().Luna);
}

std::string Editor::Title() const {
  return fmt::format("INTRASTAT :  {} -   INREGISTRARI : {}", Particulars(), row_count());
}

// --- loading

bool Editor::Load(const std::string& condition_text) {
  const std::string filter = IdentityFilter(identity());
  const LineQuery query =
      provenance_ ? BuiltInLineQuery(kProvenanceColumns)
                  : ReadLineQuery(*session_, "SQL\\Intrastat.txt", kEditorColumns, "Frm_INTRASTAT");
  const std::string statement = query.With(filter + condition_text);
  try {
    store::Connection& company = session_->company;
    store::Recordset lines = can_edit() ? company.QueryForUpdate(statement) : company.Query(statement);
    const store::Recordset sums = company.Query(kTotalsSelect + filter);
    totals_ = {sums.Get(0).ToDouble(), sums.Get(1).ToDouble(), sums.Get(2).ToDouble(),
               sums.Get(3).ToDouble()};
    lines_ = std::move(lines);
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return false;
  }
  condition_text_ = condition_text;
  ForgetPending();
  columns_ = EditorColumns(lines_, identity().arrivals(), provenance_);
  record_id_ = ColumnOf("Record_ID");
  probleme_ = ColumnOf("Probleme");
  rules_.Bind(lines_);
  if (!sort_.empty()) {
    try {
      lines_.SetSort(sort_);
    } catch (const store::Error&) {  // by a column that this view does not have
      sort_.clear();
    }
  }
  reader_ = lines_;
  if (condition_text_.empty()) TellDeleted(lines_.record_count());
  return true;
}

void Editor::TellDeleted(std::int64_t rows) {
  const std::int64_t missing = expected_ - rows;
  expected_ = rows;
  if (missing <= 0) return;
  if (rows == 0) {
    session_->host.prompter.Error("Declaratia " + Particulars() +
                                  " nu mai are nici o linie: a fost stearsa intre timp");
  } else {
    session_->host.prompter.Error(
        fmt::format("Din declaratia {} {} intre timp", Particulars(),
                    missing == 1 ? "s-a sters o linie" : fmt::format("s-au sters {} linii", missing)));
  }
}

bool Editor::Refresh() {
  if (!SaveLine()) return false;
  codes_.Forget();
  const std::string sort = std::exchange(sort_, "");
  if (Load("")) return true;
  sort_ = sort;
  return false;
}

bool Editor::ReadAgain() { return SaveLine() && Reload(); }

bool Editor::Filter(const Condition& condition) {
  return IsComplete(condition) && SaveLine() && Load(TextOf(condition));
}

bool Editor::IsComplete(const Condition& condition) const {
  if (condition.empty()) return true;
  const bool no_column = condition.CmbColoanaWhere.empty(), no_sign = condition.TXT_SemnExpresie.empty();
  if (no_column) platform::ShowRequired(session_->host.prompter, "Coloana conditie");
  if (no_sign) platform::ShowRequired(session_->host.prompter, "Semn conditie");
  return !no_column && !no_sign;
}

std::string Editor::TextOf(const Condition& condition) const {
  if (condition.empty()) return "";
  const int column = ColumnOf(condition.CmbColoanaWhere);
  const EditorColumn of = column < 0 ? EditorColumn() : columns_[Index(column)];
  return ConditionText(
      condition.CmbColoanaWhere, condition.TXT_SemnExpresie,
      StatementValue(of.kind, condition.Txt_ValueUpdateWhere, decimal_mark_, of.lone_mark()));
}

bool Editor::Sort(int column, bool descending) {
  if (!SaveLine()) return false;
  std::string order;
  try {
    if (column >= 0) {
      order = fmt::format("[{}]{}, [Record_ID]", columns_.at(Index(column)).field, descending ? " DESC" : "");
    }
    lines_.SetSort(order);
  } catch (const std::exception& error) {
    session_->host.errors.Write("Frm_INTRASTAT", error.what());
    session_->host.prompter.Error("Eroare sortare");
    return false;
  }
  sort_ = std::move(order);
  reader_ = lines_;
  return true;
}

bool Editor::ShowProvenance(bool on) {
  if (on == provenance_) return true;
  if (!SaveLine()) return false;
  provenance_ = on;
  if (Load(condition_text_)) return true;
  provenance_ = !on;
  return false;
}

// --- lines on show

int Editor::ColumnOf(std::string_view field) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (platform::EqualsNoCase(columns_[i].field, field)) return static_cast<int>(i);
  }
  return -1;
}

int Editor::row_count() const { return static_cast<int>(reader_.record_count()) + (is_new_ ? 1 : 0); }

const store::Recordset& Editor::At(int row) const {
  if (row == pending_row_) return lines_;
  reader_.set_position(row);
  return reader_;
}

store::Value Editor::ValueAt(int row, int column) const {
  if (row < 0 || row >= row_count()) return {};
  return At(row).Get(column);
}

std::string Editor::TextAt(int row, int column) const {
  return TypedText(ValueAt(row, column), decimal_mark_);
}

bool Editor::CanEdit(int row, int column) const { return !WhyNot(row, column); }

std::optional<std::string> Editor::WhyNot(int row, int column) const {
  if (mode_ == Mode::kView) return "Declaratia este deschisa numai pentru vizualizare";
  if (provenance_) return "Dupa provenienta liniile se pot numai vedea";
  if (column < 0 || Index(column) >= columns_.size() || row < 0 || row > row_count())
    return "Celula nu exista";
  const EditorColumn& shown = columns_[Index(column)];
  if (shown.read_only) return "Coloana " + shown.caption + " nu se completeaza de mana";
  if (row == row_count() && !rules_.can_add()) return kCannotAdd;
  return std::nullopt;
}

const CodeBook::Entry* Editor::CodeAt(int row, int column) const {
  const tariff::CodeCheck* codes = columns_[Index(column)].codes;
  if (codes == nullptr) return nullptr;
  const store::Value value = ValueAt(row, column);
  return store::IsEmpty(value) ? nullptr : &codes_.Look(*codes, value.ToText());
}

std::string Editor::CodeProblem(int row, int column) const {
  const CodeBook::Entry* entry = CodeAt(row, column);
  if (entry == nullptr || !entry->asked || entry->known) return "";
  return fmt::format("{}: codul '{}' nu exista", columns_[Index(column)].caption,
                     ValueAt(row, column).ToText());
}

std::string Editor::CodeDescription(int row, int column) const {
  const CodeBook::Entry* entry = CodeAt(row, column);
  return entry == nullptr ? "" : entry->description;
}

// --- what the checker found

bool Editor::Flagged(int row) const { return probleme_ >= 0 && ValueAt(row, probleme_).ToInteger() != 0; }

std::string Editor::ProblemText(int row, int column) const {
  if (record_id_ < 0 || !Flagged(row)) return "";
  const std::int64_t id = ValueAt(row, record_id_).ToInteger();
  if (column >= 0) return problems_.TextOf(id, columns_[Index(column)].field);
  const std::string text = problems_.TextOf(id);
  return text.empty() ? "Linie cu probleme la ultima verificare" : text;
}

int Editor::RowOf(std::int64_t Record_ID) const {
  if (record_id_ < 0) return -1;
  const int rows = row_count();
  for (int row = 0; row < rows; ++row) {
    if (ValueAt(row, record_id_) == store::Value(Record_ID)) return row;
  }
  return -1;
}

Editor::Cell Editor::CellOf(std::int64_t Record_ID, std::string_view field) {
  Cell cell{.row = RowOf(Record_ID)};
  if (cell.row < 0 && filtered() && Filter({})) cell.row = RowOf(Record_ID);
  cell.column = ColumnOf(field);
  return cell;
}

Editor::Cell Editor::Locate(const LineProblem& problem) {
  Cell cell = CellOf(problem.Record_ID, problem.column);
  if (cell.row < 0 || !problem.column.empty()) return cell;
  // The retired country stands in one of three columns.
  for (const std::string_view country : {"Tara_Exp", "Tara_Dest", "Tara_Orig"}) {
    const int column = ColumnOf(country);
    if (column >= 0 && ValueAt(cell.row, column).ToText() == "GB") {
      cell.column = column;
      break;
    }
  }
  return cell;
}

Editor::Cell Editor::Locate(const Finding& finding) {
  return finding.Record_ID == 0 ? Cell() : CellOf(finding.Record_ID, finding.column);
}

CheckOutcome Editor::Check(const calc::ShowProblems& show_problems) {
  if (RefuseWriting() || !SaveLine()) return CheckOutcome::kNotRun;
  std::string report, path;
  bool fine = false;
  try {
    fine = calc::Verifica_Declaratie(
        *session_, identity().TIP, static_cast<std::int16_t>(identity().Anul),
        static_cast<std::int16_t>(identity().Luna), request_.Check_ValStatistica,
        [&path](const std::string& report_path) { path = report_path; }, &report);
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    return CheckOutcome::kNotRun;
  }
  TakeReport(std::move(report));
  Reload();
  if (fine) return CheckOutcome::kFine;
  if (show_problems) show_problems(path);
  return CheckOutcome::kProblems;
}

ExportResult Editor::Export(ExportCallbacks callbacks) {
  if (RefuseWriting() || !SaveLine()) return {ExportOutcome::kGivenUp, ""};
  const calc::ShowProblems show_problems = std::move(callbacks.show_problems);
  std::string path;
  callbacks.show_problems = [&path](const std::string& report_path) { path = report_path; };
  ExportResult result;
  try {
    result = ExportDeclaration(*session_, request_, callbacks);
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
  }
  if (!result.report.empty()) TakeReport(result.report);
  Reload();
  if (!path.empty() && show_problems) show_problems(path);
  return result;
}

}  // namespace declarations
