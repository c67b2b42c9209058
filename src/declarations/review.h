#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "declarations/xml_writer.h"

namespace declarations {

/// Something that the institute refuses although the checker passes it. Texts are Romanian without
/// diacritics.
struct Finding {
  std::string where;  ///< the editor's field, or "pozitia 12 (84713000)"
  std::string what;
  std::int64_t Record_ID = 0;  ///< items: their first line; 0 for the header
  std::string column = {};     ///< items: the line's column to mend
};

/// "where: what", one line a finding; after `limit` lines only their number.
std::string FindingsText(const std::vector<Finding>& findings, std::size_t limit = 20);

/// Looks at what is about to be filed, against the institute's schema (intrastat4.xsd) and its filing rules.
/// It changes nothing: whether the file is written all the same is for the caller to decide.
class Review {
 public:
  void LookAt(const Header& header);
  void LookAt(const CodeVersions& versions);
  /// `order` from 1, as the file numbers the items.
  void LookAt(const Item& item, int order, bool with_statistical_value, bool with_partner);
  /// A code of the declaring agent's address that its list does not have (text typed over the names).
  void UnknownPlace(std::string where, const std::string& code) {
    Add(std::move(where), "'" + code + "' nu este un cod din lista");
  }
  void NoItems() { Add("declaratia", "nu are nici o pozitie"); }
  /// A month about to be declared as one without trade has lines.
  void HasLines(std::int64_t count) {
    Add("declaratia", "este nula, dar luna are linii: " + std::to_string(count));
  }

  const std::vector<Finding>& findings() const { return findings_; }

 private:
  void Add(std::string where, std::string what) {
    findings_.push_back({.where = std::move(where), .what = std::move(what)});
  }
  void WellFormed(std::string_view where, std::string_view value);
  void TenDigits(std::string_view where, std::string_view fiscal_code);

  std::vector<Finding> findings_;
};

}  // namespace declarations
