#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "reports/table.h"

namespace reports {

struct ReportColumn {
  std::string caption;
  int source = 0;  ///< column of the table
  Format format = Format::kText;
  Alignment alignment = Alignment::kLeft;  ///< never kByFormat
  int width = 0;                           ///< characters; 0: by what it holds
  bool total = false;
  bool group_total = false;  ///< not in the grand total
};

/// What stands on a page below the headings, from top to bottom.
struct Band {
  enum class Kind : std::uint8_t { kGroupHeader, kDetail, kGroupTotal, kGrandTotal, kCount };
  Kind kind = Kind::kDetail;
  std::uint8_t level = 0;  ///< of a group, from 0 outermost
  int row = 0;             ///< of the table; of a group its first
  int rows = 1;            ///< counted in a group or in all
  int totals = -1;         ///< index of its sums
};

/// A definition filled with rows: columns, bands, sums. It keeps the table.
class Report {
 public:
  /// Throws ReportError for a field or placeholder that is not there. Groups of a list are left out where its
  /// rows do not stand together by them.
  Report(const Definition& definition, const std::string& file, std::shared_ptr<const Table> table,
         Placeholders placeholders, Formatter formatter);

  const std::string& id() const { return id_; }  ///< of its definition; empty: the plain one
  const std::string& title() const { return title_; }
  const std::vector<std::string>& lines() const { return lines_; }  ///< under the title
  const std::vector<ReportColumn>& columns() const { return columns_; }
  const std::vector<Band>& bands() const { return bands_; }
  Orientation orientation() const { return orientation_; }
  const Table& table() const { return *table_; }

  /// A detail's cell, a total's sum, or nothing.
  std::string TextOf(const Band& band, std::size_t column) const;
  /// The whole text of a group header or of the counting line; what stands before the sums of a total.
  std::string CaptionOf(const Band& band) const;
  store::Value ValueOf(const Band& band, std::size_t column) const;
  /// The cell is a number and shown as one, not by a word for it.
  bool ShowsNumber(const Band& band, std::size_t column) const;
  /// The column's format, that of its rows where the definition has none.
  Format FormatOf(std::size_t column) const;
  bool has_totals() const { return has_totals_; }

 private:
  bool IsEmptyColumn(int column) const;
  void ResolveColumns(const Definition& definition);
  void ResolveGroups(const Definition& definition);
  bool StandTogether(const std::vector<int>& columns) const;
  void MakeBands(const Definition& definition);
  std::string HeaderOf(const Band& band) const;
  std::string Fill(std::string_view text, int row) const;
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string file_, id_;
  int line_;  ///< of the definition in its file
  std::string title_;
  std::vector<std::string> lines_;
  std::shared_ptr<const Table> table_;
  Placeholders placeholders_;
  Formatter formatter_;
  Orientation orientation_;
  std::vector<ReportColumn> columns_;
  std::vector<GroupDefinition> groups_;
  std::vector<int> group_columns_;
  std::vector<Band> bands_;
  std::vector<std::vector<double>> totals_;
  bool has_totals_ = false;
};

/// The statement of a definition with its placeholders filled in; apostrophes in them are doubled. Throws
/// ReportError.
std::string StatementOf(const Definition& definition, const std::string& file,
                        const Placeholders& placeholders);

}  // namespace reports
