#include "store/source_table.h"

#include <charconv>

#include "store/sources.h"

namespace store {

namespace {

using platform::spreadsheet::ColumnKind;
using SourceCell = platform::spreadsheet::Cell;

struct VirtualTable : sqlite3_vtab {
  const SourceSchema::Source* source = nullptr;
};

struct VirtualCursor : sqlite3_vtab_cursor {
  const SourceSchema::Source* source = nullptr;
  std::size_t row = 0;
};

VirtualCursor& CursorOf(sqlite3_vtab_cursor* cursor) { return *static_cast<VirtualCursor*>(cursor); }

int Connect(sqlite3* db, void* sources, int count, const char* const* arguments, sqlite3_vtab** table,
            char** message) {
  std::size_t index = 0;
  const std::string_view argument = count > 3 ? arguments[3] : "";
  std::from_chars(argument.data(), argument.data() + argument.size(), index);
  const SourceSchema::Source& source = static_cast<const SourceSchema*>(sources)->at(index);
  std::string sql = "CREATE TABLE x(";
  for (const dialect::SourceColumn& column : source.relation.columns) {
    if (sql.back() != '(') sql += ", ";
    sql += QuoteName(column.name);
  }
  const int code = sqlite3_declare_vtab(db, (sql + ")").c_str());
  if (code != SQLITE_OK) {
    *message = sqlite3_mprintf("%s", sqlite3_errmsg(db));
    return code;
  }
  auto made = std::make_unique<VirtualTable>();
  made->source = &source;
  *table = made.release();
  return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* table) {
  delete static_cast<VirtualTable*>(table);
  return SQLITE_OK;
}

int BestIndex(sqlite3_vtab* table, sqlite3_index_info* info) {
  const auto rows = static_cast<double>(static_cast<VirtualTable*>(table)->source->row_count);
  info->estimatedCost = rows + 1;
  info->estimatedRows = static_cast<sqlite3_int64>(rows) + 1;
  return SQLITE_OK;
}

int OpenCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** cursor) {
  auto made = std::make_unique<VirtualCursor>();
  made->source = static_cast<VirtualTable*>(table)->source;
  *cursor = made.release();
  return SQLITE_OK;
}

int CloseCursor(sqlite3_vtab_cursor* cursor) {
  delete &CursorOf(cursor);
  return SQLITE_OK;
}

int Rewind(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
  CursorOf(cursor).row = 0;
  return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* cursor) {
  ++CursorOf(cursor).row;
  return SQLITE_OK;
}

int AtEnd(sqlite3_vtab_cursor* cursor) {
  return CursorOf(cursor).row >= CursorOf(cursor).source->row_count ? 1 : 0;
}

int ReadColumn(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
  const VirtualCursor& at = CursorOf(cursor);
  const std::size_t index = static_cast<std::size_t>(column) + at.source->first_column;
  const SourceCell& cell = at.source->table.at(at.row, index);
  switch (cell.kind) {
    case SourceCell::Kind::kNull:
      sqlite3_result_null(context);
      break;
    case SourceCell::Kind::kText:
      sqlite3_result_text(context, cell.text, static_cast<int>(cell.length), nullptr);
      break;
    case SourceCell::Kind::kNumber:
      if (at.source->table.columns()[index].kind == ColumnKind::kBoolean) {
        sqlite3_result_int(context, cell.number != 0 ? -1 : 0);
        break;
      }
      sqlite3_result_double(context, cell.number);
      if (cell.zero_pad > 0) sqlite3_result_subtype(context, cell.zero_pad);
      break;
  }
  return SQLITE_OK;
}

int RowId(sqlite3_vtab_cursor* cursor, sqlite3_int64* rowid) {
  *rowid = static_cast<sqlite3_int64>(CursorOf(cursor).row) + 1;
  return SQLITE_OK;
}

sqlite3_module MakeModule() {
  sqlite3_module module = {};
  module.iVersion = 1;
  module.xCreate = Connect;
  module.xConnect = Connect;
  module.xBestIndex = BestIndex;
  module.xDisconnect = Disconnect;
  module.xDestroy = Disconnect;
  module.xOpen = OpenCursor;
  module.xClose = CloseCursor;
  module.xFilter = Rewind;
  module.xNext = Next;
  module.xEof = AtEnd;
  module.xColumn = ReadColumn;
  module.xRowid = RowId;
  return module;
}

}  // namespace

void RegisterSourceModule(sqlite3* db, const SourceSchema& sources) {
  static const sqlite3_module kModule = MakeModule();
  sqlite3_create_module_v2(db, "dx_source", &kModule, const_cast<SourceSchema*>(&sources), nullptr);
}

}  // namespace store
