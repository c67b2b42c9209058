#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace store {

/// One APPEND of a shape command.
struct ShapeChild {
  std::string statement, alias;
  std::vector<std::pair<std::string, std::string>> relation;  ///< parent column, child column
};

/// "SHAPE {parent} AS a APPEND ({child} AS b RELATE [x] TO [y]), …" taken apart.
struct ShapeCommand {
  std::string statement, alias;
  std::vector<ShapeChild> children;
};

bool IsShape(std::string_view text);
/// Throws Error(kSyntaxError) with the position where it stopped making sense.
ShapeCommand ParseShape(std::string_view text);

}  // namespace store
