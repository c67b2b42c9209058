#include "tariff/query/scripts.h"

#include "platform/encoding.h"

namespace tariff {
namespace {

constexpr std::string_view kForbidden[] = {"UPDATE", "INSERT",   "DELETE",  "EXEC",   "EXECUTE", "ALTER",
                                           "DROP",   "DATABASE", "BACKUP",  "CREATE", "OPEN",    "CLOSE",
                                           "SET",    "GRANT",    "RESTORE", "REVOKE"};

std::string Doubled(std::string_view text) { return platform::ReplaceAll(text, "'", "''"); }

std::string WhereName(std::string_view Script_Name) {
  return " WHERE Script_Name='" + Doubled(Script_Name) + "'";
}

}  // namespace

std::optional<std::string_view> ForbiddenWord(std::string_view statement) {
  const std::string upper = platform::ToUpper(statement);
  for (const std::string_view word : kForbidden) {
    if (upper.find(word) != std::string::npos) return word;
  }
  return std::nullopt;
}

bool WithoutForbiddenWord(session::Session& session, std::string_view text) {
  const std::optional<std::string_view> word = ForbiddenWord(text);
  if (word) session.host.prompter.Error("Nu este permis sa rulati comanda :" + std::string(*word));
  return !word;
}

bool MayRun(session::Session& session, std::string_view statement) {
  if (statement.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    platform::ShowRequired(session.host.prompter, "Script SQL");
    return false;
  }
  return WithoutForbiddenWord(session, statement);
}

store::Recordset RunStatement(session::Session& session, std::string_view statement) {
  platform::Progress& progress = session.host.progress;
  const store::Watch watch(session.company, [&progress] {
    progress.Update("Se cauta randurile", -1);
    return !progress.Cancelled();
  });
  return session.company.Query(statement);
}

std::vector<std::string> ScriptNames(session::Session& session) {
  std::vector<std::string> names;
  store::Recordset rows = session.company.Query("SELECT Script_Name FROM Scripts ORDER BY Script_Name");
  for (; !rows.eof(); rows.MoveNext()) names.push_back(rows[0].ToText());
  return names;
}

bool ScriptExists(session::Session& session, std::string_view Script_Name) {
  return session.company.Any("SELECT Script_Name FROM Scripts" + WhereName(Script_Name));
}

std::optional<std::string> ScriptText(session::Session& session, std::string_view Script_Name) {
  const std::optional<store::Value> text =
      session.company.Scalar("SELECT Script_SQL FROM Scripts" + WhereName(Script_Name));
  if (!text) return std::nullopt;
  return text->ToText();
}

void SaveScript(session::Session& session, std::string_view Script_Name, std::string_view Script_SQL) {
  session.company.Execute("INSERT INTO Scripts (Script_Name, Script_SQL) VALUES ('" + Doubled(Script_Name) +
                          "', '" + Doubled(Script_SQL) + "')");
}

void ReplaceScript(session::Session& session, std::string_view Script_Name, std::string_view Script_SQL) {
  session.company.Execute("UPDATE Scripts SET Script_SQL='" + Doubled(Script_SQL) + "'" +
                          WhereName(Script_Name));
}

void DeleteScript(session::Session& session, std::string_view Script_Name) {
  session.company.Execute("DELETE FROM Scripts" + WhereName(Script_Name));
}

}  // namespace tariff
