#include <gmock/gmock.h>

#include "reports/declaration_report.h"
#include "support/installation.h"
#include "support/sample_lines.h"

namespace reports {
namespace {

using testing::HasSubstr;

constexpr char kFile[] = "C:\\Rapoarte\\UE_Reports.xml";

std::string Plain(const store::Value& value, Format format) {
  if (IsNumeric(format) && value.is_number()) return fmt::format("{:.2f}", value.ToDouble());
  return value.ToText();
}

/// What is wrong with a definition file; empty where nothing is.
std::string Refusal(const std::string& xml) {
  try {
    Definitions::Parse(xml, kFile);
    return "";
  } catch (const ReportError& error) {
    return error.what();
  }
}

std::string OneReport(const std::string& inside, const std::string& attributes = "") {
  return "<Reports><Report Id=\"R1\" Title=\"Titlu\" " + attributes + ">" + inside + "</Report></Reports>";
}

TEST(Definitions, AFileThatIsWrongIsNamedWithItsReport) {
  EXPECT_EQ(Refusal(OneReport("<Column Field=\"A\"/>")), "");
  for (const std::string& broken :
       {std::string(), std::string("<Reports><Report"), std::string("\xFF\xFE x")}) {
    EXPECT_THAT(Refusal(broken),
                HasSubstr(std::string("Fisierul ") + kFile + " nu este un XML corect: linia 1, "));
  }
  EXPECT_THAT(Refusal("<Reports>\n<Report>\n</Raport>\n</Reports>"),
              HasSubstr("linia 3, un element nu se inchide unde trebuie"));
  EXPECT_THAT(Refusal(OneReport("\n<Column Field=\"A\"/>\n<Column Field=\"B\" Format=\"x\"/>\n")),
              HasSubstr("linia 3, raportul R1: formatul \"x\""));
  EXPECT_THAT(Refusal("<Setari/>"), HasSubstr("nu are elementul Reports"));
  const std::pair<std::string, const char*> wrong[] = {
      {OneReport(""), "nu are coloane"},
      {OneReport("<Column Field=\"A\" Format=\"0.00\"/>"), "formatul \"0.00\""},
      {OneReport("<Column Field=\"A\" Width=\"lat\"/>"), "latimea \"lat\" a coloanei A"},
      {OneReport("<Column Field=\"A\" Width=\"99999999999\"/>"), "latimea"},
      {OneReport("<Column Caption=\"A\"/>"), "o coloana nu are Field"},
      {OneReport("<Column Field=\"A\" Total=\"da\"/>"), "se asteapta 0 sau 1"},
      {OneReport("<Column Field=\"A\" Only=\"I\"/>"), "nume=valoare"},
      {OneReport("<Column Field=\"A\"/>", "Orientation=\"Lat\""), "Orientation nu poate fi \"Lat\""},
      {OneReport("<Source Sort=\"A\"/><Column Field=\"A\"/>"), "Sort cere o fraza SELECT"},
      {OneReport("<Column Field=\"A\"/></Report><Report Id=\"R1\" Title=\"x\">"), "apare de doua ori"},
  };
  for (const auto& [xml, reason] : wrong) {
    EXPECT_THAT(Refusal(xml), testing::AllOf(HasSubstr(kFile), HasSubstr("raportul R1"), HasSubstr(reason)));
  }
  const Definitions one = Definitions::Parse(OneReport("<Column Field=\"A\"/>"), kFile);
  EXPECT_THROW(one.Get("R2"), ReportError);
  EXPECT_EQ(one.FindByTitle("  Titlu "), &one.all()[0]);
}

/// A report over rows of one text and two numbers.
Report Made(const std::string& inside, std::vector<std::vector<store::Value>> rows) {
  const Definitions file = Definitions::Parse(OneReport(inside), kFile);
  auto table = std::make_shared<MemoryTable>(std::vector<Table::Column>{{"Tara", "Tara", Format::kText},
                                                                        {"Suma", "Suma", Format::kAmount},
                                                                        {"Net", "Net", Format::kAmount}},
                                             std::move(rows));
  return Report(file.Get("R1"), kFile, table, {{"TIP", "O"}}, Plain);
}

std::string Bands(const Report& report) {
  std::string text;
  for (const Band& band : report.bands()) {
    if (band.kind != Band::Kind::kDetail) text += "[" + report.CaptionOf(band) + "]";
    for (std::size_t c = 0; c < report.columns().size(); ++c) {
      if (band.kind == Band::Kind::kDetail || band.totals >= 0) text += " " + report.TextOf(band, c);
    }
    text += '\n';
  }
  return text;
}

TEST(Report, GroupsHaveHeadersAndSums) {
  const std::string columns = "<Column Field=\"Tara\"/><Column Field=\"Suma\" Total=\"1\"/>";
  EXPECT_EQ(Bands(Made(columns + "<Group Field=\"Tara\" Header=\"Tara {Tara}\"/>",
                       {{"DE", 1.5, 1}, {"DE", 2, 1}, {"IT", 4, 1}})),
            "[Tara DE]\n DE 1.50\n DE 2.00\n[Total Tara DE (2)]  3.50\n"
            "[Tara IT]\n IT 4.00\n[Total Tara IT (1)]  4.00\n[TOTAL (3)]  7.50\n");
  EXPECT_EQ(
      Bands(Made("<Column Field=\"Tara\"/><Column Field=\"Suma\" Total=\"Group\"/><Group Field=\"Tara\" "
                 "Header=\" {Tara}  \"/>",
                 {{"DE", 1.5, 1}})),
      "[DE]\n DE 1.50\n[Total DE (1)]  1.50\n[TOTAL (1)]  \n");
  // Rows of a list that do not stand together are left as the user sorted them.
  EXPECT_EQ(Bands(Made(columns + "<Group Field=\"Tara\"/>", {{"DE", 1, 1}, {"IT", 2, 1}, {"DE", 3, 1}})),
            " DE 1.00\n IT 2.00\n DE 3.00\n[TOTAL (3)]  6.00\n");
  EXPECT_EQ(Bands(Made(columns, {})), "[Nu sunt inregistrari]\n");
}

TEST(Report, ColumnsAreTakenByNamePositionAndCondition) {
  const Report report = Made(
      "<Column Field=\"#2\" Caption=\"Valoare\"/><Column Field=\"net\" Only=\"TIP=O\"/>"
      "<Column Field=\"Tara\" Only=\"TIP=I\"/><Column Field=\"Lipsa\" Optional=\"1\"/>",
      {{"DE", 1, 2}});
  ASSERT_EQ(report.columns().size(), 2u);
  EXPECT_EQ(report.columns()[0].caption, "Valoare");
  EXPECT_EQ(report.columns()[1].caption, "Net");
  EXPECT_EQ(report.columns()[1].alignment, Alignment::kRight);
  // Beside "*" a column is printed once, as it is described, and only where the list shows it.
  const Report all = Made("<Column Field=\"*\"/><Column Field=\"Suma\" Caption=\"Valoare\" Total=\"1\"/>",
                          {{"DE", 1, 2}, {"DE", 3, 4}});
  EXPECT_EQ(Bands(all), " DE 1.00 2.00\n DE 3.00 4.00\n[TOTAL (2)]  4.00 \n");
  EXPECT_EQ(all.columns()[1].caption, "Valoare");
  EXPECT_EQ(Bands(Made("<Column Field=\"*\" Filled=\"1\"/>", {{"", 1, store::Value()}, {" ", 0, {}}})),
            " 1.00\n 0.00\n");
  for (const char* wrong :
       {"<Column Field=\"Lipsa\"/>", "<Column Field=\"#4\"/>",
        "<Column Field=\"Tara\"/><Group Field=\"Lipsa\"/>", "<Line>{Lipsa}</Line><Column Field=\"Tara\"/>"}) {
    try {
      Made(wrong, {{"DE", 1, 2}});
      ADD_FAILURE() << wrong;
    } catch (const ReportError& error) {
      EXPECT_THAT(error.what(), HasSubstr("linia 1, raportul R1: "));
    }
  }
}

TEST(Report, APlaceholderCannotLeaveItsQuotes) {
  const Definitions file = Definitions::Parse(
      OneReport("<Source>SELECT * FROM T WHERE A='{Nume}'</Source><Column Field=\"A\"/>"), kFile);
  EXPECT_EQ(StatementOf(file.Get("R1"), kFile, {{"Nume", "D'Or"}}), "SELECT * FROM T WHERE A='D''Or'");
  EXPECT_THROW(StatementOf(file.Get("R1"), kFile, {}), ReportError);
}

TEST(DeliveredDefinitions, EveryReportOfADeclarationOpensForBothDirections) {
  test_support::Installation at;
  for (const char* TIP : {"I", "O"}) {
    for (int i = 0; i < 2; ++i) {
      test_support::AddLine(at.session, TIP, 2026, 3, {{"Val_Fiscala", 100}, {"Factura_Numar", "F1"}});
    }
  }
  const Definitions file = Definitions::Read(at.session);
  ASSERT_EQ(file.Family("Declaratie").size(), 5u);
  for (const Definition* definition : file.Family("Declaratie")) {
    if (!definition->has_statement()) continue;
    for (const char* TIP : {"I", "O"}) {
      SCOPED_TRACE(definition->id + TIP);
      const Placeholders values =
          DeclarationPlaceholders(at.session, {TIP, test_support::Installation::kCompany, 2026, 3});
      const Report report = RunStatement(at.session, *definition, file.file(), values, Plain);
      EXPECT_THAT(report.title(), HasSubstr(TIP[0] == 'I' ? "ACHIZITIE 2026 / 3" : "LIVRARE 2026 / 3"));
      int details = 0;
      for (const Band& band : report.bands()) details += band.kind == Band::Kind::kDetail;
      EXPECT_EQ(details, definition->id == kAggregated ? 1 : 2);
      EXPECT_THAT(Bands(report), HasSubstr("] "));
      EXPECT_THAT(Bands(report), HasSubstr("200.00"));
      std::string captions;
      for (const ReportColumn& column : report.columns()) captions += column.caption + ";";
      const bool vat = definition->id == kDetailed || (definition->id == kAggregated && TIP[0] == 'O');
      EXPECT_EQ(captions.find("TVA") != std::string::npos, vat);
      EXPECT_THAT(captions, testing::Not(HasSubstr(TIP[0] == 'I' ? "Tara Dest" : "Tara Exp")));
    }
  }
}

}  // namespace
}  // namespace reports
