#include "store/engine.h"

#include <charconv>
#include <fstream>

#include "platform/encoding.h"
#include "store/functions.h"
#include "store/sources.h"

namespace store {

namespace {

// 65,000 rows of 40 columns fit into the main file's cache with their indexes; negative: KiB.
constexpr char kMainCache[] = "-65536";
constexpr char kLinkCache[] = "-16384";

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string KeyOf(const std::filesystem::path& host) {
  std::error_code ignored;
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(host, ignored);
  return Utf8(ignored ? host : canonical);
}

/// Write-protected for everyone is read-only even for users whom the host lets write anyway.
bool WriteProtected(const std::filesystem::path& host) {
  using std::filesystem::perms;
  constexpr perms kAnyWrite = perms::owner_write | perms::group_write | perms::others_write;
  std::error_code failed;
  const perms permissions = std::filesystem::status(host, failed).permissions();
  return !failed && (permissions & kAnyWrite) == perms::none;
}

}  // namespace

void CheckDatabaseFile(const std::filesystem::path& host, std::string_view windows_path) {
  const std::string name(windows_path);
  const auto fail = [&](const std::string& text) -> void { throw Error(kIntegrity, name, text); };
  std::error_code failed;
  if (!std::filesystem::exists(host, failed)) {
    if (!std::filesystem::is_directory(host.parent_path(), failed)) {
      fail(fmt::format("Folderul fisierului {} nu exista sau nu este accesibil", name));
    }
    fail(fmt::format("Nu exista fisierul {}", name));
  }
  if (!std::filesystem::is_regular_file(host, failed)) fail(fmt::format("{} nu este un fisier", name));
  std::ifstream file(host, std::ios::binary);
  if (!file) fail(fmt::format("Fisierul {} nu poate fi deschis pentru citire", name));
  char bytes[20] = {};
  file.read(bytes, sizeof bytes);
  const std::string_view head(bytes, static_cast<std::size_t>(file.gcount()));
  if (head.starts_with("SQLite format 3") && head.size() == sizeof bytes) return;
  constexpr std::string_view kAccessMark("\0\1\0\0Standard", 12);
  if (head.starts_with(kAccessMark)) {
    fail(fmt::format("Fisierul {} este o baza de date Access veche, care trebuie intai preluata", name));
  }
  fail(head.empty() ? fmt::format("Fisierul {} este gol, nu este o baza de date", name)
                    : fmt::format("Fisierul {} nu este o baza de date", name));
}

void CreateCatalogTables(sqlite3* db, std::string_view path) {
  static constexpr char kCatalog[] =
      "CREATE TABLE dx_tables(name TEXT PRIMARY KEY COLLATE NOCASE, description TEXT NOT NULL DEFAULT '');"
      "CREATE TABLE dx_columns(table_name TEXT NOT NULL COLLATE NOCASE, ordinal INTEGER NOT NULL,"
      " name TEXT NOT NULL COLLATE NOCASE, type INTEGER NOT NULL, size INTEGER NOT NULL DEFAULT 0,"
      " description TEXT NOT NULL DEFAULT '', default_text TEXT NOT NULL DEFAULT '',"
      " required INTEGER NOT NULL DEFAULT 0, primary_key INTEGER NOT NULL DEFAULT 0,"
      " PRIMARY KEY(table_name, ordinal));"
      "CREATE TABLE dx_links(name TEXT PRIMARY KEY COLLATE NOCASE, file TEXT NOT NULL,"
      " remote_name TEXT NOT NULL);"
      "CREATE TABLE dx_queries(name TEXT PRIMARY KEY COLLATE NOCASE, text TEXT NOT NULL);";
  const int code = sqlite3_exec(db, kCatalog, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) ThrowSqlite(db, code, path, path);
}

std::unique_ptr<sqlite3, int (*)(sqlite3*)> OpenPlain(const std::string& host_path, int flags,
                                                      std::string_view windows_path) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(host_path.c_str(), &opened,
                                   flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(opened, sqlite3_close);
  if (code != SQLITE_OK) ThrowSqlite(opened, code, windows_path, windows_path);
  RegisterFunctions(opened);
  return db;
}

Engine::Engine(Environment environment) : environment_(std::move(environment)) {}

Engine::~Engine() { Close(); }

void Engine::RequireOpen(std::string_view source) const {
  if (!is_open()) throw Error(kObjectClosed, StatementHead(source), "Conexiunea este inchisa");
}

const dialect::SchemaSource& Engine::schema() const {
  if (source_ != nullptr) return *source_;
  return *files_.front();
}

void Engine::Open(const ConnectionRequest& request) {
  Close();
  path_ = request.data_source;
  if (path_.empty()) throw Error(kIntegrity, "", "Conexiunea nu numeste niciun fisier (Data Source)");
  try {
    if (request.kind == ConnectionRequest::Kind::kDatabase) {
      OpenDatabase(path_, request.read_only);
    } else {
      auto source = std::make_unique<SourceSchema>(*this, request);
      OpenHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
      source->Register();
      source_ = std::move(source);
    }
  } catch (...) {
    Close();
    throw;
  }
}

void Engine::OpenDatabase(const std::string& path, bool read_only) {
  const std::filesystem::path host = ToHost(path);
  CheckDatabaseFile(host, path);
  read_only = read_only || WriteProtected(host);
  OpenHandle(Utf8(host), read_only ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
  auto file = std::make_unique<FileSchema>(*this, "main", path);
  file->Load();
  attached_.emplace(KeyOf(host), file.get());
  files_.push_back(std::move(file));
}

void Engine::OpenHandle(const std::string& file_name, int flags) {
  const int code =
      sqlite3_open_v2(file_name.c_str(), &db_, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  if (code != SQLITE_OK) ThrowSqlite(db_, code, path_, path_);
  ++session_;
  sqlite3_busy_timeout(db_, environment_.busy_timeout_ms);
  for (const auto& [option, value] :
       {std::pair{SQLITE_DBCONFIG_DQS_DML, 0}, std::pair{SQLITE_DBCONFIG_DQS_DDL, 0},
        std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1}, std::pair{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0}}) {
    sqlite3_db_config(db_, option, value, nullptr);
  }
  RegisterFunctions(db_);
  Run(
      fmt::format("PRAGMA temp_store=MEMORY; PRAGMA cell_size_check=ON; PRAGMA secure_delete=FAST;"
                  "PRAGMA foreign_keys=OFF; PRAGMA synchronous=FULL; PRAGMA cache_size={}",
                  kMainCache));
  // Reads the file's first page: tells a damaged or locked file now and not at the first statement.
  Run("SELECT count(*) FROM sqlite_master");
}

void Engine::Close() {
  if (db_ == nullptr) return;
  DropStatements();
  files_.clear();
  attached_.clear();
  if (!sqlite3_get_autocommit(db_)) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close_v2(db_);
  db_ = nullptr;
  source_.reset();  // after the handle: its virtual tables read it
  depth_ = 0;
  schema_touched_ = false;
  ++session_;
}

Prepared& Engine::Prepare(std::string_view text) {
  RequireOpen(text);
  RequireTransaction();
  dialect::Normalize(text, normalized_);
  Prepared* prepared = cache_.Find(normalized_);
  if (prepared == nullptr) {
    RefreshChangedFiles();
    auto made = std::make_unique<Prepared>();
    made->translation = dialect::Translate(text, schema());
    if (!made->translation.sql.empty()) {
      made->statement = Statement(db_, made->translation.sql, text, path_);
    }
    if (!made->translation.matched_sql.empty()) {
      made->matched = Statement(db_, made->translation.matched_sql, text, path_);
    }
    prepared = &cache_.Add(normalized_, std::move(made));
  }
  if (prepared->statement) BindLiterals(*prepared, prepared->statement.get(), normalized_);
  if (prepared->matched) BindLiterals(*prepared, prepared->matched.get(), normalized_);
  return *prepared;
}

void Engine::BindLiterals(const Prepared& prepared, sqlite3_stmt* statement,
                          const dialect::Normalized& normalized) {
  int index = 0;
  for (const dialect::Parameter& parameter : prepared.translation.parameters) {
    ++index;
    if (parameter.literal < 0) {
      throw Error(kMissingParameter, StatementHead(prepared.translation.sql),
                  fmt::format("Lipseste valoarea parametrului {}", parameter.name));
    }
    const dialect::Literal& literal = normalized.literals[static_cast<std::size_t>(parameter.literal)];
    // The two common kinds without a detour through a value; the text lives as long as the statement runs.
    if (literal.kind == dialect::LiteralKind::kText && !literal.doubled) {
      sqlite3_bind_text(statement, index, literal.raw.data() + 1, static_cast<int>(literal.raw.size() - 2),
                        nullptr);
      continue;
    }
    if (literal.kind == dialect::LiteralKind::kInteger) {
      std::int64_t number = 0;
      const char* end = literal.raw.data() + literal.raw.size();
      const auto [read, failed] = std::from_chars(literal.raw.data(), end, number);
      if (failed == std::errc{} && read == end) {
        sqlite3_bind_int64(statement, index, number);
        continue;
      }
    }
    BindCopied(statement, index, dialect::LiteralValue(literal));
  }
}

std::unique_ptr<Prepared> Engine::PrepareUncached(
    std::string_view text, const dialect::SchemaSource& schema,
    const std::vector<std::pair<std::string, Value>>& arguments) {
  auto prepared = std::make_unique<Prepared>();
  prepared->translation = dialect::Translate(text, schema);
  if (prepared->translation.sql.empty()) return prepared;
  prepared->statement = Statement(db_, prepared->translation.sql, text, path_);
  dialect::Normalized normalized;
  dialect::Normalize(text, normalized);
  int index = 0;
  for (const dialect::Parameter& parameter : prepared->translation.parameters) {
    ++index;
    if (parameter.literal >= 0) {
      BindCopied(prepared->statement.get(), index,
                 dialect::LiteralValue(normalized.literals[static_cast<std::size_t>(parameter.literal)]));
      continue;
    }
    const auto argument = std::find_if(arguments.begin(), arguments.end(), [&](const auto& candidate) {
      return platform::EqualsNoCase(candidate.first, parameter.name);
    });
    if (argument == arguments.end()) {
      throw Error(kMissingParameter, StatementHead(text),
                  fmt::format("Lipseste valoarea parametrului {}", parameter.name));
    }
    BindCopied(prepared->statement.get(), index, argument->second);
  }
  return prepared;
}

bool Engine::Step(const Prepared& prepared, std::string_view text) {
  const int code = sqlite3_step(prepared.statement.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  const ResetGuard guard(prepared.statement.get());
  ThrowSqlite(db_, code, text, path_);
}

Statement Engine::PrepareOwn(std::string_view sql) { return Statement(db_, sql, path_, path_); }

bool Engine::Step(Statement& statement) { return statement.Step(path_, path_); }

void Engine::Run(const std::string& sql) {
  const int code = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) ThrowSqlite(db_, code, path_, path_);
}

Statement& Engine::EditStatement(const std::string& sql) {
  constexpr std::size_t kKept = 64;
  if (const auto found = edits_.find(sql); found != edits_.end()) return found->second;
  if (edits_.size() >= kKept) {
    edits_.clear();
    ++edit_generation_;
  }
  return edits_.emplace(sql, Statement(db_, sql, sql, path_)).first->second;
}

void Engine::DropStatements() {
  cache_.Clear();
  edits_.clear();
  ++edit_generation_;
}

FileSchema& Engine::Attach(const std::string& windows_path) {
  const std::filesystem::path host = ToHost(windows_path);
  const std::string key = KeyOf(host);
  if (const auto found = attached_.find(key); found != attached_.end()) return *found->second;
  CheckDatabaseFile(host, windows_path);
  const std::string alias = fmt::format("link{}", ++last_alias_);
  const std::string host_text = Utf8(host);
  {
    Statement attach(db_, "ATTACH ?1 AS ?2", windows_path, windows_path);
    attach.Bind(1, std::string_view(host_text));
    attach.Bind(2, std::string_view(alias));
    attach.Step(windows_path, windows_path);
  }
  auto file = std::make_unique<FileSchema>(*this, alias, windows_path);
  try {
    if (sqlite3_get_autocommit(db_)) Run(fmt::format("PRAGMA {}.synchronous=FULL", alias));
    Run(fmt::format("PRAGMA {}.cache_size={}", alias, kLinkCache));
    file->Load();
  } catch (...) {
    sqlite3_exec(db_, fmt::format("DETACH {}", alias).c_str(), nullptr, nullptr, nullptr);
    throw;
  }
  FileSchema& result = *file;
  attached_.emplace(key, file.get());
  files_.push_back(std::move(file));
  return result;
}

void Engine::DetachUnused() {
  // Inside a transaction a file cannot be let go; the next binding does it.
  if (!sqlite3_get_autocommit(db_)) return;
  std::vector<std::string> needed{KeyOf(ToHost(path_))};
  for (const auto& file : files_) {
    for (const auto& [name, link] : file->bindings()) needed.push_back(KeyOf(ToHost(link.file)));
    for (const auto& [name, link] : file->links()) needed.push_back(KeyOf(ToHost(LinkPath(link.file))));
  }
  for (auto it = attached_.begin(); it != attached_.end();) {
    if (std::find(needed.begin(), needed.end(), it->first) != needed.end()) {
      ++it;
      continue;
    }
    DropStatements();
    Run("DETACH " + it->second->alias());
    std::erase_if(files_, [&](const auto& file) { return file.get() == it->second; });
    it = attached_.erase(it);
  }
}

std::string Engine::LinkPath(std::string_view bare_file) const {
  if (bare_file.find(':') != std::string_view::npos || bare_file.starts_with('\\')) {
    return std::string(bare_file);
  }
  std::string folder = environment_.link_folder ? environment_.link_folder() : "";
  if (folder.empty()) folder = platform::FolderOf(path_);
  return folder + std::string(bare_file);
}

std::filesystem::path Engine::ToHost(std::string_view windows_path) const {
  if (environment_.drives != nullptr) return environment_.drives->ToHost(windows_path);
  return std::filesystem::path(std::u8string(windows_path.begin(), windows_path.end()));
}

std::int64_t Engine::DataVersion(std::string_view alias) const {
  Statement version(db_, fmt::format("PRAGMA {}.data_version", alias), path_, path_);
  return version.Step(path_, path_) ? version.Integer(0) : 0;
}

void Engine::RefreshChangedFiles() {
  bool changed = false;
  for (const auto& file : files_) {
    if (DataVersion(file->alias()) == file->data_version()) continue;
    if (!changed) DropStatements();
    changed = true;
    file->Load();
  }
}

void Engine::SchemaChanged(FileSchema& file) {
  DropStatements();
  file.Load();
  if (in_transaction()) schema_touched_ = true;
}

bool Engine::read_only() const { return source_ != nullptr || sqlite3_db_readonly(db_, "main") == 1; }

void Engine::Begin() {
  RequireOpen("BEGIN");
  RequireTransaction();
  if (depth_ == 0) Run("BEGIN");
  ++depth_;
}

void Engine::Commit() {
  RequireOpen("COMMIT");
  if (depth_ == 0) throw Error(kIntegrity, "COMMIT", "Nu este deschisa nicio tranzactie");
  RequireTransaction();
  if (depth_ == 1) {
    Run("COMMIT");  // on failure the transaction stays open, to be tried again or rolled back
    schema_touched_ = false;
  }
  --depth_;
}

void Engine::Rollback() noexcept {
  if (!is_open() || depth_ == 0) return;
  depth_ = 0;
  // SQLite may have rolled back by itself after a full disk; then this fails, and rightly nothing is left.
  sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
  if (source_ != nullptr) source_->ShowAgain();
  if (!schema_touched_) return;
  schema_touched_ = false;
  try {
    DropStatements();
    for (const auto& file : files_) file->Load();
  } catch (const std::exception&) {
    // A file that cannot be read any more tells so at the next statement.
  }
}

void Engine::RequireTransaction() const {
  if (depth_ == 0 || !sqlite3_get_autocommit(db_)) return;
  std::string text = fmt::format("Tranzactia pe fisierul {} a fost anulata dupa o eroare", path_);
  // The failure is SQLite's last one: nothing has been asked of it since.
  if (const int code = sqlite3_extended_errcode(db_); code != SQLITE_OK) {
    try {
      ThrowSqlite(db_, code, path_, path_);
    } catch (const Error& error) {
      text += fmt::format(": {}", error.what());
    }
  }
  throw Error(kIntegrity, path_, text);
}

SchemaChange::SchemaChange(Engine& engine) : engine_(engine) {
  engine_.RequireOpen("");
  engine_.RequireTransaction();
  engine_.DropStatements();
  engine_.Run("SAVEPOINT dx_change");
}

SchemaChange::~SchemaChange() {
  if (!open_) return;
  sqlite3_exec(engine_.db(), "ROLLBACK TO dx_change; RELEASE dx_change", nullptr, nullptr, nullptr);
}

void SchemaChange::Finish() {
  engine_.Run("RELEASE dx_change");
  open_ = false;
}

}  // namespace store
