#include "tariff/query/builder.h"

#include "platform/clock.h"
#include "platform/encoding.h"

namespace tariff {
namespace {

std::string_view WithoutMarks(std::string_view text) {
  text = platform::Trim(text);
  if (text.size() >= 2 && text.front() == '#' && text.back() == '#') text = text.substr(1, text.size() - 2);
  return text;
}

/// A day with or without time of day; a time alone is no day.
std::optional<store::Date> DayIn(std::string_view text) {
  const std::optional<store::Date> date = store::ParseDate(WithoutMarks(text));
  return date && date->days >= 1 ? date : std::nullopt;
}

bool AsksForNull(std::string_view Semn) { return platform::Trim(Semn).starts_with("IS"); }

/// Names of tables stand bare in statements; those of other programs' tables may need brackets.
std::string TableText(std::string_view table) {
  const auto plain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  };
  const bool bare = !table.empty() && !(table[0] >= '0' && table[0] <= '9') &&
                    std::all_of(table.begin(), table.end(), plain);
  return bare ? std::string(table) : fmt::format("[{}]", table);
}

}  // namespace

std::vector<store::SchemaTable> QueryTables(store::Connection& connection) {
  std::vector<store::SchemaTable> tables = connection.Tables();
  const std::vector<store::StoredQuery> queries = connection.catalog().Queries();
  std::erase_if(tables, [&](const store::SchemaTable& table) {
    return table.type == "VIEW" &&
           std::any_of(queries.begin(), queries.end(), [&](const store::StoredQuery& query) {
             return platform::EqualsNoCase(query.name, table.name) &&
                    platform::ToUpper(platform::Trim(query.text)).starts_with("PARAMETERS");
           });
  });
  std::stable_partition(tables.begin(), tables.end(),
                        [](const store::SchemaTable& table) { return table.type != "VIEW"; });
  return tables;
}

std::vector<QueryColumn> QueryColumns(store::Connection& connection, std::string_view table) {
  std::vector<QueryColumn> columns;
  for (const store::SchemaColumn& each : connection.Columns(table)) {
    QueryColumn column;
    column.FieldName = each.column_name;
    column.DataType = DataTypeOf(each.type);
    column.description = each.description;
    columns.push_back(std::move(column));
  }
  return columns;
}

bool ChooseOperator(QueryColumn& column, const std::vector<SearchOperator>& operators,
                    std::string_view typed) {
  const std::string_view wanted = platform::Trim(typed);
  const bool asked_for_null = AsksForNull(column.Semn);
  if (wanted.empty()) {
    column.DescSemn.clear();
    column.Semn.clear();
  } else {
    const auto find = [&](auto field) {
      return std::find_if(operators.begin(), operators.end(), [&](const SearchOperator& each) {
        return each.SeAplicaLa == column.DataType &&
               platform::EqualsNoCase(platform::Trim(each.*field), wanted);
      });
    };
    auto found = find(&SearchOperator::DescSemn);
    if (found == operators.end()) found = find(&SearchOperator::Semn);
    if (found == operators.end()) return false;
    column.DescSemn = found->DescSemn;
    column.Semn = found->Semn;
  }
  if (AsksForNull(column.Semn)) {
    if (platform::Trim(column.value).empty()) column.value = "NULL";
  } else if (asked_for_null && column.value == "NULL") {
    column.value.clear();
  }
  return true;
}

void EnterValue(QueryColumn& column, std::string_view typed) {
  const std::string_view value = platform::Trim(typed);
  column.value = value;
  if (column.DataType == "DATETIME") {
    if (const std::optional<store::Date> day = DayIn(value)) {
      column.value = fmt::format("#{}#", store::DateText(*day));
    }
  } else if (column.DataType == "YESNO") {
    if (platform::EqualsNoCase(value, "da")) column.value = "True";
    if (platform::EqualsNoCase(value, "nu")) column.value = "False";
  }
}

std::string ConditionValue(const QueryColumn& column) {
  if (column.DataType == "DATETIME") {
    if (const std::optional<store::Date> day = DayIn(column.value)) {
      const platform::LocalTime at = platform::FromSerial(day->days);
      std::string text = fmt::format("{:02}-{:02}-{:04}", at.month, at.day, at.year);
      if (at.hour != 0 || at.minute != 0 || at.second != 0) {
        text += fmt::format(" {:02}:{:02}:{:02}", at.hour, at.minute, at.second);
      }
      return column.value.front() == '#' ? "#" + text + "#" : text;
    }
  }
  return column.value;
}

std::string ValueRemark(const QueryColumn& column) {
  const std::string_view value = platform::Trim(column.value);
  if (column.Semn.empty()) {
    return value.empty() ? "" : "Valoarea nu se foloseste: alegeti si semnul";
  }
  if (value.empty()) return "Scrieti valoarea cautata";
  const bool like = platform::Trim(column.Semn) == "LIKE";
  const bool quoted = value.front() == '\'' || value.front() == '"';
  if (column.DataType == "TEXT" && !AsksForNull(column.Semn) && !quoted && value.front() != '[') {
    return "Textele se scriu intre apostrofuri: '" + std::string(value) + "'";
  }
  if (like && quoted && value.find('%') == std::string_view::npos) {
    return "La cautare % tine locul oricaror litere: '%text%' contine, 'text%' incepe, '%text' se termina";
  }
  return "";
}

int BuiltQuery::RowAt(int position) const {
  for (const Condition& each : conditions) {
    if (position >= each.begin && position < each.end) return each.row;
  }
  return -1;
}

std::optional<int> RowWithoutValue(const std::vector<QueryColumn>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].Semn.empty() && platform::Trim(columns[i].value).empty()) return static_cast<int>(i);
  }
  return std::nullopt;
}

BuiltQuery BuildQuery(std::string_view table, const std::vector<QueryColumn>& columns) {
  const std::string from = TableText(table);
  BuiltQuery built;
  built.text = "SELECT ";
  bool first = true;
  for (const QueryColumn& each : columns) {
    if (!each.shown) continue;
    if (!first) built.text += ", ";
    first = false;
    built.text += fmt::format("{}.[{}]", from, each.FieldName);
  }
  built.text += " FROM " + from;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const QueryColumn& each = columns[i];
    if (each.Semn.empty()) continue;
    built.text += built.conditions.empty() ? " WHERE " : " AND ";
    const int begin = static_cast<int>(built.text.size());
    built.text += fmt::format("[{}] {}{}", each.FieldName, each.Semn, ConditionValue(each));
    built.conditions.push_back({static_cast<int>(i), begin, static_cast<int>(built.text.size())});
  }
  return built;
}

}  // namespace tariff
