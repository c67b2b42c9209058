#include "cli/batch/context.h"
#include "import/template_rows.h"
#include "import/templates.h"

namespace cli {
namespace {

struct TemplateOptions {
  std::string company, name, tip, sheet, sample, column, file;
  std::optional<int> number;
  std::optional<std::string> default_value, size;
};

/// The company of a command with a template name; without a name the first template would be meant.
session::Session& Company(Context& context, const TemplateOptions& options) {
  RefuseApostrophe("Numele machetei", options.name);
  session::Session& session = context.Company(options.company);
  if (store::IsEmpty(options.name)) {
    platform::ShowRequired(context.prompter(), "Nume Macheta");
    throw Shown();
  }
  return session;
}

int Create(Context& context, const TemplateOptions& options) {
  session::Session& session = Company(context, options);
  importer::TemplateEditor editor(session);
  if (editor.Open(options.name)) throw Refusal("Exista deja macheta: " + options.name);
  editor.New();
  store::Recordset& header = editor.header();
  header.Set("Nume_Structura", options.name);
  header.Set("TIP", options.tip);
  header.Set("Work_Sheet_Name", options.sheet.empty() ? importer::kDefaultSheet : options.sheet);
  if (!options.sample.empty()) header.Set("SampleExcelFile", context.WindowsPath(options.sample));
  return editor.Save() ? kDone : kRefused;
}

int Set(Context& context, const TemplateOptions& options) {
  RefuseApostrophe("Numele coloanei", options.column);
  session::Session& session = Company(context, options);
  return importer::ChangeRow(session, options.name, options.column,
                             {options.number, options.default_value, options.size})
             ? kDone
             : kRefused;
}

int Show(Context& context, const TemplateOptions& options) {
  session::Session& session = Company(context, options);
  importer::TemplateEditor editor(session);
  if (!editor.Open(options.name)) throw Refusal("Nu exista macheta: " + options.name);
  ResultTable table{{"Dest_ColumnName", "Dest_ColumnDescription", "Exista_Coloana", "Numar_Coloana",
                     "Valoare_Implicita", "Marime_Maxima", "Format"},
                    {}};
  store::Recordset rows = editor.columns();
  for (; !rows.eof(); rows.MoveNext()) {
    auto& row = table.rows.emplace_back();
    for (const std::string& column : table.columns) row.push_back(rows.Get(column));
    row[1] = importer::ShownDescription(row[0].ToText(), row[1].ToText());
  }
  context.Write(table);
  return kDone;
}

int Delete(Context& context, const TemplateOptions& options) {
  session::Session& session = Company(context, options);
  if (!importer::TemplateEditor(session).Open(options.name)) {
    throw Refusal("Nu exista macheta: " + options.name);
  }
  return importer::DeleteTemplate(session, options.name) ? kDone : kRefused;
}

int Columns(Context& context, const TemplateOptions& options) {
  session::Session& session = context.Installation();
  const auto sample = importer::ReadSample(session, context.WindowsPath(options.file), options.sheet);
  if (!sample) return kRefused;
  context.prompter().Info(sample->label);
  ResultTable table{
      {importer::kSampleHeadings[0], importer::kSampleHeadings[1], importer::kSampleHeadings[2]}, {}};
  for (const importer::SampleColumn& column : sample->columns) {
    table.rows.push_back({column.number, column.heading, column.first_value});
  }
  context.Write(table);
  return kDone;
}

}  // namespace

void AddTemplateCommands(CLI::App& app, Context& context) {
  CLI::App* group = app.add_subcommand("template", "Machete de preluare");
  group->require_subcommand(1)->fallthrough();
  auto options = std::make_shared<TemplateOptions>();

  const auto command = [&](const char* name, const char* help, bool named,
                           int (*run)(Context&, const TemplateOptions&)) {
    CLI::App* added = group->add_subcommand(name, help)->fallthrough();
    if (named) {
      added->add_option("--company", options->company, "Codul fiscal al firmei")->required();
      added->add_option("--name", options->name, "Numele machetei")->required();
    }
    added->callback([&context, options, run] {
      context.action = [&context, options, run] { return run(context, *options); };
    });
    return added;
  };

  CLI::App* create = command("create", "Creeaza o macheta cu toate coloanele ei", true, Create);
  create->add_option("--tip", options->tip, "La ce se foloseste")
      ->required()
      ->check(CLI::IsMember({"ACHIZITIE", "LIVRARE"}));
  create->add_option("--sheet", options->sheet, "Foaia de lucru");
  create->add_option("--sample", options->sample, "Fisier de proba");

  CLI::App* set = command("set", "Schimba o coloana a machetei", true, Set);
  set->add_option("--column", options->column, "Coloana declaratiei")->required();
  set->add_option("--number", options->number, "Numarul coloanei din foaie; 0 daca nu exista")
      ->check(CLI::Range(0, 256));
  set->add_option("--default", options->default_value, "Valoare implicita; gol o sterge");
  set->add_option("--size", options->size, "Caractere maxime; gol inseamna fara limita");

  command("show", "Coloanele machetei", true, Show);
  command("delete", "Sterge macheta (intreaba)", true, Delete);

  CLI::App* columns = command("columns", "Coloanele unei foi de lucru", false, Columns);
  columns->add_option("FILE", options->file)->required();
  columns->add_option("--sheet", options->sheet, "Foaia de lucru");
}

}  // namespace cli
