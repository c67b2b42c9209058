#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/batch/console.h"
#include "cli/batch/output.h"
#include "cli/batch/run.h"
#include "session/session.h"

namespace cli {

/// A command that cannot go on; what() is the Romanian message.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The same after the message has been shown already.
class Shown : public std::runtime_error {
 public:
  Shown() : std::runtime_error("") {}
};

/// What every command works with: the machine, the installation once it is opened, and where answers go.
class Context {
 public:
  explicit Context(const Process& process);

  // Options before the command.
  std::string drives_folder;  ///< empty: from the environment
  std::string answer = "no";
  bool json = false;

  /// What the chosen command does; set while the command line is read, run after it.
  std::function<int()> action;

  /// Puts the options to use; before `action` runs.
  void Prepare();

  const platform::Drives& drives() const { return *drives_; }
  platform::Host host();
  BatchPrompter& prompter() { return prompter_; }
  TerminalProgress& progress() { return progress_; }
  std::ostream& out() { return process_.out; }
  std::ostream& err() { return process_.err; }
  /// Folder of the running program, as a Windows path.
  std::string ProgramFolder() const;

  /// The installation's settings alone, so that a wrong one can be looked at and mended.
  session::Session& Settings();
  /// The installation: settings read, common connection open. Refuses where none is laid down.
  session::Session& Installation();
  /// The same with that company opened.
  session::Session& Company(const std::string& Cod_Fiscal);

  /// A path argument as the system knows it: host paths become Windows ones, Windows paths stay.
  std::string WindowsPath(const std::string& argument) const;

  void Write(const ResultTable& table);
  void Write(store::Recordset rows);
  /// A single answer: the text and a line end, or {"name": "text"}.
  void WriteAnswer(std::string_view name, std::string_view text);

 private:
  Process process_;
  BatchPrompter prompter_;
  TerminalProgress progress_;
  platform::SystemClock clock_;
  std::unique_ptr<platform::Drives> drives_;
  std::unique_ptr<platform::Files> files_;
  std::unique_ptr<platform::ErrorLog> errors_;
  std::unique_ptr<session::Session> session_;
};

/// Flow, company, year and month: what identifies a declaration on the command line.
struct DeclarationOptions {
  std::string company, tip;
  int year = 0, month = 0;
};
void AddDeclarationOptions(CLI::App& command, DeclarationOptions& options);
void AddPeriodOptions(CLI::App& command, int& year, int& month);

/// Texts are put into statements as they are; an apostrophe would only give a syntax error that names
/// nothing.
void RefuseApostrophe(std::string_view label, const std::string& value);

/// Splits "Coloana=Valoare"; a text without "=" is a usage error.
std::pair<std::string, std::string> SplitAssignment(const std::string& text);
/// "2026-03-04"; anything else is a usage error.
store::Date ParseDate(const std::string& text);

// One function per command group adds its commands.
void AddSetupCommand(CLI::App& app, Context& context);
void AddSettingsCommands(CLI::App& app, Context& context);
void AddCompanyCommands(CLI::App& app, Context& context);
void AddTariffCommands(CLI::App& app, Context& context);
void AddRateCommands(CLI::App& app, Context& context);
void AddTemplateCommands(CLI::App& app, Context& context);
void AddImportCommand(CLI::App& app, Context& context);
void AddDeclarationCommands(CLI::App& app, Context& context);
void AddSqlCommand(CLI::App& app, Context& context);

}  // namespace cli
