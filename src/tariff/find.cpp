#include "tariff/find.h"

#include <algorithm>
#include <cctype>

namespace tariff {
namespace {

std::string_view Trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

/// Position of a keyword without regard to case; npos where there is none.
std::size_t FindWord(std::string_view text, std::string_view word) {
  const auto same = [](char a, char b) {
    return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
  };
  const auto at = std::search(text.begin(), text.end(), word.begin(), word.end(), same);
  return at == text.end() ? std::string_view::npos : static_cast<std::size_t>(at - text.begin());
}

std::string Contains(std::string_view column, std::string_view text) {
  return std::string(column) + " LIKE '%" + std::string(text) + "%'";
}

std::string Parts(std::string_view column, std::string_view text, char separator, std::string_view joint) {
  std::string condition;
  for (;;) {
    const std::size_t at = text.find(separator);
    condition += std::string(joint) + Contains(column, Trimmed(text.substr(0, at)));
    if (at == std::string_view::npos) break;
    text.remove_prefix(at + 1);
  }
  return condition.substr(joint.size());
}

}  // namespace

std::string_view FindHint(FindOption option) {
  switch (option) {
    case FindOption::kEqual:
      return "Returneaza inregistrarile care sunt IDENTICE cu expresia de cautat";
    case FindOption::kBegins:
      return "Returneaza inregistrarile care INCEP cu expresia de cautat";
    case FindOption::kContains:
      return "Returneaza inregistrarile care CONTIN cu expresia de cautat";
    case FindOption::kWords:
      return "Aparate + electice  returneaza inregistrarile care CONTIN Aparate SI electrice\n"
             "Aparate - electice   returneaza inregistrarile care CONTIN Aparate SAU electrice";
  }
  return {};
}

std::string FindCondition(FindOption option, std::string_view column, std::string_view text) {
  switch (option) {
    case FindOption::kEqual:
      return std::string(column) + " = '" + std::string(text) + "'";
    case FindOption::kBegins:
      return std::string(column) + " LIKE '" + std::string(text) + "%'";
    case FindOption::kContains:
      break;
    case FindOption::kWords:
      if (text.find('+') != std::string_view::npos) return Parts(column, text, '+', " AND ");
      if (text.find('-') != std::string_view::npos) return Parts(column, text, '-', " OR ");
      break;
  }
  return Contains(column, text);
}

std::vector<std::string> SelectedColumns(std::string_view select) {
  std::vector<std::string> columns;
  constexpr std::string_view kSelect = "SELECT ", kFrom = " FROM ";
  std::size_t from = FindWord(select, kSelect);
  if (from == std::string_view::npos) return columns;
  from += kSelect.size();
  const auto take = [&](std::size_t to) {
    const std::string_view text = Trimmed(select.substr(from, to - from));
    const bool bare = (text.starts_with('[') && text.find(']') == text.size() - 1) ||
                      std::all_of(text.begin(), text.end(), [](char c) {
                        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
                      });
    columns.push_back(bare ? std::string(text) : "(" + std::string(text) + ")");
    from = to + 1;
  };
  int depth = 0;
  bool quoted = false;
  for (std::size_t i = from; i < select.size(); ++i) {
    const char c = select[i];
    if (c == '\'') quoted = !quoted;
    if (quoted) continue;
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth != 0) continue;
    if (c == ',') take(i);
    if (FindWord(select.substr(i, kFrom.size()), kFrom) == 0) {
      take(i);
      return columns;
    }
  }
  return {};
}

std::string Narrow(std::string_view select, std::string_view condition) {
  std::string order;
  if (const std::size_t at = FindWord(select, "ORDER BY"); at != std::string_view::npos) {
    order = " " + std::string(select.substr(at));
    select = select.substr(0, at);
  }
  const std::size_t where = FindWord(select, "WHERE");
  if (where == std::string_view::npos) {
    return std::string(Trimmed(select)) + " WHERE " + std::string(condition) + order;
  }
  const std::string_view kept = Trimmed(select.substr(where + 5));
  // Alternatives on either side keep to themselves in parentheses, so that each one is narrowed.
  const auto closed = [](std::string_view part) {
    return FindWord(part, " OR ") == std::string_view::npos ? std::string(part)
                                                            : "(" + std::string(part) + ")";
  };
  return std::string(select.substr(0, where)) + "WHERE " + closed(kept) + " AND " + closed(condition) + order;
}

}  // namespace tariff
