#include "session/session.h"

#include <cmath>

#include "platform/encoding.h"
#include "platform/locale.h"
#include "session/once_prompter.h"

namespace session {
namespace {

store::Environment EnvironmentOf(Session* session) {
  store::Environment environment;
  environment.drives = &session->host.files.drives();
  environment.link_folder = [session] { return session->settings.DataBase; };
  return environment;
}

/// Runs a step of a housekeeping run; a failure goes to the log and the run goes on.
bool Attempt(Session& session, std::string_view where, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const std::exception& error) {
    session.host.errors.Write(where, error.what());
    return false;
  }
}

/// Size in KB as the program has always measured it: two decimals, then the nearest whole number.
std::int64_t SizeInKilobytes(std::uint64_t bytes) {
  const std::string text = fmt::format("{:.2f}", static_cast<double>(bytes) / 1024);
  return static_cast<std::int64_t>(std::nearbyint(std::strtod(text.c_str(), nullptr)));
}

constexpr std::int64_t kCompanyLimit = 1000;  // KB; company files change a lot, the common one hardly
constexpr std::int64_t kCommonLimit = 30000;

void CompactAbove(Session& session, const std::string& path, std::int64_t limit) {
  Attempt(session, "CompactOnExit", [&] {
    if (session.host.files.Exists(path) && SizeInKilobytes(session.host.files.Size(path)) > limit) {
      CompactDatabaseFile(session, path);
    }
  });
}

}  // namespace

Session::Session(platform::Host host_parts)
    : host(host_parts),
      settings_file(SettingsPath()),
      common(EnvironmentOf(this)),
      company(EnvironmentOf(this)),
      tariff(EnvironmentOf(this)),
      user_name(platform::UserName()),
      decimal_comma(platform::DecimalSeparator() != ".") {}

void Session::ReadSettings(std::string_view app_path) {
  OncePrompter once(host.prompter);
  platform::Host quiet{host.files, host.clock, once, host.progress, host.errors};
  EnsureDefaultSettings(quiet, settings_file, app_path, settings);
  publisher = ReadPublisherDetails(quiet);
  RunReaders(quiet);
}

void Session::ReadSettingsAgain() {
  OncePrompter once(host.prompter);
  RunReaders({host.files, host.clock, once, host.progress, host.errors});
}

void Session::RunReaders(platform::Host quiet) {
  ReadColourSettings(quiet, settings_file, settings);
  ReadDecimalSettings(quiet, settings_file, settings);
  ReadFileLocationSettings(quiet, settings_file, settings);
  ReadMiscSettings(quiet, settings_file, settings);
  if (settings.System != "\\") host.errors.set_folder(settings.System);  // unset: no log
}

store::Environment StoreEnvironment(Session& session) { return EnvironmentOf(&session); }

void OpenCommonConnection(Session& session) {
  if (!session.common.is_open()) session.common.Open(store::JetString(session.CommonPath()));
}

void OpenCompanyConnection(Session& session, std::string_view company_path) {
  if (!session.company.is_open()) session.company.Open(store::CompanyShapeString(company_path));
}

void ComunLink(Session& session) {
  const store::LinkDefinition wanted{"Firme", "Comun.mdb", "Firme"};
  try {
    store::Connection connection(EnvironmentOf(&session));
    connection.Open(store::JetString(session.current.database_path));
    // Links hold no path, so one that is right stays right when the installation moves; writing the same
    // link again would only touch the file.
    for (const store::LinkDefinition& link : connection.catalog().Links()) {
      if (link.name == wanted.name && link.file == wanted.file && link.remote_name == wanted.remote_name) {
        return;
      }
    }
    for (const store::SchemaTable& table : connection.Tables()) {
      if (table.type == "LINK" && platform::ToUpper(table.name) == "FIRME") {
        connection.Execute("DROP TABLE Firme");
      }
    }
    connection.catalog().CreateLink(wanted);
  } catch (const std::exception& error) {
    session.host.prompter.Error("Eroare - Creare Link DateComune");
    session.host.prompter.Error(error.what());
  }
}

void CompactDatabaseFile(Session& session, std::string_view path) {
  platform::Files& files = session.host.files;
  if (!files.Exists(path)) return;
  const std::string file(path);
  session.host.prompter.Info("Se va compacta baza de date: \r\n" + file + "\r\nAstepati va rog .....");
  const std::string scratch =
      std::string(platform::FolderOf(path)) + "CompactDB\\" + std::string(platform::FileNameOf(path));
  Attempt(session, "CompactDatabaseFile", [&] { files.Remove(scratch); });
  Attempt(session, "CompactDatabaseFile", [&] { session.company.Close(); });
  Attempt(session, "CompactDatabaseFile",
          [&] { store::Connection::CompactInPlace(EnvironmentOf(&session), path, scratch); });
}

void CompactOnExit(Session& session) {
  session.company.Close();
  session.tariff.Close();
  session.common.Close();
  if (!session.current.database_path.empty()) {
    CompactAbove(session, session.current.database_path, kCompanyLimit);
  }
  CompactAbove(session, session.CommonPath(), kCommonLimit);
}

void ShowError(Session& session, const store::Error& error) {
  std::string known;
  try {
    if (session.common.is_open()) {
      store::Recordset rows = session.common.QueryStored("Return_Error", {error.number()});
      if (!rows.eof() && rows.field_count() > 0) known = rows.Get(rows.field_count() - 1).ToText();
    }
  } catch (const std::exception&) {
    // The table of error texts may be what failed.
  }
  const std::string description = error.description();
  std::string text;
  if (!store::IsEmpty(known)) {
    text = fmt::format("Eroare nr: {}\r\nDescriere Eroare: {}", error.number(), known);
    if (!description.empty() && description != known) text += "\r\n" + description;
  } else if (!error.source().empty() || !description.empty()) {
    text = "Sursa Eroare:" + error.source() + "\r\n" + description;
  } else {
    text = "EROARE NEDETERMINABILA";
  }
  session.host.prompter.Error(text);
}

}  // namespace session
