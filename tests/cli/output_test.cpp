#include "cli/batch/output.h"

#include <sstream>

namespace {

using cli::JsonValue;
using cli::PlainField;
using store::Value;

TEST(CliOutput, WritesEveryKindOfValueAsAField) {
  EXPECT_EQ(PlainField(Value()), "\\N");
  EXPECT_EQ(PlainField(true), "-1");
  EXPECT_EQ(PlainField(false), "0");
  EXPECT_EQ(PlainField(std::int64_t{-7}), "-7");
  EXPECT_EQ(PlainField("a\tb\r\nc\\N"), "a\\tb\\r\\nc\\\\N");
  EXPECT_EQ(PlainField(store::Date{46085}), "2026-03-04");
  EXPECT_EQ(PlainField(store::Date{46085.75}), "2026-03-04 18:00:00");
}

TEST(CliOutput, WritesDoublesShortestAndExact) {
  EXPECT_EQ(PlainField(4.9751), "4.9751");
  EXPECT_EQ(PlainField(1000000.0), "1000000");
  EXPECT_EQ(PlainField(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(PlainField(123456789012345.0), "123456789012345");
  EXPECT_EQ(PlainField(1e300), "1e+300");
  EXPECT_EQ(PlainField(-2.5e-9), "-2.5e-09");
}

TEST(CliOutput, WritesTablesInBothForms) {
  const cli::ResultTable table{{"A", "B \"x\""}, {{Value("1\n\x01"), Value()}, {Value(2.5), Value(true)}}};
  std::ostringstream plain, json;
  cli::WritePlain(plain, table);
  cli::WriteJson(json, table);
  EXPECT_EQ(plain.str(), "A\tB \"x\"\n1\\n\x01\t\\N\n2.5\t-1\n");
  EXPECT_EQ(json.str(),
            "{\"columns\": [\"A\", \"B \\\"x\\\"\"], \"rows\": [\n"
            "[\"1\\u000a\\u0001\", null],\n[2.5, true]]}");
}

}  // namespace
