// Any text is either refused with an Error or becomes a statement that SQLite prepares; Normalize and the
// parser cut the same literals out of it.
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "store/dialect/lexer.h"
#include "store/dialect/translate.h"
#include "store/error.h"
#include "store/functions.h"

namespace {

using store::ColumnType;
using namespace store::dialect;

class Schema : public SchemaSource {
 public:
  Schema() {
    sqlite3_open(":memory:", &db_);
    store::RegisterFunctions(db_);
    sqlite3_exec(
        db_,
        "CREATE TABLE t (id INTEGER PRIMARY KEY, s TEXT COLLATE DX, n INTEGER, d REAL, z REAL, y INTEGER);"
        "CREATE TABLE u (s TEXT COLLATE DX, v REAL)",
        nullptr, nullptr, nullptr);
    t_.sqlite_name = "\"t\"";
    t_.columns = {{"id", ColumnType::kCounter}, {"s", ColumnType::kText, 20}, {"n", ColumnType::kLong},
                  {"d", ColumnType::kDouble},   {"z", ColumnType::kDateTime}, {"y", ColumnType::kYesNo}};
    t_.counter_column = "id";
    u_.sqlite_name = "\"u\"";
    u_.columns = {{"s", ColumnType::kText, 5}, {"v", ColumnType::kDouble}};
    q_.is_query = true;
    q_.query_text = "SELECT s AS k, SUM(n) AS total, MAX(z) AS last FROM t GROUP BY s ORDER BY s";
  }
  const Relation* Find(std::string_view name) const override {
    return name == "t" ? &t_ : name == "u" ? &u_ : name == "q" ? &q_ : nullptr;
  }
  void Prepare(const std::string& sql) const {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      const std::string_view message = sqlite3_errmsg(db_);
      // SQLite's own limits are no fault of the translation.
      for (const char* limit : {"parser stack overflow", "too large", "too many", "at most"}) {
        if (message.find(limit) != std::string_view::npos) return;
      }
      std::fprintf(stderr, "%s\n%s\n", sql.c_str(), sqlite3_errmsg(db_));
      std::abort();
    }
    sqlite3_finalize(statement);
  }

 private:
  sqlite3* db_ = nullptr;
  Relation t_, u_, q_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Schema schema;
  static Normalized normalized;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    ParseRowCondition(text);
  } catch (const store::Error&) {
  }
  try {
    Normalize(text, normalized);
    const Lexed lexed = Lex(text);
    if (lexed.literals.size() != normalized.literals.size()) std::abort();
    const Translation made = Translate(text, schema);
    for (const Parameter& parameter : made.parameters) {
      if (parameter.literal >= 0)
        LiteralValue(normalized.literals.at(static_cast<std::size_t>(parameter.literal)));
    }
    if (!made.sql.empty()) schema.Prepare(made.sql);
  } catch (const store::Error&) {
  }
  return 0;
}
