#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/table.h"
#include "store/connection_string.h"
#include "store/dialect/schema.h"
#include "store/sqlite.h"

namespace store {

class Engine;

/// The tables of a worksheet file ("Sheet1$", also with a range behind: "Sheet1$A1:D20") or of a folder of
/// delimited files ("curs.txt" or "curs#txt"). A table is read when a statement first names it and shown to
/// SQLite in place, as a read-only virtual table.
class SourceSchema : public dialect::SchemaSource {
 public:
  SourceSchema(Engine& engine, const ConnectionRequest& request);
  ~SourceSchema() override;

  /// Registers the virtual tables with the engine's handle; throws Error(kIntegrity) where the file cannot be
  /// read at all.
  void Register();

  /// Throws Error(kNoSuchTable) that names the tables there are.
  const dialect::Relation* Find(std::string_view name) const override;

  /// Shows the tables read so far again after a rollback, which drops those first named within it.
  void ShowAgain() noexcept;

  /// Row of the file, from 1, in which a table begins. Throws as Find does.
  std::uint32_t FirstRow(std::string_view name) const;

  /// Names as statements write them.
  std::vector<std::string> Names() const;

  struct Source;
  const Source& at(std::size_t index) const { return *sources_[index]; }
  /// A source that Find has found before; null where it has not.
  const Source* Loaded(std::string_view name) const;

 private:
  std::unique_ptr<Source> Read(std::string_view name) const;
  std::unique_ptr<Source> ReadSheet(std::string_view name) const;
  std::unique_ptr<Source> ReadText(std::string_view name) const;
  std::string ShowStatement(std::size_t index) const;
  [[noreturn]] void FailUnknown(std::string_view name) const;

  Engine& engine_;
  ConnectionRequest request_;
  std::string host_path_;
  std::unique_ptr<platform::spreadsheet::Workbook> book_;  // worksheets
  mutable std::vector<std::unique_ptr<Source>> sources_;
};

/// A source as loaded, with the part of it that the name asked for.
struct SourceSchema::Source {
  std::string name;
  platform::spreadsheet::Table table;
  std::size_t first_column = 0, last_column = 0;  ///< behind the last one
  std::size_t row_count = 0;
  dialect::Relation relation;
};

}  // namespace store
