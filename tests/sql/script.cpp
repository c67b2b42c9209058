#include "script.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

namespace sql_tests {

namespace {

constexpr std::string_view kGives = " => ";

std::vector<std::string> Lines(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// The text behind "key:" and its blanks; nothing where the line begins otherwise.
std::optional<std::string> Behind(std::string_view line, std::string_view key) {
  if (line.substr(0, key.size()) != key) return std::nullopt;
  line.remove_prefix(key.size());
  if (line.empty() || line.front() != ':') return std::nullopt;
  std::size_t start = line.find_first_not_of(' ', 1);
  return std::string(start == std::string_view::npos ? "" : line.substr(start));
}

std::vector<std::string> Split(std::string_view text, char at) {
  std::vector<std::string> parts;
  for (;;) {
    std::size_t end = text.find(at);
    parts.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// "\s" stands for a blank where a line's end would hide it; a line of two double quotes is one empty text.
std::string Row(std::string_view line) {
  if (line == "\"\"") return "";
  std::string row;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line.substr(i, 2) == "\\s") {
      row += ' ';
      ++i;
    } else {
      row += line[i];
    }
  }
  return row;
}

class Reader {
 public:
  explicit Reader(std::vector<Step>& steps) : steps_(steps) {}

  void Read(const std::filesystem::path& file) {
    std::vector<std::string> lines = Lines(file);
    Step* open = nullptr;  // the statement that takes what follows
    std::string refused;   // the error of the statements listed here
    bool statement_ended = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      std::string_view line = lines[i];
      int number = static_cast<int>(i) + 1;
      bool continues = open != nullptr && !statement_ended && !open->statement.empty();
      // A definition takes nothing but an error, so that several may stand below each other.
      if (open != nullptr && open->statement.empty() && open->call.empty() && open->schema.empty() &&
          !line.starts_with("ERROR:")) {
        open = nullptr;
      }
      if (line.empty()) {
        open = nullptr;
        refused.clear();
      } else if (!refused.empty()) {
        Step* step = Add(file, number);
        step->statement = line;
        Expectation(*step, refused);
      } else if (line.front() == '>') {
        std::string text(line.substr(line.substr(0, 2) == "> " ? 2 : 1));
        if (std::size_t arrow = text.find(kGives); arrow != std::string::npos && !continues) {
          Step* step = Add(file, number);
          step->statement = text.substr(0, arrow);
          OnOneLine(*step, text.substr(arrow + kGives.size()));
          open = nullptr;
          continue;
        }
        if (continues) {
          open->statement += "\n" + text;
          continue;
        }
        open = Add(file, number);
        open->statement = text;
        statement_ended = false;
      } else if (open == nullptr) {
        if (line.front() == '#') continue;
        if (line.starts_with("refused ") && line.back() == ':') {
          refused = "ERROR: " + std::string(line.substr(8, line.size() - 9));
          continue;
        }
        open = Directive(file, number, line);
        statement_ended = true;
      } else {
        statement_ended = true;
        Expectation(*open, line);
      }
    }
  }

 private:
  Step* Add(const std::filesystem::path& file, int line) {
    steps_.emplace_back();
    steps_.back().file = file;
    steps_.back().line = line;
    return &steps_.back();
  }

  /// A line that belongs to no statement; answers the step that following lines belong to, if any.
  Step* Directive(const std::filesystem::path& file, int number, std::string_view line) {
    if (auto name = Behind(line, "include")) {
      Read(file.parent_path() / *name);
      return nullptr;
    }
    Step* step = Add(file, number);
    if (auto database = Behind(line, "database")) {
      step->database = *database;
      return nullptr;
    }
    if (auto call = Behind(line, "call")) {
      step->arguments = Split(*call, '\t');
      step->call = step->arguments.front();
      step->arguments.erase(step->arguments.begin());
      return step;
    }
    if (auto query = Behind(line, "query")) {
      step->query = Split(*query, '\t');
      return step;
    }
    if (auto link = Behind(line, "link")) {
      step->link = Split(*link, '\t');
      return step;
    }
    if (auto table = Behind(line, "schema")) {
      step->schema = *table;
      return step;
    }
    throw std::runtime_error(file.string() + ":" + std::to_string(number) +
                             ": not a directive: " + std::string(line));
  }

  /// What stands behind "=>": rows separated by semicolons and values by commas, or one of the words.
  static void OnOneLine(Step& step, const std::string& gives) {
    if (gives == "ok") return;
    if (gives.starts_with("ERROR:")) return Expectation(step, gives);
    if (gives.starts_with("columns ")) {
      step.expects = true;
      step.columns = gives.substr(8);
      std::replace(step.columns.begin(), step.columns.end(), ',', '\t');
      return;
    }
    for (std::string row : Split(gives, ';')) {
      std::replace(row.begin(), row.end(), ',', '\t');
      Expectation(step, row);
    }
  }

  static void Expectation(Step& step, std::string_view line) {
    if (auto filter = Behind(line, "filter")) {
      step.filter = *filter;
      return;
    }
    if (auto find = Behind(line, "find")) {
      step.find = *find;
      return;
    }
    if (auto sort = Behind(line, "sort")) {
      step.sort = *sort;
      return;
    }
    if (auto child = Behind(line, "child")) {
      step.child = *child;
      return;
    }
    step.expects = true;
    if (auto error = Behind(line, "ERROR")) {
      std::size_t end = 0;
      step.error = std::stoi(*error, &end);
      if (end + 1 < error->size()) step.error_text = error->substr(end + 1);
    } else if (line.starts_with("affected ")) {
      step.affected = std::stoll(std::string(line.substr(9)));
    } else if (line.starts_with("rows ")) {
      step.row_count = std::stoll(std::string(line.substr(5)));
    } else if (line == "any order") {
      step.any_order = true;
    } else if (auto columns = Behind(line, "columns")) {
      step.columns = *columns;
    } else if (line == "(none)") {
      step.row_count = 0;
    } else {
      step.rows.push_back(Row(line));
    }
  }

  std::vector<Step>& steps_;
};

}  // namespace

std::vector<Step> ReadScript(const std::filesystem::path& file) {
  std::vector<Step> steps;
  Reader(steps).Read(file);
  return steps;
}

}  // namespace sql_tests
