#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "calc/checker.h"
#include "declarations/header.h"
#include "declarations/review.h"
#include "declarations/xml_writer.h"
#include "session/session.h"

namespace declarations {

/// Everything that the editor holds when a declaration is exported.
struct ExportRequest {
  Identity identity;
  std::string Combo_Tip = "N-Noua";  ///< its first letter: "N" new, anything else revised
  Header header;
  bool Check_ValStatistica = false;
  bool Check_XML_Detaliat = false;
};

/// What an export asks the user through its caller. Any of them may be empty.
struct ExportCallbacks {
  calc::ShowProblems show_problems;
  /// A folder for the file, asked where the setting DirectorSalvare is not set; "" gives up.
  std::function<std::string()> choose_folder;
  /// Shown what the institute would refuse, if anything; false gives up. Without it the file is written.
  std::function<bool(const std::vector<Finding>&)> review;
};

enum class ExportOutcome {
  kWritten,
  kProblems,  ///< the checker refused; nothing written
  kNoFolder,  ///< no output folder; said so
  kGivenUp,   ///< after the review
  kFailed,    ///< the file could not be written; said so, an earlier one stays as it was
};

struct ExportResult {
  ExportOutcome outcome = ExportOutcome::kFailed;
  std::string path;         ///< Windows path, where written
  std::string report = {};  ///< the checker's; empty where it was not run
};

/// Checks a declaration of the open company and writes its file. The company name in the request's header
/// comes back as it was filed. A file of the same name is replaced only when the new one is complete.
/// Database statements that fail are passed over and logged, so that the file is written to its end.
ExportResult ExportDeclaration(session::Session& session, ExportRequest& request,
                               const ExportCallbacks& callbacks);

/// The stored view that a declaration's items come from: lines kept apart by partner, or aggregated.
std::string_view ItemView(const Identity& identity, bool detailed);
/// The query of a declaration's items, in the file's order: lines one by one, or aggregated.
std::string ItemQuery(const Identity& identity, bool detailed);

// Shared with the nil declaration.

/// The version row of the period, as the common database holds it; empty where there is none.
CodeVersions ReadCodeVersions(session::Session& session, const Identity& identity);

/// Looks up the county and town codes of the declaring agent's address.
void LookAtPlaces(session::Session& session, const Header& header, Review& review);

/// The folder for declaration files, asking for one where none is set; "" after having said so.
std::string OutputFolder(session::Session& session, const ExportCallbacks& callbacks);

/// Shows the findings and writes the text, as the last steps of an export.
ExportResult Finish(session::Session& session, const std::string& path, std::string_view text,
                    const std::vector<Finding>& findings, const ExportCallbacks& callbacks);

}  // namespace declarations
