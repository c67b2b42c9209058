#include "import/template_draft.h"

#include "import/preview.h"
#include "import/worksheet.h"
#include "import_fixture.h"

namespace {

using importer::TemplateDraft;

class Draft : public ImportTest {
 protected:
  Draft() : draft_(session()) {}
  std::size_t Row(std::string_view name) {
    for (std::size_t i = 0; i < draft_.rows().size(); ++i) {
      if (draft_.rows()[i].Dest_ColumnName == name) return i;
    }
    throw std::runtime_error("no row");
  }
  const importer::TemplateRow& At(std::string_view name) { return draft_.rows()[Row(name)]; }
  void SaveNew(const std::string& flow = "ACHIZITIE") {
    draft_.header = {"Intrari", flow, "C:\\Foi\\", "Sheet1", kPath};
    ASSERT_TRUE(draft_.Save());
  }

  TemplateDraft draft_;
};

TEST_F(Draft, StoresOnlyWhenSaved) {
  EXPECT_FALSE(draft_.changed());
  SaveNew();
  EXPECT_FALSE(draft_.changed());
  EXPECT_EQ(At("Tara_Orig").Dest_ColumnDescription, "Tara Origine");
  draft_.Assign(Row("Cod_NC"), 3);
  draft_.SetDefault(Row("Moneda"), "RON");
  prompter().ExpectQuestion("Stergeti inregistrarea ?", "RASPUNDETI", platform::Icon::kQuestion, true);
  EXPECT_TRUE(draft_.Delete(Row("Exista_UMS")));
  EXPECT_TRUE(draft_.changed());
  const auto stored = [&](const char* field, const char* name) {
    return at_.Get(
        fmt::format("SELECT {} FROM StructuraFisiereContinut WHERE Dest_ColumnName='{}'", field, name));
  };
  EXPECT_TRUE(stored("Numar_Coloana", "Cod_NC").is_null());
  draft_.header.Nume_Structura = "Intrari UE";
  ASSERT_TRUE(draft_.Save());
  EXPECT_EQ(stored("Numar_Coloana", "Cod_NC").ToInteger(), 3);
  EXPECT_EQ(stored("Valoare_Implicita", "Moneda"), store::Value("RON"));
  EXPECT_TRUE(stored("Record_ID", "Exista_UMS").is_null());
  EXPECT_EQ(stored("Nume_Structura", "Cod_NC"), store::Value("Intrari UE"));

  draft_.SetDefault(Row("Moneda"), std::string(300, 'x'));  // more than the column takes
  draft_.header.Work_Sheet_Name = "Alta";
  prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  EXPECT_FALSE(draft_.Save());
  EXPECT_EQ(at_.Get("SELECT Work_Sheet_Name FROM StructuraFisiereAntet"), store::Value("Sheet1"));
  TemplateDraft other(session());
  other.header = {"intrari ue", "LIVRARE", "", "", ""};
  prompter().ExpectError("Exista deja macheta: intrari ue");
  EXPECT_FALSE(other.Save());
  draft_.SetDefault(Row("Moneda"), "EUR");
  EXPECT_TRUE(draft_.Save()) << "a failed save does not stand in the way of the next";
}

TEST_F(Draft, FollowsTheRulesOfTheGrid) {
  SaveNew();
  const std::size_t net = Row("Net");
  prompter().ExpectError("Bifati coloana: Exista in fisierul excel");
  EXPECT_FALSE(draft_.SetNumber(net, "4"));
  draft_.SetPresent(net, true);
  prompter().ExpectError("Numar coloana fisier excel  -  Obligatoriu de completat !");
  EXPECT_FALSE(draft_.Save());
  EXPECT_EQ(draft_.IncompleteRow(), net);
  for (const char* wrong : {"0", "-1", "2.5", "A", "99999999999"}) {
    prompter().ExpectStarting("Numar coloana fisier excel: ", "EROARE", platform::Icon::kCritical);
    EXPECT_FALSE(draft_.SetNumber(net, wrong)) << wrong;
  }
  EXPECT_TRUE(draft_.SetNumber(net, " 4 "));
  prompter().ExpectError("Selectati o valoare din lista", "Mesaj");
  EXPECT_FALSE(draft_.SetFormat(net, "NUMAR", {"TEXT", "NUMERIC"}));
  EXPECT_TRUE(draft_.SetFormat(net, "TEXT", {"TEXT", "NUMERIC"}));
  EXPECT_TRUE(draft_.Save());
  draft_.SetPresent(net, false);
  EXPECT_FALSE(At("Net").Numar_Coloana);

  draft_.Assign(net, 9);
  EXPECT_EQ(draft_.Propose({{8, "Cod vamal", ""}, {9, "Cantitate", ""}, {10, "Greutate neta", ""}}), 1)
      << "what is numbered stays, and so does its column";
  EXPECT_EQ(At("Cod_NC").Numar_Coloana, 8);
  EXPECT_EQ(At("Net").Numar_Coloana, 9);
}

class PreviewTest : public Draft {
 protected:
  void SetUp() override {
    test_support::XlsWriter book;
    auto& sheet = book.AddSheet("Sheet1");
    sheet.Row(0, "'Cod|'Kg|'Lei|'Tara|'Data");
    sheet.Row(1, "'8471.30-00|=1.5|=100.125|'cn|@46085");
    sheet.Row(2, "'99999999||=0.2|'ZZ|'maine");
    sheet.Row(3, "'84713000|'multe|=1|'DE|");
    for (unsigned row = 4; row < 30; ++row) sheet.Row(row, "'84713000|=1|=1|'DE|");
    Save(book);
    SaveNew();
    const char* names[] = {"Cod_NC", "Net", "Val_Fiscala", "Tara_Orig"};
    for (int i = 0; i < 4; ++i) draft_.Assign(Row(names[i]), i + 1);
    draft_.SetDefault(Row("Moneda"), "RON");
    session().defaults = {};
    preview_.Open(kPath, "");
  }
  importer::PreviewLines Read() { return preview_.Read(draft_.Rules(), draft_.header.TIP); }
  std::string Problem(const importer::PreviewLines& read, std::size_t line, const char* name) {
    return read.lines.at(line).problems.at(Row(name));
  }

