#pragma once

#include <sqlite3.h>

#include <functional>
#include <string>

namespace bench {

double Seconds();                                              ///< monotonic
double SecondsOf(const std::function<void()>& work);           ///< one run
double Shortest(int runs, const std::function<void()>& work);  ///< the shortest of some runs, in seconds

/// SQLite without the dialect, on a file of the installation or on one of its own. Throws std::runtime_error.
class Raw {
 public:
  explicit Raw(const std::string& file);
  ~Raw();
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;

  sqlite3* db() const { return db_; }
  void Run(const std::string& sql);
  /// Steps through the rows and looks at every value; the rows.
  int Step(const std::string& sql);

  struct Prepared {
    sqlite3_stmt* handle = nullptr;
    ~Prepared() { sqlite3_finalize(handle); }
  };
  void Prepare(const std::string& sql, Prepared& out);

 private:
  void Check(int result);
  sqlite3* db_ = nullptr;
  volatile double looked_at_ = 0;
};

}  // namespace bench
