#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "store/error.h"
#include "store/value.h"

namespace store {

/// First part of a statement, as errors name it.
std::string StatementHead(std::string_view statement);

/// Turns the failure of the last SQLite call into an Error. Messages of our own functions
/// ("dx:<number>:<text>") keep their number; the rest is told by result code, with SQLite's reason behind it.
/// `file` is the data file as the user knows it.
[[noreturn]] void ThrowSqlite(sqlite3* db, int code, std::string_view source, std::string_view file);

/// A prepared statement that is finalised with its owner.
class Statement {
 public:
  Statement() = default;
  Statement(sqlite3* db, std::string_view sql, std::string_view source, std::string_view file);
  ~Statement() { sqlite3_finalize(handle_); }
  Statement(Statement&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
  Statement& operator=(Statement&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  sqlite3_stmt* get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

  void Bind(int index, std::string_view text);  ///< the text must outlive the step
  void Bind(int index, double number) { sqlite3_bind_double(handle_, index, number); }
  void BindNull(int index) { sqlite3_bind_null(handle_, index); }
  void Bind(int index, std::int64_t number) { sqlite3_bind_int64(handle_, index, number); }
  /// True while there is a row. Throws on failure, after which the statement is reset.
  bool Step(std::string_view source, std::string_view file);
  void Reset() { sqlite3_reset(handle_); }

  std::string_view Text(int column) const;
  std::int64_t Integer(int column) const { return sqlite3_column_int64(handle_, column); }

 private:
  sqlite3_stmt* handle_ = nullptr;
};

/// Binds a value whose text SQLite copies.
void BindCopied(sqlite3_stmt* statement, int index, const Value& value);

/// Resets a statement when a block ends, so that no read lock outlives it.
class ResetGuard {
 public:
  explicit ResetGuard(sqlite3_stmt* statement) : statement_(statement) {}
  ~ResetGuard() { sqlite3_reset(statement_); }
  ResetGuard(const ResetGuard&) = delete;
  ResetGuard& operator=(const ResetGuard&) = delete;

 private:
  sqlite3_stmt* statement_;
};

/// A name in double quotes for SQLite.
std::string QuoteName(std::string_view name);
/// A text in single quotes for SQLite.
std::string QuoteText(std::string_view text);

/// Column names and table names compare without regard to case.
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const;
};
struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

}  // namespace store
