#include "calc/checked_lines.h"

#include "store/connection.h"

namespace calc {
namespace {

constexpr std::array<std::string_view, kLineColumns> kNames = {
    "Record_ID", "TIP",      "Cod_Fiscal", "Anul",        "Luna",       "Cod_NC",   "Descriere_NC",
    "Tara_Orig", "Tara_Exp", "Tara_Dest",  "Val_Fiscala", "Val_Stat",   "Net",      "Exista_UMS",
    "Cod_UMS",   "Val_UMS",  "Nat_Tranz",  "Incoterms",   "Mod_Transp", "Probleme", "VAT_ID"};

/// Every value of the field is a text or Null.
bool HoldsTexts(const store::FieldInfo& field) {
  return field.typed && (field.type == store::ColumnType::kText || field.type == store::ColumnType::kMemo);
}

}  // namespace

CheckedLines::CheckedLines(store::Recordset lines, platform::ErrorLog& log)
    : lines_(std::move(lines)), log_(&log) {
  for (int column = 0; column < kLineColumns; ++column) {
    const auto at = static_cast<std::size_t>(column);
    fields_[at] = lines_.FindField(kNames[at]);
    if (fields_[at] < 0) {
      log_->Write("Verifica_Declaratie", "interogarea nu are coloana " + std::string(kNames[at]));
    } else {
      is_text_[at] = HoldsTexts(lines_.field(fields_[at]));
    }
  }
}

bool CheckedLines::EmptyAt(int position) const {
  if (position >= lines_.field_count() || lines_.IsNull(position)) return true;
  if (HoldsTexts(lines_.field(position))) return store::IsEmpty(lines_.TextView(position));
  return store::IsEmpty(lines_.Get(position));
}

std::string_view CheckedLines::NameAt(int position) const {
  if (position < lines_.field_count()) return lines_.field(position).name;
  return kNames[static_cast<std::size_t>(position)];
}

std::string_view CheckedLines::Name(LineColumn column) const {
  const int field = fields_[column];
  return field < 0 ? kNames[column] : std::string_view(lines_.field(field).name);
}

std::string_view CheckedLines::Text(LineColumn column) {
  const int field = fields_[column];
  if (field < 0) return "";
  if (is_text_[column]) return lines_.TextView(field);
  scratch_ = lines_.Get(field).ToText();
  return scratch_;
}

double CheckedLines::Number(LineColumn column) const {
  const int field = fields_[column];
  return field < 0 ? 0 : lines_.Get(field).ToDouble();
}

bool CheckedLines::Flag(LineColumn column) const {
  const int field = fields_[column];
  return field >= 0 && lines_.Get(field).ToBoolean();
}

bool CheckedLines::IsNull(LineColumn column) const {
  const int field = fields_[column];
  return field < 0 || lines_.IsNull(field);
}

void CheckedLines::Set(LineColumn column, const store::Value& value) {
  const int field = fields_[column];
  if (field < 0) return;
  store::PassOver(*log_, "Verifica_Declaratie", [&] {
    lines_.Set(field, value);
    changed_ = true;
  });
}

void CheckedLines::Save() {
  if (!changed_) return;
  changed_ = false;
  if (!store::PassOver(*log_, "Verifica_Declaratie", [this] { lines_.Update(); })) lines_.CancelUpdate();
}

}  // namespace calc
