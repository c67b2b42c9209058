#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "store/connection.h"
#include "support/test_host.h"

namespace store {

/// Expects a store::Error of one number and returns its description.
template <typename Action>
std::string ErrorOf(int number, Action action) {
  try {
    action();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), number) << error.what();
    return error.description();
  }
  ADD_FAILURE() << "no error, expected " << number;
  return "";
}

/// Database files in "C:\Date\" of drives of the test's own.
class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    std::filesystem::create_directories(host.folder.path() / "c" / "Date");
    environment.drives = &host.drives;
    environment.busy_timeout_ms = 50;
  }

  static std::string Path(std::string_view name) { return "C:\\Date\\" + std::string(name); }
  std::filesystem::path HostPath(std::string_view name) const { return host.drives.ToHost(Path(name)); }

  void Create(std::string_view name) { Connection::CreateDatabase(environment, Path(name)); }

  /// A new file, opened.
  std::unique_ptr<Connection> CreateAndOpen(std::string_view name) {
    Create(name);
    return OpenFile(name);
  }

  std::unique_ptr<Connection> OpenFile(std::string_view name) {
    auto connection = std::make_unique<Connection>(environment);
    connection->Open(JetString(Path(name)));
    return connection;
  }

  void WriteFile(std::string_view name, std::string_view content) const {
    std::ofstream(HostPath(name), std::ios::binary) << content;
  }

  /// "a|b;c|d": the rows' fields as text, Null as "~".
  static std::string Rows(Recordset rows) {
    std::string text;
    for (; !rows.eof(); rows.MoveNext()) {
      if (!text.empty()) text += ';';
      for (int i = 0; i < rows.field_count(); ++i) {
        if (i > 0) text += '|';
        text += rows.IsNull(i) ? "~" : rows[i].ToText();
      }
    }
    return text;
  }

  test_support::TestHost host;
  Environment environment;
};

/// A table with a column of every kind that rows are written through.
inline void CreateLines(Catalog& catalog) {
  catalog.CreateTable(
      "Linii",
      {
          {.name = "Record_ID", .type = ColumnType::kCounter, .primary_key = true},
          {.name = "Cod", .type = ColumnType::kText, .size = 8, .description = "Codul", .required = true},
          {.name = "Tara", .type = ColumnType::kText, .size = 2, .default_text = "\"RO\""},
          {.name = "Descriere", .type = ColumnType::kMemo},
          {.name = "Val_Stat", .type = ColumnType::kDouble, .description = "Valoarea", .default_text = "0"},
          {.name = "Curs", .type = ColumnType::kSingle},
          {.name = "Suma", .type = ColumnType::kCurrency},
          {.name = "Nr", .type = ColumnType::kShort},
          {.name = "Luna", .type = ColumnType::kByte},
          {.name = "Data", .type = ColumnType::kDateTime},
          {.name = "Bifat", .type = ColumnType::kYesNo},
      },
      "liniile declaratiei");
}

}  // namespace store
