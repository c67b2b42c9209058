#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/recordset.h"

namespace companies {

/// The input fields of a data-entry screen, in its order. Each bears the name of the column that it is read
/// from and written to; that is the whole binding. Yes/no fields hold "1" or "0".
class Fields {
 public:
  struct Field {
    std::string name, value;
  };

  explicit Fields(const std::vector<std::string>& names);

  const std::vector<Field>& all() const { return fields_; }
  bool Has(std::string_view name) const { return Find(name) != nullptr; }
  /// Text of a field, by name without regard to case; empty where there is no such field.
  std::string Get(std::string_view name) const;
  bool Set(std::string_view name, std::string_view value);  ///< false where there is no such field

  /// Fills every field from the column of the same name of the current row.
  void ReadFrom(const store::Recordset& row);
  /// Puts every field but `key` into the column of the same name of the current or new row. Throws
  /// store::Error naming the column that does not take its value.
  void WriteTo(store::Recordset& row, std::string_view key = "") const;

 private:
  const Field* Find(std::string_view name) const;
  std::vector<Field> fields_;
};

}  // namespace companies
