#include "cli/batch/context.h"
#include "companies/company_defaults.h"
#include "companies/open_company.h"
#include "companies/register.h"

namespace cli {
namespace {

struct CompanyOptions {
  std::string cod_fiscal, nume;
  std::vector<std::string> fields;
};

/// Puts "Coloana=Valoare" assignments into the fields of that name.
void Assign(companies::Fields& fields, const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments) {
    const auto [name, value] = SplitAssignment(assignment);
    if (!fields.Set(name, value)) throw CLI::ValidationError(assignment, "nu exista coloana " + name);
  }
}

int AddCompany(Context& context, const CompanyOptions& options) {
  session::Session& session = context.Installation();
  std::string code = options.cod_fiscal;
  if (!companies::LeaveCodFiscal(session, code)) return kRefused;
  RefuseApostrophe("Codul fiscal", code);
  companies::Fields fields = companies::NewCompany();
  Assign(fields, options.fields);
  fields.Set("Cod_Fiscal", code);
  fields.Set("Nume_Firma", options.nume);
  return companies::CreateCompany(session, fields) ? kDone : kRefused;
}

int ListCompanies(Context& context) {
  ResultTable table{{"Nume_Firma", "Cod_Fiscal", "DataBaseFile"}, {}};
  for (const companies::ListedCompany& company : companies::ListCompanies(context.Installation())) {
    table.rows.push_back({company.Nume_Firma, company.Cod_Fiscal, company.DataBaseFile});
  }
  context.Write(table);
  return kDone;
}

int SetDefaults(Context& context, const CompanyOptions& options) {
  session::Session& session = context.Company(options.cod_fiscal);
  companies::Fields fields = companies::ReadDefaults(session);
  Assign(fields, options.fields);
  return companies::SaveDefaults(session, fields) ? kDone : kRefused;
}

}  // namespace

void AddCompanyCommands(CLI::App& app, Context& context) {
  CLI::App* company = app.add_subcommand("company", "Registrul firmelor");
  company->require_subcommand(1)->fallthrough();
  auto options = std::make_shared<CompanyOptions>();

  CLI::App* add = company->add_subcommand("add", "Inregistreaza o firma")->fallthrough();
  add->add_option("--cod-fiscal", options->cod_fiscal, "Cod de inregistrare fiscala")->required();
  add->add_option("--nume", options->nume, "Numele firmei")->required();
  add->add_option("--field", options->fields, "Alta coloana a registrului, Coloana=Valoare")
      ->allow_extra_args(false);
  add->callback([&context, options] {
    context.action = [&context, options] { return AddCompany(context, *options); };
  });

  CLI::App* list = company->add_subcommand("list", "Firmele inregistrate")->fallthrough();
  list->callback([&context] { context.action = [&context] { return ListCompanies(context); }; });

  CLI::App* defaults = app.add_subcommand("defaults", "Valorile implicite ale firmei");
  defaults->require_subcommand(1)->fallthrough();
  auto values = std::make_shared<CompanyOptions>();
  CLI::App* set = defaults->add_subcommand("set", "Schimba valori implicite")->fallthrough();
  set->add_option("--company", values->cod_fiscal, "Codul fiscal al firmei")->required();
  set->add_option("VALUES", values->fields, "Coloana=Valoare")->required();
  set->callback(
      [&context, values] { context.action = [&context, values] { return SetDefaults(context, *values); }; });
}

}  // namespace cli
