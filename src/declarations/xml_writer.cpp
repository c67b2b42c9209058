#include "declarations/xml_writer.h"

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

std::string RootName(bool arrivals, Kind kind) {
  std::string root = "Ins";
  root += kind == Kind::kNew ? "New" : kind == Kind::kNil ? "Nill" : "Revised";
  root += arrivals ? "Arrival" : "Dispatch";
  return root;
}

std::string_view FileInfix(bool arrivals, Kind kind) {
  switch (kind) {
    case Kind::kNew:
      return arrivals ? "_A_" : "_D_";
    case Kind::kNil:
      return arrivals ? "_AN_" : "_DN_";
    case Kind::kRevised:
      break;
  }
  return arrivals ? "_AR_" : "_DR_";
}

std::string RefPeriod(const Identity& identity) {
  return std::to_string(identity.Anul) + (identity.Luna < 10 ? "-0" : "-") + std::to_string(identity.Luna);
}

/// Whether the last character reads as a number above zero.
bool HasSecondDigit(std::string_view Nat_Tranz) {
  return !Nat_Tranz.empty() && Nat_Tranz.back() >= '1' && Nat_Tranz.back() <= '9';
}

}  // namespace

Kind KindOf(std::string_view Combo_Tip) {
  return !Combo_Tip.empty() && Combo_Tip.front() == 'N' ? Kind::kNew : Kind::kRevised;
}

std::string PaddedFiscalCode(std::string_view fiscal_code) {
  std::string code = platform::ReplaceAll(fiscal_code, "RO", "");
  if (code.size() < 10) code.insert(0, 10 - code.size(), '0');
  return code;
}

std::string DeclarationFileName(std::string_view fiscal_code, const Identity& identity, Kind kind) {
  return PaddedFiscalCode(fiscal_code) + std::string(FileInfix(identity.arrivals(), kind)) +
         std::to_string(identity.Anul) + std::to_string(identity.Luna) + ".xml";
}

std::string FiledName(std::string_view company_name) {
  std::string name(company_name);
  for (char& c : name) {
    if (c == '&' || c == '!') c = '-';
  }
  return name;
}

const std::array<ContactField, 6>& ContactFields() {
  static constexpr std::array<ContactField, 6> kFields = {{
      {"LastName", "TXT_Nume_Prenume", &Header::TXT_Nume_Prenume, "LAST NAME", "Nume"},
      {"FirstName", "TXT_Nume_Pers", &Header::TXT_Nume_Pers, "FIRST NAME", "Prenume"},
      {"Email", "TXT_Email", &Header::TXT_Email, "EMAIL", ""},
      {"Phone", "TXT_Tel", &Header::TXT_Tel, "TELEFON", ""},
      {"Fax", "TXT_Fax", &Header::TXT_Fax, "FAX", ""},
      {"Position", "TXT_PozitieCompanie", &Header::TXT_PozitieCompanie, "FUNCTIE", "responsabil intrastat"},
  }};
  return kFields;
}

XmlWriter::XmlWriter(const Identity& identity, Kind kind, bool with_statistical_value)
    : identity_(identity), kind_(kind), with_statistical_value_(with_statistical_value) {}

void XmlWriter::Line(int indent, std::string_view text) {
  text_.append(static_cast<std::size_t>(indent), ' ');
  text_ += text;
  text_ += "\r\n";
}

void XmlWriter::Element(int indent, std::string_view name, std::string_view value) {
  text_.append(static_cast<std::size_t>(indent), ' ');
  for (const std::string_view part : {std::string_view("<"), name, std::string_view(">"), value,
                                      std::string_view("</"), name, std::string_view(">\r\n")}) {
    text_ += part;
  }
}

void XmlWriter::Open(int indent, std::string_view name) {
  Line(indent, std::string("<").append(name).append(">"));
}

void XmlWriter::Close(int indent, std::string_view name) {
  Line(indent, std::string("</").append(name).append(">"));
}

void XmlWriter::WholeNumberElement(int indent, std::string_view name, double value) {
  Element(indent, name, std::to_string(calc::WholeNumber(value)));
}

void XmlWriter::Prologue() { Line(0, R"(<?xml version="1.0" encoding="UTF-8" ?>)"); }

void XmlWriter::Comment(std::string_view text) { Line(0, std::string("<!-- ").append(text).append(" -->")); }

