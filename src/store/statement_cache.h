#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/dialect/translate.h"
#include "store/sqlite.h"

namespace store {

/// A statement of the dialect, translated and prepared.
struct Prepared {
  dialect::Translation translation;
  Statement statement;  ///< none for CREATE and DROP
  Statement matched;    ///< counts the rows of an UPDATE, where the translation has such a statement
};

/// The last translated statements of a connection, found by their text without its literals. A key has
/// several entries where literals shaped the SQL.
class StatementCache {
 public:
  explicit StatementCache(std::size_t capacity = 256) : capacity_(capacity) {}

  Prepared* Find(const dialect::Normalized& normalized);
  Prepared& Add(const dialect::Normalized& normalized, std::unique_ptr<Prepared> prepared);
  void Clear();
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::string key;
    std::unique_ptr<Prepared> prepared;
  };
  using Entries = std::list<Entry>;

  std::size_t capacity_;
  Entries entries_;  // the last used one first
  std::unordered_multimap<std::string_view, Entries::iterator> index_;
};

}  // namespace store
