#include "store/connection.h"
#include "store/engine.h"

namespace store {

namespace {

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

[[noreturn]] void Fail(std::string_view file, const std::string& text) {
  throw Error(kIntegrity, std::string(file), text);
}

void RequireNew(const std::filesystem::path& host, std::string_view windows_path) {
  std::error_code failed;
  if (!std::filesystem::is_directory(host.parent_path(), failed)) {
    Fail(windows_path, fmt::format("Folderul fisierului {} nu exista sau nu este accesibil", windows_path));
  }
  if (std::filesystem::exists(host, failed)) {
    Fail(windows_path, fmt::format("Fisierul {} exista deja", windows_path));
  }
}

// Runs `make` on a scratch file beside `host` and renames it into place; nothing is left where it fails.
void MakeBeside(const std::filesystem::path& host, std::string_view windows_path,
                const std::function<void(const std::string& scratch)>& make) {
  std::filesystem::path scratch = host;
  scratch += ".tmp";
  std::error_code failed;
  std::filesystem::remove(scratch, failed);
  try {
    make(Utf8(scratch));
    std::filesystem::rename(scratch, host, failed);
    if (failed) {
      Fail(windows_path, fmt::format("Fisierul {} nu poate fi creat ({})", windows_path, failed.message()));
    }
  } catch (...) {
    std::filesystem::remove(scratch, failed);
    throw;
  }
}

sqlite3_file* FileOf(sqlite3* db) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(db, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  return file;
}

// The count of changes that the file's head keeps. Read through the database's own handle: closing another
// one would give up the locks that this process has on the file.
std::uint32_t ChangesOf(sqlite3_file* file) {
  constexpr int kOffset = 24;
  std::array<unsigned char, 4> bytes{};
  if (file->pMethods->xRead(file, bytes.data(), bytes.size(), kOffset) != SQLITE_OK) return 0;
  return bytes[0] << 24U | bytes[1] << 16U | bytes[2] << 8U | bytes[3];
}

// Compacts into a new file, which is checked before it is kept. Answers the count of changes that the source
// had before.
std::uint32_t CompactInto(Engine& engine, std::string_view source, std::string_view destination) {
  const std::filesystem::path host = engine.ToHost(destination);
  RequireNew(host, destination);
  engine.Open({.kind = ConnectionRequest::Kind::kDatabase, .data_source = std::string(source)});
  const std::uint32_t changes = ChangesOf(FileOf(engine.db()));
  MakeBeside(host, destination, [&](const std::string& scratch) {
    Statement vacuum(engine.db(), "VACUUM INTO ?1", source, source);
    vacuum.Bind(1, std::string_view(scratch));
    vacuum.Step(source, source);
    const auto copy = OpenPlain(scratch, SQLITE_OPEN_READWRITE, destination);
    Statement check(copy.get(), "PRAGMA integrity_check(1)", destination, destination);
    if (!check.Step(destination, destination) || check.Text(0) != "ok") {
      Fail(destination,
           fmt::format("Copia compactata a fisierului {} nu este intreaga: {}", source, check.Text(0)));
    }
    check.Reset();
    // VACUUM INTO does not wait for the disk; one small write with full synchronisation does.
    const char* settle = "PRAGMA synchronous=FULL; PRAGMA user_version=1";
    const int code = sqlite3_exec(copy.get(), settle, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) ThrowSqlite(copy.get(), code, destination, destination);
  });
  return changes;
}

}  // namespace

void Connection::CreateDatabase(const Environment& environment, std::string_view windows_path) {
  const Engine paths(environment);
  const std::filesystem::path host = paths.ToHost(windows_path);
  RequireNew(host, windows_path);
  MakeBeside(host, windows_path, [&](const std::string& scratch) {
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> db =
        OpenPlain(scratch, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, windows_path);
    const auto run = [&](const char* sql) {
      const int code = sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr);
      if (code != SQLITE_OK) ThrowSqlite(db.get(), code, windows_path, windows_path);
    };
    // Rollback journal: the files may lie on a network share, where a write-ahead log cannot be used.
    run("PRAGMA page_size=4096; PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL; BEGIN");
    CreateCatalogTables(db.get(), windows_path);
    run("COMMIT");
  });
}

void Connection::Compact(const Environment& environment, std::string_view source,
                         std::string_view destination) {
  Engine engine(environment);
  CompactInto(engine, source, destination);
}

void Connection::CompactInPlace(const Environment& environment, std::string_view path,
                                std::string_view scratch) {
  std::uint32_t changes = 0;
  {
    Engine engine(environment);
    changes = CompactInto(engine, path, scratch);
  }
  const Engine paths(environment);
  const auto copy = OpenPlain(Utf8(paths.ToHost(scratch)), SQLITE_OPEN_READONLY, scratch);
  const auto target = OpenPlain(Utf8(paths.ToHost(path)), SQLITE_OPEN_READWRITE, path);
  sqlite3_busy_timeout(target.get(), environment.busy_timeout_ms);
  sqlite3_file* const file = FileOf(target.get());
  sqlite3_backup* const backup = sqlite3_backup_init(target.get(), "main", copy.get(), "main");
  if (backup == nullptr) ThrowSqlite(target.get(), sqlite3_errcode(target.get()), path, path);
  // No page yet, but the lock that keeps everybody else out.
  int code = sqlite3_backup_step(backup, 0);
  const bool changed = code == SQLITE_OK && ChangesOf(file) != changes;
  if (code == SQLITE_OK && !changed) code = sqlite3_backup_step(backup, -1);
  const int finished = sqlite3_backup_finish(backup);
  if (changed) Fail(path, fmt::format("Fisierul {} a fost modificat in timpul compactarii", path));
  if (code != SQLITE_DONE) ThrowSqlite(target.get(), finished != SQLITE_OK ? finished : code, path, path);
}

}  // namespace store
