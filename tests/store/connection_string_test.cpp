#include "store/connection_string.h"

#include <gtest/gtest.h>

#include "store/connection.h"

namespace store {
namespace {

using Kind = ConnectionRequest::Kind;

TEST(ConnectionStrings, AreBuiltLetterForLetter) {
  EXPECT_EQ(JetString("C:\\a.mdb"),
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='C:\\a.mdb';Mode=Read|Write");
  EXPECT_EQ(CommonShapeString("C:\\a.mdb"),
            "PROVIDER=MSDataShape;Data Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='C:\\a.mdb';"
            "Mode=Read|Write");
  EXPECT_EQ(CompanyShapeString("C:\\a.mdb"),
            "Provider=MSDataShape;Data Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='C:\\a.mdb';"
            "Mode=Read|Write");
  EXPECT_EQ(ImportSheetString("C:\\a.xls"),
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\a.xls;"
            "Extended Properties=\"Excel 8.0; IMEX=1;\"");
  EXPECT_EQ(SampleSheetString("C:\\a.xls"),
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\a.xls;Extended Properties=\"Excel 8.0\"");
  EXPECT_EQ(TextFolderString("C:\\CursBNR\\"),
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\CursBNR\\;Extended Properties='text;HDR=NO'");
}

TEST(ConnectionStrings, ReadBackWhatTheyName) {
  for (const auto& text : {JetString("C:\\O'Neil\\a.mdb"), CommonShapeString("C:\\O'Neil\\a.mdb"),
                           CompanyShapeString("C:\\O'Neil\\a.mdb")}) {
    const ConnectionRequest request = ParseConnectionString(text);
    EXPECT_EQ(request.kind, Kind::kDatabase) << text;
    EXPECT_EQ(request.data_source, "C:\\O'Neil\\a.mdb") << text;
    EXPECT_FALSE(request.read_only) << text;
  }
  const ConnectionRequest import = ParseConnectionString(ImportSheetString("C:\\x=y.xls"));
  EXPECT_EQ(import.kind, Kind::kWorksheet);
  EXPECT_EQ(import.data_source, "C:\\x=y.xls");
  EXPECT_TRUE(import.headings);
  EXPECT_TRUE(import.mixed_as_text);
  EXPECT_FALSE(ParseConnectionString(SampleSheetString("C:\\x.xls")).mixed_as_text);
  const ConnectionRequest rates = ParseConnectionString(TextFolderString("C:\\CursBNR\\"));
  EXPECT_EQ(rates.kind, Kind::kTextFolder);
  EXPECT_FALSE(rates.headings);
}

TEST(ConnectionStrings, TakeTheLastOfANameInAnyQuotes) {
  const ConnectionRequest request =
      ParseConnectionString("data source = 'C:\\a.mdb' ; DATA SOURCE=\"C:\\b;c.mdb\"; Mode = read ;;");
  EXPECT_EQ(request.data_source, "C:\\b;c.mdb");
  EXPECT_TRUE(request.read_only);
  EXPECT_EQ(ParseConnectionString("Data Source='C:\\open.mdb").data_source, "'C:\\open.mdb");
  EXPECT_EQ(ParseConnectionString("").data_source, "");
  EXPECT_FALSE(ParseConnectionString("Data Source=a.xls;Extended Properties='Excel 8.0; hdr=no'").headings);
}

}  // namespace
}  // namespace store
