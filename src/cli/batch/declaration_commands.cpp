#include <ostream>

#include "calc/checker.h"
#include "cli/batch/context.h"
#include "declarations/export.h"
#include "declarations/nil.h"
#include "platform/encoding.h"

namespace cli {
namespace {

struct DeclarationCommand {
  DeclarationOptions declaration;
  CLI::Option* statistic = nullptr;
  CLI::Option* detaliat = nullptr;
  bool statistic_value = false, detaliat_value = false;
  std::string kind = "N";
  std::vector<std::string> header;
  bool dec_tert = false;
};

declarations::Identity IdentityOf(const DeclarationOptions& options, const session::Session& session) {
  return {options.tip, session.current.Cod_Fiscal, options.year, options.month};
}

int Lines(Context& context, const DeclarationCommand& command) {
  session::Session& session = context.Company(command.declaration.company);
  context.Write(session.company.Query(
      std::string("SELECT ") + declarations::kEditorColumns + " FROM INTRASTAT" +
      declarations::IdentityFilter(IdentityOf(command.declaration, session)) + " ORDER BY Record_ID"));
  return kDone;
}

std::string WithLineFeeds(std::string_view report) { return platform::ReplaceAll(report, "\r\n", "\n"); }

int Check(Context& context, const DeclarationCommand& command) {
  session::Session& session = context.Company(command.declaration.company);
  const declarations::Identity identity = IdentityOf(command.declaration, session);
  const bool statistic = command.statistic->count() > 0
                             ? command.statistic_value
                             : declarations::ReadEditorDefaults(session).ValoareStatistica;
  std::string report;
  const bool fine =
      calc::Verifica_Declaratie(session, identity.TIP, static_cast<std::int16_t>(identity.Anul),
                                static_cast<std::int16_t>(identity.Luna), statistic, {}, &report);
  report = WithLineFeeds(report);
  const std::string path = calc::ProblemsReportPath(session, identity);
  if (context.json) {
    context.out() << "{\"ok\": " << (fine ? "true" : "false") << ", \"path\": " << JsonText(path)
                  << ", \"report\": " << JsonText(report) << "}\n";
  } else {
    context.out() << report;
  }
  return fine ? kDone : kRefused;
}

/// Fields given on the command line replace those read from the register.
void ApplyHeader(Context& context, const DeclarationCommand& command, session::Session& session,
                 declarations::Header& header) {
  // A field of the declaring agent would not be filed without the switch.
  header.Check_Dec_Tert =
      command.dec_tert ||
      std::any_of(command.header.begin(), command.header.end(), [](const std::string& assignment) {
        return declarations::IsAgentField(SplitAssignment(assignment).first);
      });
  if (header.Check_Dec_Tert && !declarations::ReadDeclaringAgent(session, header)) {
    context.prompter().Error("Default\\Frm_INTRASTAT.txt nu s-a putut citi");
  }
  for (const std::string& assignment : command.header) {
    const auto [name, value] = SplitAssignment(assignment);
    std::string* field = declarations::HeaderField(header, name);
    if (field == nullptr) throw CLI::ValidationError("--header", "nu exista campul " + name);
    *field = value;
  }
}

declarations::ExportCallbacks Callbacks(Context& context) {
  declarations::ExportCallbacks callbacks;
  callbacks.review = [&](const std::vector<declarations::Finding>& findings) {
    context.progress().End();
    context.prompter().Message(declarations::FindingsText(findings),
                               "Institutul va refuza fisierul, verificati", platform::Icon::kExclamation);
    return true;
  };
  return callbacks;
}

int Written(Context& context, const session::Session& session, const declarations::ExportResult& result) {
  if (result.outcome != declarations::ExportOutcome::kWritten) {
    context.progress().End();
    if (result.outcome == declarations::ExportOutcome::kProblems) {
      context.err() << WithLineFeeds(result.report);
    }
    return kRefused;
  }
  if (context.json) {
    context.out() << "{\"path\": " << JsonText(result.path)
                  << ", \"host_path\": " << JsonText(session.host.files.ToHost(result.path).string())
                  << "}\n";
  } else {
    context.out() << result.path << '\n';
  }
  return kDone;
}

int Export(Context& context, const DeclarationCommand& command) {
  session::Session& session = context.Company(command.declaration.company);
  const declarations::EditorDefaults defaults = declarations::ReadEditorDefaults(session);
  declarations::ExportRequest request;
  request.identity = IdentityOf(command.declaration, session);
  request.Combo_Tip = command.kind == "N" ? "N-Noua" : "C-Corectie";
  request.header = defaults.header;
  ApplyHeader(context, command, session, request.header);
  request.Check_ValStatistica =
      command.statistic->count() > 0 ? command.statistic_value : defaults.ValoareStatistica;
  request.Check_XML_Detaliat = command.detaliat->count() > 0 ? command.detaliat_value : defaults.XML_Detaliat;
  return Written(context, session, declarations::ExportDeclaration(session, request, Callbacks(context)));
}

int Nil(Context& context, const DeclarationCommand& command) {
  session::Session& session = context.Company(command.declaration.company);
  declarations::Header header = declarations::NilHeader(session);
  ApplyHeader(context, command, session, header);
  return Written(context, session,
                 declarations::WriteNilDeclaration(session, IdentityOf(command.declaration, session), header,
                                                   Callbacks(context)));
}

void AddHeaderOptions(CLI::App& command, DeclarationCommand& options) {
  command.add_option("--header", options.header, "Camp al antetului, CAMP=Valoare")->allow_extra_args(false);
  command.add_flag("--dec-tert", options.dec_tert, "Declaratia se depune printr-un tert declarant");
}

void AddStatistic(CLI::App& command, DeclarationCommand& options) {
  options.statistic = command.add_flag("--statistic,!--no-statistic", options.statistic_value,
                                       "Cu valoarea statistica; altfel ca in datele firmei");
}

}  // namespace

void AddDeclarationCommands(CLI::App& app, Context& context) {
  const auto add = [&](const char* name, const char* help, int (*run)(Context&, const DeclarationCommand&)) {
    auto options = std::make_shared<DeclarationCommand>();
    CLI::App* command = app.add_subcommand(name, help);
    AddDeclarationOptions(*command, options->declaration);
    command->callback([&context, options, run] {
      context.action = [&context, options, run] { return run(context, *options); };
    });
    return std::pair{command, options.get()};
  };

  add("lines", "Liniile unei declaratii", Lines);

  const auto [check, check_options] = add("check", "Verifica o declaratie", Check);
  AddStatistic(*check, *check_options);

  const auto [write, write_options] = add("export", "Verifica si scrie fisierul declaratiei", Export);
  write->add_option("--kind", write_options->kind, "N noua, C corectie")->check(CLI::IsMember({"N", "C"}));
  AddStatistic(*write, *write_options);
  write_options->detaliat = write->add_flag("--detaliat,!--no-detaliat", write_options->detaliat_value,
                                            "Fara cumularea pozitiilor; altfel ca in datele firmei");
  AddHeaderOptions(*write, *write_options);

  const auto [nil, nil_options] = add("nil", "Scrie declaratia unei luni fara comert", Nil);
  AddHeaderOptions(*nil, *nil_options);
}

}  // namespace cli
