#include "companies/fields.h"

#include "platform/encoding.h"

namespace companies {

using platform::EqualsNoCase;

namespace {

store::Value YesNo(const std::string& text) {
  for (const char* yes : {"1", "-1", "true", "da", "yes"}) {
    if (EqualsNoCase(text, yes)) return true;
  }
  for (const char* no : {"", "0", "false", "nu", "no"}) {
    if (EqualsNoCase(text, no)) return false;
  }
  return text;  // the column refuses it by name
}

}  // namespace

Fields::Fields(const std::vector<std::string>& names) {
  for (const std::string& name : names) fields_.push_back({name, ""});
}

const Fields::Field* Fields::Find(std::string_view name) const {
  for (const Field& field : fields_) {
    if (EqualsNoCase(field.name, name)) return &field;
  }
  return nullptr;
}

std::string Fields::Get(std::string_view name) const {
  const Field* field = Find(name);
  return field == nullptr ? std::string() : field->value;
}

bool Fields::Set(std::string_view name, std::string_view value) {
  for (Field& field : fields_) {
    if (!EqualsNoCase(field.name, name)) continue;
    field.value = value;
    return true;
  }
  return false;
}

void Fields::ReadFrom(const store::Recordset& row) {
  for (Field& field : fields_) {
    const int column = row.FieldIndex(field.name);
    const store::Value value = row.Get(column);
    const bool yes_no = row.field(column).type == store::ColumnType::kYesNo;
    field.value = yes_no ? (value.ToBoolean() ? "1" : "0") : value.ToText();
  }
}

void Fields::WriteTo(store::Recordset& row, std::string_view key) const {
  for (const Field& field : fields_) {
    if (EqualsNoCase(field.name, key)) continue;
    const int column = row.FieldIndex(field.name);
    if (row.field(column).type == store::ColumnType::kYesNo) {
      row.Set(column, YesNo(field.value));
    } else {
      row.Set(column, field.value);
    }
  }
}

}  // namespace companies
