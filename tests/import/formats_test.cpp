// The samples as a spreadsheet program saves them in other formats: one template, the same lines from each.

#include <fstream>

#include "import_fixture.h"
#include "platform/encoding.h"

namespace {

struct ColumnOf {
  const char* name;
  int number;
  const char* fallback = nullptr;
};

class ImportFormats : public ImportTest {
 protected:
  void SetUp() override {
    at_.Run(
        "INSERT INTO Rate_Schimb (Cod_Moneda, Valid_La_Data, Curs_Schimb, Multiplicator) "
        "VALUES ('EUR', #2-20-26#, 5.0947, 1)");
    at_.Run(
        "INSERT INTO Rate_Schimb (Cod_Moneda, Valid_La_Data, Curs_Schimb, Multiplicator) "
        "VALUES ('USD', #2-20-26#, 4.3148, 1)");
    prompter().AcceptAnything(true);
  }

  void Template(const std::string& flow, const std::vector<ColumnOf>& columns) {
    CreateTemplate(flow, flow);
    for (const ColumnOf& column : columns) {
      importer::RowChange change{column.number, std::nullopt, std::nullopt};
      if (column.fallback != nullptr) change.Valoare_Implicita = column.fallback;
      ASSERT_TRUE(importer::ChangeRow(session(), flow, column.name, change));
    }
  }

  // The lines that the file's import gives, which it leaves out of the table again.
  std::vector<std::string> Take(const std::string& folder, const std::string& file, importer::Inputs inputs) {
    const std::string path = "C:\\Foi\\" + file;
    std::ifstream source(DECLARIX_SOURCE_DIR + folder + file, std::ios::binary);
    files().CreateFolders("C:\\Foi");
    files().Replace(path, std::string(std::istreambuf_iterator<char>(source), {}));
    inputs.path = path;
    const importer::Result result = importer::Run(session(), inputs);
    EXPECT_EQ(result.outcome, importer::Outcome::kDone) << file;
    EXPECT_TRUE(result.rejected.empty()) << file;
    std::vector<std::string> lines;
    store::Recordset rows = session().company.Query("SELECT * FROM Intrastat ORDER BY Record_ID");
    for (; !rows.eof(); rows.MoveNext()) {
      std::string& line = lines.emplace_back();
      for (int i = 0; i < rows.field_count(); ++i) {
        const std::string& name = rows.field(i).name;
        if (name == "Record_ID" || name == "Data_Preluare" || name.starts_with("SourceFile")) continue;
        line += name + "=" + (rows.Get(i).is_null() ? "\\N" : rows.Get(i).ToText()) + " ";
      }
    }
    at_.Run("DELETE FROM Intrastat");
    return lines;
  }

  void ExpectSameLines(const std::string& name, const importer::Inputs& inputs, std::size_t count) {
    const std::vector<std::string> lines = Take("/data/samples/", name + ".xls", inputs);
    ASSERT_EQ(lines.size(), count);
    for (const char* extension : {".xlsx", ".ods", ".csv"}) {
      const std::vector<std::string> same = Take("/tests/data/foi/", name + extension, inputs);
      ASSERT_EQ(same.size(), lines.size()) << extension;
      for (std::size_t i = 0; i < lines.size(); ++i) {
        // The text has 7345.625 as it is shown, rounded up; the import itself rounds half to even.
        EXPECT_EQ(platform::ReplaceAll(same[i], "=7345.63 ", "=7345.62 "), lines[i]) << extension;
      }
    }
  }
};

TEST_F(ImportFormats, GiveTheSameArrivals) {
  Template("ACHIZITIE", {{"DataReceptiei", 2},
                         {"Descriere", 3},
                         {"Cod_NC", 4},
                         {"Cantitate", 5},
                         {"UM", 6},
                         {"Valoare_Valuta", 8},
                         {"Moneda", 9},
                         {"Val_Fiscala", 10, "0"},
                         {"Val_Stat", 10, "0"},
                         {"Tara_Orig", 11},
                         {"Tara_Exp", 12},
                         {"Net", 13},
                         {"Nat_Tranz", 14},
                         {"Incoterms", 15, "DAP"},
                         {"Factura_Numar", 16},
                         {"Factura_Data", 17},
                         {"VAT_ID", 18}});
  importer::Inputs inputs = Inputs("ACHIZITIE");
  inputs.sheet = "Achizitii";
  ExpectSameLines("achizitii", inputs, 36);
}

TEST_F(ImportFormats, GiveTheSameDispatches) {
  Template("LIVRARE", {{"Factura_Numar", 1},
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
                       {"Val_Fiscala", 14, "0"},
                       {"Val_Stat", 15, "0"},
                       {"Net", 16},
                       {"Tara_Orig", 17},
                       {"Nat_Tranz", 18}});
  importer::Inputs inputs = Inputs("LIVRARE", "O-LIVRARE");
  inputs.sheet = "Livrari";
  ExpectSameLines("livrari", inputs, 32);
}

}  // namespace
