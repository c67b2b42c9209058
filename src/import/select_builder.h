#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace importer {

/// What a template says about one destination column, as far as reading a worksheet goes. An empty text (or a
/// single blank) is a value not given.
struct ColumnRule {
  std::string Dest_ColumnName;
  bool Exista_Coloana = false;
  std::optional<int> Numar_Coloana;  ///< from 1
  std::string Valoare_Implicita;
  std::string Marime_Maxima;
};

struct SelectText {
  std::string statement;
  std::string problem;  ///< why there can be no statement; empty when there is one
};

/// Turns a template into one SELECT over the worksheet whose headings are given. A default is a double-quoted
/// text only for a present column with a size, a single-quoted one only for an absent column with a size, and
/// an expression as it stands otherwise: templates are written to this.
SelectText BuildSelect(const std::vector<ColumnRule>& rules, const std::vector<std::string>& headings,
                       std::string_view sheet);

}  // namespace importer
