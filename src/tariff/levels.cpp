#include "tariff/levels.h"

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

std::string ChildrenStatement(const Level& level, std::string_view code) {
  const Level* next = NextLevel(level);
  if (next == nullptr) return {};
  return std::string(next->children) + std::string(code) + std::string(next->order);
}

}  // namespace tariff
