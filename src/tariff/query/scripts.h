#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace tariff {

/// Characters of a script's name.
constexpr int kLongestScriptName = 100;
/// Rows of a sheet below its headings in the spreadsheets that users exchange (65,536 in all).
constexpr std::int64_t kMostExportedRows = 65535;

/// The first of the words that no statement of a user may hold, in the order in which they are looked for.
/// Any place counts, within names and texts too; this strictness is deliberate.
std::optional<std::string_view> ForbiddenWord(std::string_view statement);

/// False after having said which forbidden word a text holds.
bool WithoutForbiddenWord(session::Session& session, std::string_view text);

/// False after having said what is wrong with a statement of the user's own: no text, or a forbidden word.
bool MayRun(session::Session& session, std::string_view statement);

/// Opens a user's statement on the company database. Shows progress and can be stopped, which throws
/// Error(kCancelled). Throws store::Error.
store::Recordset RunStatement(session::Session& session, std::string_view statement);

/// Saved statements of the open company. All throw store::Error.
std::vector<std::string> ScriptNames(session::Session& session);
bool ScriptExists(session::Session& session, std::string_view Script_Name);
/// Nothing where the script has been deleted meanwhile.
std::optional<std::string> ScriptText(session::Session& session, std::string_view Script_Name);
void SaveScript(session::Session& session, std::string_view Script_Name, std::string_view Script_SQL);
void ReplaceScript(session::Session& session, std::string_view Script_Name, std::string_view Script_SQL);
void DeleteScript(session::Session& session, std::string_view Script_Name);

}  // namespace tariff
