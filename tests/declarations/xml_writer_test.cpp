#include "declarations/xml_writer.h"

#include <gtest/gtest.h>

#include "declarations/review.h"

namespace declarations {
namespace {

const Identity kArrivals{"I", "RO123456", 2016, 3};

Identity Dispatches(int year) { return {"O", "RO123456", year, 11}; }

std::string Lines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  return text;
}

Item SampleItem() {
  Item item;
  item.Cod_NC = "84713000";
  item.Nat_Tranz = "1.1";
  item.Incoterms = "CPT";
  item.Mod_Transp = "3";
  item.Tara_Orig = "CN";
  item.Tara_Exp = "DE";
  item.Tara_Dest = "IT";
  item.Cod_UMS = "p/st";
  item.Country_VAT_ID = "IT";
  item.VAT_ID1 = "01234567890";
  item.Val_Fiscala1 = 12.5;
  item.Val_Stat1 = 13.5;
  item.Net1 = 12.49;
  item.Val_UMS1 = 4;
  return item;
}

TEST(XmlNames, FileNameFollowsFlowAndKindAndKeepsTheMonthUnpadded) {
  EXPECT_EQ(DeclarationFileName("RO123456", {"I", "", 2016, 10}, Kind::kNew), "0000123456_A_201610.xml");
  EXPECT_EQ(DeclarationFileName("RO123456", kArrivals, Kind::kRevised), "0000123456_AR_20163.xml");
  EXPECT_EQ(DeclarationFileName("RO123456", Dispatches(2016), Kind::kNew), "0000123456_D_201611.xml");
  EXPECT_EQ(DeclarationFileName("RO123456", Dispatches(2016), Kind::kRevised), "0000123456_DR_201611.xml");
  EXPECT_EQ(DeclarationFileName("RO98765", {"O", "", 2017, 2}, Kind::kNil), "0000098765_DN_20172.xml");
  EXPECT_EQ(DeclarationFileName("RO98765", kArrivals, Kind::kNil), "0000098765_AN_20163.xml");
}

TEST(XmlNames, FiscalCodesArePaddedButNeverCut) {
  EXPECT_EQ(PaddedFiscalCode("1234567890"), "1234567890");
  EXPECT_EQ(PaddedFiscalCode("123456789012"), "123456789012");
  EXPECT_EQ(PaddedFiscalCode("RORO12"), "0000000012");
  EXPECT_EQ(FiledName("A & B!"), "A - B-");
  EXPECT_EQ(KindOf("N-Noua"), Kind::kNew);
  EXPECT_EQ(KindOf("C-Corectie"), Kind::kRevised);
  EXPECT_EQ(KindOf(""), Kind::kRevised);
}

// Whole files are compared with those of tests/golden; here stands what those do not show.
TEST(XmlWriter, EmptyContactFieldsGetPlaceholders) {
  XmlWriter writer(kArrivals, Kind::kNew, false);
  Header header;
  header.TXT_Nume_Prenume = "Contact";
  header.TXT_Nume_Pers = " ";
  header.TXT_Tel = "0265 000 000";
  writer.DeclarationHeader(header, "-12T12:10:10.625+02:00");
  EXPECT_NE(writer.text().find(Lines(
                {"        <CreateDt>2016-03-12T12:10:10.625+02:00</CreateDt>", "        <ContactPerson>",
                 "               <LastName>Contact</LastName>",
                 "               <FirstName>FIRST NAME</FirstName>", "               <Email>EMAIL</Email>",
                 "               <Phone>0265 000 000</Phone>", "               <Fax>FAX</Fax>",
                 "               <Position>FUNCTIE</Position>", "        </ContactPerson>"})),
            std::string::npos);
}

TEST(XmlWriter, AgentWithoutCountyLosesTheLocalityToo) {
  XmlWriter writer(kArrivals, Kind::kNil, false);
  Header header;
  header.Check_Dec_Tert = true;
  header.TXT_Oras_Dec = "114328";
  writer.DeclarationHeader(header, "-12T16:23:35.625+02:00");
  EXPECT_EQ(writer.text().find("LocalityCode"), std::string::npos);
  EXPECT_EQ(writer.text().find("CountyCode"), std::string::npos);
}

TEST(XmlWriter, HalvesGoUpAndDispatchesNameOriginAndPartnerFrom2015) {
  const auto item_of = [](const Identity& identity) {
    XmlWriter writer(identity, Kind::kNew, true);
    Item item = SampleItem();
    item.Cod_UMS = "";  // no supplementary unit
    writer.AddItem(item);
    return writer.text();
  };
  EXPECT_NE(item_of(kArrivals).find(Lines({"                <InvoiceValue>13</InvoiceValue>",
                                           "                <StatisticalValue>14</StatisticalValue>",
                                           "                <NetMass>12</NetMass>"})),
            std::string::npos);
  const std::string destination = "                <CountryOfDestination>IT</CountryOfDestination>";
  EXPECT_NE(item_of(Dispatches(2015))
                .find(Lines({"                <CountryOfOrigin>CN</CountryOfOrigin>", destination,
                             "                <PartnerCountryCode>IT</PartnerCountryCode>",
                             "                <PartnerVatNr>01234567890</PartnerVatNr>"})),
            std::string::npos);
  const std::string before = item_of(Dispatches(2014));
  EXPECT_NE(before.find(destination), std::string::npos);
  EXPECT_EQ(before.find("Partner"), std::string::npos);
  EXPECT_EQ(before.find("CountryOfOrigin"), std::string::npos);
}

TEST(XmlWriter, SecondCodeOfTheTransactionIsTheWholeValueOrLeftOut) {
  const auto codes = [](std::string_view nature) {
    Item item = SampleItem();
    item.Nat_Tranz = nature;
    XmlWriter writer(kArrivals, Kind::kNew, false);
    writer.AddItem(item);
    const std::string& text = writer.text();
    const std::size_t from = text.find("<NatureOfTransactionACode>");
    return text.substr(from, text.find("                <DeliveryTermsCode>") - from);
  };
  const std::string b = "                <NatureOfTransactionBCode>";
  EXPECT_EQ(codes("11"), Lines({"<NatureOfTransactionACode>1</NatureOfTransactionACode>",
                                b + "11</NatureOfTransactionBCode>"}));
  EXPECT_EQ(codes("10"), Lines({"<NatureOfTransactionACode>1</NatureOfTransactionACode>"}));
  EXPECT_EQ(codes("1"), Lines({"<NatureOfTransactionACode>1</NatureOfTransactionACode>",
                               b + "1</NatureOfTransactionBCode>"}));
  EXPECT_EQ(codes("1."), Lines({"<NatureOfTransactionACode>1</NatureOfTransactionACode>"}));
}

std::string Found(const Review& review) { return FindingsText(review.findings(), 100); }

TEST(Review, NamesWhatTheInstituteWouldRefuseInTheHeader) {
  Header header;
  header.TXT_CodFiscal = "RO12X";
  header.TXT_NumeCompanie = "A & B";  // filed as "A - B"
  header.TXT_Nume_Prenume = "LAST NAME";
  header.TXT_Nume_Pers = "Prenume";
  header.TXT_Email = "a<b";
  header.TXT_Tel = "1";
  header.TXT_Fax = "1";
  header.TXT_PozitieCompanie = "contabil";
  header.Check_Dec_Tert = true;
  header.TXT_CUI_Dec = "12345678901";
  header.TXT_Nume_Dec = "C & D";
  header.TXT_Strada_Dec = "Livezii";
  header.TXT_Judet_Dec = "MS";
  Review review;
  review.LookAt(header);
  EXPECT_EQ(Found(review),
            "TXT_CodFiscal: codul fiscal nu are zece cifre: 000000012X\r\n"
            "TXT_Nume_Prenume: are doar textul implicit LAST NAME\r\n"
            "TXT_Nume_Pers: are doar textul implicit Prenume\r\n"
            "TXT_Email: contine & sau <, fisierul nu ar fi XML valid\r\n"
            "TXT_CUI_Dec: codul fiscal nu are zece cifre: 12345678901\r\n"
            "TXT_Nume_Dec: contine & sau <, fisierul nu ar fi XML valid\r\n"
            "TXT_Oras_Dec: nu este completat pentru declarantul tert");
}

TEST(Review, NamesItemsThatWouldBeZero) {
  Item item = SampleItem();
  Review clean;
  clean.LookAt(item, 1, true, true);
  EXPECT_TRUE(clean.findings().empty());

  item.Net1 = 0.49;
  item.Val_Stat1 = 0;
  item.Val_UMS1 = 0.4;
  Review review;
  review.LookAt(item, 7, false, false);  // the statistical value is not filed
  EXPECT_EQ(Found(review),
            "pozitia 7 (84713000): masa neta ar fi 0 sau negativa dupa rotunjire\r\n"
            "pozitia 7 (84713000): cantitatea suplimentara ar fi 0 sau negativa dupa rotunjire");
  item.Net1 = 0.5;  // halves go up
  item.Cod_UMS = "";
  item.VAT_ID1 = "";
  Review partner;
  partner.LookAt(item, 7, false, true);
  EXPECT_EQ(Found(partner), "pozitia 7 (84713000): codul de TVA al partenerului nu este complet");
  Item greek = SampleItem();
  greek.Tara_Dest = "EL";
  Review country;
  country.LookAt(greek, 1, false, true);
  EXPECT_EQ(country.findings().at(0).column, "Tara_Dest");
  EXPECT_EQ(FindingsText({{"a", "x"}, {"b", "y"}, {"c", "z"}}, 1), "a: x\r\n... si inca 2");
}

}  // namespace
}  // namespace declarations
