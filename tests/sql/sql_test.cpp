#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "cli/batch/output.h"
#include "databases.h"
#include "script.h"
#include "store/connection.h"
#include "store/error.h"
#include "store/functions.h"

namespace sql_tests {
namespace {

namespace fs = std::filesystem;

fs::path Folder() { return fs::path(DECLARIX_SOURCE_DIR) / "tests" / "sql"; }

/// Whether a statement is one that gives rows.
bool IsQuery(std::string_view statement) {
  std::size_t start = statement.find_first_not_of(" \t\r\n(");
  if (start == std::string_view::npos) return false;
  std::string word;
  for (char c : statement.substr(start, 11)) {
    if ((c | 0x20) < 'a' || (c | 0x20) > 'z') break;
    word += static_cast<char>(c & ~0x20);
  }
  return word == "SELECT" || word == "SHAPE" || word == "PARAMETERS";
}

store::Value Argument(const std::string& text) {
  if (text.size() >= 2 && text.front() == '\'') return store::Value(text.substr(1, text.size() - 2));
  if (text.find('.') != std::string::npos) return store::Value(std::stod(text));
  return store::Value(static_cast<std::int64_t>(std::stoll(text)));
}

std::string Joined(const std::vector<std::string>& lines) {
  constexpr std::size_t kShown = 20;
  std::string text;
  for (std::size_t i = 0; i < lines.size() && i < kShown; ++i) text += "  " + lines[i] + "\n";
  if (lines.size() > kShown) text += "  … " + std::to_string(lines.size() - kShown) + " more\n";
  return text.empty() ? "  (none)\n" : text;
}

/// What a step gave: rows or a count.
struct Outcome {
  std::string columns;
  std::vector<std::string> rows;
  std::optional<std::int64_t> affected;
};

/// The current row as the batch tool prints it, tab-separated.
std::string PrintRow(const store::Recordset& rows) {
  std::string line;
  for (int i = 0; i < rows.field_count(); ++i) line += (i == 0 ? "" : "\t") + cli::PlainField(rows[i]);
  return line;
}

Outcome Collect(store::Recordset rows, const Step& step) {
  Outcome outcome;
  if (!step.filter.empty()) rows.SetFilter(step.filter);
  if (!step.sort.empty()) rows.SetSort(step.sort);
  if (!step.child.empty()) rows = rows.Child(step.child);
  for (int i = 0; i < rows.field_count(); ++i) {
    outcome.columns += (i == 0 ? "" : "\t") + rows.field(i).name;
  }
  if (!step.find.empty()) {
    if (rows.Find(step.find)) outcome.rows.push_back(PrintRow(rows));
    return outcome;
  }
  for (; !rows.eof(); rows.MoveNext()) outcome.rows.push_back(PrintRow(rows));
  return outcome;
}

Outcome ListSchema(store::Connection& connection, const std::string& table) {
  auto number = [](std::optional<int> n) { return n ? std::to_string(*n) : "\\N"; };
  Outcome outcome;
  for (const store::SchemaColumn& column : connection.Columns(table)) {
    outcome.rows.push_back(column.column_name + "\t" + std::to_string(column.ordinal_position) + "\t" +
                           column.column_default + "\t" + number(column.character_maximum_length) + "\t" +
                           number(column.numeric_precision) + "\t" + number(column.datetime_precision) +
                           "\t" + column.description);
  }
  return outcome;
}

Outcome Run(store::Connection& connection, const Step& step) {
  if (!step.schema.empty()) return ListSchema(connection, step.schema);
  if (!step.query.empty()) {
    connection.catalog().SetQuery({step.query.at(0), step.query.at(1)});
    return {};
  }
  if (!step.link.empty()) {
    connection.catalog().CreateLink({step.link.at(0), step.link.at(1), step.link.at(2)});
    return {};
  }
  if (!step.call.empty()) {
    std::vector<store::Value> arguments;
    for (const std::string& text : step.arguments) arguments.push_back(Argument(text));
    return Collect(connection.QueryStored(step.call, arguments), step);
  }
  if (IsQuery(step.statement)) return Collect(connection.Query(step.statement), step);
  Outcome outcome;
  outcome.affected = connection.Execute(step.statement);
  return outcome;
}

std::string What(const Step& step) {
  if (!step.query.empty()) return "query " + step.query.front();
  if (!step.link.empty()) return "link " + step.link.front();
  return step.statement.empty() ? step.call + step.schema : step.statement;
}

void Check(store::Connection& connection, const Step& step) {
  std::string where =
      step.file.filename().string() + ":" + std::to_string(step.line) + "\n  " + What(step) + "\n";
  Outcome outcome;
  try {
    outcome = Run(connection, step);
  } catch (const store::Error& error) {
    std::string got = std::to_string(error.number()) + " " + error.description();
    if (step.error != error.number()) {
      ADD_FAILURE() << where << "failed: " << got
                    << (step.error == 0 ? "" : "\nexpected: " + std::to_string(step.error));
    } else if (got.find(step.error_text) == std::string::npos) {
      ADD_FAILURE() << where << "its description: " << got << "\nshould hold: " << step.error_text;
    }
    return;
  }
  if (step.error != 0) {
    ADD_FAILURE() << where << "expected error " << step.error << ", got\n" << Joined(outcome.rows);
    return;
  }
  if (!step.expects) return;
  if (step.affected >= 0 && outcome.affected != step.affected) {
    ADD_FAILURE() << where << "affected " << outcome.affected.value_or(-1) << ", expected " << step.affected;
  }
  if (!step.columns.empty() && outcome.columns != step.columns) {
    ADD_FAILURE() << where << "columns  " << outcome.columns << "\nexpected " << step.columns;
  }
  if (step.row_count >= 0) {
    if (static_cast<long long>(outcome.rows.size()) != step.row_count) {
      ADD_FAILURE() << where << outcome.rows.size() << " rows, expected " << step.row_count;
    }
  } else if (step.affected < 0 && !(step.rows.empty() && !step.columns.empty())) {
    std::vector<std::string> expected = step.rows;
    if (step.any_order) {
      std::sort(expected.begin(), expected.end());
      std::sort(outcome.rows.begin(), outcome.rows.end());
    }
    if (outcome.rows != expected) {
      ADD_FAILURE() << where << "gave\n" << Joined(outcome.rows) << "expected\n" << Joined(expected);
    }
  }
}

Databases& AllDatabases() {
  static Databases databases;
  return databases;
}

class Statements : public ::testing::TestWithParam<std::string> {};

TEST_P(Statements, GiveWhatTheFileSays) {
  // 2026-03-16 10:30:00
  store::SetFunctionClock([] { return 46097.4375; });
  std::vector<Step> steps = ReadScript(Folder() / GetParam());
  ASSERT_FALSE(steps.empty());
  std::unique_ptr<store::Connection> connection;
  std::string absent;
  for (const Step& step : steps) {
    if (!step.database.empty()) {
      connection.reset();
      connection = AllDatabases().Open(step.database, Folder());
      absent = connection == nullptr ? step.database : "";
      if (!absent.empty()) std::printf("left out, not on this machine: %s\n", absent.c_str());
    } else if (absent.empty()) {
      ASSERT_NE(connection, nullptr) << "no database: line before " << step.line;
      Check(*connection, step);
    }
  }
  connection.reset();
  store::SetFunctionClock({});
}

std::vector<std::string> Files() {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(Folder())) {
    if (entry.path().extension() == ".test") files.push_back(entry.path().filename().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

INSTANTIATE_TEST_SUITE_P(Sql, Statements, ::testing::ValuesIn(Files()),
                         [](const auto& file) { return file.param.substr(0, file.param.find('.')); });

}  // namespace
}  // namespace sql_tests
