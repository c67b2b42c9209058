#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace importer {

/// The hierarchical command that reads templates, their column rows in the chapter field `ChildCMD`; an empty
/// name reads them all.
std::string ShapeText(std::string_view Nume_Structura);

/// The statement of the template chooser, its headings "Nume" and "TIP".
inline constexpr char kChooserSelect[] = "SELECT [Nume_Structura], [TIP] FROM [StructuraFisiereAntet]";

/// One template open for editing: header fields are set on `header()`, then saved with its column rows.
class TemplateEditor {
 public:
  explicit TemplateEditor(session::Session& session) : session_(&session) {}

  /// A new template, its header row pending.
  void New();
  /// Answers whether there is a template of that name.
  bool Open(std::string_view Nume_Structura);

  store::Recordset& header() { return header_; }
  /// Column rows in display order.
  store::Recordset columns() const { return header_.Child("ChildCMD"); }

  /// The update command: checks the required fields, writes the header, generates the column rows of a new
  /// template and removes the one that does not belong to the flow. One transaction; answers whether it went
  /// through. Failures are shown.
  bool Save();

 private:
  void GenerateColumns(const std::string& Nume_Structura);

  session::Session* session_;
  store::Recordset header_;
  std::string opened_name_;  ///< name under which the column rows are stored; empty for a new template
};

/// Asks, deletes the header (the column rows go with it) and says so. False when the answer was No or it
/// failed.
bool DeleteTemplate(session::Session& session, std::string_view Nume_Structura);

/// One column of a sample worksheet, for typing column numbers.
struct SampleColumn {
  int number = 0;  ///< from 1
  std::string heading;
  store::Value first_value;
};
struct Sample {
  std::vector<SampleColumn> columns;
  std::string label;  ///< "Numar coloane in fisierul excel : 12"
};
inline constexpr const char* kSampleHeadings[] = {"Nr. Coloana", "Cap Coloana", "Prima Valoare"};
/// Filter of the file dialogs that choose a worksheet, in pairs of caption and patterns.
inline constexpr char kWorksheetFilter[] =
    "Excel Files (*.xls)|*.xls|Foi de calcul (*.xls;*.xlsx;*.ods;*.csv)|*.xls;*.xlsx;*.ods;*.csv|";
inline constexpr char kDefaultSheet[] = "Sheet1";

/// A sample, or why it cannot be read.
struct SampleReading {
  std::optional<Sample> sample;
  std::string problem;
};
/// Reads a sample's columns; an empty sheet name is "Sheet1".
SampleReading TrySample(session::Session& session, std::string_view path, std::string_view sheet);
/// The same; a missing or unreadable file is shown.
std::optional<Sample> ReadSample(session::Session& session, std::string_view path, std::string_view sheet);

}  // namespace importer
