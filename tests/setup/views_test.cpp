#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "support/installation.h"

namespace setup {
namespace {

using test_support::Installation;

constexpr char kFilter[] = " WHERE [TIP]='O' AND [Cod_Fiscal]='RO123456' AND [Anul]=2026 AND [Luna]=3";
constexpr char kEditorFilter[] = " WHERE [TIP] ='O' AND [Anul]=2026 AND [Luna]=3";

void AddLine(Installation& at, const char* tip, int month, const char* code, const char* vat, double value,
             double net, const char* invoice = "F1") {
  at.Run(fmt::format(
      "INSERT INTO Intrastat (TIP,Cod_Fiscal,Anul,Luna,Cod_NC,Descriere_NC,Tara_Orig,Tara_Exp,Tara_Dest,"
      "Val_Fiscala,Val_Stat,Net,Cantitate,Valoare_Valuta,Moneda,Nat_Tranz,Incoterms,Mod_Transp,VAT_ID,"
      "Factura_Numar) VALUES ('{}','RO123456',2026,{},'{}','Marfa','RO','RO','DE',{},{},{},2,10,'EUR',"
      "'1.1','EXW','3',{},'{}')",
      tip, month, code, value, value, net, vat, invoice));
}

std::vector<std::string> Names(const store::Recordset& rows) {
  std::vector<std::string> names;
  for (int i = 0; i < rows.field_count(); ++i) names.push_back(rows.field(i).name);
  return names;
}

TEST(ExportViews, RunOnManyLinesInTimeThatGrowsWithThem) {
  Installation at;
  at.session.company.Begin();
  store::Recordset line = at.session.company.QueryForUpdate("SELECT * FROM Intrastat WHERE 1=0");
  for (int i = 0; i < 20000; ++i) {
    line.AddNew();
    line.Set("TIP", "O");
    line.Set("Cod_Fiscal", "RO123456");
    line.Set("Anul", 2026);
    line.Set("Luna", 3);
    line.Set("Cod_NC", fmt::format("{:08}", i * 7919 % 5000));
    line.Set("Descriere_NC",
             "O descriere de marfa destul de lunga, cum sunt cele din tarif, pentru comparare");
    line.Set("Tara_Orig", "RO");
    line.Set("Tara_Dest", "DE");
    line.Set("VAT_ID", fmt::format("DE{:09}", i % 50));
    line.Set("Val_Fiscala", 10.1);
    line.Update();
  }
  at.session.company.Commit();
  const auto begin = std::chrono::steady_clock::now();
  const store::Recordset items = at.session.company.Query(
      fmt::format("SELECT Pozitia, Val_Fiscala1, VAT_ID1 FROM Intrastat_Sursa_Generare_O{}", kFilter));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  EXPECT_EQ(items.record_count(), 5000);
  EXPECT_LT(took.count(), 5) << "some tenths of a second on a quiet machine";
  RecordProperty("milliseconds", static_cast<int>(took.count() * 1000));
}

TEST(GroupQueries, CarryKeysTotalsAndEditableConstants) {
  Installation at;
  AddLine(at, "O", 3, "94036010", "'DE1'", 100.5, 2, "A");
  AddLine(at, "O", 3, "94036020", "'DE1'", 200, 3, "A");
  AddLine(at, "O", 3, "94036020", "'DE2'", 50, 0, "B");
  struct Case {
    const char *query, *condition;
    std::vector<std::string> keys;
    int groups;
  };
  const Case cases[] = {
      {"Intrastat_Grup_Document", " AND TOTAL_Net <> 0 ORDER BY Factura_Numar", {"Factura_Numar"}, 1},
      {"Intrastat_Grup_Incoterms_I",
       " AND TOTAL_Cantitate <> 0 ORDER BY Incoterms, Tara_Exp, Mod_Transp",
       {"Incoterms", "Tara_Exp", "Mod_Transp"},
       1},
      {"Intrastat_Grup_Incoterms_O",
       " AND TOTAL_Val_Fiscala <> 0 ORDER BY Incoterms, Tara_Exp, Mod_Transp",
       {"Incoterms", "Tara_Dest", "Mod_Transp"},
       1},
      {"Intrastat_Grup_VAT",
       " AND TOTAL_Net <> 0ORDER BY VAT_ID, Incoterms, Mod_Transp",
       {"VAT_ID", "Incoterms", "Mod_Transp"},
       1},
      {"Intrastat_Grup_Document_Greutate",
       " AND TOTAL_Cantitate <> 0 ORDER BY Factura_Numar",
       {"Factura_Numar"},
       2},
      {"Intrastat_Grup_CodVamal_Greutate", " AND TOTAL_Val_Fiscala <> 0 ORDER BY Cod_NC", {"Cod_NC"}, 2},
      {"Intrastat_Grup_Recalculare_I", "", {"Incoterms", "Mod_Transp", "Nat_Tranz", "Tara", "Procent"}, 1},
      {"Intrastat_Grup_Recalculare_O", "", {"Incoterms", "Mod_Transp", "Nat_Tranz", "Tara", "Procent"}, 1},
  };
  for (const Case& c : cases) {
    store::Recordset rows =
        at.session.company.Open(fmt::format("SELECT * FROM {}{}{}", c.query, kEditorFilter, c.condition),
                                {.updatable = false, .in_memory = true});
    EXPECT_EQ(rows.record_count(), c.groups) << c.query;
    std::vector<std::string> keys = {"TIP", "Cod_Fiscal", "Anul", "Luna"};
    keys.insert(keys.end(), c.keys.begin(), c.keys.end());
    const std::vector<std::string> names = Names(rows);
    ASSERT_GE(names.size(), keys.size()) << c.query;
    EXPECT_EQ(
        std::vector<std::string>(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(keys.size())),
        keys);
    if (rows.FindField("Procent") >= 0) {
      rows.Set("Procent", 2.5);
      EXPECT_EQ(rows["Procent"].ToDouble(), 2.5) << c.query;
    } else {
      rows.Set("Redistribuie", true);
      EXPECT_TRUE(rows["Redistribuie"].ToBoolean());
      const char* amount =
          rows.FindField("Total_GreutateNeta") >= 0 ? "Total_GreutateNeta" : "Total_Transport_Suma";
      rows.Set(amount, -10.25);
      EXPECT_EQ(rows[amount].ToDouble(), -10.25) << c.query;
    }
    if (rows.FindField("Transport_Moneda") >= 0) {
      rows.Set("Transport_Moneda", "EUR");
      rows.Set("Transp_Document", "T 1 / 2026");
      rows.Set("Transport_Curs", 4.9751);
      EXPECT_EQ(rows["Transport_Curs"].ToDouble(), 4.9751);
    }
  }
}

TEST(Operators, EveryExpressionRuns) {
  Installation at;
  AddLine(at, "O", 3, "94036010", "'DE1'", 2, 1);
  const std::map<std::string, std::array<std::string, 3>> columns = {
      // kind -> column, editor's value, typed value
      {"T", {"Moneda", "EUR", ""}},
      {"TEXT", {"Moneda", "EUR", "'EUR'"}},
      {"N", {"Val_Fiscala", "2", ""}},
      {"NUMERIC", {"Val_Fiscala", "2", "2"}},
      {"D", {"DataReceptiei", "3-15-2026", ""}},
      {"DATETIME", {"DataReceptiei", "3-15-2026", "#3-15-2026#"}},
      {"B", {"XML_Detaliat", "0", ""}},
      {"YESNO", {"XML_Detaliat", "0", "0"}}};
  int rows = 0;
  for (store::Recordset sign = at.session.company.Query("SELECT * FROM Semne_Cautare_Selectie"); !sign.eof();
       sign.MoveNext(), ++rows) {
    const std::string kind = sign["SeAplicaLa"].ToText();
    ASSERT_TRUE(columns.contains(kind)) << kind;
    const auto& [column, value, typed] = columns.at(kind);
    const std::string table = column == "XML_Detaliat" ? "Firme" : "Intrastat";
    std::string expression = sign["SemnExpresie"].ToText();
    if (const auto at_word = expression.find("Valoare"); at_word != std::string::npos)
      expression.replace(at_word, 7, value);
    const std::string select = fmt::format("SELECT COUNT(*) FROM {} WHERE 1=1 AND [{}] ", table, column);
    const auto count = at.session.company.Scalar(select + expression);
    ASSERT_TRUE(count) << select << expression;
    if (sign["DescSemn"].ToText() == "egal" && kind != "D" && kind != "DATETIME") {
      EXPECT_EQ(count->ToInteger(), 1) << expression;
    }
    const std::string sign_text = sign["Semn"].ToText();
    const std::string after = sign_text.starts_with("IS") ? "NULL" : typed.empty() ? "1" : typed;
    if (!typed.empty()) {
      EXPECT_TRUE(at.session.company.Scalar(select + sign_text + after)) << sign_text << after;
    }
  }
  EXPECT_EQ(rows, 58);
}

}  // namespace
}  // namespace setup
