#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/select_builder.h"
#include "import/templates.h"
#include "session/session.h"

namespace importer {

/// Header of a template, as its fields are typed. "Sheet1" is offered where no worksheet is named.
struct TemplateHeader {
  std::string Nume_Structura, TIP, Locatie_Implicita, Work_Sheet_Name, SampleExcelFile;
  friend bool operator==(const TemplateHeader&, const TemplateHeader&) = default;
};

/// One column row of a template.
struct TemplateRow {
  std::int64_t Record_ID = 0;
  std::string Dest_ColumnName, Dest_ColumnDescription;  ///< the latter as shown
  bool Exista_Coloana = false;
  std::optional<int> Numar_Coloana;  ///< from 1
  std::string Valoare_Implicita;
  std::optional<int> Marime_Maxima;
  std::string Format;
  friend bool operator==(const TemplateRow&, const TemplateRow&) = default;
};

/// A template while it is edited: nothing is stored before Save. Edits follow the rules of the column grid;
/// one that breaks a rule is shown, answers false and changes nothing.
class TemplateDraft {
 public:
  explicit TemplateDraft(session::Session& session);  ///< a new one

  /// Answers whether there is a template of that name. Throws store::Error.
  bool Open(std::string_view Nume_Structura);
  bool is_new() const { return opened_name_.empty(); }

  TemplateHeader header;
  const std::vector<TemplateRow>& rows() const { return rows_; }

  /// Unticking takes the column number away.
  void SetPresent(std::size_t row, bool present);
  bool SetNumber(std::size_t row, std::string_view typed);
  void SetDefault(std::size_t row, std::string_view text) { rows_[row].Valoare_Implicita = text; }
  bool SetSize(std::size_t row, std::string_view typed);
  bool SetFormat(std::size_t row, std::string_view text, const std::vector<std::string>& list);
  void Assign(std::size_t row, int number);  ///< ticks and numbers a row in one
  bool Delete(std::size_t row);              ///< asks; gone from the store with Save
  /// Numbers the rows that have none yet by the sample's headings; how many it found.
  int Propose(const std::vector<SampleColumn>& columns);

  /// The first ticked row without a number.
  std::optional<std::size_t> IncompleteRow() const;
  std::vector<ColumnRule> Rules() const;
  bool changed() const { return header != stored_header_ || rows_ != stored_rows_; }

  /// Checks and stores header and rows, all or nothing, and reads them back: a new template then has its
  /// rows. Failures are shown.
  bool Save();

 private:
  bool NameIsFree();  ///< and can stand in a statement; shown where it is not
  bool Store();
  std::optional<int> WholeAboveZero(std::string_view typed, std::string_view what);

  session::Session* session_;
  std::string opened_name_;  ///< empty for a new template
  std::vector<TemplateRow> rows_, stored_rows_;
  TemplateHeader stored_header_;
};

}  // namespace importer
