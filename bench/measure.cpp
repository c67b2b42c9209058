#include "measure.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace bench {

double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double SecondsOf(const std::function<void()>& work) {
  const double start = Seconds();
  work();
  return Seconds() - start;
}

double Shortest(int runs, const std::function<void()>& work) {
  double best = 1e9;
  for (int i = 0; i < runs; ++i) best = std::min(best, SecondsOf(work));
  return best;
}

Raw::Raw(const std::string& file) { Check(sqlite3_open(file.c_str(), &db_)); }

Raw::~Raw() { sqlite3_close(db_); }

void Raw::Check(int result) {
  if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db_));
}

void Raw::Run(const std::string& sql) { Check(sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr)); }

void Raw::Prepare(const std::string& sql, Prepared& out) {
  Check(sqlite3_prepare_v2(db_, sql.c_str(), -1, &out.handle, nullptr));
}

int Raw::Step(const std::string& sql) {
  Prepared statement;
  Prepare(sql, statement);
  int rows = 0;
  double sum = 0;
  for (; sqlite3_step(statement.handle) == SQLITE_ROW; ++rows) {
    for (int i = 0; i < sqlite3_column_count(statement.handle); ++i) {
      switch (sqlite3_column_type(statement.handle, i)) {
        case SQLITE_NULL:
          break;
        case SQLITE_TEXT:
          sum += *sqlite3_column_text(statement.handle, i) + sqlite3_column_bytes(statement.handle, i);
          break;
        default:
          sum += sqlite3_column_double(statement.handle, i);
      }
    }
  }
  looked_at_ = looked_at_ + sum;
  return rows;
}

}  // namespace bench
