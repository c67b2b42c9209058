#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace reports {

/// Why a report cannot be made: a Romanian sentence that names the definition file, the line in it and the
/// report.
class ReportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Format {
  kText,
  kWhole,     ///< "##,##0"
  kAmount,    ///< "##,##0.00"
  kRate,      ///< "##,##0.0000"
  kNumber,    ///< "numar": all decimals there are, no grouping
  kDate,      ///< "dd.mm.yyyy"
  kDateTime,  ///< "dd.mm.yyyy hh:mm"
  kTick,      ///< yes/no, printed as Da and Nu
  kAsShown,   ///< as the rows' own screen shows it
};
bool IsNumeric(Format format);

enum class Alignment { kByFormat, kLeft, kRight, kCentre };
enum class Orientation { kAuto, kPortrait, kLandscape };

struct ColumnDefinition {
  /// Of the source; "#2": its second column; "*": every column the list shows. Beside a "*" the others only
  /// tell how they are printed where the list shows them.
  std::string field;
  std::string caption;  ///< empty: the source's
  int width = 0;        ///< characters that a text keeps before it wraps; 0: by what it holds
  Format format = Format::kAsShown;
  Alignment alignment = Alignment::kByFormat;
  bool total = false;
  bool group_total = false;  ///< summed up in groups only: amounts of different currencies
  bool optional = false;     ///< left out where the source lacks the field
  bool filled = false;       ///< of "*": without the columns that are empty in every row
  std::string only;          ///< "TIP=O": left out unless that placeholder has that value
};

struct GroupDefinition {
  std::string field;
  std::string header;  ///< with {placeholders} and {fields}; empty: caption and value
  bool totals = true;
};

/// How one report is made.
struct Definition {
  std::string id, title;
  std::string name;    ///< among the reports of its family
  std::string family;  ///< reports on the same subject, between which the preview lets choose
  std::vector<std::string> lines;
  std::string statement;  ///< on the company's database, with {placeholders}; empty: the rows are a list's
  std::string sort;       ///< "[Col] DESC, Col2" over the statement's rows
  Orientation orientation = Orientation::kAuto;
  bool count = false;  ///< a last line with the number of rows
  int line = 0;        ///< of the file, from 1; 0: made by the program
  std::vector<ColumnDefinition> columns;
  std::vector<GroupDefinition> groups;  ///< outermost first

  bool has_statement() const { return !statement.empty(); }
};

/// Values of placeholders by name: {TIP} is the value of "TIP".
using Placeholders = std::map<std::string, std::string, std::less<>>;

/// All reports of a definition file.
class Definitions {
 public:
  /// `file` is named in errors. Throws ReportError for a text that is no definition file or has a wrong
  /// report.
  static Definitions Parse(std::string_view xml, const std::string& file);
  /// "UE_Reports.xml" in the folder of the setting ReportDefinitionPath. Throws ReportError.
  static Definitions Read(session::Session& session);

  const std::string& file() const { return file_; }
  const std::vector<Definition>& all() const { return all_; }
  bool Has(std::string_view id) const;
  const Definition& Get(std::string_view id) const;             ///< throws ReportError
  const Definition* FindByTitle(std::string_view title) const;  ///< blanks around it do not count
  /// The reports of a family in the file's order.
  std::vector<const Definition*> Family(std::string_view family) const;

 private:
  std::string file_;
  std::vector<Definition> all_;
};

}  // namespace reports
