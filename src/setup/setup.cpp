#include "setup/setup.h"

#include <fmt/format.h>

#include <map>

#include "platform/encoding.h"
#include "session/settings.h"
#include "setup/delivered_tariff.h"
#include "store/layout/layout.h"
#include "tariff/load_file.h"
#include "tariff/load_versions.h"

namespace setup {
namespace {

namespace layout = store::layout;

constexpr const char* kFolders[] = {"System\\",
                                    "System\\DataBase\\",
                                    "System\\DataBase\\CompactDB\\",
                                    "System\\DataBase\\CN\\",
                                    "System\\CursBNR\\",
                                    "System\\Verificare\\",
                                    "System\\ReportDefinition\\",
                                    "System\\DeclaratiiXML\\",
                                    "System\\SQL\\",
                                    "System\\Default\\",
                                    "System\\ComboBox\\",
                                    "System\\Erori\\"};

/// Folders of data\fisiere and where their files go.
constexpr std::pair<const char*, const char*> kPlainFiles[] = {
    {"CursBNR\\", "System\\CursBNR\\"},
    {"ComboBox\\", "System\\ComboBox\\"},
    {"ReportDefinition\\", "System\\ReportDefinition\\"},
    {"CN\\", "System\\DataBase\\CN\\"}};

/// Output folders of the institute's own program, which the default of `DirectorSalvare` prefers.
constexpr const char* kInstituteFolders[] = {"C:\\Program Files\\INTRASTAT\\declaratii\\",
                                             "C:\\Program Files (x86)\\INTRASTAT\\declaratii\\"};

std::string EscapeXml(std::string_view text) {
  std::string escaped = platform::ReplaceAll(text, "&", "&amp;");
  return platform::ReplaceAll(escaped, "<", "&lt;");
}

class Layer {
 public:
  Layer(platform::Host host, std::string_view root, std::string_view data_folder)
      : host_(host),
        root_(platform::WithBackslash(root)),
        data_(platform::WithBackslash(data_folder)),
        database_(root_ + "System\\DataBase\\"),
        environment_{.drives = &host.files.drives(), .link_folder = [folder = database_] { return folder; }} {
  }

  Outcome Run() {
    AddFolders();
    RemoveDrafts();
    AddPlainFiles();
    AddTariffs();
    AddCommon();
    AddTemplate();
    CompleteCompanies();
    AddSettings();  // last: the program starts only once everything else is there
    return std::move(outcome_);
  }

 private:
  void AddFolders() {
    for (const char* folder : kFolders) {
      const std::string path = root_ + folder;
      if (host_.files.FolderExists(path)) continue;
      host_.files.CreateFolders(path);
      outcome_.added.push_back(path);
    }
  }

  /// Unfinished databases that a killed run left behind.
  void RemoveDrafts() {
    for (const std::string& folder : {database_, database_ + "CN\\"}) {
      for (const std::string& name : host_.files.List(folder)) {
        if (name.find(layout::kDraftSuffix) != std::string::npos) host_.files.Remove(folder + name);
      }
    }
  }

  void AddPlainFiles() {
    for (const auto& [from, to] : kPlainFiles) {
      const std::string source = data_ + "fisiere\\" + from;
      for (const std::string& name : host_.files.List(source)) {
        const std::string path = root_ + to + name;
        if (host_.files.Exists(path) && !IsFirstReports(name, path)) continue;
        host_.files.Copy(source + name, path);
        // A marker file changed today would say that today's rates have been fetched.
        if (name == "data.txt")
          host_.files.SetLastModified(path, std::chrono::sys_days{std::chrono::year{2000} / 1 / 1});
        outcome_.added.push_back(path);
      }
    }
  }

  /// The reports of the first version, which nothing could show yet: theirs have no identifier. Later ones
  /// may hold the user's own work and stay.
  bool IsFirstReports(std::string_view name, const std::string& path) const {
    if (name != "UE_Reports.xml") return false;
    const std::string reports = host_.files.Read(path);
    return reports.find("<Report Name=\"Lista\" Title=\"REPORT\"") != std::string::npos &&
           reports.find("<Report Id=") == std::string::npos;
  }

  void AddTariffs() {
    const layout::Database tariff_layout = layout::Read(host_.files, data_, "tarif");
    const std::string folder = database_ + "CN\\";
    for (const std::string& name : host_.files.List(folder)) {
      if (name.ends_with(".mdb")) CompleteFile(folder + name, tariff_layout);
    }
    for (const int year : DeliveredTariffYears(host_.files, data_)) {
      const std::string path = folder + tariff::TariffFileName(year);
      if (host_.files.Exists(path)) continue;
      const tariff::Nomenclature nomenclature = ReadDeliveredTariff(host_.files, data_, year);
      Naming(path, [&] {
        tariff::WriteTariffFile(environment_, host_.files, path, tariff_layout, nomenclature, year);
      });
      outcome_.added.push_back(path);
    }
  }

