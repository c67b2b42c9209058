#include "databases.h"

#include "setup/setup.h"
#include "support/test_host.h"
#include "support/xls_writer.h"
#include "tariff/load_file.h"

namespace sql_tests {

namespace fs = std::filesystem;

struct Databases::Impl {
  test_support::TestHost host;
  store::Environment environment;
  int scratch = 0;
  bool installed = false;

  void Install();
  const std::string folder = "C:\\Declarix\\System\\DataBase\\";
  const std::string company_file = folder + "RO12345678.mdb";
  const std::string tariff_file = fmt::format("{}CN\\{}", folder, tariff::TariffFileName(2026));
  std::string Worksheet();
};

void Databases::Impl::Install() {
  if (installed) return;
  installed = true;
  host.prompter.AcceptAnything(false);
  std::string data = host.drives.FromHost(fs::path(DECLARIX_SOURCE_DIR) / "data");
  setup::LayDown(host, setup::kDefaultRoot, platform::WithBackslash(data));
  host.files.Copy(folder + "goala.mdb", company_file);
  store::Connection common(environment);
  common.Open(store::JetString(folder + "Comun.mdb"));
  common.Execute(
      "INSERT INTO Firme (Cod_Fiscal, Nume_Firma, DataBaseFile) "
      "VALUES ('RO12345678', 'Exemplu', 'RO12345678.mdb')");
}

/// A worksheet as users send them: codes as numbers, texts and zero-padded numbers in one column, gaps, a
/// heading with characters that the driver replaces and a blank one.
std::string Databases::Impl::Worksheet() {
  std::string path = "C:\\Import\\lines.xls";
  if (host.files.Exists(path)) return path;
  host.files.CreateFolders("C:\\Import\\");
  test_support::XlsWriter writer;
  test_support::XlsWriter::Sheet& sheet = writer.AddSheet("Sheet1");
  sheet.Row(0, "'Cod|'Tara|'Net [Kg]|'Data|'Valoare.lei");
  sheet.Row(1, "=84713000|'DE|=12.5|@46086|=100|'x");
  sheet.Row(2, "'8471.30 00|||@46087");
  sheet.Row(3, "09012100|'IT|~3");
  writer.Save(host.drives.ToHost(path).string());
  return path;
}

Databases::Databases() : impl_(std::make_unique<Impl>()) {
  impl_->environment.drives = &impl_->host.drives;
  impl_->environment.link_folder = [this] { return impl_->folder; };
}

Databases::~Databases() = default;

std::unique_ptr<store::Connection> Databases::Open(const std::string& name, const fs::path& folder) {
  auto connection = std::make_unique<store::Connection>(impl_->environment);
  std::size_t blank = name.find(' ');
  std::string kind = name.substr(0, blank), file = blank == std::string::npos ? "" : name.substr(blank + 1);
  if (!file.empty()) {
    if (file == "lines.xls") {
      std::string path = impl_->Worksheet();
      connection->Open(kind == "sheet" ? store::SampleSheetString(path) : store::ImportSheetString(path));
      return connection;
    }
    fs::path path = file.starts_with("reference/") ? fs::path(DECLARIX_SOURCE_DIR) / ".." / "shared" / file
                                                   : folder / file;
    if (!fs::exists(path)) return nullptr;
    std::string windows = impl_->host.drives.FromHost(fs::canonical(path));
    connection->Open(kind == "text"         ? store::TextFolderString(windows + "\\")
                     : kind == "sheet-imex" ? store::ImportSheetString(windows)
                                            : store::SampleSheetString(windows));
    return connection;
  }
  if (kind == "scratch") {
    fs::create_directories(impl_->host.drives.ToHost("C:\\Temp"));
    std::string path = fmt::format("C:\\Temp\\scratch{}.mdb", ++impl_->scratch);
    store::Connection::CreateDatabase(impl_->environment, path);
    connection->Open(store::JetString(path));
    return connection;
  }
  impl_->Install();
  if (kind == "common") {
    connection->Open(store::JetString(impl_->folder + "Comun.mdb"));
  } else if (kind == "company") {
    connection->Open(store::CompanyShapeString(impl_->company_file));
    connection->BindLink("HS8", impl_->tariff_file, "HS8");
  } else if (kind == "tariff") {
    connection->Open(store::JetString(impl_->tariff_file));
  } else {
    throw std::runtime_error("no database " + name);
  }
  connection->Begin();  // closing it rolls back what the file changes
  return connection;
}

}  // namespace sql_tests
