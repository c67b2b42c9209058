#include <gtest/gtest.h>

#include "companies/company_defaults.h"
#include "companies/open_company.h"
#include "companies/register.h"
#include "support/test_host.h"

namespace companies {
namespace {

using platform::Icon;

constexpr char kNoTariff[] = "Nu se poate identifica fisierul pentru tabela tarif vamal";

class CompaniesTest : public testing::Test {
 protected:
  CompaniesTest() {
    session_.settings.DataBase = "C:\\Date\\";
    test_.files.CreateFolders("C:\\Date");
    MakeFile("Comun.mdb", [](store::Connection& file) {
      file.Execute(
          "CREATE TABLE Firme (Cod_Fiscal TEXT(30) PRIMARY KEY, Nume_Firma TEXT(30), Adresa_Firma TEXT(30), "
          "Oras_Firma TEXT(30), Judet_Firma TEXT(30), CodPostal_Firma TEXT(30), Tara_Firma TEXT(30), "
          "Tel_Firma "
          "TEXT(30), Fax_Firma TEXT(30), Email_Firma TEXT(30), Reg_No_Firma TEXT(30), Persoana_Intrastat "
          "TEXT(30), Persoana_Functie TEXT(30), XML_Detaliat YESNO, ValoareStatistica YESNO, DataBaseFile "
          "TEXT(30), CreataLaData TEXT(10))");
      file.Execute(
          "CREATE TABLE Intrastat_Default (Cod_Fiscal TEXT(30) PRIMARY KEY, I_Incoterms TEXT(20), "
          "I_Mod_Transp TEXT(20), I_Nat_Tranz TEXT(20), I_Tara_Exp TEXT(20), O_Incoterms TEXT(20), "
          "O_Mod_Transp TEXT(20), O_Nat_Tranz TEXT(20), O_Tara_Dest TEXT(20))");
      file.Execute(
          "CREATE TABLE InsCodeVersions (Anul LONG, Luna LONG, Anul_End LONG, Luna_End LONG, CN_File "
          "TEXT(50))");
      file.Execute("INSERT INTO InsCodeVersions (Anul, Luna, CN_File) VALUES (2026, 1, 'CN_2026.mdb')");
    });
    MakeFile("goala.mdb", [](store::Connection& file) {
      file.Execute("CREATE TABLE Linii (N LONG PRIMARY KEY)");
      file.catalog().SetQuery({"Lista", "SELECT N FROM Linii"});
    });
    session::OpenCommonConnection(session_);
  }
  void MakeFile(const std::string& name, const std::function<void(store::Connection&)>& fill) {
    store::Connection::CreateDatabase(session::StoreEnvironment(session_), "C:\\Date\\" + name);
    store::Connection file(session::StoreEnvironment(session_));
    file.Open(store::JetString("C:\\Date\\" + name));
    fill(file);
  }
  static Fields Filled(const std::string& code, const std::string& name) {
    Fields fields = NewCompany();
    fields.Set("Cod_Fiscal", code);
    fields.Set("Nume_Firma", name);
    return fields;
  }
  /// Creates a company; the tariff file is missing in these tests and says so.
  bool Create(const std::string& code, const std::string& name) {
    test_.prompter.ExpectStarting(kNoTariff, "EROARE", platform::Icon::kCritical);
    test_.prompter.ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
    return CreateCompany(session_, Filled(code, name));
  }
  std::int64_t Registered() { return session_.common.Scalar("SELECT Count(*) FROM Firme")->ToInteger(); }

