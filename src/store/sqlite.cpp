#include "store/sqlite.h"

#include "platform/encoding.h"
#include "store/functions.h"

namespace store {

namespace {

constexpr std::size_t kHeadLength = 80;

// The table and column behind "NOT NULL constraint failed: Firme.Cod_Fiscal".
std::string_view AfterColon(std::string_view message) {
  const std::size_t colon = message.find(": ");
  return colon == std::string_view::npos ? std::string_view{} : message.substr(colon + 2);
}

}  // namespace

std::string StatementHead(std::string_view statement) {
  if (statement.size() <= kHeadLength) return std::string(statement);
  std::size_t end = kHeadLength;
  while (end > 0 && (static_cast<unsigned char>(statement[end]) & 0xC0) == 0x80) --end;
  return std::string(statement.substr(0, end)) + "...";
}

void ThrowSqlite(sqlite3* db, int code, std::string_view source, std::string_view file) {
  const std::string reason = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(code);
  std::string head = StatementHead(source.empty() ? file : source);
  int number = 0;
  std::string description;
  if (ParseFunctionError(reason, number, description)) throw Error(number, std::move(head), description);
  const auto fail = [&](int error, const std::string& text) -> void {
    throw Error(error, std::move(head), text);
  };
  const std::string name(file);
  const std::string_view where = AfterColon(reason);
  switch (code & 0xff) {
    case SQLITE_CONSTRAINT:
      switch (code) {
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
          fail(kIntegrity, fmt::format("Exista deja o inregistrare cu aceeasi valoare in: {}", where));
          break;
        case SQLITE_CONSTRAINT_NOTNULL:
          fail(kIntegrity, fmt::format("Coloana {} trebuie completata", where));
          break;
        default:
          fail(kIntegrity, fmt::format("Valoarea incalca o regula a bazei de date ({})", reason));
      }
      break;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      fail(kIntegrity,
           fmt::format("Fisierul {} este folosit de alt program; incercati din nou ({})", name, reason));
      break;
    case SQLITE_INTERRUPT:
      fail(kCancelled, "Instructiunea a fost oprita");
      break;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      fail(kIntegrity, fmt::format("Fisierul {} poate fi doar citit ({})", name, reason));
      break;
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
      fail(kIntegrity, fmt::format("Fisierul {} nu poate fi deschis ({})", name, reason));
      break;
    case SQLITE_FULL:
      fail(kIntegrity, fmt::format("Nu mai este loc pe disc pentru fisierul {} ({})", name, reason));
      break;
    case SQLITE_NOTADB:
      fail(kIntegrity, fmt::format("Fisierul {} nu este o baza de date ({})", name, reason));
      break;
    case SQLITE_CORRUPT:
      fail(kIntegrity, fmt::format("Fisierul {} este deteriorat ({})", name, reason));
      break;
    case SQLITE_IOERR:
      fail(kIntegrity, fmt::format("Fisierul {} nu poate fi citit sau scris ({})", name, reason));
      break;
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
      fail(kConversion, fmt::format("Valoarea nu se potriveste cu tipul coloanei ({})", reason));
      break;
    case SQLITE_NOMEM:
      fail(kIntegrity, fmt::format("Memorie insuficienta ({})", reason));
      break;
    default:
      if (reason.starts_with("no such table"))
        fail(kNoSuchTable, fmt::format("Nu exista tabela ({})", reason));
      if (reason.starts_with("no such column")) {
        fail(kMissingParameter, fmt::format("Nu exista coloana ({})", reason));
      }
      if (reason.find("overflow") != std::string::npos) {
        fail(kConversion, fmt::format("Valoarea este prea mare ({})", reason));
      }
      fail(kSyntaxError, fmt::format("Instructiunea nu a putut fi executata ({})", reason));
  }
  throw Error(kIntegrity, std::move(head), reason);
}

Statement::Statement(sqlite3* db, std::string_view sql, std::string_view source, std::string_view file) {
  const int code = sqlite3_prepare_v3(db, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                      &handle_, nullptr);
  if (code != SQLITE_OK) ThrowSqlite(db, code, source.empty() ? sql : source, file);
}

void Statement::Bind(int index, std::string_view text) {
  // A null pointer would bind Null.
  sqlite3_bind_text(handle_, index, text.data() == nullptr ? "" : text.data(), static_cast<int>(text.size()),
                    nullptr);
}

void BindCopied(sqlite3_stmt* statement, int index, const Value& value) {
  if (value.is_null()) {
    sqlite3_bind_null(statement, index);
  } else if (value.is_text()) {
    const std::string& text = value.text();
    sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } else if (value.is_boolean()) {
    sqlite3_bind_int(statement, index, value.ToBoolean() ? -1 : 0);
  } else if (value.is_integer()) {
    sqlite3_bind_int64(statement, index, value.ToInteger());
  } else if (value.is_date()) {
    sqlite3_bind_double(statement, index, value.ToDate().days);
  } else {
    sqlite3_bind_double(statement, index, value.ToDouble());
  }
}

bool Statement::Step(std::string_view source, std::string_view file) {
  const int code = sqlite3_step(handle_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  sqlite3* db = sqlite3_db_handle(handle_);
  const ResetGuard guard(handle_);
  ThrowSqlite(db, code, source.empty() ? sqlite3_sql(handle_) : source, file);
}

std::string_view Statement::Text(int column) const {
  const unsigned char* text = sqlite3_column_text(handle_, column);
  if (text == nullptr) return {};
  return {reinterpret_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(handle_, column))};
}

std::string QuoteName(std::string_view name) { return '"' + platform::ReplaceAll(name, "\"", "\"\"") + '"'; }

std::string QuoteText(std::string_view text) { return '\'' + platform::ReplaceAll(text, "'", "''") + '\''; }

std::size_t NameHash::operator()(std::string_view name) const {
  std::size_t hash = 1469598103934665603ULL;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    hash = (hash ^ byte) * 1099511628211ULL;
  }
  return hash;
}

bool NameEqual::operator()(std::string_view a, std::string_view b) const {
  return a.size() == b.size() && platform::EqualsNoCase(a, b);
}

}  // namespace store
