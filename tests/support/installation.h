#pragma once

#include <string>
#include <string_view>

#include "session/session.h"
#include "support/test_host.h"

namespace test_support {

/// A laid-down installation of its own for one test, below C:\Declarix of its machine: delivered data, one
/// company (kCompany, "PROBA SRL", no switches set, no default values), its session open on all three
/// connections. The clock stands at 16 March 2026. Laying down is done once per process; every instance works
/// on a fresh copy.
///
///   Installation at;
///   at.Run("INSERT INTO Intrastat (TIP, Cod_Fiscal, Anul, Luna) VALUES ('I','RO123456',2026,3)");
///   at.prompter().ExpectInfo("…");
class Installation {
 public:
  enum class State { kCompanyOpen, kCommonOpen, kClosed };

  explicit Installation(State state = State::kCompanyOpen);
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  static constexpr char kCompany[] = "RO123456";
  /// Windows path of a file below the system folder, or below the database folder.
  static std::string InSystem(std::string_view relative) {
    return fmt::format("C:\\Declarix\\System\\{}", relative);
  }
  static std::string InDataBase(std::string_view relative) {
    return fmt::format("C:\\Declarix\\System\\DataBase\\{}", relative);
  }

  TestHost machine;
  session::Session session;

  ScriptedPrompter& prompter() { return machine.prompter; }
  FaultyFiles& files() { return machine.files; }
  /// Runs statements on the company connection; the rows touched by the last one.
  std::int64_t Run(std::string_view statement) { return session.company.Execute(statement); }
  /// First value of a SELECT on the company connection; Null where there is no row.
  store::Value Get(std::string_view select) {
    return session.company.Scalar(select).value_or(store::Value());
  }
  /// A further registered company, which becomes the open one.
  void AddCompany(std::string_view Cod_Fiscal, std::string_view Nume_Firma);
};

/// The data folder of the source tree as a Windows path of that machine.
std::string DataFolder(const platform::Files& files);

}  // namespace test_support