  test_support::TestHost test_;
  session::Session session_{test_.host()};
};

TEST_F(CompaniesTest, LeavingTheFiscalCode) {
  std::string code = "RO 12 34 ";
  EXPECT_TRUE(LeaveCodFiscal(session_, code));
  EXPECT_EQ(code, "RO1234");
  code = "1234";
  test_.prompter.ExpectError("Codul fiscal trebuie sa inceapa cu RO");
  EXPECT_FALSE(LeaveCodFiscal(session_, code));
  EXPECT_EQ(code, "1234");
}

TEST_F(CompaniesTest, CreatingACompanyRegistersCopiesAndOpensIt) {
  Fields fields = Filled("RO7", "Alfa & fiii");
  fields.Set("xml_detaliat", "da");
  test_.prompter.ExpectStarting(kNoTariff, "EROARE", platform::Icon::kCritical);
  test_.prompter.ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
  ASSERT_TRUE(CreateCompany(session_, fields));
  EXPECT_EQ(session_.current.Cod_Fiscal, "RO7");
  EXPECT_EQ(session_.current.Nume_Firma, "Alfa & fiii");
  EXPECT_EQ(session_.company.path(), "C:\\Date\\RO7.mdb");
  const store::Recordset row = session_.company.Query("SELECT * FROM Firme");  // through the link
  EXPECT_EQ(row["DataBaseFile"], store::Value("RO7.mdb"));
  EXPECT_EQ(row["CreataLaData"], store::Value("16/03/2026"));
  EXPECT_EQ(row["Tara_Firma"], store::Value("ROMANIA"));
  EXPECT_TRUE(row["XML_Detaliat"].ToBoolean());
  EXPECT_FALSE(row["ValoareStatistica"].ToBoolean());

  test_.prompter.ExpectError("Exista deja firma cu codul fiscal : RO7");
  session_.company.Close();
  test_.files.Remove("C:\\Date\\RO7.mdb");
  EXPECT_FALSE(CreateCompany(session_, Filled("RO7", "Alta")));
}

TEST_F(CompaniesTest, RequiredFieldsAndRefusalsChangeNothing) {
  test_.prompter.ExpectError("Cod de inregistrare fiscala  -  Obligatoriu de completat !");
  EXPECT_FALSE(CreateCompany(session_, Filled(" ", "A")));
  test_.prompter.ExpectError("Nume Firma  -  Obligatoriu de completat !");
  EXPECT_FALSE(CreateCompany(session_, Filled("RO1", "")));

  test_.files.Replace("C:\\Date\\RO1.mdb", "someone's data");
  test_.prompter.ExpectQuestion(
      "Fisierul :C:\\Date\\RO1.mdb EXISTA DEJA. RESCRIETI SI PIERDETI DATELE AFERENTE ?", "RASPUNDETI",
      Icon::kQuestion, false);
  EXPECT_FALSE(CreateCompany(session_, Filled("RO1", "A")));
  EXPECT_EQ(test_.files.Read("C:\\Date\\RO1.mdb"), "someone's data");

  test_.files.refuses = [](std::string_view) { return true; };
  test_.prompter.ExpectError(" EROARE LA COPIERE ");
  test_.prompter.ExpectStarting("", "EROARE", Icon::kCritical);  // the reason
  EXPECT_FALSE(CreateCompany(session_, Filled("RO2", "A")));
  test_.files.refuses = nullptr;
  test_.prompter.ExpectError(" EROARE LA COPIERE ");
  test_.prompter.ExpectStarting("", "EROARE", Icon::kCritical);  // the reason
  EXPECT_FALSE(CreateCompany(session_, Filled("RO\\..\\..\\2", "A")));

  test_.prompter.ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);
  EXPECT_FALSE(CreateCompany(session_, Filled("RO2", std::string(31, 'x'))));
  EXPECT_FALSE(test_.files.Exists("C:\\Date\\RO2.mdb"));

  test_.files.Remove("C:\\Date\\goala.mdb");
  test_.prompter.ExpectError("Fisierul :C:\\Date\\goala.mdb NU EXISTA.", "EROARE MAJORA");
  EXPECT_FALSE(CreateCompany(session_, Filled("RO2", "A")));
  EXPECT_EQ(Registered(), 0);
  EXPECT_FALSE(session_.company.is_open());
}

TEST_F(CompaniesTest, AnExistingFileIsReplacedOnYes) {
  test_.files.Replace("C:\\Date\\RO1.mdb", "old");
  test_.files.Replace("C:\\Date\\RO1.mdb-journal", "of an interrupted run");
  test_.prompter.ExpectQuestion(
      "Fisierul :C:\\Date\\RO1.mdb EXISTA DEJA. RESCRIETI SI PIERDETI DATELE AFERENTE ?", "RASPUNDETI",
      Icon::kQuestion, true);
  EXPECT_TRUE(Create("RO1", "A"));
  EXPECT_EQ(session_.company.Scalar("SELECT Count(*) FROM Lista")->ToInteger(), 0);
}

TEST_F(CompaniesTest, TheListLeavesOutTheReservedCode) {
  session_.common.Execute("INSERT INTO Firme (Cod_Fiscal, Nume_Firma) VALUES ('0', 'rezervat')");
  EXPECT_TRUE(Create("RO2", "beta"));
  EXPECT_TRUE(Create("RO1", "Zeta"));
  EXPECT_TRUE(Create("RO3", "Alfa"));
  std::string names;
  for (const ListedCompany& company : ListCompanies(session_)) names += company.Nume_Firma + " ";
  EXPECT_EQ(names, "Alfa beta Zeta ");
}

TEST_F(CompaniesTest, AFailedOpeningKeepsThePreviousCompany) {
  ASSERT_TRUE(Create("RO1", "Unu"));
  test_.prompter.ExpectError("EROARE MAJORA, NU EXISTA FISIERUL : \r\nC:\\Date\\RO9.mdb", "");
  EXPECT_FALSE(OpenCompany(session_, "RO9", "RO9.mdb"));
  EXPECT_TRUE(session_.company.is_open());

  test_.prompter.ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);  // not in the register
  EXPECT_FALSE(OpenCompany(session_, "RO9", "goala.mdb"));
  EXPECT_EQ(session_.company.path(), "C:\\Date\\RO1.mdb");

