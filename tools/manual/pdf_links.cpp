#include "pdf_links.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string_view>

namespace manual {
namespace {

constexpr double kPageHeight = 842;  // A4, points
constexpr double kAbove = 8;         // points that stay visible above a heading
constexpr std::string_view kAddress = "/S /URI\n/URI (#";

std::string Reference(int object) { return std::to_string(object) + " 0 R"; }

std::string Utf16Hex(std::u16string_view text) {
  std::string out = "<FEFF";
  for (const char16_t unit : text) {
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned>(unit));
    out += digits;
  }
  return out + ">";
}

// The objects of a document with one cross-reference table, and those that an update adds or replaces.
class Document {
 public:
  explicit Document(std::string text) : text_(std::move(text)) {
    table_ = NumberAfter("startxref\n", text_.rfind("startxref\n"));
    const std::size_t entries = Find("xref\n0 ", table_);
    const int count = static_cast<int>(NumberAfter("xref\n0 ", entries));
    std::size_t at = Find("\n", entries + 5) + 1;
    for (int i = 0; i < count; ++i, at += 20) {
      offsets_.push_back(static_cast<std::size_t>(std::stoull(text_.substr(at, 10))));
    }
    root_ = static_cast<int>(NumberAfter("/Root ", Find("/Root ", at)));
    info_ = static_cast<int>(NumberAfter("/Info ", Find("/Info ", at)));
    next_ = count;
  }

  int root() const { return root_; }
  int count() const { return static_cast<int>(offsets_.size()); }

  // Without its number and its end; empty where there is none of the number.
  std::string_view Object(int number) const {
    const std::size_t offset = offsets_[static_cast<std::size_t>(number)];
    const std::string head = std::to_string(number) + " 0 obj\n";
    if (std::string_view(text_).substr(offset, head.size()) != head) {
      return {};
    }
    const std::size_t begin = offset + head.size();
    return std::string_view(text_).substr(begin, Find("endobj", begin) - begin);
  }

  // The page objects in their order.
  std::vector<int> Pages() const {
    const std::string tree(Object(static_cast<int>(NumberIn(Object(root_), "/Pages "))));
    const std::size_t begin = tree.find('[');
    const std::string kids = tree.substr(begin + 1, tree.find(']') - begin - 1);
    std::vector<int> pages;
    for (std::size_t at = 0; (at = kids.find_first_of("0123456789", at)) != std::string::npos;) {
      pages.push_back(std::stoi(kids.substr(at)));
      at = std::min(kids.find('R', at), kids.size());
    }
    return pages;
  }

  int NewNumber() { return next_++; }
  void Put(int number, std::string content) { changed_[number] = std::move(content); }

  std::string Updated() && {
    std::string table = "xref\n";
    for (const auto& [number, content] : changed_) {
      char entry[32];
      std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", text_.size());
      table += std::to_string(number) + " 1\n" + entry;
      text_ += std::to_string(number) + " 0 obj\n" + content + "endobj\n";
    }
    const std::size_t at = text_.size();
    return std::move(text_) + table + "trailer\n<<\n/Size " + std::to_string(next_) + "\n/Info " +
           Reference(info_) + "\n/Root " + Reference(root_) + "\n/Prev " + std::to_string(table_) +
           "\n>>\nstartxref\n" + std::to_string(at) + "\n%%EOF\n";
  }

 private:
  std::size_t Find(std::string_view what, std::size_t from) const {
    const std::size_t at = text_.find(what, from);
    if (at == std::string::npos) {
      throw std::runtime_error("the PDF has no \"" + std::string(what) + "\" where it is expected");
    }
    return at;
  }
  std::size_t NumberAfter(std::string_view key, std::size_t at) const {
    return NumberIn(std::string_view(text_).substr(std::min(at, text_.size())), key);
  }
  static std::size_t NumberIn(std::string_view text, std::string_view key) {
    const std::size_t at = text.find(key);
    if (at == std::string_view::npos) {
      throw std::runtime_error("the PDF has no \"" + std::string(key) + "\" where it is expected");
    }
    return static_cast<std::size_t>(std::stoull(std::string(text.substr(at + key.size(), 20))));
  }

