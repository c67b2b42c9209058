#include "declarations/review.h"

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

bool AllDigits(std::string_view text, std::size_t length) {
  return text.size() == length && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::string FindingsText(const std::vector<Finding>& findings, std::size_t limit) {
  std::string text;
  for (std::size_t i = 0; i < findings.size() && i < limit; ++i) {
    if (i > 0) text += "\r\n";
    text += findings[i].where + ": " + findings[i].what;
  }
  if (findings.size() > limit) {
    text += "\r\n... si inca " + std::to_string(findings.size() - limit);
  }
  return text;
}

void Review::WellFormed(std::string_view where, std::string_view value) {
  if (value.find_first_of("&<") != std::string_view::npos) {
    Add(std::string(where), "contine & sau <, fisierul nu ar fi XML valid");
  }
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 && c != '\t' && c != '\r' && c != '\n') {
      Add(std::string(where), "contine un caracter de control, fisierul nu ar fi XML valid");
      break;
    }
  }
  if (!platform::IsValidUtf8(value)) Add(std::string(where), "nu este text UTF-8 valid");
}

void Review::TenDigits(std::string_view where, std::string_view fiscal_code) {
  const std::string padded = PaddedFiscalCode(fiscal_code);
  if (!AllDigits(padded, 10)) Add(std::string(where), "codul fiscal nu are zece cifre: " + padded);
}

void Review::LookAt(const Header& header) {
  TenDigits("TXT_CodFiscal", header.TXT_CodFiscal);
  WellFormed("TXT_NumeCompanie", FiledName(header.TXT_NumeCompanie));
  if (store::IsEmpty(header.TXT_NumeCompanie)) Add("TXT_NumeCompanie", "nu este completat");
  for (const ContactField& contact : ContactFields()) {
    const std::string& value = header.*contact.field;
    if (store::IsEmpty(value)) {
      Add(std::string(contact.name),
          "nu este completat, in fisier apare " + std::string(contact.placeholder));
    } else if (value == contact.placeholder || value == contact.nil_placeholder) {
      Add(std::string(contact.name), "are doar textul implicit " + value);
    }
    WellFormed(contact.name, value);
  }
  if (!header.Check_Dec_Tert) return;
  TenDigits("TXT_CUI_Dec", header.TXT_CUI_Dec);
  const std::pair<std::string_view, const std::string*> kRequired[] = {
      {"TXT_Nume_Dec", &header.TXT_Nume_Dec},
      {"TXT_Strada_Dec", &header.TXT_Strada_Dec},
      {"TXT_Oras_Dec", &header.TXT_Oras_Dec},
      {"TXT_Judet_Dec", &header.TXT_Judet_Dec},
  };
  for (const auto& [field, value] : kRequired) {
    if (store::IsEmpty(*value)) Add(std::string(field), "nu este completat pentru declarantul tert");
    WellFormed(field, *value);
  }
  const std::pair<std::string_view, const std::string*> kOptional[] = {
      {"TXT_Nr_Dec", &header.TXT_Nr_Dec},
      {"TXT_BL_Dec", &header.TXT_BL_Dec},
      {"TXT_Sc_Dec", &header.TXT_Sc_Dec},
      {"TXT_Ap_Dec", &header.TXT_Ap_Dec},
      {"TXT_CodPostal_Dec", &header.TXT_CodPostal_Dec},
  };
  for (const auto& [field, value] : kOptional) WellFormed(field, *value);
}

void Review::LookAt(const CodeVersions& versions) {
  if (versions.empty())
    Add("InsCodeVersions", "nu exista versiuni ale nomenclatoarelor pentru aceasta perioada");
  for (const auto& [name, value] : versions) WellFormed(name, value);
}

void Review::LookAt(const Item& item, int order, bool with_statistical_value, bool with_partner) {
  const auto add = [&](std::string_view column, std::string what) {
    findings_.push_back({.where = fmt::format("pozitia {} ({})", order, item.Cod_NC),
                         .what = std::move(what),
                         .Record_ID = item.Pozitia,
                         .column = std::string(column)});
  };
  const auto whole_above_0 = [&](std::string_view column, std::string_view name, double value) {
    if (calc::WholeNumber(value) <= 0)
      add(column, std::string(name) + " ar fi 0 sau negativa dupa rotunjire");
  };
  if (!AllDigits(item.Cod_NC, 8)) add("Cod_NC", "codul vamal nu are opt cifre");
  whole_above_0("Val_Fiscala", "valoarea fiscala", item.Val_Fiscala1);
  if (with_statistical_value) whole_above_0("Val_Stat", "valoarea statistica", item.Val_Stat1);
  whole_above_0("Net", "masa neta", item.Net1);
  if (!store::IsEmpty(item.Cod_UMS)) whole_above_0("Val_UMS", "cantitatea suplimentara", item.Val_UMS1);
  // Codes that only partners have; the checker takes them for countries too.
  const std::pair<std::string_view, std::string_view> countries[] = {{"Tara_Exp", item.Tara_Exp},
                                                                     {"Tara_Dest", item.Tara_Dest}};
  for (const auto& [column, country] : countries) {
    if (country == "EL") add(column, "pentru Grecia codul de tara este GR, EL sta numai in codul de TVA");
    if (country == "QV") add(column, "QV nu este o tara, sta numai in codul de TVA");
  }
  // QV stands for a partner without a number.
  if (with_partner && (store::IsEmpty(item.Country_VAT_ID) ||
                       (store::IsEmpty(item.VAT_ID1) && item.Country_VAT_ID != "QV"))) {
    add("VAT_ID", "codul de TVA al partenerului nu este complet");
  }
  const std::pair<std::string_view, std::string_view> texts[] = {{"VAT_ID", item.VAT_ID1},
                                                                 {"VAT_ID", item.Country_VAT_ID},
                                                                 {"Cod_UMS", item.Cod_UMS},
                                                                 {"Incoterms", item.Incoterms}};
  for (const auto& [column, value] : texts) {
    if (value.find_first_of("&<") != std::string_view::npos) {
      add(column, "contine & sau <, fisierul nu ar fi XML valid");
    }
  }
}

}  // namespace declarations