  session_.common.Execute("INSERT INTO Firme (Cod_Fiscal, DataBaseFile) VALUES ('RO5', 'RO5.mdb')");
  test_.files.Replace("C:\\Date\\RO5.mdb", "no database");
  test_.prompter.ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);
  EXPECT_FALSE(OpenRegisteredCompany(session_, "RO5"));
  EXPECT_FALSE(session_.company.is_open());
  EXPECT_EQ(session_.current.Cod_Fiscal, "RO1");

  test_.prompter.ExpectError("Nume firma  -  Obligatoriu de completat !");
  EXPECT_FALSE(ConfirmSelection(session_, {"Unu", "", "RO1.mdb"}));
  test_.prompter.ExpectError("Nu exista firma cu codul fiscal : RO8");
  EXPECT_FALSE(OpenRegisteredCompany(session_, "RO8"));
}

TEST_F(CompaniesTest, OpeningRefreshesOurQueriesAndLeavesTheUsers) {
  ASSERT_TRUE(Create("RO1", "Unu"));
  session_.company.catalog().SetQuery({"Lista", "SELECT N + 1 AS M FROM Linii"});
  session_.company.catalog().SetQuery({"A mea", "SELECT N FROM Linii"});
  session_.common.Execute("UPDATE Firme SET Nume_Firma = NULL");
  test_.prompter.ExpectStarting(kNoTariff, "EROARE", platform::Icon::kCritical);
  ASSERT_TRUE(OpenRegisteredCompany(session_, "RO1"));
  EXPECT_EQ(session_.current.Nume_Firma, "x");
  EXPECT_EQ(session_.company.Query("SELECT * FROM Lista").field(0).name, "N");
  EXPECT_EQ(session_.company.catalog().Queries().size(), 2u);
  EXPECT_EQ(RefreshStoredQueries(session_), 0);
}

TEST_F(CompaniesTest, ModifyingKeepsTheCode) {
  ASSERT_TRUE(Create("RO1", "Unu"));
  Fields fields = ReadCompany(session_);
  EXPECT_EQ(fields.Get("Tara_Firma"), "ROMANIA");
  EXPECT_EQ(fields.Get("XML_Detaliat"), "0");
  fields.Set("Cod_Fiscal", "RO2");
  fields.Set("Nume_Firma", "Doi");
  fields.Set("ValoareStatistica", "1");
  test_.prompter.ExpectInfo("Datele au fost salvate", "Mesaj");
  EXPECT_TRUE(ModifyCompany(session_, fields));
  EXPECT_EQ(ReadCompany(session_).Get("Nume_Firma"), "Doi");
  EXPECT_EQ(ReadCompany(session_).Get("ValoareStatistica"), "1");

  fields.Set("Oras_Firma", std::string(31, 'x'));
  fields.Set("Adresa_Firma", "alta");
  test_.prompter.ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);
  EXPECT_FALSE(ModifyCompany(session_, fields));
  EXPECT_EQ(ReadCompany(session_).Get("Adresa_Firma"), "");
}

TEST_F(CompaniesTest, DefaultsFallBackAndSurviveACompanyWithoutARow) {
  ASSERT_TRUE(Create("RO1", "Unu"));
  EXPECT_EQ(session_.defaults.I_Incoterms, "");  // no row: left as at the first start
  Fields fields = ReadDefaults(session_);
  ReadDefaults(session_);
  EXPECT_EQ(session_.common.Scalar("SELECT Count(*) FROM Intrastat_Default")->ToInteger(), 1);
  EXPECT_EQ(fields.Get("I_Incoterms"), "CPT");
  EXPECT_EQ(fields.Get("O_Incoterms"), "EXW");
  EXPECT_EQ(fields.Get("O_Tara_Dest"), "");
  fields.Set("I_Incoterms", "");
  fields.Set("O_Mod_Transp", "1");
  fields.Set("I_Tara_Exp", "DE");
  fields.Set("O_Nat_Tranz", "8.");  // as the choice list shows a code without second digit
  EXPECT_TRUE(SaveDefaults(session_, fields));
  EXPECT_EQ(session_.defaults.O_Nat_Tranz, "8");
  EXPECT_EQ(session_.defaults.I_Incoterms, "CPT");
  EXPECT_EQ(session_.defaults.O_Mod_Transp, "1");

  ASSERT_TRUE(Create("RO2", "Doi"));
  EXPECT_EQ(session_.defaults.I_Tara_Exp, "DE");

  fields.Set("I_Tara_Exp", std::string(21, 'x'));
  test_.prompter.ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);
  EXPECT_FALSE(SaveDefaults(session_, fields));
  EXPECT_EQ(session_.defaults.I_Tara_Exp, "DE");
}

}  // namespace
}  // namespace companies