  std::string text_;
  std::vector<std::size_t> offsets_;
  std::size_t table_ = 0;
  int root_ = 0;
  int info_ = 0;
  int next_ = 0;
  std::map<int, std::string> changed_;
};

std::string Destination(const Bookmark& mark, const std::vector<int>& pages) {
  const double y = std::min(kPageHeight, kPageHeight - mark.top + kAbove);
  return "[" + Reference(pages.at(static_cast<std::size_t>(mark.page))) + " /XYZ 0 " +
         std::to_string(static_cast<int>(y)) + " null]";
}

// Chapters with their sections folded below them.
void AddOutline(Document& document, const std::vector<Bookmark>& bookmarks, const std::vector<int>& pages) {
  struct Item {
    const Bookmark* mark;
    int number;
    std::vector<Item> below;
  };
  std::vector<Item> chapters;
  const int outline = document.NewNumber();
  for (const Bookmark& mark : bookmarks) {
    if (mark.level == 1) {
      chapters.push_back({&mark, document.NewNumber(), {}});
    } else if (mark.level == 2 && !chapters.empty()) {
      chapters.back().below.push_back({&mark, document.NewNumber(), {}});
    }
  }
  const auto put = [&](const std::vector<Item>& items, int parent) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const Item& item = items[i];
      std::string text = "<<\n/Title " + Utf16Hex(item.mark->title) + "\n/Parent " + Reference(parent) +
                         "\n/Dest " + Destination(*item.mark, pages) + "\n";
      if (i > 0) {
        text += "/Prev " + Reference(items[i - 1].number) + "\n";
      }
      if (i + 1 < items.size()) {
        text += "/Next " + Reference(items[i + 1].number) + "\n";
      }
      if (!item.below.empty()) {
        text += "/First " + Reference(item.below.front().number) + "\n/Last " +
                Reference(item.below.back().number) + "\n/Count -" + std::to_string(item.below.size()) + "\n";
      }
      document.Put(item.number, text + ">>\n");
    }
  };
  if (chapters.empty()) {
    return;
  }
  put(chapters, outline);
  for (const Item& chapter : chapters) {
    put(chapter.below, chapter.number);
  }
  document.Put(outline, "<<\n/Type /Outlines\n/First " + Reference(chapters.front().number) + "\n/Last " +
                            Reference(chapters.back().number) + "\n/Count " +
                            std::to_string(chapters.size()) + "\n>>\n");
  std::string root(document.Object(document.root()));
  root.insert(root.rfind(">>"), "/Outlines " + Reference(outline) + "\n/PageMode /UseOutlines\n");
  document.Put(document.root(), root);
}

}  // namespace

std::string WithLinksInside(std::string pdf, const std::vector<Bookmark>& bookmarks) {
  Document document(std::move(pdf));
  const std::vector<int> pages = document.Pages();
  std::map<std::string, std::string, std::less<>> destinations;
  for (const Bookmark& mark : bookmarks) {
    destinations[mark.id] = Destination(mark, pages);
  }
  for (int number = 1; number < document.count(); ++number) {
    const std::string_view link = document.Object(number);
    const std::size_t address = link.substr(0, 400).find(kAddress);
    if (address == std::string_view::npos) {
      continue;
    }
    const std::size_t begin = address + kAddress.size();
    const std::size_t end = link.find(')', begin);
    const auto found = destinations.find(link.substr(begin, end - begin));
    if (found == destinations.end()) {
      throw std::runtime_error("a link of the PDF leads nowhere: " +
                               std::string(link.substr(begin, end - begin)));
    }
    document.Put(number, std::string(link.substr(0, address)) + "/S /GoTo\n/D " + found->second +
                             std::string(link.substr(end + 1)));
  }
  AddOutline(document, bookmarks, pages);
  return std::move(document).Updated();
}

}  // namespace manual
