#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/encoding.h"
#include "store/dialect/translate.h"
#include "store/error.h"
#include "store/functions.h"

namespace store::dialect {

/// Tables in a bare SQLite connection, described to the translator as the engine would do it.
class DialectTest : public ::testing::Test, protected SchemaSource {
 protected:
  void SetUp() override {
    ASSERT_EQ(sqlite3_open(":memory:", &db_), SQLITE_OK);
    RegisterFunctions(db_);
  }
  void TearDown() override {
    // A literal that cannot be bound leaves its statement behind.
    while (sqlite3_stmt* left = sqlite3_next_stmt(db_, nullptr)) sqlite3_finalize(left);
    sqlite3_close(db_);
  }

  /// CREATE TABLE in the dialect, kept as the store keeps it.
  void Create(const std::string& statement) {
    const Translation made = Translate(statement, *this);
    ASSERT_EQ(made.kind, StatementKind::kCreateTable);
    Named& named = relations_.emplace_back();
    named.name = made.object;
    named.relation.sqlite_name = "\"" + made.object + "\"";
    std::string columns;
    for (const NewColumn& column : made.new_columns) {
      named.relation.columns.push_back({column.name, column.type, column.size});
      if (column.type == ColumnType::kCounter) named.relation.counter_column = column.name;
      columns += fmt::format("{}\"{}\" {}", columns.empty() ? "" : ", ", column.name, Storage(column.type));
    }
    Sqlite("CREATE TABLE \"" + made.object + "\" (" + columns + ")");
  }

  void CreateQuery(const std::string& name, const std::string& text, const SchemaSource* home = nullptr) {
    Named& named = relations_.emplace_back();
    named.name = name;
    named.relation.is_query = true;
    named.relation.query_text = text;
    named.relation.home = home;
  }

  const Relation* Find(std::string_view name) const override {
    for (const Named& named : relations_) {
      if (platform::EqualsNoCase(named.name, name)) return &named.relation;
    }
    return nullptr;
  }

  /// Rows as "a,b;c,d" with Null as ~ and texts bare, "affected n", or the number of the error.
  std::string Run(const std::string& text) {
    try {
      return Rows(text);
    } catch (const Error& error) {
      last_error_ = error.description();
      last_position_ = error.position();
      return std::to_string(error.number());
    }
  }
  /// One value.
  std::string Eval(const std::string& expression) { return Run("SELECT " + expression); }

  std::string Names(const std::string& text) {
    std::string out;
    for (const ResultColumn& column : Translate(text, *this).columns) {
      out += (out.empty() ? "" : ",") + column.name;
    }
    return out;
  }
  std::string Sql(const std::string& text) { return Translate(text, *this).sql; }

  void Sqlite(const std::string& sql) {
    char* message = nullptr;
    ASSERT_EQ(sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK) << sql << "\n"
                                                                                     << message;
  }

  /// What SQLite says about how it will run a statement.
  std::string Plan(const std::string& text) {
    std::string out;
    sqlite3_stmt* statement = Prepare("EXPLAIN QUERY PLAN " + Translate(text, *this).sql);
    while (sqlite3_step(statement) == SQLITE_ROW) out += Text(statement, 3) + "\n";
    sqlite3_finalize(statement);
    return out;
  }

  sqlite3* db_ = nullptr;
  std::string last_error_;
  int last_position_ = -1;

 private:
  struct Named {
    std::string name;
    Relation relation;
  };

  static const char* Storage(ColumnType type) {
    switch (type) {
      case ColumnType::kCounter:
        return "INTEGER PRIMARY KEY";
      case ColumnType::kText:
      case ColumnType::kMemo:
        return "TEXT COLLATE DX";
      case ColumnType::kByte:
      case ColumnType::kShort:
      case ColumnType::kLong:
      case ColumnType::kYesNo:
        return "INTEGER";
      default:
        return "REAL";
    }
  }

  static std::string Text(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return text == nullptr ? "~" : text;
  }

  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_));
    }
    return statement;
  }

  std::string Rows(const std::string& text) {
    Normalized normalized;
    Normalize(text, normalized);
    const Translation made = Translate(text, *this);
    sqlite3_stmt* statement = Prepare(made.sql);
    EXPECT_EQ(sqlite3_bind_parameter_count(statement), static_cast<int>(made.parameters.size())) << made.sql;
    if (made.kind == StatementKind::kSelect) {
      EXPECT_EQ(sqlite3_column_count(statement),
                static_cast<int>(made.columns.size()) + (made.base_table.empty() ? 0 : 1))
          << made.sql;
    }
    int index = 0;
    for (const Parameter& parameter : made.parameters) {
      Bind(statement, ++index,
           LiteralValue(normalized.literals.at(static_cast<std::size_t>(parameter.literal))));
    }
    std::string out;
    int code = SQLITE_DONE;
    bool first = true;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
      if (!first) out += ";";
      first = false;
      for (int i = 0; i < static_cast<int>(made.columns.size()); ++i) {
        out += (i > 0 ? "," : "") + Text(statement, i);
      }
    }
    std::string message = sqlite3_errmsg(db_);
    sqlite3_finalize(statement);
    if (code != SQLITE_DONE) {
      int number = 0;
      std::string description;
      if (!ParseFunctionError(message, number, description))
        throw std::runtime_error(made.sql + ": " + message);
      throw Error(number, text, description);
    }
    if (made.kind != StatementKind::kSelect) return "affected " + std::to_string(sqlite3_changes(db_));
    return out;
  }

  static void Bind(sqlite3_stmt* statement, int index, const Value& value) {
    if (value.is_text()) {
      const std::string text = value.ToText();
      sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    } else if (value.is_integer()) {
      sqlite3_bind_int64(statement, index, value.ToInteger());
    } else if (value.is_date()) {
      sqlite3_bind_double(statement, index, value.ToDate().days);
    } else {
      sqlite3_bind_double(statement, index, value.ToDouble());
    }
  }

  std::deque<Named> relations_;
};

}  // namespace store::dialect
