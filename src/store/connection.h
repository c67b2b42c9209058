#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error_log.h"
#include "platform/paths.h"
#include "store/catalog.h"
#include "store/error.h"
#include "store/recordset.h"
#include "store/value.h"

namespace store {

/// What every connection needs from outside.
struct Environment {
  const platform::Drives* drives = nullptr;
  /// Folder (ending in "\") in which links find their files; where it gives "", the folder of the opened
  /// file.
  std::function<std::string()> link_folder;
  int busy_timeout_ms = 3000;  ///< wait for another program's lock
};

struct OpenOptions {
  /// The recordset may be changed row by row (AddNew, Set, Update, Delete) where its query reads one table.
  bool updatable = false;
  /// Any recordset may be changed in memory only (group lists whose extra columns are typed by the user).
  bool in_memory = false;
};

/// A row of the column schema, as OpenSchema gives it.
struct SchemaColumn {
  std::string table_name, column_name, description;
  int ordinal_position = 0;                     ///< from 1
  std::string column_default;                   ///< raw expression text; empty where there is none
  std::optional<int> character_maximum_length;  ///< texts (memo: 0)
  std::optional<int> numeric_precision;
  std::optional<int> datetime_precision;
  ColumnType type = ColumnType::kText;
  bool is_nullable = true;
};
struct SchemaTable {
  std::string name;
  std::string type;  ///< "TABLE", "LINK" or "VIEW"
  std::string description;
};

/// One connection on a database file, a worksheet or a text folder, opened from a connection string.
///
/// The last "Data Source=" wins, quoted or not. "Extended Properties" of "Excel 8.0[; HDR=…][; IMEX=1]" opens
/// a worksheet file and "text;HDR=NO" a folder of delimited files, both read-only; otherwise it is a database
/// file, which must exist. Statements are in the Access dialect, one each. Not for use by several threads.
class Connection {
 public:
  explicit Connection(Environment environment);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Throws Error(kIntegrity) where the file is missing, no database, locked, or its folder not reachable.
  void Open(std::string_view connection_string);
  void Close();  ///< rolls an open transaction back; closing twice is no error
  bool is_open() const;
  const std::string& connection_string() const;
  const std::string& path() const;  ///< Windows path of the data source

  /// Opens a SELECT (also a SHAPE … APPEND … RELATE command) as a static client-side recordset.
  Recordset Open(std::string_view select, const OpenOptions& options);
  Recordset Query(std::string_view select) { return Open(select, {}); }
  Recordset QueryForUpdate(std::string_view select) {
    return Open(select, {.updatable = true, .in_memory = false});
  }
  /// A stored query with PARAMETERS, by name and values in their order.
  Recordset QueryStored(std::string_view name, const std::vector<Value>& arguments);

  /// First column of the first row; nothing where there is no row. The fast way to probe: builds no
  /// recordset.
  std::optional<Value> Scalar(std::string_view select);
  bool Any(std::string_view select);

  /// Runs any other statement; rows touched. A failed statement changes nothing.
  std::int64_t Execute(std::string_view statement);

  /// Nested calls count; only the outermost commits. Rollback undoes all.
  void Begin();
  void Commit();
  void Rollback();
  bool in_transaction() const;

  std::vector<SchemaTable> Tables() const;
  std::vector<SchemaColumn> Columns(std::string_view table) const;
  /// Row of the worksheet or text file, from 1, in which a table of it begins (its headings where it has
  /// some). Only for connections on such files.
  std::uint32_t FirstRow(std::string_view table) const;

  /// Asks `go_on` every now and then while a statement runs; where it answers false the statement ends with
  /// Error(kCancelled). An empty one asks nobody. It must not use this connection. See Watch.
  void SetWatch(std::function<bool()> go_on);

  /// The catalog of the open database file: descriptions, links, stored queries. Throws on sources.
  Catalog& catalog();

  /// Makes `name` stand for `remote` (a table or stored query) of another database file for this connection's
  /// life only; replaces an earlier binding and hides a stored one. The tariff of the chosen period reaches
  /// company statements so.
  void BindLink(std::string_view name, std::string_view windows_path, std::string_view remote);
  /// Ends such a binding and lets the file go, so that it can be replaced.
  void UnbindLink(std::string_view name);

  /// Creates an empty database file with its catalog (the file must not exist).
  static void CreateDatabase(const Environment& environment, std::string_view windows_path);
  /// Compacts `source` into the new file `destination` (as JRO does): the copy is checked before it is kept.
  static void Compact(const Environment& environment, std::string_view source, std::string_view destination);
  /// Compacts a file by way of the new file `scratch`, which stays. The copy's pages are written over the
  /// file's own under its lock and with a journal: a program that has it open goes on with it, and a line
  /// that one writes meanwhile is not lost. Throws Error where the file was written since the copy was made,
  /// is in use for longer than the environment waits, or cannot be written; then it is as it was.
  static void CompactInPlace(const Environment& environment, std::string_view path, std::string_view scratch);

  struct Impl;

 private:
  std::unique_ptr<Impl> impl_;
};

/// Begins a transaction and rolls it back unless committed.
class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(&connection) { connection.Begin(); }
  ~Transaction() {
    if (connection_ != nullptr) connection_->Rollback();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit() {
    connection_->Commit();
    connection_ = nullptr;
  }

 private:
  Connection* connection_;
};

/// Lets someone else stop the statements of a scope.
class Watch {
 public:
  Watch(Connection& connection, std::function<bool()> go_on) : connection_(&connection) {
    connection.SetWatch(std::move(go_on));
  }
  ~Watch() { connection_->SetWatch({}); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  Connection* connection_;
};

/// The one place where a failing statement is passed over: runs `step`, writes a store::Error to the log
/// under `where` and answers whether it went through.
bool PassOver(platform::ErrorLog& log, std::string_view where, const std::function<void()>& step);

/// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='path';Mode=Read|Write": the doubled "Data
/// Source=" is deliberate, the last one counts.
std::string JetString(std::string_view path);
/// The same through the shaping provider, spelled as the common connection ("PROVIDER=") or the company one
/// ("Provider=").
std::string CommonShapeString(std::string_view path);
std::string CompanyShapeString(std::string_view path);
/// Worksheet as the import reads it: Extended Properties="Excel 8.0; IMEX=1;"; sample reading leaves IMEX
/// out.
std::string ImportSheetString(std::string_view path);
std::string SampleSheetString(std::string_view path);
/// Delimited text folder: "…;Data Source=" folder ";Extended Properties='text;HDR=NO'".
std::string TextFolderString(std::string_view folder);

}  // namespace store
