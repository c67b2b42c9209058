#include "declarations/editor/code_book.h"

#include "platform/encoding.h"

namespace declarations {
namespace {

/// The checker also takes the codes that only VAT numbers and partners without one have (EL, QV).
constexpr std::string_view kPartnerCodes = "SELECT COD_TARA, Tara_DESC FROM Tari_UE WHERE COD_TARA='";

}  // namespace

const CodeBook::Entry& CodeBook::Look(const tariff::CodeCheck& codes, std::string_view code) {
  std::unordered_map<std::string, Entry>& list = lists_[&codes];
  const auto [entry, is_new] = list.try_emplace(std::string(code));
  if (is_new) entry->second = Ask(codes, entry->first);
  return entry->second;
}

const CodeBook::Entry& CodeBook::LookAnew(const tariff::CodeCheck& codes, std::string_view code) {
  std::unordered_map<std::string, Entry>& list = lists_[&codes];
  const auto found = list.find(std::string(code));
  if (found != list.end() && !found->second.asked) list.erase(found);
  return Look(codes, code);
}

CodeBook::Entry CodeBook::Ask(const tariff::CodeCheck& codes, const std::string& code) {
  Entry entry;
  entry.asked = true;
  if (code.find('\'') != std::string::npos) return entry;  // no list has such codes
  const bool went_through = store::PassOver(session_->host.errors, "Frm_INTRASTAT", [&] {
    store::Recordset row = session_->company.Query(tariff::CheckStatement(codes, code));
    if (row.record_count() == 0 && codes.columns.front() == "Tara_Exp") {
      row = session_->company.Query(std::string(kPartnerCodes) + code + "'");
    }
    if (row.record_count() == 0) return;
    entry.known = true;
    entry.code = row.Get(0).ToText();
    entry.description = platform::Trim(row.Get(1).ToText());
    if (codes.columns.front() != "Cod_NC") return;
    entry.description = platform::Trim(row["DESCRIERE"].ToText());
    entry.unit = row["UM_SUPL"].ToText();
    entry.has_unit = row["EXISTA_UM"].ToBoolean();
  });
  return went_through ? entry : Entry();
}

}  // namespace declarations