  importer::Preview preview_{session()};
};

TEST_F(PreviewTest, MakesTheLinesOfTheImportAndMarksThem) {
  const importer::PreviewLines read = Read();
  ASSERT_EQ(read.problem, "");
  ASSERT_EQ(read.lines.size(), 20U);
  EXPECT_EQ(read.lines[0].row, 2);
  EXPECT_EQ(read.lines[0].values[Row("Cod_NC")], store::Value("84713000"));
  EXPECT_EQ(read.lines[0].values[Row("Val_Fiscala")].ToDouble(), 100.12);
  EXPECT_EQ(read.lines[0].values[Row("Tara_Orig")], store::Value("CN"));
  EXPECT_FALSE(read.lines[0].values[Row("Descriere_NC")].ToText().empty()) << "the tariff's";
  EXPECT_EQ(Problem(read, 0, "Cod_NC"), "");
  EXPECT_EQ(Problem(read, 0, "Tara_Orig"), "");
  EXPECT_EQ(Problem(read, 0, "Incoterms"), "lipseste, dar declaratia o cere");
  EXPECT_EQ(Problem(read, 0, "VAT_ID"), "") << "arrivals need none";
  EXPECT_EQ(Problem(read, 1, "Cod_NC"), "cod necunoscut: 99999999");
  EXPECT_EQ(Problem(read, 1, "Tara_Orig"), "cod necunoscut: ZZ");
  EXPECT_EQ(Problem(read, 1, "Net"), "lipseste, dar declaratia o cere");
  EXPECT_TRUE(Problem(read, 2, "Net").starts_with("Coloana Net: ")) << Problem(read, 2, "Net");
  draft_.SetDefault(Row("Moneda"), "EUR");
  EXPECT_EQ(Problem(Read(), 1, "Val_Fiscala"),
            "este zero sau negativa: fara data receptiei nu se stie cursul EUR");
  draft_.Assign(Row("DataReceptiei"), 5);
  EXPECT_EQ(Problem(Read(), 0, "Val_Fiscala"), "") << "a value in lei needs no rate";
  EXPECT_EQ(Lines(), 0) << "nothing is stored";
}

TEST_F(PreviewTest, SaysWhyThereIsNone) {
  draft_.Assign(Row("Cantitate"), 77);
  EXPECT_EQ(Read().problem, "In macheta, Cantitate are numarul 77, iar foaia Sheet1 are 5 coloane");
  draft_.SetPresent(Row("Cantitate"), true);
  draft_.SetNumber(Row("Cantitate"), "");
  EXPECT_EQ(Read().lines.size(), 20U) << "a row still without a number waits";
  draft_.SetDefault(Row("Net"), "1 +");
  EXPECT_TRUE(Read().problem.starts_with("In macheta, coloana Net: ")) << Read().problem;
  preview_.Open(kPath, "Alta");
  EXPECT_EQ(Read().problem, "Fisierul C:\\Foi\\martie.xls nu are foaia \"Alta\"; foile lui sunt: Sheet1");
  files().Replace("C:\\Foi\\text.xls", "nu este o foaie");
  preview_.Open("C:\\Foi\\text.xls", "");
  EXPECT_NE(Read().problem.find("C:\\Foi\\text.xls"), std::string::npos) << Read().problem;
  EXPECT_NE(importer::ReadSheetList(session(), "C:\\Foi\\text.xls").problem.find("text.xls"),
            std::string::npos);
  EXPECT_EQ(importer::ReadSheetList(session(), kPath).names, std::vector<std::string>{"Sheet1"});
}

}  // namespace
