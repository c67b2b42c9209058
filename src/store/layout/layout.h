#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "store/catalog.h"
#include "store/connection.h"
#include "store/layout/csv.h"

namespace store::layout {

// What a database file holds, described as text that can be reviewed: below the data folder,
//   schema\<database>.csv   tables and columns, in ordinal order
//   schema\indexuri.csv, schema\legaturi.csv, schema\relatii.csv   indexes, links, cascading relationships
//   interogari\<database>\<name>.sql   stored queries in the dialect, one file each
// <database> is comun (Comun.mdb), goala (the company template) or tarif (a tariff file).

struct Table {
  std::string name;
  std::vector<ColumnDefinition> columns;
};
struct Index {
  std::string name, table;
  std::vector<std::string> columns;
  bool unique = false;
};
struct Cascade {
  std::string parent, child, column;
};
struct Database {
  std::vector<Table> tables;
  std::vector<Index> indexes;
  std::vector<LinkDefinition> links;
  std::vector<Cascade> cascades;
  std::vector<StoredQuery> queries;

  const Table& Find(std::string_view table) const;  ///< throws std::out_of_range
};

/// Throws platform::FileError naming the file and line that cannot be used.
Database Read(const platform::Files& files, std::string_view data_folder, std::string_view database);

/// Adds to an open database file what the layout has and the file lacks: tables with their indexes and
/// cascades, columns, links, stored queries; a stored query of ours with another text is refreshed. Never
/// changes or drops anything else. One transaction. Answers what it added ("Tabela", "Tabela.Coloana").
std::vector<std::string> Complete(Connection& connection, const Database& layout);

/// Ends the name of a database that Build has not finished.
inline constexpr char kDraftSuffix[] = ".mdb.nou";

/// Builds a new database file (".mdb") beside `path`, fills it and puts it in place as a whole, over an
/// existing one.
void Build(const Environment& environment, platform::Files& files, std::string_view path,
           const Database& layout, const std::function<void(Connection&)>& fill);

/// Adds the list's rows whose primary key the table does not hold yet; rows that are there stay as they are.
/// An empty field is Null, or "" in a required column; dates are yyyy-mm-dd. Answers the number of rows
/// added. Throws platform::FileError naming the list's file and line where a row cannot be stored.
int AddMissingRows(Connection& connection, const Table& table, const Csv& list);

/// Appends rows to a table, values in the order of `columns`; much faster than statements.
class RowWriter {
 public:
  RowWriter(Connection& connection, std::string_view table, const std::vector<std::string>& columns);
  void Add(const std::vector<Value>& values);

 private:
  Recordset rows_;
  std::vector<int> fields_;
};

/// The folder (ending in "\") that holds the texts: $DECLARIX_DATA, "data\" beside the executable, or the
/// folder known from configuring the build. Throws platform::FileError where there is none.
std::string FindDataFolder(const platform::Files& files, std::string_view app_folder);

}  // namespace store::layout
