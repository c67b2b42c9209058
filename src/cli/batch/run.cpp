#include "cli/batch/run.h"

#include <ostream>

#include "cli/batch/context.h"
#include "cli/batch/usage.h"
#include "platform/spreadsheet/sheet.h"

namespace cli {
namespace {

void AddCommands(CLI::App& app, Context& context) {
  app.add_option("--drives", context.drives_folder, "Dosarul cu unitatile de disc (c/, e/ ...)");
  app.add_option("--answer", context.answer, "Raspunsul la intrebari")->check(CLI::IsMember({"yes", "no"}));
  app.add_flag("--json", context.json, "Rezultatele ca JSON");
  app.require_subcommand(1);
  app.fallthrough();
  AddSetupCommand(app, context);
  AddSettingsCommands(app, context);
  AddCompanyCommands(app, context);
  AddTariffCommands(app, context);
  AddRateCommands(app, context);
  AddTemplateCommands(app, context);
  AddImportCommand(app, context);
  AddDeclarationCommands(app, context);
  AddSqlCommand(app, context);
}

/// The one place where a failure of any command becomes a message.
int RunAction(Context& context) {
  std::string message;
  try {
    const int status = context.action();
    context.progress().End();
    context.out().flush();
    if (!context.out()) throw Refusal("Rezultatele nu pot fi scrise");
    return status;
  } catch (const CLI::ParseError&) {
    throw;
  } catch (const Shown&) {
    return kRefused;
  } catch (const store::Error& error) {
    message = error.description();
  } catch (const std::exception& error) {
    message = error.what();
  }
  context.progress().End();
  context.prompter().Error(message);
  return kRefused;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const Process& process) {
  Context context(process);
  CLI::App app("Declarix: declaratii INTRASTAT fara fereastra", "declarix-cli");
  AddCommands(app, context);
  try {
    RequireUtf8(arguments);
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    context.Prepare();
    return RunAction(context);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error, process.out, process.err);  // the help that was asked for
      return kDone;
    }
    process.err << UsageText(app, error) << "\nAjutor: declarix-cli COMANDA --help\n";
    return kUsage;
  }
}

}  // namespace cli
