#include "store/dialect/diagnose.h"

namespace store::dialect {

namespace {

std::string_view Cut(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

}  // namespace

std::string StatementHead(std::string_view text) {
  const std::string_view head = Cut(text, 80);
  return std::string(head) + (head.size() < text.size() ? "..." : "");
}

void ThrowAt(int number, std::string_view text, const std::string& description, int position) {
  throw Error(number, StatementHead(text), description, position);
}

void ThrowSyntax(std::string_view text, const std::string& what, std::size_t position) {
  std::string description = "Eroare de sintaxa: " + what;
  if (position < text.size()) {
    description += ", langa: " + std::string(Cut(text.substr(position), 40));
  } else {
    description += ", la sfarsitul instructiunii";
  }
  ThrowAt(kSyntaxError, text, description, static_cast<int>(position));
}

}  // namespace store::dialect
