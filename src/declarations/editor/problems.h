#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace declarations {

/// A line of the checker's report.
struct LineProblem {
  std::int64_t Record_ID = 0;
  std::string column;   ///< the field to go to
  std::string text;     ///< without the position in front: "Tara_Exp = XX ===> NU EXISTA SAU NU ESTE TARA UE"
  int report_line = 0;  ///< of the report, from 0
};

/// The problems of a declaration, as the last check reported them.
class LineProblems {
 public:
  LineProblems() = default;
  explicit LineProblems(std::string_view report);

  const std::vector<LineProblem>& all() const { return problems_; }  ///< in the report's order
  /// Problems of a line, of one of its columns where that is given; one text a line.
  std::string TextOf(std::int64_t Record_ID, std::string_view column = {}) const;

 private:
  std::vector<LineProblem> problems_;
  std::unordered_map<std::int64_t, std::vector<std::size_t>> by_line_;
};

}  // namespace declarations
