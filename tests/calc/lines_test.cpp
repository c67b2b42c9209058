#include "declarations/lines/lines.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace declarations {
namespace {

const Identity kMarch{"I", "RO123456", 2026, 3};

TEST(Lines, FiltersQuoteTextsAndOnlyTheEditorLeavesTheFiscalCodeOut) {
  EXPECT_EQ(IdentityFilter(kMarch),
            " WHERE [TIP]='I' AND [Cod_Fiscal]='RO123456' AND [Anul]=2026 AND [Luna]=3");
  EXPECT_EQ(EditorFilter(kMarch), " WHERE [TIP] ='I' AND [Anul]=2026 AND [Luna]=3");
}

TEST(Lines, ColumnListsHaveTheirLengthsAndTheShortOneIsAPrefix) {
  const auto count = [](std::string_view list) { return 1 + std::count(list.begin(), list.end(), ','); };
  EXPECT_EQ(count(kEditorColumns), 37);
  EXPECT_EQ(count(kEditorShortColumns), 33);
  EXPECT_EQ(count(kProvenanceColumns), 31);
  EXPECT_EQ(count(kCheckerColumns), 21);
  const std::string tail = ",Transp_Document,Transport_Suma,Transport_Moneda,Transport_Curs";
  EXPECT_EQ(kEditorShortColumns + tail, kEditorColumns);
}

TEST(Lines, CaptionsFollowTheFlow) {
  EXPECT_EQ(GridCaption("DataReceptiei", true), "Data receptiei");
  EXPECT_EQ(GridCaption("DataReceptiei", false), "Data livrarii");
  EXPECT_EQ(GridCaption("vat_id", true), "Exp TVA cod");
  EXPECT_EQ(GridCaption("VAT_ID", false), "Dest TVA cod");
  EXPECT_EQ(GridCaption("Record_ID", true), "");
  EXPECT_EQ(GridCaption("Exista_UMS", false), "");
}

}  // namespace
}  // namespace declarations