  void AddCommon() {
    const layout::Database common_layout = layout::Read(host_.files, data_, "comun");
    const std::string path = database_ + "Comun.mdb";
    AddDatabase(path, common_layout, [&](store::Connection& connection) {
      for (const layout::Table& table : common_layout.tables) {
        const std::string list = data_ + "liste\\" + table.name + ".csv";
        if (!host_.files.Exists(list)) continue;
        const layout::Csv csv = layout::ReadCsv(host_.files, list);
        const int added = table.name == "InsCodeVersions" ? AddVersions(connection, csv)
                                                          : layout::AddMissingRows(connection, table, csv);
        if (added > 0) lists_.push_back(fmt::format("{}: {}, {} inregistrari", path, table.name, added));
      }
    });
  }

  /// Years that no row of theirs holds yet; the newest one of a new installation stays in force.
  int AddVersions(store::Connection& connection, const layout::Csv& csv) {
    int added = 0;
    for (const auto& row : csv.rows) {
      const std::string& year_text = row[csv.Column("Anul")];
      const int year = std::atoi(year_text.c_str());
      if (connection.Any(fmt::format("SELECT CnVer FROM InsCodeVersions WHERE CnVer='{0}' AND Anul<={0} AND "
                                     "(Anul_End IS NULL OR Anul_End>={0})",
                                     year))) {
        continue;
      }
      std::map<std::string, std::string> versions;
      for (std::size_t i = 0; i < row.size(); ++i) {
        if (csv.header[i] != "Anul") versions[csv.header[i]] = row[i];
      }
      tariff::RegisterYear(connection, year, tariff::TariffFileName(year), versions);
      ++added;
    }
    return added;
  }

  void AddTemplate() {
    company_layout_ = layout::Read(host_.files, data_, "goala");
    AddDatabase(database_ + "goala.mdb", company_layout_, nullptr);
  }

  void CompleteCompanies() {
    std::vector<std::string> files;
    const std::string common_path = database_ + "Comun.mdb";
    Naming(common_path, [&] {
      store::Connection common(environment_);
      common.Open(store::JetString(common_path));
      for (store::Recordset rows = common.Query("SELECT DataBaseFile FROM Firme"); !rows.eof();
           rows.MoveNext()) {
        files.push_back(rows["DataBaseFile"].ToText());
      }
    });
    for (const std::string& file : files) {
      if (file.empty() || !host_.files.Exists(database_ + file)) continue;
      try {
        CompleteFile(database_ + file, company_layout_);
      } catch (const platform::FileError& error) {  // one company's trouble is not the others'
        outcome_.notes.push_back(error.what());
      }
    }
  }

  void AddSettings() {
    const std::string path = session::SettingsPath();
    if (host_.files.Exists(path)) {
      const std::string configured =
          session::ReadSetting(host_, path, session::kSectionFileLocation, "DataBase");
      if (!platform::EqualsNoCase(platform::WithBackslash(configured), database_)) {
        outcome_.notes.push_back(fmt::format("{} exista si foloseste alt director: {}", path, configured));
      }
      return;
    }
    std::string text;
    for (const std::string& line : platform::SplitLines(host_.files.Read(data_ + "Settings.xml"))) {
      const bool institute = line.find("<DirectorSalvare>") != std::string::npos && InstituteFolderExists();
      if (!institute) text += platform::ReplaceAll(line, "{RADACINA}", EscapeXml(root_)) + "\r\n";
    }
    host_.files.CreateFolders(platform::FolderOf(path));
    host_.files.Replace(path, text);
    outcome_.added.push_back(path);
  }

  bool InstituteFolderExists() const {
    return std::any_of(std::begin(kInstituteFolders), std::end(kInstituteFolders),
                       [&](const char* folder) { return host_.files.FolderExists(folder); });
  }

  /// Builds a missing database with its rows, or completes one that is there.
  void AddDatabase(const std::string& path, const layout::Database& database,
                   const std::function<void(store::Connection&)>& fill) {
    lists_.clear();
    if (!host_.files.Exists(path)) {
      Naming(path, [&] { layout::Build(environment_, host_.files, path, database, fill); });
      outcome_.added.push_back(path);
      return;
    }
    CompleteFile(path, database, fill);
    outcome_.added.insert(outcome_.added.end(), lists_.begin(), lists_.end());
  }

  void CompleteFile(const std::string& path, const layout::Database& database,
                    const std::function<void(store::Connection&)>& fill = nullptr) {
    Naming(path, [&] {
      store::Connection connection(environment_);
      connection.Open(store::JetString(path));
      store::Transaction transaction(connection);
      for (const std::string& name : layout::Complete(connection, database)) {
        outcome_.added.push_back(fmt::format("{}: {}", path, name));
      }
      if (fill) fill(connection);
      transaction.Commit();
    });
  }

  /// Turns a database error into one that names the file.
  void Naming(const std::string& path, const std::function<void()>& step) {
    try {
      step();
    } catch (const store::Error& error) {
      throw platform::FileError(path, fmt::format("Fisierul : {}: {}", path, error.description()));
    }
  }

  platform::Host host_;
  std::string root_, data_, database_;
  store::Environment environment_;
  layout::Database company_layout_;
  std::vector<std::string> lists_;
  Outcome outcome_;
};

}  // namespace

Outcome LayDown(platform::Host host, std::string_view root, std::string_view data_folder) {
  return Layer(host, root, data_folder).Run();
}

}  // namespace setup
