#include "declarations/editor/problems.h"

#include "platform/encoding.h"
#include "platform/files.h"
#include "store/value.h"

namespace declarations {
namespace {

constexpr std::string_view kPosition = "Pozitia: ";

/// The field that a problem's text is about; empty where it names none (a retired country stands in any of
/// the three country columns).
std::string ColumnOf(std::string_view text) {
  if (text.starts_with("===>")) return "";
  if (text.starts_with("Cod NC : ")) {
    return text.find("VALOARE UM SUPL NU EXISTA") == std::string_view::npos ? "Cod_UMS" : "Val_UMS";
  }
  return std::string(text.substr(0, text.find(' ')));
}

}  // namespace

LineProblems::LineProblems(std::string_view report) {
  int at = -1;
  for (const std::string& line : platform::SplitLines(report)) {
    ++at;
    if (!line.starts_with(kPosition)) {
      // A value with a line end in it goes on in the next line; before the first problem stands the heading.
      if (!problems_.empty() && !line.empty()) problems_.back().text += " " + line;
      continue;
    }
    const std::string_view rest = std::string_view(line).substr(kPosition.size());
    const std::size_t end = rest.find(' ');
    LineProblem& problem = problems_.emplace_back();
    problem.report_line = at;
    problem.Record_ID = store::Value(rest.substr(0, end)).ToInteger();
    if (end == std::string_view::npos) continue;
    std::string_view text = rest.substr(end + 1);
    if (text.starts_with("- ")) text.remove_prefix(2);
    problem.column = ColumnOf(text);
    problem.text = text;
    by_line_[problem.Record_ID].push_back(problems_.size() - 1);
  }
}

std::string LineProblems::TextOf(std::int64_t Record_ID, std::string_view column) const {
  std::string text;
  const auto line = by_line_.find(Record_ID);
  if (line == by_line_.end()) return text;
  for (const std::size_t index : line->second) {
    const LineProblem& problem = problems_[index];
    if (!column.empty() && !platform::EqualsNoCase(column, problem.column)) continue;
    if (!text.empty()) text += '\n';
    text += problem.text;
  }
  return text;
}

}  // namespace declarations
