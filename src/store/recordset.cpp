#include "store/recordset.h"

#include "store/recordset_data.h"

namespace store {

namespace {

[[noreturn]] void FailNoRow(const RowSet* set) {
  throw Error(kEndOfRecordset, set == nullptr ? "" : set->statement,
              "Nu exista inregistrare curenta (inceput sau sfarsit de date)");
}

}  // namespace

void RequireField(const RowSet& set, int field) {
  if (field >= 0 && static_cast<std::size_t>(field) < set.fields.size()) return;
  throw Error(kItemNotFound, set.statement,
              fmt::format("Nu exista campul cu numarul {} (sunt {} campuri)", field, set.fields.size()));
}

RowSet::RowSet(std::vector<FieldInfo> field_list)
    : fields(std::move(field_list)), rows(static_cast<int>(fields.size())) {
  int index = 0;
  for (const FieldInfo& field : fields) by_name.emplace(field.name, index++);
}

void RowSet::AppendLive() {
  if (deleted) live.push_back(static_cast<std::uint32_t>(rows.size() - 1));
}

void RowSet::RemoveLive(std::int64_t row) {
  if (!deleted) {
    live.resize(static_cast<std::size_t>(rows.size()));
    for (std::size_t i = 0; i < live.size(); ++i) live[i] = static_cast<std::uint32_t>(i);
    deleted = true;
  }
  const auto found = std::lower_bound(live.begin(), live.end(), static_cast<std::uint32_t>(row));
  if (found != live.end() && *found == row) live.erase(found);
  ++version;
}

Recordset::Data::Data(const Data& other)
    : set(other.set),
      at(other.at),
      has_view(other.has_view),
      view(other.view),
      view_version(other.view_version),
      filter(other.filter),
      order(other.order),
      related(other.related) {}

std::int64_t Recordset::Data::count() const {
  return has_view ? static_cast<std::int64_t>(view.size()) : set->live_count();
}

std::int64_t Recordset::Data::row_at(std::int64_t position) const {
  return has_view ? view[static_cast<std::size_t>(position)] : set->live_row(position);
}

std::int64_t Recordset::Data::CurrentRow() const {
  if (at < 0 || at >= count()) FailNoRow(set.get());
  return row_at(at);
}

const Cell& Recordset::Data::cell(int field) const {
  RequireField(*set, field);
  if (pending != Pending::kNone) {
    if (pending == Pending::kNew || changed[static_cast<std::size_t>(field)]) {
      return buffer[static_cast<std::size_t>(field)];
    }
  }
  return set->rows.row(CurrentRow())[field];
}

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(std::shared_ptr<Data> data) : data_(std::move(data)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::Recordset(const Recordset& other)
    : data_(other.data_ == nullptr ? nullptr : std::make_shared<Data>(*other.data_)) {}
Recordset& Recordset::operator=(const Recordset& other) {
  if (this != &other) *this = Recordset(other);
  return *this;
}

int Recordset::field_count() const {
  return data_ == nullptr ? 0 : static_cast<int>(data_->set->fields.size());
}

const FieldInfo& Recordset::field(int index) const {
  const RowSet& set = *Opened(data_).set;
  RequireField(set, index);
  return set.fields[static_cast<std::size_t>(index)];
}

int Recordset::FindField(std::string_view name) const {
  const RowSet& set = *Opened(data_).set;
  const auto found = set.by_name.find(name);
  return found == set.by_name.end() ? -1 : found->second;
}

int Recordset::FieldIndex(std::string_view name) const {
  const int index = FindField(name);
  if (index < 0) {
    throw Error(kItemNotFound, data_->set->statement, fmt::format("Nu exista campul '{}'", name));
  }
  return index;
}

std::int64_t Recordset::record_count() const {
  if (data_ == nullptr) return 0;
  data_->Settle();
  return data_->count();
}

bool Recordset::eof() const {
  if (data_ == nullptr) return true;
  if (data_->pending == Data::Pending::kNew) return false;
  data_->Settle();
  return data_->at >= data_->count();
}

bool Recordset::bof() const {
  if (data_ == nullptr) return true;
  if (data_->pending == Data::Pending::kNew) return false;
  data_->Settle();
  return data_->at < 0 || data_->count() == 0;
}

void Recordset::set_position(std::int64_t row) {
  Data& data = Opened(data_);
  if (data.pending != Data::Pending::kNone) Update();  // leaving a changed row saves it
  data.Settle();
  data.at = std::clamp<std::int64_t>(row, -1, data.count());
}

std::int64_t Recordset::position() const {
  Data& data = Opened(data_);
  data.Settle();
  return data.pending == Data::Pending::kNew ? data.count() : data.at;
}

void Recordset::MoveFirst() { set_position(0); }

void Recordset::MoveLast() {
  Opened(data_);
  const std::int64_t count = record_count() + (data_->pending == Data::Pending::kNew ? 1 : 0);
  set_position(count - 1);
}

void Recordset::MoveNext() {
  Data& data = Opened(data_);
  if (eof()) FailNoRow(data.set.get());
  // A new row is saved first, which makes it the current one.
  if (data.pending != Data::Pending::kNone) Update();
  data.Settle();
  data.at = std::min(data.at + 1, data.count());
}

void Recordset::MovePrevious() {
  Data& data = Opened(data_);
  if (bof()) FailNoRow(data.set.get());
  if (data.pending != Data::Pending::kNone) Update();
  data.Settle();
  --data.at;
}

Value Recordset::Get(int field) const {
  Data& data = Opened(data_);
  data.Settle();
  return data.cell(field).ToValue();
}

std::string_view Recordset::TextView(int field) const {
  Data& data = Opened(data_);
  data.Settle();
  const Cell& cell = data.cell(field);
  return cell.is_text() ? cell.AsText() : std::string_view{};
}

bool Recordset::IsNull(int field) const {
  Data& data = Opened(data_);
  data.Settle();
  return data.cell(field).is_null();
}

Recordset Recordset::Child(std::string_view alias) const {
  Data& data = Opened(data_);
  data.Settle();
  for (const Chapter& chapter : data.set->chapters) {
    if (!NameEqual()(chapter.alias, alias)) continue;
    auto child = std::make_shared<Data>(chapter.rows);
    for (const auto& [parent_field, child_field] : chapter.relation) {
      child->related.emplace_back(child_field, data.cell(parent_field).ToValue());
    }
    child->RebuildView();
    return Recordset(std::move(child));
  }
  throw Error(kItemNotFound, data.set->statement, fmt::format("Nu exista campul '{}'", alias));
}

}  // namespace store
