#include <ostream>

#include "cli/batch/context.h"
#include "platform/encoding.h"
#include "tariff/lookup.h"

namespace cli {
namespace {

struct SqlOptions {
  std::string file, db, company;
  bool create = false;
  int year = 0, month = 0;
  std::vector<std::string> statements;
};

/// First word of a statement, in capitals.
std::string Verb(std::string_view statement) {
  const std::size_t begin = statement.find_first_not_of(" \t\r\n(");
  if (begin == std::string_view::npos) return "";
  std::size_t end = begin;
  while (end < statement.size() && std::isalpha(static_cast<unsigned char>(statement[end])) != 0) ++end;
  return platform::ToUpper(statement.substr(begin, end - begin));
}

bool Answers(std::string_view statement) {
  const std::string verb = Verb(statement);
  return verb == "SELECT" || verb == "SHAPE" || verb == "PARAMETERS";
}

/// Names the error, after whatever the statements before it answered.
int Failed(Context& context, const store::Error& error) {
  context.out().flush();
  context.err() << "eroare " << error.number() << ": " << error.description() << '\n';
  return kRefused;
}

/// Runs the statements in turn on one connection; the first error ends the run.
int RunStatements(Context& context, store::Connection& connection,
                  const std::vector<std::string>& statements) {
  const char* separator = "";
  if (context.json) context.out() << '[';
  int status = kDone;
  for (const std::string& statement : statements) {
    try {
      if (Answers(statement)) {
        const store::Recordset rows = connection.Query(statement);
        if (context.json) {
          context.out() << separator;
          WriteJson(context.out(), rows);
        } else {
          WritePlain(context.out(), rows);
        }
      } else {
        const std::int64_t affected = connection.Execute(statement);
        if (context.json) {
          context.out() << separator << "{\"affected\": " << affected << '}';
        } else {
          context.out() << "affected " << affected << '\n';
        }
      }
      separator = ",\n";
    } catch (const store::Error& error) {
      status = Failed(context, error);
      break;
    }
  }
  if (context.json) context.out() << "]\n";
  return status;
}

/// How a file is opened: databases by their string, worksheets and delimited files through their drivers.
std::string FileConnectionString(const std::string& path) {
  const std::string lower = platform::ToLower(path);
  if (lower.ends_with(".xls") || lower.ends_with(".xlsx") || lower.ends_with(".ods"))
    return store::ImportSheetString(path);
  if (lower.ends_with(".txt") || lower.ends_with(".csv") || lower.ends_with(".tab")) {
    return store::TextFolderString(platform::FolderOf(path));
  }
  return store::JetString(path);
}

int RunOnFile(Context& context, const SqlOptions& options) {
  store::Environment environment;
  environment.drives = &context.drives();
  const std::string path = context.WindowsPath(options.file);
  store::Connection connection(environment);
  try {
    if (options.create) store::Connection::CreateDatabase(environment, path);
    connection.Open(FileConnectionString(path));
  } catch (const store::Error& error) {
    return Failed(context, error);
  }
  return RunStatements(context, connection, options.statements);
}

int RunOnInstallation(Context& context, SqlOptions options) {
  if (options.db == "company") {
    return RunStatements(context, context.Company(options.company).company, options.statements);
  }
  session::Session& session =
      options.company.empty() ? context.Installation() : context.Company(options.company);
  if (options.db == "common") return RunStatements(context, session.common, options.statements);
  if (options.month == 0) options.month = session.host.clock.Now().month;
  if (!tariff::ConexiuneTarif(session, options.month, options.year)) return kRefused;
  return RunStatements(context, session.tariff, options.statements);
}

}  // namespace

void AddSqlCommand(CLI::App& app, Context& context) {
  auto options = std::make_shared<SqlOptions>();
  CLI::App* sql = app.add_subcommand("sql", "Ruleaza comenzi in dialectul bazei de date, pe rand");
  CLI::Option* file =
      sql->add_option("--file", options->file, "Baza de date, foaie de lucru sau fisier text");
  sql->add_flag("--create", options->create, "Creeaza baza de date")->needs(file);
  CLI::Option* db = sql->add_option("--db", options->db, "O baza de date a instalarii")
                        ->check(CLI::IsMember({"common", "company", "tariff"}))
                        ->excludes(file);
  sql->add_option("--company", options->company, "Codul fiscal al firmei")->needs(db);
  sql->add_option("--year", options->year, "Anul tarifului")->needs(db)->check(CLI::Range(1900, 2999));
  sql->add_option("--month", options->month, "Luna tarifului")->needs(db)->check(CLI::Range(1, 12));
  sql->add_option("STATEMENT", options->statements)->required();
  sql->callback([&context, options] {
    if (options->file.empty() && options->db.empty()) throw CLI::RequiredError("--file sau --db");
    if (options->db == "company" && options->company.empty()) throw CLI::RequiredError("--company");
    context.action = [&context, options] {
      return options->file.empty() ? RunOnInstallation(context, *options) : RunOnFile(context, *options);
    };
  });
}

}  // namespace cli
