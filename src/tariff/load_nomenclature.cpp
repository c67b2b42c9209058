#include "tariff/load_nomenclature.h"

#include <fmt/format.h>

#include <map>
#include <pugixml.hpp>
#include <unordered_map>

#include "platform/encoding.h"

namespace tariff {
namespace {

constexpr std::size_t kShownCharacters = 250;
constexpr std::string_view kSeparator = " - ";

bool IsDigits(std::string_view code) {
  return !code.empty() && code.find_first_not_of("0123456789") == std::string_view::npos;
}

/// "XVI" as "16"; empty for anything but the numerals of sections.
std::string SectionNumber(std::string_view roman) {
  int total = 0, before = 0;
  for (const char letter : roman) {
    const int value = letter == 'I' ? 1 : letter == 'V' ? 5 : letter == 'X' ? 10 : 0;
    if (value == 0) return "";
    total += value > before ? value - 2 * before : value;
    before = value;
  }
  return total == 0 || total > 99 ? "" : fmt::format("{:02}", total);
}

/// One line without the file's quotes, no-break and doubled blanks and list dashes.
std::string Clean(std::string_view raw) {
  std::string text = platform::ReplaceAll(raw, "\xC2\xA0", " ");
  text = std::string(platform::Trim(text));
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  text = platform::ReplaceAll(text, "\"\"", "\"");
  std::string clean;
  for (const char c : text) {
    const char blank = c == '\n' || c == '\r' || c == '\t' ? ' ' : c;
    if (blank == ' ' && (clean.empty() || clean.back() == ' ')) continue;
    clean += blank;
  }
  for (const std::string_view dash : {"\xE2\x80\x93 ", "- "}) {
    if (std::string_view(clean).substr(0, dash.size()) == dash) clean.erase(0, dash.size());
  }
  while (!clean.empty() && (clean.back() == ' ' || clean.back() == ':')) clean.pop_back();
  return clean;
}

/// "CAPITOLUL 84 - MASINI" and "SECTIUNEA XVI - MASINI" without what the code says already.
std::string WithoutNumber(const std::string& title) {
  if (!title.starts_with("CAPITOLUL ") && !title.starts_with("SECTIUNEA ")) return title;
  const std::size_t dash = title.find(kSeparator);
  return dash == std::string::npos ? title : title.substr(dash + kSeparator.size());
}

struct Item {
  std::string code, text, unit, parent;
};

class Reader {
 public:
  explicit Reader(const pugi::xml_node& root) {
    for (const pugi::xml_node& node : root.children("Item")) {
      Item item;
      item.code = platform::Trim(node.child_value("Code"));
      item.text = Clean(node.child_value("NameRo"));
      if (item.text.empty()) item.text = Clean(node.child_value("NameEn"));
      item.unit = platform::Trim(node.child_value("RefCode"));
      item.parent = platform::Trim(node.child_value("parentCode"));
      if (by_code_.emplace(item.code, items_.size()).second) items_.push_back(std::move(item));
    }
  }

  void Fill(Nomenclature& result) const {
    std::map<std::string, std::vector<const Item*>> by_subheading;
    for (const Item& item : items_) {
      if (!IsDigits(item.code)) {
        const std::string section = SectionNumber(item.code);
        if (!section.empty()) result.sections.push_back({section, WithoutNumber(item.text), ""});
      } else if (item.code.size() == 2) {
        result.chapters.push_back({item.code, WithoutNumber(item.text), SectionNumber(item.parent)});
      } else if (item.code.size() == 8) {
        by_subheading[item.code.substr(0, 6)].push_back(&item);
      }
    }
    std::sort(result.sections.begin(), result.sections.end(),
              [](const Nomenclature::Row& a, const Nomenclature::Row& b) { return a.code < b.code; });
    for (const auto& [subheading, goods] : by_subheading) {
      const std::string heading = subheading.substr(0, 4);
      result.AddParents(subheading, HeadingText(heading, Levels(*goods.front())),
                        SubheadingText(subheading, goods));
      for (const Item* item : goods) {
        result.goods.push_back({item->code, JoinLevels(Levels(*item)), item->unit, subheading});
      }
    }
  }

 private:
  const Item* Find(const std::string& code) const {
    const auto found = by_code_.find(code);
    return found == by_code_.end() ? nullptr : &items_[found->second];
  }

  /// Texts from the heading (or what stands in its place) down to the item. Groups between a chapter and its
  /// headings only divide the chapter and are left out.
  std::vector<std::string> Levels(const Item& item) const {
    std::vector<const Item*> path;
    for (const Item* at = &item; at != nullptr && path.size() < 64; at = Find(at->parent)) {
      const bool group = at->code.starts_with('@');
      if (!group && (!IsDigits(at->code) || at->code.size() < 4)) break;
      path.push_back(at);
    }
    while (path.size() > 1 && path.back()->code.starts_with('@')) path.pop_back();
    std::vector<std::string> levels;
    for (auto at = path.rbegin(); at != path.rend(); ++at) {
      if (levels.empty() || levels.back() != (*at)->text) levels.push_back((*at)->text);
    }
    return levels;
  }

