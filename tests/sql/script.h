#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace sql_tests {

/// One step of a statement file: a change of database or a statement with what it must give.
struct Step {
  int line = 0;  ///< where it begins, from 1
  std::filesystem::path file;

  std::string database;  ///< not empty: "scratch", "company", "sheet FILE" …; the rest is unused then

  std::string statement;  ///< lines joined by line ends
  std::string call;       ///< or: name of a stored query
  std::vector<std::string> arguments;
  std::vector<std::string> query;  ///< or: name and text of a stored query to create
  std::vector<std::string> link;   ///< or: name, file and remote name of a link to create
  std::string schema;              ///< or: table whose column schema is listed

  std::string filter, find, sort, child;  ///< applied to the recordset, in this order

  bool expects = false;    ///< false: it must only succeed
  int error = 0;           ///< number of the expected error, or 0
  std::string error_text;  ///< part of its description
  long long affected = -1;
  long long row_count = -1;
  bool any_order = false;
  std::string columns;  ///< expected column names, tab-separated; empty: not checked
  std::vector<std::string> rows;
};

/// Reads a statement file and the files it includes. Throws std::runtime_error naming file and line.
std::vector<Step> ReadScript(const std::filesystem::path& file);

}  // namespace sql_tests
