#include "cli/batch/context.h"

#include <cctype>
#include <ostream>

#include "companies/open_company.h"

namespace cli {

Context::Context(const Process& process)
    : process_(process), prompter_(process.err), progress_(process.err, process.err_is_terminal) {}

void Context::Prepare() {
  drives_ = std::make_unique<platform::Drives>(
      drives_folder.empty() ? platform::Drives::FromEnvironment()
                            : platform::Drives(std::filesystem::absolute(drives_folder)));
  files_ = std::make_unique<platform::Files>(*drives_);
  errors_ = std::make_unique<platform::ErrorLog>(*files_, clock_);
  prompter_.set_answer(answer == "yes");
}

platform::Host Context::host() { return {*files_, clock_, prompter_, progress_, *errors_}; }

std::string Context::ProgramFolder() const {
  return platform::WithBackslash(
      drives_->FromHost(std::filesystem::absolute(process_.program).parent_path()));
}

session::Session& Context::Settings() {
  if (session_) return *session_;
  const std::string settings = session::SettingsPath();
  if (!files_->Exists(settings)) {
    throw Refusal("Nu exista fisierul: " + settings + "\nInstalarea se face cu comanda: declarix-cli setup");
  }
  auto opened = std::make_unique<session::Session>(host());
  opened->ReadSettings(ProgramFolder());
  if (opened->settings.DataBase == "\\") throw Shown();  // not readable, as has been said
  session_ = std::move(opened);
  return *session_;
}

session::Session& Context::Installation() {
  session::Session& session = Settings();
  // Reading makes an empty setting "\\"; so it is too where the file could not be read.
  if (session.settings.DataBase.empty() || session.settings.DataBase == "\\") {
    throw Refusal("Setarea DataBase (folderul bazelor de date) lipseste din " + session.settings_file);
  }
  session::OpenCommonConnection(session);
  return session;
}

session::Session& Context::Company(const std::string& Cod_Fiscal) {
  RefuseApostrophe("Codul fiscal", Cod_Fiscal);
  session::Session& session = Installation();
  if (!companies::OpenRegisteredCompany(session, Cod_Fiscal)) throw Shown();
  return session;
}

std::string Context::WindowsPath(const std::string& argument) const {
  const bool has_drive = argument.size() >= 3 && std::isalpha(static_cast<unsigned char>(argument[0])) != 0 &&
                         argument[1] == ':' && (argument[2] == '\\' || argument[2] == '/');
  return has_drive ? argument : drives_->FromHost(std::filesystem::absolute(argument));
}

void Context::Write(const ResultTable& table) {
  if (json) {
    WriteJson(out(), table);
    out() << '\n';
  } else {
    WritePlain(out(), table);
  }
}

void Context::Write(store::Recordset rows) {
  if (json) {
    WriteJson(out(), std::move(rows));
    out() << '\n';
  } else {
    WritePlain(out(), std::move(rows));
  }
}

void Context::WriteAnswer(std::string_view name, std::string_view text) {
  if (json) {
    out() << '{' << JsonText(name) << ": " << JsonText(text) << "}\n";
  } else {
    out() << text << '\n';
  }
}

void AddPeriodOptions(CLI::App& command, int& year, int& month) {
  command.add_option("--year", year, "Anul")->required()->check(CLI::Range(1900, 2999));
  command.add_option("--month", month, "Luna")->required()->check(CLI::Range(1, 12));
}

void AddDeclarationOptions(CLI::App& command, DeclarationOptions& options) {
  command.add_option("--company", options.company, "Codul fiscal al firmei")->required();
  command.add_option("--tip", options.tip, "I achizitii, O livrari")
      ->required()
      ->check(CLI::IsMember({"I", "O"}));
  AddPeriodOptions(command, options.year, options.month);
}

void RefuseApostrophe(std::string_view label, const std::string& value) {
  if (value.find('\'') == std::string::npos) return;
  throw Refusal(std::string(label) + " nu poate contine apostrof: " + value);
}

std::pair<std::string, std::string> SplitAssignment(const std::string& text) {
  const std::size_t at = text.find('=');
  if (at == std::string::npos || at == 0) {
    throw CLI::ValidationError(text, "se asteapta Coloana=Valoare");
  }
  return {text.substr(0, at), text.substr(at + 1)};
}

store::Date ParseDate(const std::string& text) {
  const bool shaped =
      text.size() == 10 && text[4] == '-' && text[7] == '-' &&
      std::all_of(text.begin(), text.end(), [](char c) { return c == '-' || (c >= '0' && c <= '9'); });
  if (shaped) {
    const auto number = [&](std::size_t at, std::size_t length) {
      int value = 0;
      for (const char c : text.substr(at, length)) value = value * 10 + (c == '-' ? -100000 : c - '0');
      return value;
    };
    const platform::LocalTime day{.year = number(0, 4), .month = number(5, 2), .day = number(8, 2)};
    if (platform::IsValidDate(day.year, day.month, day.day)) return {platform::ToSerial(day)};
  }
  throw CLI::ValidationError("--date", "se asteapta o data aaaa-ll-zz, nu " + text);
}

}  // namespace cli
