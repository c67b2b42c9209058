#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tariff {

/// A nomenclature ready for a tariff file. Codes are digits only: sections "01" to "21", chapters of two,
/// headings of four, subheadings of six and goods codes of eight digits; each row names its parent.
struct Nomenclature {
  struct Row {
    std::string code, text, parent;
  };
  struct Goods {
    std::string code, text;
    std::string unit;  ///< supplementary unit as the institute spells it; empty: none
    std::string parent;
  };
  std::vector<Row> sections;  ///< parent empty
  std::vector<Row> chapters, headings, subheadings;
  std::vector<Goods> goods;
  std::string version;  ///< as the file says, usually the year

  /// Adds the subheading and the heading of a goods code (its first six digits are enough) under the given
  /// texts where the last rows are other ones: codes have to come in ascending order.
  void AddParents(std::string_view code, std::string_view heading_text, std::string_view subheading_text);
};

/// Outcome of reading: the nomenclature, or why it cannot be used (Romanian, without diacritics).
struct NomenclatureReading {
  Nomenclature nomenclature;
  std::string error;  ///< empty: read
};

/// Reads the institute's nomenclature file: root InsNomenclature, items in document order with Code, NameRo,
/// Level, RefCode (the supplementary unit) and parentCode. Codes that begin with @ are groups without a code
/// of their own; they go into the texts of the codes below. The file leaves out headings and subheadings that
/// hold a single goods code: they are derived. `xml` is modified.
NomenclatureReading ReadNomenclature(std::string& xml);

/// Levels of a description, the heading first, joined by " - ". Where the whole is longer than the 250
/// characters that look-ups show, the upper levels are shortened so that the last one is seen.
std::string JoinLevels(std::vector<std::string> levels);

}  // namespace tariff
