#include "import/proposal.h"

#include "import_fixture.h"

namespace {

using importer::NormalisedHeading;
using importer::SampleColumn;

TEST(Proposal, NormalisesHeadings) {
  EXPECT_EQ(NormalisedHeading("  Țara de EXPEDIȚIE [cod] "), "tara de expeditie cod");
  EXPECT_EQ(NormalisedHeading("U.M."), "um");
  EXPECT_EQ(NormalisedHeading("Maßeinheit/Währung"), "masseinheit wahrung");
  EXPECT_EQ(NormalisedHeading("***"), "");
}

class ProposalTest : public ImportTest {
 protected:
  /// "Dest_ColumnName=number" of every row that a new template of the flow gets from these headings.
  std::map<std::string, int> Proposed(const std::string& flow, const std::vector<SampleColumn>& columns) {
    CreateTemplate(flow, flow);
    importer::TemplateEditor editor(session());
    editor.Open(flow);
    std::vector<importer::Wanted> wanted;
    store::Recordset rows = editor.columns();
    for (; !rows.eof(); rows.MoveNext()) {
      wanted.push_back({rows["Dest_ColumnName"].ToText(),
                        importer::ShownDescription(rows["Dest_ColumnName"].ToText(),
                                                   rows["Dest_ColumnDescription"].ToText())});
    }
    std::map<std::string, int> found;
    for (const auto& each : ProposeColumns(columns, wanted)) found[each.Dest_ColumnName] = each.number;
    return found;
  }
  std::vector<SampleColumn> Headings(std::initializer_list<const char*> headings) {
    std::vector<SampleColumn> columns;
    for (const char* heading : headings) {
      columns.push_back({static_cast<int>(columns.size()) + 1, heading, ""});
    }
    return columns;
  }
  std::vector<SampleColumn> Delivered(const std::string& file, const std::string& sheet) {
    const std::string path = fmt::format("{}samples\\{}", test_support::DataFolder(files()), file);
    return importer::ReadSample(session(), path, sheet)->columns;
  }
};

using Map = std::map<std::string, int>;

TEST_F(ProposalTest, MapsTheDeliveredSamples) {
  EXPECT_EQ(Proposed("ACHIZITIE", Delivered("achizitii.xls", "Achizitii")), (Map{{"DataReceptiei", 2},
                                                                                 {"Descriere", 3},
                                                                                 {"Cod_NC", 4},
                                                                                 {"Cantitate", 5},
                                                                                 {"UM", 6},
                                                                                 {"Valoare_Valuta", 8},
                                                                                 {"Moneda", 9},
                                                                                 {"Val_Fiscala", 10},
                                                                                 {"Val_Stat", 10},
                                                                                 {"Tara_Orig", 11},
                                                                                 {"Tara_Exp", 12},
                                                                                 {"Net", 13},
                                                                                 {"Nat_Tranz", 14},
                                                                                 {"Incoterms", 15},
                                                                                 {"Factura_Numar", 16},
                                                                                 {"Factura_Data", 17},
                                                                                 {"VAT_ID", 18}}));
  EXPECT_EQ(Proposed("LIVRARE", Delivered("livrari.xls", "Livrari")), (Map{{"Factura_Numar", 1},
                                                                           {"Factura_Data", 2},
                                                                           {"DataReceptiei", 3},
                                                                           {"VAT_ID", 4},
                                                                           {"Tara_Dest", 5},
                                                                           {"Cod_NC", 6},
                                                                           {"Descriere", 7},
                                                                           {"Cantitate", 8},
                                                                           {"UM", 9},
                                                                           {"Valoare_Valuta", 11},
                                                                           {"Moneda", 12},
                                                                           {"Curs_Schimb", 13},
                                                                           {"Val_Fiscala", 14},
                                                                           {"Val_Stat", 15},
                                                                           {"Net", 16},
                                                                           {"Tara_Orig", 17},
                                                                           {"Nat_Tranz", 18}}));
}

TEST_F(ProposalTest, ReadsEnglishAndGermanHeadings) {
  EXPECT_EQ(Proposed("ACHIZITIE", Headings({"Pos.", "Invoice No.", "Invoice date", "Commodity code",
                                            "Description of goods", "Qty", "Unit price", "Amount", "Currency",
                                            "Country of origin", "Net weight (kg)", "Gross weight (kg)",
                                            "Delivery terms", "VAT number"})),
            (Map{{"Factura_Numar", 2},
                 {"Factura_Data", 3},
                 {"DataReceptiei", 3},
                 {"Cod_NC", 4},
                 {"Descriere", 5},
                 {"Cantitate", 6},
                 {"Valoare_Valuta", 8},
                 {"Moneda", 9},
                 {"Tara_Orig", 10},
                 {"Net", 11},
                 {"Incoterms", 13},
                 {"VAT_ID", 14}}));
  EXPECT_EQ(Proposed("LIVRARE", Headings({"Warennummer", "Warenbezeichnung", "Menge", "Einzelpreis",
                                          "Rechnungsbetrag", "Währung", "Ursprungsland", "Bestimmungsland",
                                          "Eigenmasse (kg)", "Besondere Maßeinheit", "Art des Geschäfts",
                                          "Verkehrszweig", "Rechnungsnr.", "USt-IdNr."})),
            (Map{{"Cod_NC", 1},
                 {"Descriere", 2},
                 {"Cantitate", 3},
                 {"Valoare_Valuta", 5},
                 {"Moneda", 6},
                 {"Tara_Orig", 7},
                 {"Tara_Dest", 8},
                 {"Net", 9},
                 {"Cod_UMS", 10},
                 {"Nat_Tranz", 11},
                 {"Mod_Transp", 12},
                 {"Factura_Numar", 13},
                 {"VAT_ID", 14}}));
}

TEST_F(ProposalTest, LeavesWhatItCannotTell) {
  EXPECT_EQ(Proposed("ACHIZITIE",
                     Headings({"Observatii", "Cod produs", "Pret unitar", "Masa bruta", "Tara", "F6"})),
            Map());
}

}  // namespace
