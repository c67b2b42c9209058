#include "cli/batch/context.h"
#include "store/layout/layout.h"
#include "tariff/load.h"
#include "tariff/lookup.h"

namespace cli {
namespace {

struct TariffOptions {
  std::string code, file;
  int year = 0, month = 0;
};

int Find(Context& context, TariffOptions options) {
  session::Session& session = context.Installation();
  if (!tariff::ConexiuneTarif(session, options.month, options.year)) return kRefused;
  context.WriteAnswer("Cautare_Tarif", tariff::Cautare_Tarif(session, options.code));
  return kDone;
}

int Load(Context& context, const TariffOptions& options) {
  session::Session& session = context.Installation();
  const tariff::LoadOutcome loaded = tariff::LoadNomenclature(
      session, store::layout::FindDataFolder(session.host.files, context.ProgramFolder()),
      context.WindowsPath(options.file), options.year);
  if (!loaded.error.empty()) throw Refusal(loaded.error);
  ResultTable table{{"fisier", "versiune", "sectiuni", "capitole", "grupe", "hs6", "coduri", "cu_unitate"},
                    {}};
  table.rows.push_back({loaded.file, loaded.version, loaded.sections, loaded.chapters, loaded.headings,
                        loaded.subheadings, loaded.codes, loaded.codes_with_unit});
  context.Write(table);
  return kDone;
}

}  // namespace

void AddTariffCommands(CLI::App& app, Context& context) {
  CLI::App* group = app.add_subcommand("tariff", "Nomenclatorul tarifar");
  group->require_subcommand(1)->fallthrough();
  auto options = std::make_shared<TariffOptions>();

  CLI::App* load = group->add_subcommand("load", "Incarca nomenclatorul unui an")->fallthrough();
  load->add_option("FILE", options->file, "Fisierul XML al institutului")->required();
  load->add_option("--year", options->year, "Anul")->required()->check(CLI::Range(1900, 2999));
  load->callback(
      [&context, options] { context.action = [&context, options] { return Load(context, *options); }; });

  CLI::App* find =
      group->add_subcommand("find", "Descrierea si unitatea suplimentara a unui cod")->fallthrough();
  find->add_option("CODE", options->code)->required();
  AddPeriodOptions(*find, options->year, options->month);
  find->callback(
      [&context, options] { context.action = [&context, options] { return Find(context, *options); }; });
}

}  // namespace cli
