#include <ostream>

#include "cli/batch/context.h"
#include "import/run.h"
#include "import/templates.h"

namespace cli {
namespace {

struct ImportOptions {
  DeclarationOptions declaration;
  std::string name, sheet, file;
};

/// The sheet that the template names; "Sheet1" where it names none.
std::string TemplateSheet(session::Session& session, const std::string& name) {
  importer::TemplateEditor editor(session);
  if (!editor.Open(name)) throw Refusal("Nu exista macheta: " + name);
  return store::TextOr(editor.header()["Work_Sheet_Name"], importer::kDefaultSheet);
}

int Import(Context& context, const ImportOptions& options) {
  RefuseApostrophe("Numele machetei", options.name);
  session::Session& session = context.Company(options.declaration.company);
  importer::Inputs inputs;
  inputs.Anul = options.declaration.year;
  inputs.Luna = options.declaration.month;
  inputs.path = context.WindowsPath(options.file);
  inputs.sheet =
      options.sheet.empty() && !options.name.empty() ? TemplateSheet(session, options.name) : options.sheet;
  inputs.Cod_Fiscal = session.current.Cod_Fiscal;
  inputs.Nume_Structura = options.name;
  inputs.tip_operatiune = options.declaration.tip == "I" ? "I-ACHIZITIE" : "O-LIVRARE";
  const importer::Result result = importer::Run(session, inputs);
  context.progress().End();
  if (result.outcome != importer::Outcome::kDone) return kRefused;

  if (!result.rejected.empty()) {
    context.err() << "Fisierul " << inputs.path << ", foaia " << inputs.sheet
                  << ", inregistrari respinse: " << result.rejected.size() << '\n';
  }
  for (const importer::Rejected& rejected : result.rejected) {
    context.err() << "Randul " << rejected.row;
    if (!rejected.column.empty()) context.err() << ", coloana " << rejected.column;
    context.err() << ": " << rejected.reason << '\n';
  }
  ResultTable table{{"preluate", "total", "respinse"}, {}};
  table.rows.push_back({result.saved, result.total, static_cast<std::int64_t>(result.rejected.size())});
  context.Write(table);
  return result.rejected.empty() ? kDone : kRefused;
}

}  // namespace

void AddImportCommand(CLI::App& app, Context& context) {
  auto options = std::make_shared<ImportOptions>();
  CLI::App* command = app.add_subcommand("import", "Preia o foaie de lucru prin macheta");
  AddDeclarationOptions(*command, options->declaration);
  command->add_option("--template", options->name, "Numele machetei")->required();
  command->add_option("--sheet", options->sheet, "Foaia de lucru; altfel cea din macheta");
  command->add_option("FILE", options->file)->required();
  command->callback(
      [&context, options] { context.action = [&context, options] { return Import(context, *options); }; });
}

}  // namespace cli
