#include "declarations/export.h"

#include "tariff/codes.h"
#include "tariff/lookup.h"

namespace declarations {
namespace {

constexpr char kLogName[] = "Export XML";

constexpr char kVersionColumns[] =
    "SELECT CountryVer,EuCountryVer,CnVer,ModeOfTransportVer,DeliveryTermsVer,NatureOfTransactionAVer,"
    "NatureOfTransactionBVer,CountyVer,LocalityVer,UnitVer FROM InsCodeVersions WHERE ";

constexpr char kItemColumns[] =
    "SELECT TIP,Cod_Fiscal,Anul,Luna,Pozitia,Cod_NC,Descriere1,Tara_Orig,Tara_Exp,Tara_Dest,Val_Fiscala1,"
    "Val_Stat1,Net1,Cantitate1,Cod_UMS,Val_UMS1,Nat_Tranz,Incoterms,Mod_Transp";

/// The keyword stands doubled on purpose: the engine refuses the statement, and the file of a period without
/// a version row has no version lines.
std::string OpenVersions() {
  return fmt::format("SELECT {}Anul_End IS NULL AND Luna_End IS NULL", kVersionColumns);
}

/// Reads the item query's rows without copying texts where they are texts already.
class ItemReader {
 public:
  explicit ItemReader(const store::Recordset& rows) : rows_(&rows) {
    for (std::size_t i = 0; i < kTexts.size(); ++i) texts_[i] = rows.FindField(kTexts[i].first);
    for (std::size_t i = 0; i < kNumbers.size(); ++i) numbers_[i] = rows.FindField(kNumbers[i].first);
    pozitia_ = rows.FindField("Pozitia");
  }

  Item Current() {
    Item item;
    for (std::size_t i = 0; i < kTexts.size(); ++i) item.*kTexts[i].second = Text(texts_[i], scratch_[i]);
    for (std::size_t i = 0; i < kNumbers.size(); ++i) {
      if (numbers_[i] >= 0) item.*kNumbers[i].second = rows_->Get(numbers_[i]).ToDouble();
    }
    if (pozitia_ >= 0) item.Pozitia = rows_->Get(pozitia_).ToInteger();
    return item;
  }

 private:
  static constexpr std::array<std::pair<const char*, std::string_view Item::*>, 10> kTexts = {{
      {"Cod_NC", &Item::Cod_NC},
      {"Nat_Tranz", &Item::Nat_Tranz},
      {"Incoterms", &Item::Incoterms},
      {"Mod_Transp", &Item::Mod_Transp},
      {"Tara_Orig", &Item::Tara_Orig},
      {"Tara_Exp", &Item::Tara_Exp},
      {"Tara_Dest", &Item::Tara_Dest},
      {"Cod_UMS", &Item::Cod_UMS},
      {"Country_VAT_ID", &Item::Country_VAT_ID},
      {"VAT_ID1", &Item::VAT_ID1},
  }};
  static constexpr std::array<std::pair<const char*, double Item::*>, 4> kNumbers = {{
      {"Val_Fiscala1", &Item::Val_Fiscala1},
      {"Val_Stat1", &Item::Val_Stat1},
      {"Net1", &Item::Net1},
      {"Val_UMS1", &Item::Val_UMS1},
  }};

  std::string_view Text(int field, std::string& scratch) {
    if (field < 0 || rows_->IsNull(field)) return "";
    const store::FieldInfo& info = rows_->field(field);
    if (info.typed && info.type == store::ColumnType::kText) return rows_->TextView(field);
    scratch = rows_->Get(field).ToText();
    return scratch;
  }

