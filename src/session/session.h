#pragma once

#include <string>

#include "platform/host.h"
#include "session/settings.h"
#include "store/connection.h"

namespace session {

struct Company {
  std::string Cod_Fiscal;
  std::string Nume_Firma;     ///< "x" when the register has none
  std::string database_path;  ///< Windows path of the company's database file
};

/// The current company's default values for new and imported lines, named as the columns of
/// Intrastat_Default.
struct DefaultValues {
  std::string I_Incoterms, I_Mod_Transp, I_Nat_Tranz, I_Tara_Exp;
  std::string O_Incoterms, O_Mod_Transp, O_Nat_Tranz, O_Tara_Dest;
};

/// Everything that is process-wide: the settings record, the three connections, the current company and its
/// defaults, the period of the current work. One per process, passed by reference.
class Session {
 public:
  explicit Session(platform::Host host_parts);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  platform::Host host;
  std::string settings_file;  ///< Windows path
  Settings settings;
  Publisher publisher;

  store::Connection common;   ///< Comun.mdb
  store::Connection company;  ///< the current company's file
  store::Connection tariff;   ///< the tariff file of the period; the last choice wins
  std::string tariff_connection_string;

  Company current;
  DefaultValues defaults;
  int Anul = 0, Luna = 0;  ///< period of the current work
  std::string user_name = "N/A";
  bool decimal_comma =
      false;  ///< the user's decimal separator is not "."; only the rates file's reading looks
  bool creation_mode = false;  ///< the company screen is creating a new company

  std::string CommonPath() const { return settings.DataBase + "Comun.mdb"; }
  /// A file below the installation's system folder (setting `System`): UnderSystem("Verificare\\x.txt").
  std::string UnderSystem(std::string_view relative) const { return settings.System + std::string(relative); }

  /// The settings pass: default pass and readers in their order; also points the error log and links at the
  /// folders read.
  void ReadSettings(std::string_view app_path);
  /// The readers alone, after the file has changed.
  void ReadSettingsAgain();

 private:
  void RunReaders(platform::Host quiet);
};

/// What a further connection of this session needs (links resolve against the setting `DataBase`).
store::Environment StoreEnvironment(Session& session);

/// Opens the common connection unless it is open. Throws store::Error.
void OpenCommonConnection(Session& session);
/// Opens the company connection on the company's file unless it is open.
void OpenCompanyConnection(Session& session, std::string_view company_path);
/// Re-creates the linked table Firme in the company's database. A failure shows "Eroare - Creare Link
/// DateComune".
void ComunLink(Session& session);
/// Compacts one database file in place; a missing file does nothing, errors are passed over and logged.
void CompactDatabaseFile(Session& session, std::string_view path);
/// Closes and releases the connections, then compacts the company file above 1000 KB and Comun.mdb above
/// 30000 KB.
void CompactOnExit(Session& session);

/// The common error routine: number and description by the query "Return_Error" of Comun.mdb, else source and
/// run-time description, else "EROARE NEDETERMINABILA".
void ShowError(Session& session, const store::Error& error);

}  // namespace session
