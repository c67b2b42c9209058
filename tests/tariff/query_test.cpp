#include <gmock/gmock.h>

#include "support/installation.h"
#include "support/sample_lines.h"
#include "tariff/query/builder.h"
#include "tariff/query/scripts.h"

namespace {

using test_support::Installation;
using testing::ElementsAre;

tariff::QueryColumn& ColumnOf(std::vector<tariff::QueryColumn>& columns, std::string_view name) {
  for (tariff::QueryColumn& each : columns) {
    if (each.FieldName == name) return each;
  }
  throw std::runtime_error("no column " + std::string(name));
}

TEST(QueryBuilder, ComposesWhatIsTickedAndAsked) {
  Installation at;
  for (const char* day : {"2026-03-05", "2026-05-03", "2026-12-31"}) {
    at.Run(
        fmt::format("INSERT INTO Intrastat (TIP, Cod_Fiscal, Anul, Luna, DataReceptiei, Cod_NC, Net) "
                    "VALUES ('I','RO123456',2026,3,#{}#,'84713000',12.5)",
                    day));
  }
  const std::vector<tariff::SearchOperator> operators = tariff::OperatorsFor(at.session.company, "");
  std::vector<tariff::QueryColumn> columns = tariff::QueryColumns(at.session.company, "Intrastat");
  ColumnOf(columns, "Record_ID").shown = ColumnOf(columns, "Cod_NC").shown = true;
  ASSERT_TRUE(tariff::ChooseOperator(ColumnOf(columns, "DataReceptiei"), operators, "mai mare sau egal"));
  EXPECT_EQ(tariff::RowWithoutValue(columns), &ColumnOf(columns, "DataReceptiei") - columns.data());
  tariff::EnterValue(ColumnOf(columns, "DataReceptiei"), "3.5.2026");
  EXPECT_EQ(ColumnOf(columns, "DataReceptiei").value, "#03.05.2026#");
  ASSERT_TRUE(tariff::ChooseOperator(ColumnOf(columns, "Cod_NC"), operators, "contine (%text%)"));
  tariff::EnterValue(ColumnOf(columns, "Cod_NC"), "'8471%'");
  ASSERT_TRUE(tariff::ChooseOperator(ColumnOf(columns, "Net"), operators, "="));
  tariff::EnterValue(ColumnOf(columns, "Net"), "12.5");
  ASSERT_TRUE(tariff::ChooseOperator(ColumnOf(columns, "VAT_ID"), operators, "este gol (NULL)"));
  EXPECT_EQ(tariff::RowWithoutValue(columns), std::nullopt);
  // A value alone asks nothing.
  tariff::EnterValue(ColumnOf(columns, "Moneda"), "'EUR'");

  const tariff::BuiltQuery built = tariff::BuildQuery("Intrastat", columns);
  EXPECT_THAT(built.text,
              testing::StartsWith("SELECT Intrastat.[Record_ID], Intrastat.[Cod_NC] FROM Intrastat "
                                  "WHERE ["));
  EXPECT_THAT(built.text, testing::HasSubstr("[DataReceptiei] >= #05-03-2026#"));
  EXPECT_THAT(built.text, testing::HasSubstr("[Cod_NC] LIKE '8471%'"));
  EXPECT_THAT(built.text, testing::HasSubstr("[Net] = 12.5"));
  EXPECT_THAT(built.text, testing::HasSubstr("[VAT_ID] IS NULL"));
  EXPECT_EQ(built.RowAt(static_cast<int>(built.text.find("12.5"))),
            &ColumnOf(columns, "Net") - columns.data());
  EXPECT_EQ(built.RowAt(3), -1);
  EXPECT_EQ(tariff::RunStatement(at.session, built.text).record_count(), 2);
}

TEST(QueryBuilder, ValuesStayAsTypedButForDatesAndYesNo) {
  const auto value = [](const char* type, const char* typed) {
    tariff::QueryColumn column;
    column.DataType = type;
    tariff::EnterValue(column, typed);
    return column.value + " -> " + tariff::ConditionValue(column);
  };
  EXPECT_EQ(value("TEXT", " DE "), "DE -> DE");
  EXPECT_EQ(value("TEXT", "'05.03.2026'"), "'05.03.2026' -> '05.03.2026'");
  EXPECT_EQ(value("DATETIME", "#5.3.26#"), "#05.03.2026# -> #03-05-2026#");
  EXPECT_EQ(value("DATETIME", "05.03.2026 14:30"), "#05.03.2026 14:30:00# -> #03-05-2026 14:30:00#");
  EXPECT_EQ(value("DATETIME", "NULL"), "NULL -> NULL");
  EXPECT_EQ(value("DATETIME", "[Data_Fact]"), "[Data_Fact] -> [Data_Fact]");
  EXPECT_EQ(value("YESNO", "Da"), "True -> True");
  tariff::QueryColumn unmarked;
  unmarked.DataType = "DATETIME";
  unmarked.value = "05.03.2026";
  EXPECT_EQ(tariff::ConditionValue(unmarked), "03-05-2026");
}

TEST(QueryBuilder, OperatorsBelongToAType) {
  Installation at;
  const std::vector<tariff::SearchOperator> all = tariff::OperatorsFor(at.session.company, "");
  EXPECT_LT(tariff::OperatorsFor(at.session.company, "YESNO").size(), all.size());
  tariff::QueryColumn net;
  net.DataType = "NUMERIC";
  EXPECT_FALSE(tariff::ChooseOperator(net, all, "contine (%text%)"));
  EXPECT_EQ(net.Semn, "");
  ASSERT_TRUE(tariff::ChooseOperator(net, all, "nu este gol (NULL)"));
  EXPECT_EQ(net.value, "NULL");
  ASSERT_TRUE(tariff::ChooseOperator(net, all, "egal"));
  EXPECT_EQ(net.value, "");
  ASSERT_TRUE(tariff::ChooseOperator(net, all, ""));
  EXPECT_EQ(net.Semn, "");
}

TEST(QueryBuilder, EveryTableOfACompanyCanBeShown) {
  Installation at;
  const std::vector<store::SchemaTable> tables = tariff::QueryTables(at.session.company);
  EXPECT_GT(tables.size(), 20u);
  for (const store::SchemaTable& table : tables) {
    SCOPED_TRACE(table.name);
    std::vector<tariff::QueryColumn> columns = tariff::QueryColumns(at.session.company, table.name);
    for (tariff::QueryColumn& each : columns) each.shown = true;
    const std::string text = tariff::BuildQuery(table.name, columns).text;
    EXPECT_EQ(tariff::RunStatement(at.session, text).field_count(), static_cast<int>(columns.size()));
  }
}

TEST(QueryBuilder, WordsAreFoundAnywhereInTheirOrder) {
  Installation at;
  EXPECT_EQ(tariff::ForbiddenWord("SELECT * FROM Intrastat"), std::nullopt);
  EXPECT_EQ(tariff::ForbiddenWord("select * from Intrastat where Descriere = 'offset'"), "SET");
  EXPECT_EQ(tariff::ForbiddenWord("set x; uPdAte y"), "UPDATE");
  EXPECT_EQ(tariff::ForbiddenWord("EXECUTE x"), "EXEC");
  EXPECT_EQ(tariff::ForbiddenWord("SELECT Reopened, Closed FROM x"), "OPEN");
  for (const char* word : {"UPDATE", "INSERT", "DELETE", "EXEC", "ALTER", "DROP", "DATABASE", "BACKUP",
                           "CREATE", "OPEN", "CLOSE", "SET", "GRANT", "RESTORE", "REVOKE"}) {
    EXPECT_EQ(tariff::ForbiddenWord(fmt::format("x{}x", word)), word);
  }
  at.prompter().ExpectError("Nu este permis sa rulati comanda :DROP");
  EXPECT_FALSE(tariff::MayRun(at.session, "drop table Scripts"));
  at.prompter().ExpectError("Script SQL  -  Obligatoriu de completat !");
  EXPECT_FALSE(tariff::MayRun(at.session, " \r\n\t"));
}

TEST(QueryBuilder, StatementsThatWouldWriteAreRefusedByTheStoreToo) {
  Installation at;
  at.Run("INSERT INTO Scripts (Script_Name, Script_SQL) VALUES ('a', 'b')");
  for (const char* statement :
       {"SELECT * INTO Copie FROM Scripts", "DELETE FROM Scripts", "UPDATE Scripts SET Script_SQL='c'",
        "DROP TABLE Scripts", "SELECT * FROM Scripts; DELETE FROM Scripts"}) {
    EXPECT_THROW(tariff::RunStatement(at.session, statement), store::Error) << statement;
  }
  EXPECT_EQ(tariff::ScriptText(at.session, "A"), "b");
}

TEST(QueryBuilder, ScriptsKeepTheirApostrophes) {
  Installation at;
  const std::string text = "SELECT * FROM Intrastat WHERE TIP='I'\nORDER BY Net";
  tariff::SaveScript(at.session, "Lista lui 'Ion'", text);
  EXPECT_THAT(tariff::ScriptNames(at.session), ElementsAre("Lista lui 'Ion'"));
  EXPECT_EQ(tariff::ScriptText(at.session, "Lista lui 'Ion'"), text);
  EXPECT_TRUE(tariff::ScriptExists(at.session, "lista lui 'ion'"));
  EXPECT_THROW(tariff::SaveScript(at.session, "LISTA lui 'Ion'", text), store::Error);
  tariff::ReplaceScript(at.session, "lista lui 'ion'", "SELECT 'x'");
  EXPECT_EQ(tariff::ScriptText(at.session, "Lista lui 'Ion'"), "SELECT 'x'");
  tariff::DeleteScript(at.session, "Lista lui 'Ion'");
  EXPECT_EQ(tariff::ScriptText(at.session, "Lista lui 'Ion'"), std::nullopt);
}

TEST(QueryBuilder, ALongSearchCanBeStopped) {
  Installation at;
  for (int i = 0; i < 300; ++i) test_support::AddLine(at.session, "I", 2026, 3, {});
  at.machine.progress.cancelled = true;
  try {
    tariff::RunStatement(at.session, "SELECT COUNT(*) FROM Intrastat AS a, Intrastat AS b, Intrastat AS c");
    FAIL() << "not stopped";
  } catch (const store::Error& error) {
    EXPECT_EQ(error.number(), store::kCancelled);
  }
  at.machine.progress.cancelled = false;
  EXPECT_EQ(tariff::RunStatement(at.session, "SELECT COUNT(*) FROM Intrastat")[0].ToInteger(), 300);
}

}  // namespace