  const store::Recordset* rows_;
  std::array<int, kTexts.size()> texts_{};
  std::array<int, kNumbers.size()> numbers_{};
  int pozitia_ = -1;
  std::array<std::string, kTexts.size()> scratch_;
};

void WriteItems(session::Session& session, const ExportRequest& request, XmlWriter& writer, Review& review) {
  store::PassOver(session.host.errors, kLogName, [&] {
    store::Recordset rows = session.company.Query(ItemQuery(
        {request.identity.TIP, session.current.Cod_Fiscal, request.identity.Anul, request.identity.Luna},
        request.Check_XML_Detaliat));
    const std::int64_t count = rows.record_count();
    const bool with_partner = !request.identity.arrivals() && request.identity.Anul >= 2015;
    writer.ExpectItems(count);
    ItemReader reader(rows);
    for (; !rows.eof(); rows.MoveNext()) {
      const Item item = reader.Current();
      writer.AddItem(item);
      review.LookAt(item, writer.item_count(), request.Check_ValStatistica, with_partner);
      session.host.progress.Update("Generare fisier Intrastat",
                                   static_cast<int>(writer.item_count() * 100LL / count));
    }
  });
}

}  // namespace

std::string_view ItemView(const Identity& identity, bool detailed) {
  if (detailed) return "Intrastat_Sursa_Generare_Detaliu";
  const bool with_partner = !identity.arrivals() && identity.Anul >= 2015;
  return with_partner ? "Intrastat_Sursa_Generare_O" : "Intrastat_Sursa_Generare";
}

std::string ItemQuery(const Identity& identity, bool detailed) {
  const std::string_view view = ItemView(identity, detailed);
  const std::string filter = IdentityFilter(identity);
  if (detailed) {
    return fmt::format("{},VAT_ID1,Country_VAT_ID FROM {}{}", kItemColumns, view, filter);
  }
  if (view.ends_with("_O")) {
    return fmt::format("{}, VAT_ID1,Country_VAT_ID FROM {}{}", kItemColumns, view, filter);
  }
  return fmt::format("{} FROM {}{} ORDER BY Cod_NC", kItemColumns, view, filter);
}

CodeVersions ReadCodeVersions(session::Session& session, const Identity& identity) {
  CodeVersions versions;
  const auto read = [&](const std::string& statement) {
    store::PassOver(session.host.errors, kLogName, [&] {
      const store::Recordset row = session.common.Query(statement);
      if (row.record_count() == 0) return;
      for (int i = 0; i < row.field_count(); ++i) {
        versions.emplace_back(row.field(i).name, row.Get(i).ToText());
      }
    });
  };
  read(kVersionColumns + tariff::VersionCondition(identity.Anul, identity.Luna));
  if (versions.empty()) read(OpenVersions());
  return versions;
}

void LookAtPlaces(session::Session& session, const Header& header, Review& review) {
  if (!header.Check_Dec_Tert) return;
  const auto look = [&](const char* where, const std::string& code, const char* list) {
    if (store::IsEmpty(code)) return;
    store::PassOver(session.host.errors, kLogName, [&] {
      store::Recordset rows = session.company.Query(list);
      while (!rows.eof() && rows.Get(0).ToText() != code) rows.MoveNext();
      if (rows.eof()) review.UnknownPlace(where, code);
    });
  };
  look("TXT_Judet_Dec", header.TXT_Judet_Dec, tariff::kCountiesList);
  look("TXT_Oras_Dec", header.TXT_Oras_Dec, tariff::kTownsList);
}

std::string OutputFolder(session::Session& session, const ExportCallbacks& callbacks) {
  // Reading makes an empty setting "\".
  const std::string& set = session.settings.DirectorSalvare;
  if (!set.empty() && set != "\\") return platform::WithBackslash(set);
  const std::string chosen = callbacks.choose_folder ? callbacks.choose_folder() : "";
  if (!store::IsEmpty(chosen)) return platform::WithBackslash(chosen);
  session.host.prompter.Error(
      "Directorul de salvare al declaratiilor nu este stabilit (setarea DirectorSalvare)");
  return "";
}

ExportResult Finish(session::Session& session, const std::string& path, std::string_view text,
                    const std::vector<Finding>& findings, const ExportCallbacks& callbacks) {
  if (!findings.empty() && callbacks.review && !callbacks.review(findings)) {
    return {ExportOutcome::kGivenUp, ""};
  }
  try {
    session.host.files.Replace(path, text);
  } catch (const platform::FileError& error) {
    session.host.errors.Write(kLogName, error.what());
    session.host.prompter.Error(error.what());
    return {ExportOutcome::kFailed, ""};
  }
  return {ExportOutcome::kWritten, path};
}

ExportResult ExportDeclaration(session::Session& session, ExportRequest& request,
                               const ExportCallbacks& callbacks) {
  const Identity& identity = request.identity;
  std::string report;
  if (!calc::Verifica_Declaratie(session, identity.TIP, static_cast<std::int16_t>(identity.Anul),
                                 static_cast<std::int16_t>(identity.Luna), request.Check_ValStatistica,
                                 callbacks.show_problems, &report)) {
    return {ExportOutcome::kProblems, "", std::move(report)};
  }
  const std::string folder = OutputFolder(session, callbacks);
  if (folder.empty()) return {ExportOutcome::kNoFolder, "", std::move(report)};

  Header& header = request.header;
  const Kind kind = KindOf(request.Combo_Tip);
  const CodeVersions versions = ReadCodeVersions(session, identity);
  Review review;
  XmlWriter writer(identity, kind, request.Check_ValStatistica);
  writer.Prologue();
  writer.OpenRoot();
  writer.Versions(versions);
  header.TXT_NumeCompanie = FiledName(header.TXT_NumeCompanie);
  // The creation stamp is constant within a month, never the current date; deliberately so.
  writer.DeclarationHeader(header, "-12T12:10:10.625+02:00");
  review.LookAt(versions);
  review.LookAt(header);
  LookAtPlaces(session, header, review);
  WriteItems(session, request, writer, review);
  if (writer.item_count() == 0 && kind == Kind::kNew) review.NoItems();
  writer.CloseRoot();
  const std::string path = folder + DeclarationFileName(header.TXT_CodFiscal, identity, kind);
  ExportResult result = Finish(session, path, writer.text(), review.findings(), callbacks);
  result.report = std::move(report);
  return result;
}

}  // namespace declarations
