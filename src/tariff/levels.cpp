#include "tariff/levels.h"

#include <fmt/format.h>

namespace tariff {
const Level* FindLevel(int number) {
  for (const Level& level : kLevels) {
    if (level.number == number) return &level;
  }
  return nullptr;
}

const Level* NextLevel(const Level& level) {
  const Level* next = FindLevel(level.number) + 1;
  return next == std::end(kLevels) ? nullptr : next;
}

const Level* LevelAbove(const Level& level) {
  const Level* own = FindLevel(level.number);
  return own == std::begin(kLevels) ? nullptr : own - 1;
}

std::string ParentStatement(const Level& level, std::string_view code) {
  const Level* above = LevelAbove(level);
  if (above == nullptr) return {};
  return fmt::format("SELECT [HS{0}_COD] FROM [HS_{1}] WHERE [HS{1}_COD]='{2}'", above->number, level.number,
                     code);
}

std::string ChildrenStatement(const Level& level, std::string_view code) {
  const Level* next = NextLevel(level);
  if (next == nullptr) return {};
  return std::string(next->children) + std::string(code) + std::string(next->order);
}

}  // namespace tariff
