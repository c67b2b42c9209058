#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace platform::spreadsheet {

/// Keeps texts in a few large blocks. They stay where they are for as long as the arena lives, also when it
/// is moved.
class TextArena {
 public:
  std::string_view Add(std::string_view text) {
    if (text.empty()) return "";
    if (left_ < text.size()) {
      left_ = std::max(kBlock, text.size());
      next_ = blocks_.emplace_back(std::make_unique_for_overwrite<char[]>(left_)).get();
    }
    char* const place = next_;
    std::memcpy(place, text.data(), text.size());
    next_ += text.size();
    left_ -= text.size();
    return {place, text.size()};
  }

 private:
  static constexpr std::size_t kBlock = 256 * 1024;

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;
  std::size_t left_ = 0;
};

/// Texts by their number, which the cells of a workbook share.
class TextPool {
 public:
  void Add(std::string_view text) { texts_.push_back(arena_.Add(text)); }
  std::size_t size() const { return texts_.size(); }
  std::string_view at(std::size_t index) const { return texts_[index]; }

 private:
  TextArena arena_;
  std::vector<std::string_view> texts_;
};

}  // namespace platform::spreadsheet
