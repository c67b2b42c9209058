#include "tariff/load.h"

#include <fmt/format.h>

#include "platform/encoding.h"
#include "tariff/load_file.h"
#include "tariff/load_nomenclature.h"
#include "tariff/load_versions.h"
#include "tariff/lookup.h"

namespace tariff {
namespace {

constexpr int kFirstYear = 1988;  // the combined nomenclature begins
constexpr int kLastYear = 2099;

/// Frees a file that the tariff connection and, through it, the company hold, so that it can be replaced, and
/// opens it again at the end.
class TariffPause {
 public:
  TariffPause(session::Session& session, std::string_view path) : session_(session) {
    paused_ = session.tariff.is_open() && platform::EqualsNoCase(session.tariff.path(), path);
    if (!paused_) return;
    session.tariff.Close();
    if (session.company.is_open()) session.company.UnbindLink("HS8");
  }
  ~TariffPause() {
    if (!paused_) return;
    try {
      session_.tariff.Open(session_.tariff_connection_string);
      BindCodesForCompany(session_);
    } catch (const store::Error& error) {
      session_.host.errors.Write("tarif", error.description());
    }
  }
  TariffPause(const TariffPause&) = delete;
  TariffPause& operator=(const TariffPause&) = delete;

 private:
  session::Session& session_;
  bool paused_;
};

/// The user asked to stop.
struct Stopped {};

void Count(const Nomenclature& nomenclature, LoadOutcome& outcome) {
  outcome.version = nomenclature.version;
  outcome.sections = static_cast<int>(nomenclature.sections.size());
  outcome.chapters = static_cast<int>(nomenclature.chapters.size());
  outcome.headings = static_cast<int>(nomenclature.headings.size());
  outcome.subheadings = static_cast<int>(nomenclature.subheadings.size());
  outcome.codes = static_cast<int>(nomenclature.goods.size());
  outcome.codes_with_unit =
      static_cast<int>(std::count_if(nomenclature.goods.begin(), nomenclature.goods.end(),
                                     [](const Nomenclature::Goods& goods) { return !goods.unit.empty(); }));
}

}  // namespace

LoadOutcome LoadNomenclature(session::Session& session, std::string_view data_folder,
                             std::string_view xml_path, int year,
                             const std::function<bool(const std::string& version)>& accept) {
  LoadOutcome outcome;
  const auto fail = [&](std::string_view reason) {
    outcome.error = fmt::format("Fisierul : {} nu poate fi incarcat: {}", xml_path, reason);
    return outcome;
  };
  if (year < kFirstYear || year > kLastYear) return fail(fmt::format("anul {} nu este valabil", year));
  platform::Files& files = session.host.files;
  const auto tell = [&session](std::string_view step, int percent) {
    session.host.progress.Update(step, percent);
    if (session.host.progress.Cancelled()) throw Stopped{};
  };
  try {
    if (!files.Exists(xml_path)) return fail("nu exista");
    tell("Se citeste nomenclatorul", 0);
    std::string xml = files.Read(xml_path);
    const NomenclatureReading reading = ReadNomenclature(xml);
    if (!reading.error.empty()) return fail(reading.error);
    const std::string& version = reading.nomenclature.version;
    if (accept && !version.empty() && version != std::to_string(year) && !accept(version)) throw Stopped{};

    const store::Environment environment{.drives = &files.drives(),
                                         .link_folder = [&session] { return session.settings.DataBase; }};
    const std::string file = TariffFileName(year);
    const std::string path = session.settings.DataBase + "CN\\" + file;
    const store::layout::Database layout = store::layout::Read(files, data_folder, "tarif");
    files.CreateFolders(platform::FolderOf(path));
    // The version row is committed last: whatever fails before leaves the register as it was, and a tariff
    // file that no row names yet harms nobody.
    store::Transaction transaction(session.common);
    RegisterYear(session.common, year, file);
    {
      const TariffPause pause(session, path);
      WriteTariffFile(environment, files, path, layout, reading.nomenclature, year,
                      [&tell](int percent) { tell("Se scrie tariful", 20 + percent * 8 / 10); });
    }
    transaction.Commit();
    outcome.file = file;
    Count(reading.nomenclature, outcome);
    return outcome;
  } catch (const Stopped&) {
    outcome.stopped = true;
    return outcome;
  } catch (const platform::FileError& error) {
    return fail(error.what());
  } catch (const store::Error& error) {
    return fail(error.description());
  }
}

}  // namespace tariff
