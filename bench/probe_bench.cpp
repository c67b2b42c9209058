// Code probes whose statements are built as text, through the dialect, against the same probes as a raw
// prepared SQLite statement, within one transaction: the ratio is to be 3 at most. Outside a transaction each
// probe takes and leaves the file's lock, with the dialect and without it.
//
//   probe_bench [PROBES]     65,000 unless given

#include <fmt/format.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "store/connection.h"
#include "support/test_host.h"

namespace {

constexpr int kCodes = 10'000;
constexpr char kPath[] = "C:\\Bench\\HS.mdb";

std::string Code(int n) { return fmt::format("{:08}", 1'012'100 + n * 7); }

double Seconds(const std::function<void()>& work) {
  auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Half of the probes name a code of the table.
std::vector<std::string> ProbedCodes(int probes) {
  std::vector<std::string> codes;
  std::uint32_t state = 12345;
  for (int i = 0; i < probes; ++i) {
    state = state * 1664525 + 1013904223;
    codes.push_back(Code(static_cast<int>((state >> 8) % (2 * kCodes))));
  }
  return codes;
}

void MakeTable(const store::Environment& environment) {
  store::Connection::CreateDatabase(environment, kPath);
  store::Connection connection(environment);
  connection.Open(store::JetString(kPath));
  connection.Execute(
      "CREATE TABLE HS_8 (HS8_COD TEXT(8), HS12_COD TEXT(12), DESCRIERE MEMO, UM_SUPL TEXT(20), AN_END "
      "LONG)");
  connection.Execute("CREATE INDEX HS_8_Cod ON HS_8 (HS8_COD)");
  connection.catalog().SetQuery({"HS8", "SELECT HS8_COD, UM_SUPL FROM HS_8 WHERE AN_END IS NULL"});
  store::Transaction transaction(connection);
  for (int i = 0; i < kCodes; ++i) {
    connection.Execute(
        fmt::format("INSERT INTO HS_8 (HS8_COD, HS12_COD, DESCRIERE, UM_SUPL) VALUES ('{0}', '{0}0000', "
                    "'Masini si aparate', {1})",
                    Code(i), i % 3 == 0 ? "'p/st'" : "NULL"));
  }
  transaction.Commit();
}

/// The same table and probes without the dialect, its collation and its functions.
class Raw {
 public:
  explicit Raw(const std::string& file) {
    sqlite3_open(file.c_str(), &db_);
    Run("CREATE TABLE HS_8 (HS8_COD TEXT, HS12_COD TEXT, DESCRIERE TEXT, UM_SUPL TEXT, AN_END INTEGER)");
    Run("CREATE INDEX HS_8_Cod ON HS_8 (HS8_COD)");
    Run("BEGIN");
    for (int i = 0; i < kCodes; ++i) {
      Run(fmt::format("INSERT INTO HS_8 VALUES ('{0}', '{0}0000', 'Masini si aparate', {1}, NULL)", Code(i),
                      i % 3 == 0 ? "'p/st'" : "NULL"));
    }
    Run("COMMIT");
  }
  ~Raw() { sqlite3_close(db_); }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;

  double Probe(const char* sql, const std::vector<std::string>& codes, bool one_transaction, int& found) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(db_));
    double seconds = Seconds([&] {
      if (one_transaction) Run("BEGIN");
      for (const std::string& code : codes) {
        sqlite3_bind_text(statement, 1, code.data(), static_cast<int>(code.size()), SQLITE_STATIC);
        if (sqlite3_step(statement) == SQLITE_ROW) ++found;
        sqlite3_reset(statement);
      }
      if (one_transaction) Run("COMMIT");
    });
    sqlite3_finalize(statement);
    return seconds;
  }

 private:
  void Run(const std::string& sql) {
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(db_));
    }
  }
  sqlite3* db_ = nullptr;
};

struct Case {
  const char* name;
  const char* before;  ///< statement text before the code
  const char* after;
  const char* raw;
};

constexpr Case kCases[] = {
    {"code exists", "SELECT HS8_COD FROM HS_8 WHERE HS8_COD ='", "'",
     "SELECT HS8_COD FROM HS_8 WHERE HS8_COD = ?1"},
    {"code exists, stored query", "SELECT HS8_COD FROM HS8 WHERE HS8_COD ='", "'",
     "SELECT HS8_COD FROM HS_8 WHERE AN_END IS NULL AND HS8_COD = ?1"},
    {"description and unit",
     "SELECT HS8_COD, LEFT(MAX(DESCRIERE),250) AS DESCRIERE1, MAX(UM_SUPL) AS UM_SUPL1, "
     "IIF(ISNULL(MAX([UM_SUPL]))=0,1,0) AS EXISTA_UM FROM HS_8 WHERE [HS8_COD]='",
     "' AND ISNULL([AN_END])=-1 AND ISNULL([HS8_COD])=0 GROUP BY HS8_COD",
     "SELECT HS8_COD, substr(max(DESCRIERE), 1, 250), max(UM_SUPL), max(UM_SUPL) IS NOT NULL FROM HS_8 "
     "WHERE HS8_COD = ?1 AND AN_END IS NULL AND HS8_COD IS NOT NULL GROUP BY HS8_COD"},
};

int Run(int probes) {
  test_support::TestHost host;
  store::Environment environment;
  environment.drives = &host.drives;
  host.files.CreateFolders("C:\\Bench\\");
  MakeTable(environment);
  Raw raw((host.folder.path() / "raw.db").string());
  store::Connection connection(environment);
  connection.Open(store::JetString(kPath));
  std::vector<std::string> codes = ProbedCodes(probes);

  std::printf("| %d probes | raw | dialect | ratio | raw, each alone | dialect, each alone | ratio |\n",
              probes);
  std::printf("|---|---|---|---|---|---|---|\n");
  bool within = true;
  for (const Case& one : kCases) {
    double raw_together = 1e9, together = 1e9, raw_alone = 1e9, alone = 1e9;
    // The best of three turns each: the machine has other work.
    for (int turn = 0; turn < 3; ++turn) {
      int expected = 0, expected_alone = 0, found = 0, found_alone = 0;
      raw_together = std::min(raw_together, raw.Probe(one.raw, codes, true, expected));
      raw_alone = std::min(raw_alone, raw.Probe(one.raw, codes, false, expected_alone));
      auto probe = [&](int& count) {
        for (const std::string& code : codes) {
          if (connection.Scalar(one.before + code + one.after)) ++count;
        }
      };
      alone = std::min(alone, Seconds([&] { probe(found_alone); }));
      connection.Begin();
      together = std::min(together, Seconds([&] { probe(found); }));
      connection.Rollback();
      if (found != expected || found_alone != expected) {
        std::printf("%s: found %d and %d, raw %d\n", one.name, found, found_alone, expected);
        return 1;
      }
    }
    std::printf("| %s | %.3f s | %.3f s | %.2f | %.3f s | %.3f s | %.2f |\n", one.name, raw_together,
                together, together / raw_together, raw_alone, alone, alone / raw_alone);
    within = within && together <= 3 * raw_together;
  }
  return within ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc > 1 ? std::atoi(argv[1]) : 65'000);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
