#include "calc/redistribution/group_calculation.h"

#include <unordered_map>

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace calc {
namespace {

constexpr std::string_view kTotal = "TOTAL_";
constexpr char kRunIndex[] = "Redistribuire";

/// The columns that are the same for every group of a declaration.
bool IdentifiesDeclaration(std::string_view field) {
  for (const std::string_view own : {"TIP", "Cod_Fiscal", "Anul", "Luna"}) {
    if (platform::EqualsNoCase(field, own)) return true;
  }
  return false;
}

bool IsText(const store::FieldInfo& field) {
  return field.type == store::ColumnType::kText || field.type == store::ColumnType::kMemo;
}

/// All rows in the order they were read, whatever the grid has filtered or sorted.
store::Recordset InListOrder(const store::Recordset& rows) {
  store::Recordset all = rows;
  all.SetFilter("");
  all.SetSort("");
  return all;
}

}  // namespace

GroupCalculation::GroupCalculation(session::Session& session, declarations::Identity identity)
    : session_(session), identity_(std::move(identity)) {}

void GroupCalculation::Load() {
  const std::vector<GroupColumn> own = OwnColumns();
  std::vector<std::string> typed;
  for (const GroupColumn& column : own) {
    if (column.editable) typed.push_back(column.field);
  }
  std::unordered_map<std::string, std::vector<store::Value>> entered;
  if (rows_.field_count() > 0) {
    rows_.Update();
    for (store::Recordset row = InListOrder(rows_); !row.eof(); row.MoveNext()) {
      std::vector<store::Value>& values = entered[GroupKey(row)];
      for (const std::string& field : typed) values.push_back(row.Get(field));
    }
  }
  store::Recordset read = session_.company.Open(ListStatement(), {.updatable = false, .in_memory = true});
  key_fields_ = 0;
  for (; key_fields_ < read.field_count(); ++key_fields_) {
    const std::string& name = read.field(key_fields_).name;
    const bool is_typed = std::any_of(typed.begin(), typed.end(), [&](const std::string& field) {
      return platform::EqualsNoCase(field, name);
    });
    if (is_typed || name.starts_with(kTotal)) break;
  }
  rows_ = std::move(read);
  if (entered.empty()) return;
  for (; !rows_.eof(); rows_.MoveNext()) {
    const auto kept = entered.find(GroupKey(rows_));
    if (kept == entered.end()) continue;
    for (std::size_t i = 0; i < typed.size(); ++i) rows_.Set(typed[i], kept->second[i]);
    rows_.Update();
  }
  if (rows_.record_count() > 0) rows_.MoveFirst();
}

std::vector<GroupColumn> GroupCalculation::Columns() const {
  std::vector<GroupColumn> columns = OwnColumns();
  std::vector<GroupColumn> keys;
  for (int i = 0; i < key_fields_; ++i) {
    const std::string& name = rows_.field(i).name;
    if (IdentifiesDeclaration(name)) continue;
    GroupColumn& key = keys.emplace_back();
    key.field = name;
    key.caption = declarations::GridCaption(LineColumn(name), identity_.arrivals());
  }
  // A tick is the first column, as the help text says; the group's name stands before what is entered for it.
  const bool tick_first = !columns.empty() && columns.front().kind == GroupColumn::Kind::kTick;
  columns.insert(columns.begin() + (tick_first ? 1 : 0), keys.begin(), keys.end());
  return columns;
}

std::string GroupCalculation::Condition(const store::Recordset& row) const {
  std::string condition;
  for (int i = 0; i < key_fields_; ++i) {
    const store::FieldInfo& field = row.field(i);
    const std::string value = row.Get(i).ToText();
    condition += IsText(field) ? field.name + "='" + value + "' AND " : field.name + "=" + value + " AND ";
  }
  constexpr std::string_view kAnd = " AND ";
  if (condition.ends_with(kAnd)) condition.resize(condition.size() - kAnd.size());
  return std::string(platform::Trim(condition));
}

std::string GroupCalculation::GroupKey(const store::Recordset& row) const {
  // The condition alone writes a missing text as an empty one.
  std::string key = Condition(row);
  for (int i = 0; i < key_fields_; ++i) key += row.IsNull(i) ? 'N' : 'V';
  return key;
}

std::string GroupCalculation::Describe(const store::Recordset& row) const {
  std::string text;
  for (int i = 0; i < key_fields_; ++i) {
    const std::string& name = row.field(i).name;
    if (IdentifiesDeclaration(name)) continue;
    if (!text.empty()) text += ", ";
    const std::string value = row.Get(i).ToText();
    text += declarations::GridCaption(LineColumn(name), identity_.arrivals()) + " " +
            (store::IsEmpty(value) ? "(gol)" : value);
  }
  return text;
}

std::vector<std::string> GroupCalculation::Remarks(const store::Recordset& row) const {
  for (int i = 0; i < key_fields_; ++i) {
    if (row.IsNull(i)) return {"Grupul nu are toate datele completate, liniile lui nu se modifica"};
    if (row.Get(i).ToText().find('\'') != std::string::npos) {
      return {"Un apostrof in datele grupului opreste calculul lui"};
    }
  }
  return {};
}

GroupFigures GroupCalculation::Measure(const store::Recordset& row, bool stored) {
  const Measures measures = MeasuresOf(row, stored);
  GroupFigures figures;
  figures.row = row.position();
  figures.group = Describe(row);
  figures.expected = measures.expected.empty() ? measures.amount : 0;
  if (!stored) figures.remarks = Remarks(row);

  std::string select =
      "SELECT COUNT(*), COUNT(" + measures.key + "), SUM(Val_Fiscala), SUM(" + measures.shared + ")";
  if (!measures.Val_Stat.empty()) select += ", SUM(" + measures.Val_Stat + ")";
  if (!measures.expected.empty()) select += ", SUM(" + measures.expected + ")";
  select += " FROM Intrastat WHERE " + Condition(row);
  store::PassOver(session_.host.errors, LogName(), [&] {
    const store::Recordset sums = session_.company.Query(select);
    figures.lines = sums.Get(0).ToInteger();
    const std::int64_t without_key = figures.lines - sums.Get(1).ToInteger();
    figures.invoiced = sums.Get(2).ToDouble();
    figures.shared = sums.Get(3).ToDouble();
    int next = 4;
    if (!measures.Val_Stat.empty()) figures.Val_Stat = sums.Get(next++).ToDouble();
    if (!measures.expected.empty()) figures.expected = sums.Get(next).ToDouble();
    if (!stored && without_key > 0) {
      figures.remarks.push_back(
          fmt::format("{} linii fara {}, rezultatul lor ramane gol", without_key, measures.key));
    }
  });
  figures.difference = Round(figures.expected - figures.shared, measures.decimals);
  return figures;
}

std::vector<std::int64_t> GroupCalculation::TakenRows(store::Recordset& row) const {
  std::vector<std::int64_t> taken;
  for (; !row.eof(); row.MoveNext()) {
    if (Takes(row)) taken.push_back(row.position());
  }
  return taken;
}

std::vector<GroupFigures> GroupCalculation::Preview() {
  rows_.Update();
  store::Recordset row = InListOrder(rows_);
  const std::vector<std::int64_t> taken = TakenRows(row);
  // The index of the run serves here too; it is rolled back with everything else.
  std::optional<store::Transaction> rolled_back;
  if (!session_.company.in_transaction() && IndexPays(taken.size())) {
    rolled_back.emplace(session_.company);
    CreateIndex();
  }
  std::vector<GroupFigures> figures;
  for (const std::int64_t at : taken) {
    session_.host.progress.Update("", static_cast<int>(figures.size() * 100 / taken.size()));
    row.set_position(at);
    figures.push_back(Measure(row, false));
  }
  return figures;
}

std::optional<GroupFigures> GroupCalculation::PreviewOf(std::int64_t at) {
  rows_.Update();
  store::Recordset row = InListOrder(rows_);
  row.set_position(at);
  if (!Takes(row)) return std::nullopt;
  return Measure(row, false);
}

std::string GroupCalculation::Execute(const std::string& statement) {
  std::string reason;
  store::PassOver(session_.host.errors, LogName(), [&] {
    try {
      session_.company.Execute(statement);
    } catch (const store::Error& error) {
      reason = error.description();
      throw;
    }
  });
  return reason;
}

std::string GroupCalculation::RunGroup(const store::Recordset& row) {
  for (const std::string& statement : Statements(row)) {
    // The next one computes from what this one should have written.
    if (std::string reason = Execute(statement); !reason.empty()) return reason;
  }
  return "";
}

bool GroupCalculation::IndexPays(std::size_t groups) {
  // Each group's statements walk through all lines of the month; sorting the file's lines once costs about as
  // much as ten such walks over them.
  constexpr std::int64_t kWalks = 10;
  const auto count = [&](const std::string& where) {
    return session_.company.Scalar("SELECT COUNT(*) FROM Intrastat" + where).value_or(0).ToInteger();
  };
  return static_cast<std::int64_t>(groups) * count(Filter()) > kWalks * count("");
}

bool GroupCalculation::CreateIndex() {
  std::string columns = "Anul, Luna";
  for (int i = 0; i < key_fields_; ++i) {
    const std::string& name = rows_.field(i).name;
    if (!IdentifiesDeclaration(name)) columns += ", [" + LineColumn(name) + "]";
  }
  return Execute(fmt::format("CREATE INDEX {} ON Intrastat ({})", kRunIndex, columns)).empty();
}

RunReport GroupCalculation::CmdAjustare() {
  const RunReport report = Run();
  ShowClosing(report);
  return report;
}

void GroupCalculation::ShowClosing(const RunReport& report) {
  if (report.cancelled) {
    session_.host.prompter.Message("Calculul a fost oprit, nu s-a modificat nicio linie", "MESAJ",
                                   platform::Icon::kExclamation);
    return;
  }
  session_.host.prompter.Info(ClosingMessage(report.groups));
}

RunReport GroupCalculation::Run() {
  rows_.Update();
  store::Recordset row = InListOrder(rows_);
  const std::vector<std::int64_t> taken = TakenRows(row);
  RunReport report;
  store::Transaction transaction(session_.company);
  // Takes the file's lock: one that cannot be written stops here, not after waiting for it at every group.
  session_.company.Execute("UPDATE Intrastat SET TIP=TIP WHERE Record_ID=0");
  const bool indexed = IndexPays(taken.size()) && CreateIndex();
  for (const std::int64_t at : taken) {
    row.set_position(at);
    session_.host.progress.Update(LogName(), report.groups * 100 / static_cast<int>(taken.size()));
    if (session_.host.progress.Cancelled()) return {.cancelled = true, .groups = 0, .figures = {}};
    std::string error = RunGroup(row);
    report.figures.push_back(Measure(row, true));
    report.figures.back().error = std::move(error);
    ++report.groups;
  }
  if (indexed) Execute(fmt::format("DROP INDEX {} ON Intrastat", kRunIndex));
  transaction.Commit();
  session_.host.progress.Update(LogName(), 100);
  return report;
}

}  // namespace calc
