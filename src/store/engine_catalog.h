#pragma once

#include "store/catalog.h"
#include "store/dialect/translate.h"
#include "store/engine.h"

namespace store {

/// The catalog of a connection's main file, and the CREATE and DROP statements, which change it too.
class EngineCatalog : public Catalog {
 public:
  explicit EngineCatalog(Engine& engine) : engine_(engine) {}

  void CreateTable(std::string_view name, const std::vector<ColumnDefinition>& columns,
                   std::string_view description) override;
  void AddColumn(std::string_view table, const ColumnDefinition& column) override;
  void CreateIndex(std::string_view name, std::string_view table, const std::vector<std::string>& columns,
                   bool unique) override;
  std::vector<ColumnDefinition> Columns(std::string_view table) const override;
  void CreateLink(const LinkDefinition& link) override;
  std::vector<LinkDefinition> Links() const override;
  void DropLink(std::string_view name) override;
  void SetQuery(const StoredQuery& query) override;
  std::vector<StoredQuery> Queries() const override;
  void DropQuery(std::string_view name) override;
  void CreateCascade(std::string_view parent, std::string_view child, std::string_view column) override;

  void DropTable(std::string_view name);  ///< a link of that name is dropped instead
  void DropIndex(std::string_view name, std::string_view table);
  /// CREATE and DROP of the dialect.
  void Carry(const dialect::Translation& translation);

 private:
  FileSchema& file() const;
  const TableInfo& RequireTable(std::string_view name) const;
  void RequireFree(std::string_view name) const;
  void StoreColumn(std::string_view table, int ordinal, const ColumnDefinition& column);
  void RunWith(std::string_view sql, std::initializer_list<std::string_view> texts);
  void CreateView(const StoredQuery& query);

  Engine& engine_;
};

}  // namespace store
