#include <fmt/format.h>

#include <cstdlib>
#include <stdexcept>

#include "platform/encoding.h"
#include "store/layout/layout.h"

namespace store::layout {
namespace {

struct TypeName {
  const char* name;
  ColumnType type;
};
constexpr TypeName kTypes[] = {
    {"COUNTER", ColumnType::kCounter},   {"BYTE", ColumnType::kByte},         {"SHORT", ColumnType::kShort},
    {"LONG", ColumnType::kLong},         {"SINGLE", ColumnType::kSingle},     {"DOUBLE", ColumnType::kDouble},
    {"TEXT", ColumnType::kText},         {"MEMO", ColumnType::kMemo},         {"YESNO", ColumnType::kYesNo},
    {"DATETIME", ColumnType::kDateTime}, {"CURRENCY", ColumnType::kCurrency},
};

bool IsYes(std::string_view field) { return field == "x"; }

ColumnDefinition ReadColumn(const Csv& csv, std::size_t row) {
  const std::vector<std::string>& fields = csv.rows[row];
  ColumnDefinition column;
  column.name = fields[csv.Column("column")];
  const std::string& type = fields[csv.Column("type")];
  const TypeName* found = nullptr;
  for (const TypeName& known : kTypes) {
    if (type == known.name) found = &known;
  }
  if (found == nullptr) FailAtLine(csv.path, csv.lines[row], fmt::format("tip necunoscut: {}", type));
  column.type = found->type;
  const std::string& size = fields[csv.Column("size")];
  if (!size.empty()) column.size = std::atoi(size.c_str());
  if (column.type == ColumnType::kText && (column.size < 1 || column.size > 255)) {
    FailAtLine(csv.path, csv.lines[row], "o coloana TEXT are intre 1 si 255 de caractere");
  }
  column.default_text = fields[csv.Column("default")];
  column.required = IsYes(fields[csv.Column("required")]);
  column.primary_key = IsYes(fields[csv.Column("key")]);
  column.description = fields[csv.Column("description")];
  return column;
}

std::vector<std::string> SplitWords(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::size_t blank = text.find(' ');
    if (blank != 0) words.emplace_back(text.substr(0, blank));
    text = blank == std::string_view::npos ? std::string_view() : text.substr(blank + 1);
  }
  return words;
}

/// Calls `take` with every row of a file shared by the databases that belongs to `database`.
template <typename Take>
void ForDatabase(const platform::Files& files, const std::string& path, std::string_view database,
                 Take take) {
  const Csv csv = ReadCsv(files, path);
  for (const auto& fields : csv.rows) {
    if (fields[csv.Column("database")] == database) {
      take([&](std::string_view column) { return fields[csv.Column(column)]; });
    }
  }
}

}  // namespace

const Table& Database::Find(std::string_view table) const {
  for (const Table& candidate : tables) {
    if (platform::EqualsNoCase(candidate.name, table)) return candidate;
  }
  throw std::out_of_range("no table " + std::string(table));
}

Database Read(const platform::Files& files, std::string_view data_folder, std::string_view database) {
  Database layout;
  const std::string schema = fmt::format("{}schema\\", data_folder);
  const Csv csv = ReadCsv(files, fmt::format("{}{}.csv", schema, database));
  const std::size_t name_column = csv.Column("table");
  for (std::size_t row = 0; row < csv.rows.size(); ++row) {
    const std::string& table = csv.rows[row][name_column];
    if (layout.tables.empty() || layout.tables.back().name != table) layout.tables.push_back({table, {}});
    layout.tables.back().columns.push_back(ReadColumn(csv, row));
  }
  ForDatabase(files, schema + "indexuri.csv", database, [&](auto field) {
    layout.indexes.push_back(
        {field("index"), field("table"), SplitWords(field("columns")), IsYes(field("unique"))});
  });
  ForDatabase(files, schema + "legaturi.csv", database, [&](auto field) {
    layout.links.push_back({field("name"), field("file"), field("remote")});
  });
  ForDatabase(files, schema + "relatii.csv", database, [&](auto field) {
    layout.cascades.push_back({field("parent"), field("child"), field("column")});
  });
  const std::string queries = fmt::format("{}interogari\\{}\\", data_folder, database);
  for (const std::string& file : files.List(queries)) {
    if (!file.ends_with(".sql")) continue;
    std::string text = platform::ReplaceAll(files.Read(queries + file), "\r\n", "\n");
    while (!text.empty() && text.back() == '\n') text.pop_back();
    layout.queries.push_back({file.substr(0, file.size() - 4), std::move(text)});
  }
  return layout;
}

std::string FindDataFolder(const platform::Files& files, std::string_view app_folder) {
  std::vector<std::string> candidates;
  if (const char* set = std::getenv("DECLARIX_DATA"); set != nullptr && *set != '\0') {
    candidates.push_back(files.drives().FromHost(std::filesystem::path(set)));
  }
  candidates.push_back(platform::WithBackslash(app_folder) + "data");
#ifdef DECLARIX_DATA_FOLDER
  candidates.push_back(files.drives().FromHost(std::filesystem::path(DECLARIX_DATA_FOLDER)));
#endif
  for (const std::string& candidate : candidates) {
    std::string folder = platform::WithBackslash(candidate);
    if (files.Exists(folder + "schema\\comun.csv")) return folder;
  }
  throw platform::FileError(candidates.front(), "Nu exista directorul: " + candidates.front());
}

}  // namespace store::layout
