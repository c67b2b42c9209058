#include "store/layout/csv.h"

#include <fmt/format.h>

namespace store::layout {

void FailAtLine(std::string_view path, int line, std::string_view reason) {
  throw platform::FileError(std::string(path),
                            fmt::format("Fisierul : {}, linia {}: {}", path, line, reason));
}

std::size_t Csv::Column(std::string_view name) const {
  for (std::size_t i = 0; i < header.size(); ++i) {
    if (header[i] == name) return i;
  }
  FailAtLine(path, 1, fmt::format("lipseste coloana {}", name));
}

namespace {

class Parser {
 public:
  Parser(std::string_view text, std::string_view path) : text_(text), path_(path) {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3;
  }

  bool ReadRecord(std::vector<std::string>& fields) {
    fields.clear();
    while (at_ < text_.size() && AtLineEnd()) SkipLineEnd();
    if (at_ >= text_.size()) return false;
    begin_line_ = line_;
    for (;;) {
      fields.push_back(ReadField());
      if (at_ < text_.size() && text_[at_] == ',') {
        ++at_;
        continue;
      }
      if (at_ < text_.size()) SkipLineEnd();
      return true;
    }
  }
  int begin_line() const { return begin_line_; }

 private:
  bool AtLineEnd() const { return text_[at_] == '\n' || text_[at_] == '\r'; }
  void SkipLineEnd() {
    if (text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n') ++at_;
    ++at_;
    ++line_;
  }

  std::string ReadField() {
    if (at_ >= text_.size() || text_[at_] != '"') {
      const std::size_t begin = at_;
      while (at_ < text_.size() && text_[at_] != ',' && !AtLineEnd()) ++at_;
      return std::string(text_.substr(begin, at_ - begin));
    }
    std::string field;
    for (++at_;; ++at_) {
      if (at_ >= text_.size()) FailAtLine(path_, begin_line_, "ghilimele neinchise");
      if (text_[at_] == '\n') ++line_;
      if (text_[at_] != '"') {
        field += text_[at_];
      } else if (at_ + 1 < text_.size() && text_[at_ + 1] == '"') {
        field += '"';
        ++at_;
      } else {
        break;
      }
    }
    ++at_;
    if (at_ < text_.size() && text_[at_] != ',' && !AtLineEnd()) {
      FailAtLine(path_, begin_line_, "text dupa ghilimelele de inchidere");
    }
    return field;
  }

  std::string_view text_, path_;
  std::size_t at_ = 0;
  int line_ = 1, begin_line_ = 1;
};

}  // namespace

Csv ParseCsv(std::string_view text, std::string_view path) {
  Csv csv;
  csv.path = path;
  Parser parser(text, path);
  if (!parser.ReadRecord(csv.header)) FailAtLine(path, 1, "fisierul este gol");
  std::vector<std::string> fields;
  while (parser.ReadRecord(fields)) {
    if (fields.size() != csv.header.size()) {
      FailAtLine(path, parser.begin_line(),
                 fmt::format("{} campuri in loc de {}", fields.size(), csv.header.size()));
    }
    csv.rows.push_back(fields);
    csv.lines.push_back(parser.begin_line());
  }
  return csv;
}

Csv ReadCsv(const platform::Files& files, std::string_view path) { return ParseCsv(files.Read(path), path); }

}  // namespace store::layout
