#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/connection.h"
#include "store/connection_string.h"
#include "store/file_schema.h"
#include "store/sqlite.h"
#include "store/statement_cache.h"

namespace store {

class SourceSchema;

/// The SQLite side of a connection: the handle, the files attached to it, translated statements and the
/// transaction. Recordsets that can be written through hold on to it; once closed it refuses them.
class Engine {
 public:
  explicit Engine(Environment environment);
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  void Open(const ConnectionRequest& request);
  void Close();
  bool is_open() const { return db_ != nullptr; }
  void RequireOpen(std::string_view source) const;
  /// Changes with every open and close: what was made under another number must not be written.
  std::uint64_t session() const { return session_; }

  sqlite3* db() const { return db_; }
  const std::string& path() const { return path_; }
  const Environment& environment() const { return environment_; }
  bool is_source() const { return source_ != nullptr; }
  SourceSchema* source() { return source_.get(); }
  /// Of the statement prepared last.
  const dialect::Normalized& normalized() const { return normalized_; }
  FileSchema& main_file() { return *files_.front(); }
  const dialect::SchemaSource& schema() const;

  // Statements of the dialect.

  /// The translated statement with its literals bound. It belongs to the cache: use it at once.
  Prepared& Prepare(std::string_view text);
  /// A translation outside the cache (stored queries with parameters), looked up in `schema`.
  std::unique_ptr<Prepared> PrepareUncached(std::string_view text, const dialect::SchemaSource& schema,
                                            const std::vector<std::pair<std::string, Value>>& arguments);
  /// True while there is a row; reports failures under the statement's head.
  bool Step(const Prepared& prepared, std::string_view text);

  // SQLite statements of the engine's own.

  Statement PrepareOwn(std::string_view sql);
  bool Step(Statement& statement);
  void Run(const std::string& sql);
  /// A statement kept for recordsets that write rows one by one.
  Statement& EditStatement(const std::string& sql);
  /// Changes whenever kept edit statements went away.
  std::uint64_t edit_generation() const { return edit_generation_; }

  // Files.

  FileSchema& Attach(const std::string& windows_path);
  /// Detaches files that no link and no binding needs.
  void DetachUnused();
  std::string LinkPath(std::string_view bare_file) const;
  std::filesystem::path ToHost(std::string_view windows_path) const;
  std::int64_t DataVersion(std::string_view alias) const;
  /// After the catalog or a table changed.
  void SchemaChanged(FileSchema& file);
  /// Reads the catalogs of files that other programs changed.
  void RefreshChangedFiles();
  /// Before a schema change: statements hold locks on it.
  void DropStatements();
  bool read_only() const;

  // Transactions.

  void Begin();
  void Commit();
  void Rollback() noexcept;
  bool in_transaction() const { return depth_ > 0; }
  /// Throws where SQLite has given the transaction up after a failure: later statements would be saved
  /// one by one.
  void RequireTransaction() const;

 private:
  void OpenDatabase(const std::string& path, bool read_only);
  void OpenHandle(const std::string& file_name, int flags);
  void BindLiterals(const Prepared& prepared, sqlite3_stmt* statement, const dialect::Normalized& normalized);

  Environment environment_;
  sqlite3* db_ = nullptr;
  std::string path_;
  std::uint64_t session_ = 0;
  std::vector<std::unique_ptr<FileSchema>> files_;         // the main one first
  std::unordered_map<std::string, FileSchema*> attached_;  // by host path
  int last_alias_ = 0;
  std::unique_ptr<SourceSchema> source_;
  StatementCache cache_;
  dialect::Normalized normalized_;
  std::unordered_map<std::string, Statement> edits_;
  std::uint64_t edit_generation_ = 0;
  int depth_ = 0;
  bool schema_touched_ = false;  // within the open transaction
};

/// Opens a transaction, or a savepoint within one, and undoes it unless finished: schema changes are whole.
class SchemaChange {
 public:
  explicit SchemaChange(Engine& engine);
  ~SchemaChange();
  SchemaChange(const SchemaChange&) = delete;
  SchemaChange& operator=(const SchemaChange&) = delete;
  void Finish();

 private:
  Engine& engine_;
  bool open_ = true;
};

/// A handle of its own with our collation and functions, for work on a whole file.
std::unique_ptr<sqlite3, int (*)(sqlite3*)> OpenPlain(const std::string& host_path, int flags,
                                                      std::string_view windows_path);

/// Checks that a file exists and is a database. Throws Error(kIntegrity) that says what it is instead.
void CheckDatabaseFile(const std::filesystem::path& host, std::string_view windows_path);

/// The statements that give a new file its catalog.
void CreateCatalogTables(sqlite3* db, std::string_view path);

}  // namespace store