  std::string HeadingText(const std::string& heading, const std::vector<std::string>& levels) const {
    const Item* item = Find(heading);
    return item != nullptr ? item->text : levels.front();
  }

  std::string SubheadingText(const std::string& subheading, const std::vector<const Item*>& goods) const {
    const Item* item = Find(subheading);
    std::vector<std::string> levels = Levels(item != nullptr ? *item : *goods.front());
    if (item == nullptr) {  // what all its goods codes share
      for (const Item* other : goods) {
        const std::vector<std::string> others = Levels(*other);
        const auto differs = std::mismatch(levels.begin(), levels.end(), others.begin(), others.end()).first;
        levels.erase(differs, levels.end());
      }
    }
    if (levels.size() > 1) levels.erase(levels.begin());  // the heading has its own row
    return JoinLevels(std::move(levels));
  }

  std::vector<Item> items_;
  std::unordered_map<std::string, std::size_t> by_code_;
};

/// The first `count` characters, ended at a word where one ends in the second half, and "...".
std::string Shortened(const std::string& text, std::size_t count) {
  std::string_view kept = platform::Utf8Prefix(text, count);
  const std::size_t blank = kept.rfind(' ');
  if (blank != std::string_view::npos && blank > kept.size() / 2) kept = kept.substr(0, blank);
  while (!kept.empty() && (kept.back() == ' ' || kept.back() == ',' || kept.back() == ';')) {
    kept.remove_suffix(1);
  }
  return std::string(kept) + "...";
}

}  // namespace

std::string JoinLevels(std::vector<std::string> levels) {
  constexpr std::size_t kLeast = 20;  // characters that a shortened level keeps
  const auto length = [&] {
    std::size_t total = kSeparator.size() * (levels.size() - 1);
    for (const std::string& level : levels) total += platform::Utf8Length(level);
    return total;
  };
  while (levels.size() > 1) {
    const std::size_t total = length();
    if (total <= kShownCharacters) break;
    const auto longest =
        std::max_element(levels.begin(), levels.end() - 1, [](const std::string& a, const std::string& b) {
          return platform::Utf8Length(a) < platform::Utf8Length(b);
        });
    const std::size_t own = platform::Utf8Length(*longest);
    if (own <= kLeast + 3) break;
    const std::size_t excess = total - kShownCharacters + 3;
    *longest = Shortened(*longest, std::max({kLeast, own / 2, own > excess ? own - excess : 0}));
  }
  std::string joined;
  for (const std::string& level : levels) {
    if (!joined.empty()) joined += kSeparator;
    joined += level;
  }
  return joined;
}

void Nomenclature::AddParents(std::string_view code, std::string_view heading_text,
                              std::string_view subheading_text) {
  if (headings.empty() || headings.back().code != code.substr(0, 4)) {
    headings.push_back(
        {std::string(code.substr(0, 4)), std::string(heading_text), std::string(code.substr(0, 2))});
  }
  if (subheadings.empty() || subheadings.back().code != code.substr(0, 6)) {
    subheadings.push_back(
        {std::string(code.substr(0, 6)), std::string(subheading_text), std::string(code.substr(0, 4))});
  }
}

NomenclatureReading ReadNomenclature(std::string& xml) {
  NomenclatureReading reading;
  const std::string_view text = platform::Trim(xml);
  if (text.empty()) {
    reading.error = "este gol";
    return reading;
  }
  // Asked now: parsing writes over the text.
  const bool begun = text.substr(0, 4).find('<') != std::string_view::npos, ended = text.ends_with('>');
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer_inplace(xml.data(), xml.size());
  if (!parsed) {
    reading.error = fmt::format("nu este un fisier XML corect (octetul {} din {}){}", parsed.offset,
                                xml.size(), begun && !ended ? "; pare o descarcare intrerupta" : "");
    return reading;
  }
  const pugi::xml_node root = document.document_element();
  if (std::string_view(root.name()) != "InsNomenclature") {
    reading.error = fmt::format("elementul radacina este {}, nu InsNomenclature", root.name());
    return reading;
  }
  const std::string_view id = root.child_value("Id");
  if (!id.empty() && id != "CN") {
    reading.error = fmt::format("contine nomenclatorul {}, nu nomenclatura combinata CN", id);
    return reading;
  }
  reading.nomenclature.version = platform::Trim(root.child_value("Version"));
  Reader(root).Fill(reading.nomenclature);
  if (reading.nomenclature.goods.empty()) reading.error = "nu contine nici un cod de opt cifre";
  return reading;
}

}  // namespace tariff
