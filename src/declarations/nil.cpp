#include "declarations/nil.h"

#include "platform/encoding.h"

namespace declarations {
namespace {

constexpr char kProductAddress[] = "https://declarix.example/";

/// Spaces at either end removed.
std::string Trimmed(std::string_view text) { return std::string(platform::Trim(text)); }

int Number(const std::string& text) { return static_cast<int>(store::Value(text).ToInteger()); }

}  // namespace

std::optional<Identity> DialogIdentity(session::Session& session, const AddDialog& dialog) {
  bool complete = true;
  const std::pair<const char*, const std::string*> kRequired[] = {
      {"Luna", &dialog.Txt_Luna}, {"Anul", &dialog.Txt_Anul}, {"Fel", &dialog.Txt_Fel}};
  for (const auto& [label, value] : kRequired) {
    if (!store::IsEmpty(*value)) continue;
    platform::ShowRequired(session.host.prompter, label);
    complete = false;
  }
  if (!complete) return std::nullopt;
  const int year = Number(dialog.Txt_Anul), month = Number(dialog.Txt_Luna);
  if (year < 2000 || year > 2099) {
    session.host.prompter.Error(fmt::format("Anul {} nu este intre 2000 si 2099", dialog.Txt_Anul));
    return std::nullopt;
  }
  if (month < 1 || month > 12) {
    session.host.prompter.Error(fmt::format("Luna {} nu exista", dialog.Txt_Luna));
    return std::nullopt;
  }
  return Identity{platform::ToUpper(dialog.Txt_Fel) == "ACHIZITIE" ? "I" : "O", session.current.Cod_Fiscal,
                  year, month};
}

std::optional<EditorOpening> ConfirmDeclaration(session::Session& session, const AddDialog& dialog) {
  const std::optional<Identity> identity = DialogIdentity(session, dialog);
  if (!identity) return std::nullopt;
  EditorOpening opening;
  opening.identity = *identity;
  // The company's file holds only this company's lines, so the fiscal code is left out.
  opening.modify = session.company.Any("SELECT Record_ID FROM Intrastat" + EditorFilter(*identity));
  if (opening.modify) session.host.prompter.Info("Aceasta declaratie exista deja");
  opening.title = fmt::format(
      "{}{} - {} / {}", opening.modify ? "Modificare Declaratie : " : "Adauga Declaratie : ", identity->TIP,
      identity->Anul, identity->Luna);
  return opening;
}

Header NilHeader(session::Session& session) {
  Header header = ReadEditorDefaults(session).header;
  std::string person = Trimmed(header.TXT_Nume_Prenume);
  if (person.empty()) person = "Nume Prenume";
  const std::size_t blank = person.find(' ');
  header.TXT_Nume_Prenume = person.substr(0, blank);
  header.TXT_Nume_Pers = blank == std::string::npos ? "" : Trimmed(person.substr(blank));
  if (store::IsEmpty(header.TXT_PozitieCompanie)) header.TXT_PozitieCompanie = "responsabil intrastat";
  return header;
}

ExportResult WriteNilDeclaration(session::Session& session, const Identity& identity, const Header& header,
                                 const ExportCallbacks& callbacks) {
  const std::string folder = OutputFolder(session, callbacks);
  if (folder.empty()) return {ExportOutcome::kNoFolder, ""};
  const CodeVersions versions = ReadCodeVersions(session, identity);
  XmlWriter writer(identity, Kind::kNil, false);
  writer.Prologue();
  writer.Comment(
      fmt::format("generated with Declarix software vers: {}; {}", DECLARIX_VERSION, kProductAddress));
  writer.OpenRoot();
  writer.Versions(versions);
  // A constant stamp of its own, distinct from the one of declarations with items.
  writer.DeclarationHeader(header, "-12T16:23:35.625+02:00");
  writer.CloseRoot();
  Review review;
  review.LookAt(versions);
  review.LookAt(header);
  LookAtPlaces(session, header, review);
  const store::Value lines = session.company.Scalar("SELECT COUNT(*) FROM Intrastat" + EditorFilter(identity))
                                 .value_or(store::Value());
  if (lines.ToInteger() > 0) review.HasLines(lines.ToInteger());
  const std::string path = folder + DeclarationFileName(header.TXT_CodFiscal, identity, Kind::kNil);
  return Finish(session, path, writer.text(), review.findings(), callbacks);
}

}  // namespace declarations
