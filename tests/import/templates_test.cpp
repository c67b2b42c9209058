#include "import/templates.h"

#include <gmock/gmock.h>

#include "import_fixture.h"

namespace {

using importer::TemplateEditor;
using platform::Icon;
using testing::Contains;
using testing::Not;

class Templates : public ImportTest {
 protected:
  std::vector<std::string> ColumnNames(const std::string& name) {
    TemplateEditor editor(session());
    EXPECT_TRUE(editor.Open(name));
    std::vector<std::string> names;
    store::Recordset rows = editor.columns();
    for (; !rows.eof(); rows.MoveNext()) names.push_back(rows["Dest_ColumnName"].ToText());
    return names;
  }
  std::int64_t ColumnRows() { return at_.Get("SELECT COUNT(*) FROM StructuraFisiereContinut").ToInteger(); }
};

TEST_F(Templates, ReadsHeaderAndRowsThroughOneShapedCommand) {
  EXPECT_EQ(
      importer::ShapeText("Intrari"),
      "SHAPE {SELECT * FROM StructuraFisiereAntet WHERE Nume_structura='Intrari'} AS ParentCMD "
      "APPEND ({SELECT Nume_Structura,Record_ID,Dest_ColumnDescription,Exista_Coloana, "
      "Numar_Coloana,Valoare_Implicita,Marime_Maxima,Format,Dest_ColumnName FROM StructuraFisiereContinut "
      "ORDER BY Sort_Order} AS ChildCMD RELATE [Nume_Structura] TO [Nume_Structura])");
}

TEST_F(Templates, GetARowPerDescribedColumnButTheOneOfTheOtherFlow) {
  std::vector<std::string> described;
  for (const store::SchemaColumn& column : session().company.Columns("Intrastat")) {
    if (!column.description.empty()) described.push_back(column.column_name);
  }
  CreateTemplate("Intrari", "ACHIZITIE");
  CreateTemplate("Iesiri", "LIVRARE");
  auto arrivals = described;
  std::erase(arrivals, "Tara_Dest");
  auto dispatches = described;
  std::erase(dispatches, "Tara_Exp");
  EXPECT_EQ(ColumnNames("Intrari"), arrivals);
  EXPECT_EQ(ColumnNames("Iesiri"), dispatches);
  EXPECT_THAT(described, Not(Contains("Probleme")));
}

TEST_F(Templates, TakeDefaultSizeAndFormatFromTheSchema) {
  session().company.catalog().AddColumn("Intrastat", {.name = "Tara_Proba",
                                                      .type = store::ColumnType::kText,
                                                      .size = 2,
                                                      .description = "Proba",
                                                      .default_text = "\"RO\""});
  CreateTemplate("Intrari", "ACHIZITIE");
  store::Recordset row =
      session().company.Query("SELECT * FROM StructuraFisiereContinut WHERE Dest_ColumnName='Tara_Proba'");
  EXPECT_EQ(row["Valoare_Implicita"], store::Value("RO"));
  EXPECT_EQ(row["Marime_Maxima"].ToInteger(), 2);
  EXPECT_EQ(row["Format"], store::Value("TEXT"));
  EXPECT_FALSE(row["Exista_Coloana"].ToBoolean());
  EXPECT_EQ(at_.Get("SELECT Format FROM StructuraFisiereContinut WHERE Dest_ColumnName='Net'"),
            store::Value("NUMERIC"));
  EXPECT_EQ(at_.Get("SELECT Format FROM StructuraFisiereContinut WHERE Dest_ColumnName='Factura_Data'"),
            store::Value("DATETIME"));
  EXPECT_TRUE(
      at_.Get("SELECT Marime_Maxima FROM StructuraFisiereContinut WHERE Dest_ColumnName='Net'").is_null());
}

TEST_F(Templates, NeedNameAndFlow) {
  TemplateEditor editor(session());
  editor.New();
  prompter().ExpectError("Nume Macheta  -  Obligatoriu de completat !");
  prompter().ExpectError("Se foloseste la  -  Obligatoriu de completat !");
  EXPECT_FALSE(editor.Save());
  editor.header().Set("Nume_Structura", "Intrari");
  editor.header().Set("TIP", "IMPORT");
  prompter().ExpectError("Selectati o valoare din lista", "Mesaj");
  EXPECT_FALSE(editor.Save());
  EXPECT_EQ(ColumnRows(), 0);
}

TEST_F(Templates, KeepTheirRowsWhenSavedAgain) {
  CreateTemplate("Intrari", "ACHIZITIE");
  importer::ChangeRow(session(), "Intrari", "Cod_NC", {3, "0", "8"});
  at_.Run("DELETE FROM StructuraFisiereContinut WHERE Dest_ColumnName='UM'");
  const std::int64_t rows = ColumnRows();
  TemplateEditor editor(session());
  ASSERT_TRUE(editor.Open("intrari")) << "names are compared without regard to case";
  editor.header().Set("Work_Sheet_Name", "Foaie");
  ASSERT_TRUE(editor.Save());
  EXPECT_EQ(ColumnRows(), rows);
  editor.header().Set("Nume_Structura", "Intrari UE");
  ASSERT_TRUE(editor.Save());
  EXPECT_EQ(static_cast<std::int64_t>(ColumnNames("Intrari UE").size()), rows)
      << "a renamed template keeps its rows";
  EXPECT_EQ(ColumnRows(), rows);
}

TEST_F(Templates, AreSavedWholeOrNotAtAll) {
  CreateTemplate("Intrari", "ACHIZITIE");
  const std::int64_t rows = ColumnRows();
  for (const char* name : {"Intrari", "O'Neil"}) {  // a name that exists; one that breaks the statements
    TemplateEditor editor(session());
    editor.New();
    editor.header().Set("Nume_Structura", name);
    editor.header().Set("TIP", "LIVRARE");
    prompter().ExpectStarting("", "EROARE", Icon::kCritical);
    EXPECT_FALSE(editor.Save()) << name;
  }
  EXPECT_EQ(at_.Get("SELECT COUNT(*) FROM StructuraFisiereAntet").ToInteger(), 1);
  EXPECT_EQ(ColumnRows(), rows);
}

TEST_F(Templates, GoWithTheirRowsWhenDeleted) {
  CreateTemplate("Intrari", "ACHIZITIE");
  prompter().ExpectQuestion("Stergeti modul de preluare ? Intrari", "CONFIRMARE STERGERE", Icon::kQuestion,
                            false);
  EXPECT_FALSE(importer::DeleteTemplate(session(), "Intrari"));
  EXPECT_GT(ColumnRows(), 0);
  prompter().ExpectQuestion("Stergeti modul de preluare ? Intrari", "CONFIRMARE STERGERE", Icon::kQuestion,
                            true);
  prompter().ExpectInfo("Macheta a fost stearsa");
  EXPECT_TRUE(importer::DeleteTemplate(session(), "Intrari"));
  EXPECT_EQ(ColumnRows(), 0);
}

TEST_F(Templates, ShowASamplesColumns) {
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Foaie");
  sheet.Row(0, "'Cod vamal||'Data");
  sheet.Row(1, "'84713000||@46085");
  sheet.Row(2, "||@46086");
  Save(book);
  const auto sample = importer::ReadSample(session(), kPath, "Foaie");
  ASSERT_TRUE(sample);
  EXPECT_EQ(sample->label, "Numar coloane in fisierul excel : 3");
  EXPECT_EQ(sample->columns[0].heading, "Cod vamal");
  EXPECT_EQ(sample->columns[0].first_value, store::Value("84713000"));
  EXPECT_EQ(sample->columns[1].heading, "F2");
  EXPECT_EQ(sample->columns[2].number, 3);
  EXPECT_EQ(sample->columns[2].first_value, store::Value(store::Date{46085}));

  prompter().ExpectError("NU EXISTA FISIERUL : C:\\Foi\\lipsa.xls");
  EXPECT_FALSE(importer::ReadSample(session(), "C:\\Foi\\lipsa.xls", ""));
  prompter().ExpectStarting("", "EROARE", Icon::kCritical);
  EXPECT_FALSE(importer::ReadSample(session(), kPath, "")) << "the sheet is Sheet1 where none is named";
}

TEST_F(Templates, EditingARowFollowsItsRules) {
  EXPECT_TRUE(importer::AcceptColumnNumber(prompter(), true));
  prompter().ExpectError("Bifati coloana: Exista in fisierul excel");
  EXPECT_FALSE(importer::AcceptColumnNumber(prompter(), false));
  EXPECT_TRUE(importer::AcceptRow(prompter(), true, 1));
  EXPECT_TRUE(importer::AcceptRow(prompter(), false, std::nullopt));
  prompter().ExpectError("Numar coloana fisier excel  -  Obligatoriu de completat !");
  EXPECT_FALSE(importer::AcceptRow(prompter(), true, std::nullopt));
  prompter().ExpectQuestion("Stergeti inregistrarea ?", "RASPUNDETI", Icon::kQuestion, true);
  EXPECT_TRUE(importer::ConfirmRowDelete(prompter()));
  EXPECT_EQ(importer::ShownDescription("Tara_Orig", "Tara Orig"), "Tara Origine");
  EXPECT_EQ(importer::ShownDescription("Tara_Exp", "Tara Exp"), "Tara Exp");

  files().Replace(at_.InSystem("ComboBox\\Lista.proba.txt"), "unu\r\n\r\ndoi");
  EXPECT_EQ(importer::ReadComboList(session(), "Lista", "proba"), (std::vector<std::string>{"unu", "doi"}));
  EXPECT_TRUE(importer::ReadComboList(session(), "Lista", "lipsa").empty());
}

}  // namespace
