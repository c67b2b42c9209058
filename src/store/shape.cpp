#include "store/shape.h"

#include "platform/encoding.h"
#include "store/sqlite.h"

namespace store {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

class ShapeReader {
 public:
  explicit ShapeReader(std::string_view text) : text_(text) {}

  ShapeCommand Read() {
    ShapeCommand command;
    Word("SHAPE");
    command.statement = Braced();
    if (TryWord("AS")) command.alias = Name();
    Word("APPEND");
    do {
      command.children.push_back(Child());
    } while (TryMark(','));
    Skip();
    if (at_ < text_.size()) Fail("text in plus");
    return command;
  }

 private:
  ShapeChild Child() {
    ShapeChild child;
    const bool in_brackets = TryMark('(');
    child.statement = Braced();
    if (TryWord("AS")) child.alias = Name();
    Word("RELATE");
    do {
      std::string parent = Name();
      Word("TO");
      child.relation.emplace_back(std::move(parent), Name());
    } while (in_brackets && TryMark(','));
    if (in_brackets && !TryMark(')')) Fail("lipseste )");
    // The alias may also stand behind the brackets.
    if (TryWord("AS")) child.alias = Name();
    return child;
  }

  [[noreturn]] void Fail(std::string_view reason) const {
    throw Error(kSyntaxError, StatementHead(text_), fmt::format("Comanda SHAPE este gresita: {}", reason),
                static_cast<int>(at_));
  }

  void Skip() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  }

  bool TryWord(std::string_view word) {
    Skip();
    const std::string_view rest = text_.substr(at_);
    if (rest.size() < word.size() || !platform::EqualsNoCase(rest.substr(0, word.size()), word)) return false;
    if (rest.size() > word.size()) {
      const char next = rest[word.size()];
      if (!IsBlank(next) && next != '{' && next != '(' && next != '[') return false;
    }
    at_ += word.size();
    return true;
  }

  void Word(std::string_view word) {
    if (!TryWord(word)) Fail(fmt::format("lipseste {}", word));
  }

  bool TryMark(char mark) {
    Skip();
    if (at_ >= text_.size() || text_[at_] != mark) return false;
    ++at_;
    return true;
  }

  // A statement in braces; braces within its texts and names do not count.
  std::string Braced() {
    if (!TryMark('{')) Fail("lipseste {");
    const std::size_t begin = at_;
    while (at_ < text_.size() && text_[at_] != '}') {
      const char c = text_[at_++];
      if (c != '\'' && c != '"' && c != '[') continue;
      const std::size_t end = text_.find(c == '[' ? ']' : c, at_);
      if (end == std::string_view::npos) Fail("text neinchis");
      at_ = end + 1;
    }
    if (at_ == text_.size()) Fail("lipseste }");
    return std::string(text_.substr(begin, at_++ - begin));
  }

  std::string Name() {
    Skip();
    if (TryMark('[')) {
      const std::size_t end = text_.find(']', at_);
      if (end == std::string_view::npos) Fail("lipseste ]");
      std::string name(text_.substr(at_, end - at_));
      at_ = end + 1;
      return name;
    }
    const std::size_t begin = at_;
    while (at_ < text_.size() && !IsBlank(text_[at_]) && text_[at_] != ',' && text_[at_] != ')') ++at_;
    if (at_ == begin) Fail("lipseste un nume");
    return std::string(text_.substr(begin, at_ - begin));
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

bool IsShape(std::string_view text) {
  text = platform::Trim(text);
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text.size() > 5 && platform::EqualsNoCase(text.substr(0, 5), "SHAPE") &&
         (IsBlank(text[5]) || text[5] == '{');
}

ShapeCommand ParseShape(std::string_view text) { return ShapeReader(text).Read(); }

}  // namespace store
