#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "store/recordset.h"

namespace cli {

/// A value as a tab-separated field: Null "\N", True -1, dates yyyy-mm-dd[ hh:mm:ss], doubles shortest exact,
/// backslash, tab and line ends escaped.
std::string PlainField(const store::Value& value);
std::string PlainText(std::string_view text);

/// The same value in JSON: null, true, numbers, texts; dates as texts.
std::string JsonValue(const store::Value& value);
std::string JsonText(std::string_view text);

/// Named columns and rows of values: what most commands answer with.
struct ResultTable {
  std::vector<std::string> columns;
  std::vector<std::vector<store::Value>> rows;
};

/// Header line and rows, tab-separated.
void WritePlain(std::ostream& out, const ResultTable& table);
void WritePlain(std::ostream& out, store::Recordset rows);
/// {"columns": […], "rows": [[…], …]}
void WriteJson(std::ostream& out, const ResultTable& table);
void WriteJson(std::ostream& out, store::Recordset rows);

}  // namespace cli
