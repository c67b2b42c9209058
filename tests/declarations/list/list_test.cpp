#include <gmock/gmock.h>

#include "declarations/list/declaration_list.h"
#include "support/sample_lines.h"

namespace declarations {
namespace {

using platform::Icon;

class DeclarationListTest : public testing::Test {
 protected:
  DeclarationListTest() {
    test_support::AddLine(at.session, "I", 2025, 12, {{"Val_Fiscala", 50.5}});
    test_support::AddLine(at.session, "I", 2026, 1);
    test_support::AddLine(at.session, "O", 2026, 1);
    test_support::AddLine(at.session, "I", 2026, 1);
    EXPECT_TRUE(list.Sort());
  }
  int RowOf(std::string_view TIP, int month) {
    for (int row = 0; row < list.row_count(); ++row) {
      if (list.ValueAt(row, 0).ToText() == TIP && list.ValueAt(row, 3).ToInteger() == month) return row;
    }
    return -1;
  }

  test_support::Installation at;
  DeclarationList list{at.session, ","};
};

TEST_F(DeclarationListTest, ShowsTheNewestFirstWithItsTotals) {
  EXPECT_EQ(list.ValueAt(2, 3).ToText(), "12");
  EXPECT_EQ(list.ValueAt(RowOf("I", 1), 7).ToText(), "2");
  EXPECT_EQ(list.CountText(), "Inregistrari: 3");
  EXPECT_DOUBLE_EQ(list.total_Val_Fiscala(), 350.5);
}

TEST_F(DeclarationListTest, DeletesOneDirectionOfAMonthAfterAYes) {
  at.prompter().ExpectError("Selectati un document", "MESAJ");
  EXPECT_FALSE(list.Delete(-1));
  const std::string question = "STERGETI ACESTA DECLARATIE ?\r\nI - 2026 - 1";
  at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, false);
  EXPECT_FALSE(list.Delete(RowOf("I", 1)));
  at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, true);
  const std::string report = at.InSystem("Verificare\\RO123456_I_1_2026.txt");
  at.files().CreateFolders(at.InSystem("Verificare\\"));
  at.files().Replace(report, "probleme");
  EXPECT_TRUE(list.Delete(RowOf("I", 1)));
  EXPECT_FALSE(at.files().Exists(report));
  EXPECT_EQ(RowOf("I", 1), -1);
  EXPECT_NE(RowOf("O", 1), -1);
  EXPECT_EQ(list.ValueAt(1, 3).ToText(), "12");  // still the newest first
}

TEST_F(DeclarationListTest, SearchesAndFiltersByTheColumnsType) {
  at.prompter().ExpectError("Coloana de cautare  -  Obligatoriu de completat !");
  at.prompter().ExpectError("Expresie de cautare  -  Obligatoriu de completat !");
  EXPECT_EQ(list.Search(-1, "", 0), -1);
  EXPECT_EQ(list.Search(3, "12", 0), 2);
  EXPECT_EQ(list.Search(5, "50,5", 1), 2);
  EXPECT_EQ(list.Search(0, "livrare", 2), RowOf("O", 1));  // as the grid shows it, and round the end
  at.prompter().ExpectError("Nici o inregistrare NU corespunde criteriului de cautare", "Mesaj");
  EXPECT_EQ(list.Search(1, "Corectie", 0), -1);

  EXPECT_TRUE(list.Filter(1, "ou"));
  EXPECT_EQ(list.row_count(), 3);
  EXPECT_TRUE(list.Filter(2, "2026"));
  EXPECT_EQ(list.CountText(), "Inregistrari: 2");
  EXPECT_DOUBLE_EQ(list.total_Val_Fiscala(), 300);
  list.ShowAll();
  EXPECT_EQ(list.row_count(), 3);

  test_support::AddLine(at.session, "O", 2026, 5, {{"Net", 0.1}});
  test_support::AddLine(at.session, "O", 2026, 5, {{"Net", 0.2}});
  EXPECT_TRUE(list.Sort());
  EXPECT_EQ(list.Search(6, "0,3", 0), RowOf("O", 5)) << "sums have no digits that nobody typed";
}

TEST_F(DeclarationListTest, OpensAndPrintsTheSelectedOne) {
  const std::optional<Identity> identity = list.Selected(2);
  ASSERT_TRUE(identity);
  EXPECT_EQ(DeclarationList::ModifyTitle(*identity), "Modificare Declaratie : I / 2025 / 12");
  at.session.common.Execute("UPDATE Firme SET XML_Detaliat=-1");
  const std::optional<PrintCompany> company = list.Print(2);
  ASSERT_TRUE(company);
  EXPECT_EQ(company->Nume_Firma, "PROBA SRL");
  EXPECT_TRUE(company->XML_Detaliat);
  at.session.common.Execute("DELETE FROM Firme");
  at.prompter().ExpectError("Firma RO123456 nu mai este in registrul firmelor");
  EXPECT_FALSE(list.Print(2));
  at.prompter().ExpectInfo("Apasati butonul Genereaza fisier Intrastat. Stanga Sus");
  list.Hint();
}

}  // namespace
}  // namespace declarations