void XmlWriter::OpenRoot() {
  Line(0, "<" + RootName(identity_.arrivals(), kind_) + " SchemaVersion=\"1.0\" xmlns=\"" + kInsNamespace +
              "\">");
}

void XmlWriter::CloseRoot() { Close(0, RootName(identity_.arrivals(), kind_)); }

void XmlWriter::Versions(const CodeVersions& versions) {
  Line(0, "<InsCodeVersions>");
  for (const auto& [name, value] : versions) Element(9, name, value);
  // The version lines are one block with a line end of its own: an empty line has always stood here.
  Line(0, "");
  Line(0, "</InsCodeVersions>");
}

void XmlWriter::DeclarationHeader(const Header& header, std::string_view time) {
  Open(4, "InsDeclarationHeader");
  Element(8, "VatNr", PaddedFiscalCode(header.TXT_CodFiscal));
  Element(8, "FirmName", FiledName(header.TXT_NumeCompanie));
  Element(8, "RefPeriod", RefPeriod(identity_));
  Element(8, "CreateDt", RefPeriod(identity_).append(time));
  Open(8, "ContactPerson");
  for (const ContactField& contact : ContactFields()) {
    const std::string& value = header.*contact.field;
    Element(15, contact.element, store::IsEmpty(value) ? contact.placeholder : std::string_view(value));
  }
  Close(8, "ContactPerson");
  if (header.Check_Dec_Tert) {
    Open(8, "DTPDetails");
    Element(8, "VatNr", PaddedFiscalCode(header.TXT_CUI_Dec));
    Element(8, "FirmName", header.TXT_Nume_Dec);
    Open(8, "DTPAddress");
    Element(8, "Street", header.TXT_Strada_Dec);
    Element(8, "StreetNumber", header.TXT_Nr_Dec);
    Element(8, "Block", header.TXT_BL_Dec);
    Element(8, "Stairs", header.TXT_Sc_Dec);
    Element(8, "Apartment", header.TXT_Ap_Dec);
    if (!store::IsEmpty(header.TXT_Oras_Dec) && !store::IsEmpty(header.TXT_Judet_Dec)) {
      Element(8, "LocalityCode", header.TXT_Oras_Dec);
      Element(8, "CountyCode", header.TXT_Judet_Dec);
    }
    Element(8, "PostalCode", header.TXT_CodPostal_Dec);
    Close(8, "DTPAddress");
    Close(8, "DTPDetails");
  }
  Close(4, "InsDeclarationHeader");
}

void XmlWriter::AddItem(const Item& item) {
  const bool arrivals = identity_.arrivals();
  // From 2015 on dispatches name the origin and the partner.
  const bool partner = !arrivals && identity_.Anul >= 2015;
  const std::string_view element = arrivals ? "InsArrivalItem" : "InsDispatchItem";
  ++items_;
  Line(8, fmt::format("<{} OrderNr=\"{}\">", element, items_));
  Element(16, "Cn8Code", item.Cod_NC);
  WholeNumberElement(16, "InvoiceValue", item.Val_Fiscala1);
  if (with_statistical_value_) WholeNumberElement(16, "StatisticalValue", item.Val_Stat1);
  WholeNumberElement(16, "NetMass", item.Net1);
  Element(16, "NatureOfTransactionACode", platform::Utf8Prefix(item.Nat_Tranz, 1));
  // The B code is the whole value, not only its second digit: the institute wants it with the first.
  if (HasSecondDigit(item.Nat_Tranz)) Element(16, "NatureOfTransactionBCode", item.Nat_Tranz);
  Element(16, "DeliveryTermsCode", item.Incoterms);
  Element(16, "ModeOfTransportCode", item.Mod_Transp);
  if (arrivals || partner) Element(16, "CountryOfOrigin", item.Tara_Orig);
  if (!store::IsEmpty(item.Cod_UMS)) {
    Open(16, "InsSupplUnitsInfo");
    Element(22, "SupplUnitCode", item.Cod_UMS);
    WholeNumberElement(22, "QtyInSupplUnits", item.Val_UMS1);
    Close(16, "InsSupplUnitsInfo");
  }
  if (arrivals) {
    Element(16, "CountryOfConsignment", item.Tara_Exp);
  } else {
    Element(16, "CountryOfDestination", item.Tara_Dest);
  }
  if (partner) {
    Element(16, "PartnerCountryCode", item.Country_VAT_ID);
    Element(16, "PartnerVatNr", item.VAT_ID1);
  }
  Close(8, element);
}

}  // namespace declarations
