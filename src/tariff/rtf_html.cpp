#include "tariff/rtf_html.h"

#include <fmt/format.h>

#include <cctype>
#include <vector>

namespace tariff {
namespace {

struct Colour {
  int red = 0, green = 0, blue = 0;
};

class Converter {
 public:
  Converter(std::string_view rtf, Paper paper) : rtf_(rtf), paper_(paper) {}

  std::string Run() {
    while (at_ < rtf_.size()) Step();
    EndParagraph();
    return html_;
  }

 private:
  struct Word {
    std::string_view name;
    int number = 0;
    bool has_number = false;
  };

  void Step() {
    const char c = rtf_[at_++];
    switch (c) {
      case '{':
        ++depth_;
        break;
      case '}':
        if (depth_ == table_depth_) table_depth_ = 0;
        --depth_;
        break;
      case '\r':
      case '\n':
        break;
      case '\\':
        Escape();
        break;
      case ';':
        if (table_depth_ > 0 && in_colours_) {
          colours_.push_back(colour_);
          colour_ = {};
          break;
        }
        [[fallthrough]];
      default:
        Put(c);
    }
  }

  void Escape() {
    if (at_ >= rtf_.size()) return;
    const char next = rtf_[at_];
    if (next == '\\' || next == '{' || next == '}') {
      ++at_;
      Put(next);
    } else if (next == '*') {  // a destination that readers may skip
      ++at_;
      table_depth_ = table_depth_ > 0 ? table_depth_ : depth_;
    } else if (std::isalpha(static_cast<unsigned char>(next)) != 0) {
      Obey(ReadWord());
    } else {
      ++at_;
    }
  }

  Word ReadWord() {
    Word word;
    std::size_t end = at_;
    while (end < rtf_.size() && std::isalpha(static_cast<unsigned char>(rtf_[end])) != 0) ++end;
    word.name = rtf_.substr(at_, end - at_);
    at_ = end;
    const bool negative = at_ < rtf_.size() && rtf_[at_] == '-';
    if (negative) ++at_;
    while (at_ < rtf_.size() && std::isdigit(static_cast<unsigned char>(rtf_[at_])) != 0) {
      word.number = std::min(word.number * 10 + (rtf_[at_++] - '0'), 1'000'000);
      word.has_number = true;
    }
    if (negative) word.number = -word.number;
    if (at_ < rtf_.size() && rtf_[at_] == ' ') ++at_;  // a blank ends the word and is no text
    return word;
  }

  void Obey(const Word& word) {
    if (word.name == "fonttbl" || word.name == "colortbl") {
      table_depth_ = depth_;
      in_colours_ = word.name == "colortbl";
    } else if (table_depth_ > 0) {
      if (word.name == "red") colour_.red = word.number;
      if (word.name == "green") colour_.green = word.number;
      if (word.name == "blue") colour_.blue = word.number;
    } else if (word.name == "pard") {
      indent_ = 0;
    } else if (word.name == "li") {
      indent_ = word.number;
    } else if (word.name == "par") {
      EndParagraph();
    } else if (word.name == "b") {
      SetRun(!word.has_number || word.number != 0, colour_index_);
    } else if (word.name == "cf") {
      SetRun(bold_, word.number);
    } else if (word.name == "u") {
      PutUnit(static_cast<char16_t>(word.number));
      if (at_ < rtf_.size()) ++at_;  // the stand-in for readers without this word
    }
  }

  void SetRun(bool bold, int colour_index) {
    if (bold == bold_ && colour_index == colour_index_) return;
    CloseRun();
    bold_ = bold;
    colour_index_ = colour_index;
  }

  void Put(char c) {
    if (table_depth_ > 0) return;
    OpenRun();
    switch (c) {
      case '&':
        paragraph_ += "&amp;";
        break;
      case '<':
        paragraph_ += "&lt;";
        break;
      case '>':
        paragraph_ += "&gt;";
        break;
      default:
        paragraph_ += c;
    }
  }

  void PutUnit(char16_t unit) {
    if (table_depth_ > 0) return;
    OpenRun();
    std::uint32_t letter = unit;
    if (unit >= 0xD800 && unit < 0xDC00) {
      high_ = unit;
      return;
    }
    if (unit >= 0xDC00 && unit < 0xE000) {
      letter = 0x10000 + ((std::uint32_t{high_} - 0xD800) << 10) + (unit - 0xDC00u);
    }
    paragraph_ += fmt::format("&#{};", letter);
  }

  /// Nothing for black: it is the paper's own text colour.
  std::string ColourText() const {
    if (colour_index_ <= 0 || colour_index_ >= static_cast<int>(colours_.size())) return {};
    Colour colour = colours_[static_cast<std::size_t>(colour_index_)];
    if (colour.red + colour.green + colour.blue == 0) return {};
    if (paper_ == Paper::kDark) {
      for (int* part : {&colour.red, &colour.green, &colour.blue}) *part += (255 - *part) * 6 / 10;
    }
    return fmt::format("color:#{:02x}{:02x}{:02x};", colour.red & 255, colour.green & 255, colour.blue & 255);
  }

  void OpenRun() {
    if (run_open_) return;
    run_open_ = true;
    paragraph_ += fmt::format("<span style=\"{}{}\">", ColourText(), bold_ ? "font-weight:bold;" : "");
  }
  void CloseRun() {
    if (run_open_) paragraph_ += "</span>";
    run_open_ = false;
  }

  void EndParagraph() {
    CloseRun();
    if (!paragraph_.empty()) {
      constexpr int kTwipsInPixel = 15;
      html_ += fmt::format("<p style=\"margin-left:{}px\">{}</p>", indent_ / kTwipsInPixel, paragraph_);
    }
    paragraph_.clear();
  }

  std::string_view rtf_;
  Paper paper_;
  std::size_t at_ = 0;
  int depth_ = 0;
  int table_depth_ = 0;  ///< depth of the group whose text is not the document's; 0: none
  bool in_colours_ = false;
  std::vector<Colour> colours_;
  Colour colour_;
  int indent_ = 0, colour_index_ = 0;
  bool bold_ = false, run_open_ = false;
  char16_t high_ = 0;
  std::string html_, paragraph_;
};

}  // namespace

std::string RtfToHtml(std::string_view rtf, Paper paper) { return Converter(rtf, paper).Run(); }

}  // namespace tariff
