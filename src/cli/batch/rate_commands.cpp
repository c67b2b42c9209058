#include "calc/manual_rates.h"
#include "calc/rates.h"
#include "cli/batch/context.h"

namespace cli {
namespace {

struct RateOptions {
  std::string company, moneda, date;
  double curs = 0;
  int multiplicator = 1;
};

void AddCommon(CLI::App& command, RateOptions& options, bool required) {
  command.add_option("--company", options.company, "Codul fiscal al firmei")->required(required);
  command.add_option("--moneda", options.moneda, "Codul monedei")->required(required);
  command.add_option("--date", options.date, "Data, aaaa-ll-zz")->required(required);
}

int Look(Context& context, const RateOptions& options) {
  const store::Date date = ParseDate(options.date);
  const float rate = calc::Curs_Schimb(context.Company(options.company), options.moneda, date);
  // Rates have four decimals; the single-precision tail would only mislead.
  context.WriteAnswer("Curs_Schimb", fmt::format("{:.4f}", rate));
  return kDone;
}

int Add(Context& context, const RateOptions& options) {
  const store::Date date = ParseDate(options.date);
  RefuseApostrophe("Codul monedei", options.moneda);
  session::Session& session = context.Company(options.company);
  calc::RateEntry entry{options.moneda, date, options.curs, options.multiplicator};
  if (!calc::FaultyField(session, entry).empty()) return kRefused;
  calc::AddRate(session, entry.Cod_Moneda, *entry.Valid_La_Data, options.curs, options.multiplicator);
  return kDone;
}

}  // namespace

void AddRateCommands(CLI::App& app, Context& context) {
  auto options = std::make_shared<RateOptions>();
  CLI::App* rate = app.add_subcommand("rate", "Cursul valabil pentru un document de la acea data");
  rate->fallthrough(false);
  AddCommon(*rate, *options, false);
  rate->callback([&context, options, rate] {
    if (!rate->get_subcommands().empty()) return;
    for (const char* name : {"--company", "--moneda", "--date"}) {
      if (rate->count(name) == 0) throw CLI::RequiredError(name);
    }
    context.action = [&context, options] { return Look(context, *options); };
  });

  auto added = std::make_shared<RateOptions>();
  CLI::App* add = rate->add_subcommand("add", "Adauga sau inlocuieste cursul unei zile");
  AddCommon(*add, *added, true);
  add->add_option("--curs", added->curs, "Lei pentru Multiplicator unitati")
      ->required()
      ->check(CLI::PositiveNumber);
  add->add_option("--multiplicator", added->multiplicator, "Numarul de unitati")->check(CLI::PositiveNumber);
  add->callback([&context, added] { context.action = [&context, added] { return Add(context, *added); }; });
}

}  // namespace cli
