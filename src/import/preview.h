#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "import/select_builder.h"
#include "session/session.h"

namespace importer {

/// A line that the import would make of one row of the worksheet.
struct PreviewLine {
  std::int64_t row = 0;               ///< of the worksheet, from 1
  std::vector<store::Value> values;   ///< one per column
  std::vector<std::string> problems;  ///< one per column, empty where there is none
};

struct PreviewLines {
  std::vector<std::string> columns;  ///< of Intrastat: those of the rules, in their order
  std::vector<PreviewLine> lines;
  std::string problem;  ///< why there are none, naming file, sheet or column
};

/// Shows what a template under work makes of its sample. Lines are made as the import makes them (rounding,
/// rates, tariff, company defaults), with the tariff and rates now open, and never stored.
class Preview {
 public:
  static constexpr int kLines = 20;

  explicit Preview(session::Session& session) : session_(&session) {}

  /// Holds the sample's sheet; what is wrong with the file is what Read says.
  void Open(std::string_view path, std::string_view sheet);
  void Close();

  /// The first lines. Codes that their reference tables lack, and empty values that a declaration of the flow
  /// must have, are problems of their cells. Throws store::Error where the company's file fails.
  PreviewLines Read(const std::vector<ColumnRule>& rules, std::string_view TIP);

 private:
  session::Session* session_;
  std::unique_ptr<store::Connection> source_;
  std::string path_, sheet_, problem_;
  std::vector<std::string> headings_;
};

}  // namespace importer
