#include <cmath>

#include "store/recordset_data.h"

namespace store {

void Recordset::Data::RequireWritable() const {
  if (set->in_memory) return;
  if (!set->updatable) {
    throw Error(kNotUpdatable, set->statement, "Datele acestei interogari nu pot fi modificate");
  }
  if (!set->engine->is_open() || set->engine->session() != set->session) {
    throw Error(kObjectClosed, set->statement, "Conexiunea acestor date a fost inchisa");
  }
  set->engine->RequireTransaction();
}

void Recordset::Data::ReadDefaults() {
  if (set->defaults_read) return;
  set->defaults_read = true;
  set->defaults.assign(set->fields.size(), Cell());
  set->default_texts.assign(set->fields.size(), "");
  const TableInfo* table = nullptr;
  if (set->updatable) table = set->engine->main_file().Resolve(set->base_name).table;
  for (std::size_t i = 0; i < set->fields.size(); ++i) {
    const FieldInfo& field = set->fields[i];
    if (field.type == ColumnType::kYesNo) set->defaults[i] = Cell::Boolean(false);
    if (table == nullptr || field.base_column.empty()) continue;
    const auto column =
        std::find_if(table->columns.begin(), table->columns.end(),
                     [&](const ColumnDefinition& c) { return NameEqual()(c.name, field.base_column); });
    if (column == table->columns.end() || column->default_text.empty()) continue;
    const DefaultExpression value = ParseDefault(column->default_text, column->type, column->size);
    if (value.computed) {
      set->computed_defaults.emplace_back(static_cast<int>(i), value.sql);
    } else {
      ConvertForColumn(value.value, column->type, column->size, set->defaults[i], set->default_texts[i]);
    }
  }
}

void Recordset::Data::BeginPending(Pending kind) {
  RequireWritable();
  const std::size_t count = set->fields.size();
  if (buffer_texts.size() != count) buffer_texts.resize(count);
  changed.assign(count, 0);
  if (kind == Pending::kNew) {
    ReadDefaults();
    buffer = set->defaults;
    for (const auto& [field, sql] : set->computed_defaults) {
      Statement now = set->engine->PrepareOwn("SELECT " + sql);
      if (!set->engine->Step(now)) continue;
      buffer[static_cast<std::size_t>(field)] = Cell::DateOf(sqlite3_column_double(now.get(), 0));
      changed[static_cast<std::size_t>(field)] = 1;
    }
    for (const NewRowValue& value : new_row_values) {
      buffer[static_cast<std::size_t>(value.field)] = value.cell;
      changed[static_cast<std::size_t>(value.field)] = 1;
    }
    for (const auto& [field, value] : related) {
      const auto i = static_cast<std::size_t>(field);
      const FieldInfo& info = set->fields[i];
      changed[i] = 1;
      ConvertForColumn(value, info.type, info.size, buffer[i], buffer_texts[i]);
    }
  } else {
    CurrentRow();
    buffer.resize(count);
  }
  pending = kind;
}

void Recordset::AddNew() {
  Data& data = Opened(data_);
  if (data.pending != Data::Pending::kNone) Update();
  data.Settle();
  data.BeginPending(Data::Pending::kNew);
}

void Recordset::Data::RequireStored(const FieldInfo& info) const {
  if (set->in_memory || !info.base_column.empty()) return;
  throw Error(kNotUpdatable, set->statement,
              fmt::format("Coloana {} este calculata si nu poate fi modificata", info.name));
}

Cell Recordset::Data::Converted(int field, const Value& value, std::string& text) const {
  const FieldInfo& info = set->fields[static_cast<std::size_t>(field)];
  RequireStored(info);
  if (!info.typed && !value.is_text()) {
    return value.is_null()      ? Cell()
           : value.is_boolean() ? Cell::Boolean(value.ToBoolean())
           : value.is_integer() ? Cell::Integer(value.ToInteger())
           : value.is_date()    ? Cell::DateOf(value.ToDate().days)
                                : Cell::Double(value.ToDouble());
  }
  Cell cell;
  const ColumnType type = info.typed ? info.type : ColumnType::kMemo;
  const ConversionFailure failure = ConvertForColumn(value, type, info.size, cell, text);
  if (failure.number != 0) {
    throw Error(failure.number, set->statement, fmt::format("Coloana {}: {}", info.name, failure.reason));
  }
  return cell;
}

void Recordset::Data::Change(int field, const Cell& cell, std::string& text) {
  const auto i = static_cast<std::size_t>(field);
  buffer[i] = cell;
  if (cell.kind == Cell::Kind::kText) {
    std::swap(buffer_texts[i], text);
    buffer[i] = Cell::TextRef(buffer_texts[i]);
  }
  changed[i] = 1;
}

void Recordset::Data::BeginChange(int field) {
  RequireField(*set, field);
  if (pending != Pending::kNone) return;
  Settle();
  BeginPending(Pending::kEdit);
}

void Recordset::Set(int field, const Value& value) {
  Data& data = Opened(data_);
  data.BeginChange(field);
  data.Change(field, data.Converted(field, value, data.scratch), data.scratch);
}

void Recordset::SetFrom(int field, const Recordset& from, int from_field) {
  Data& data = Opened(data_);
  data.BeginChange(field);
  const Cell& cell = Opened(from.data_).cell(from_field);
  const FieldInfo& info = data.set->fields[static_cast<std::size_t>(field)];
  // The common kinds need no conversion; a text whose bytes fit has no more characters than the column.
  const bool fits =
      info.typed &&
      ((cell.is_text() && info.type == ColumnType::kText &&
        cell.length <= static_cast<std::uint32_t>(info.size)) ||
       (cell.kind == Cell::Kind::kDouble && info.type == ColumnType::kDouble && std::isfinite(cell.number)));
  if (!fits) return Set(field, cell.ToValue());
  data.RequireStored(info);
  if (cell.kind == Cell::Kind::kText) data.scratch.assign(cell.AsText());
  data.Change(field, cell, data.scratch);
}

void Recordset::SetForNewRows(int field, const Value& value) {
  Data& data = Opened(data_);
  RequireField(*data.set, field);
  std::string text;
  Cell cell = data.Converted(field, value, text);
  auto kept = std::make_unique<const std::string>(std::move(text));
  if (cell.is_text()) cell = Cell::TextRef(*kept);
  data.new_row_values.push_back({field, std::move(kept), cell});
}

bool Recordset::pending() const { return data_ != nullptr && data_->pending != Data::Pending::kNone; }

void Recordset::CancelUpdate() {
  if (data_ != nullptr) data_->pending = Data::Pending::kNone;
}

void Recordset::Update() {
  Data& data = Opened(data_);
  switch (data.pending) {
    case Data::Pending::kNone:
      return;
    case Data::Pending::kNew:
      return data.SaveNew();
    case Data::Pending::kEdit:
      return data.SaveEdit();
  }
}

Statement& Recordset::Data::Plan(EditPlans& kept, bool insert) {
  constexpr std::size_t kKept = 16;
  Engine& engine = *set->engine;
  if (kept.generation != engine.edit_generation()) kept.plans.clear();
  const auto known = std::find_if(kept.plans.begin(), kept.plans.end(),
                                  [&](const EditPlans::Plan& plan) { return plan.mask == changed; });
  if (known != kept.plans.end()) {
    std::rotate(kept.plans.begin(), known, known + 1);
    return *kept.plans.front().statement;
  }
  std::string columns, marks;
  int parameter = 0;
  for (std::size_t i = 0; i < changed.size(); ++i) {
    if (!changed[i]) continue;
    if (!columns.empty()) {
      columns += ", ";
      marks += ", ";
    }
    columns += QuoteName(set->fields[i].base_column);
    const std::string mark = fmt::format("?{}", ++parameter);
    if (insert) {
      marks += mark;
    } else {
      columns += " = " + mark;
    }
  }
  std::string sql;
  if (!insert) {
    sql = fmt::format("UPDATE {} SET {} WHERE rowid = ?{}", set->base_table, columns, parameter + 1);
  } else if (columns.empty()) {
    sql = fmt::format("INSERT INTO {} DEFAULT VALUES", set->base_table);
  } else {
    sql = fmt::format("INSERT INTO {}({}) VALUES({})", set->base_table, columns, marks);
  }
  Statement& statement = engine.EditStatement(sql);
  if (kept.generation != engine.edit_generation()) kept.plans.clear();
  kept.generation = engine.edit_generation();
  if (kept.plans.size() == kKept) kept.plans.pop_back();
  kept.plans.insert(kept.plans.begin(), {changed, &statement});
  return statement;
}

int Recordset::Data::BindPending(Statement& statement) const {
  int parameter = 0;
  for (std::size_t i = 0; i < changed.size(); ++i) {
    if (!changed[i]) continue;
    ++parameter;
    const Cell& cell = buffer[i];
    switch (cell.kind) {
      case Cell::Kind::kNull:
        statement.BindNull(parameter);
        break;
      case Cell::Kind::kBoolean:
      case Cell::Kind::kInteger:
        statement.Bind(parameter, cell.integer);
        break;
      case Cell::Kind::kDouble:
      case Cell::Kind::kDate:
        statement.Bind(parameter, cell.number);
        break;
      case Cell::Kind::kShortText:
      case Cell::Kind::kText:
        statement.Bind(parameter, cell.AsText());
        break;
    }
  }
  return parameter;
}

void Recordset::Data::SaveNew() {
  RequireWritable();
  std::int64_t rowid = 0;
  if (set->updatable) {
    Statement& insert = Plan(insert_plans, true);
    BindPending(insert);
    insert.Step(set->statement, set->engine->path());
    insert.Reset();
    rowid = sqlite3_last_insert_rowid(set->engine->db());
    if (set->counter_field >= 0) buffer[static_cast<std::size_t>(set->counter_field)] = Cell::Integer(rowid);
  }
  Cell* row = set->rows.Add();
  for (std::size_t i = 0; i < buffer.size(); ++i) {
    if (buffer[i].kind == Cell::Kind::kText) {
      set->rows.StoreText(&row[i], static_cast<int>(i), buffer[i].AsText());
    } else {
      row[i] = buffer[i];
    }
  }
  if (set->updatable) set->rowids.push_back(rowid);
  set->AppendLive();
  pending = Pending::kNone;
  if (has_view) view.push_back(static_cast<std::uint32_t>(set->rows.size() - 1));
  at = count() - 1;
}

void Recordset::Data::SaveEdit() {
  RequireWritable();
  if (std::find(changed.begin(), changed.end(), 1) == changed.end()) {
    pending = Pending::kNone;
    return;
  }
  const std::int64_t row = CurrentRow();
  if (set->updatable) {
    Engine& engine = *set->engine;
    std::int64_t& rowid = set->rowids[static_cast<std::size_t>(row)];
    Statement& update = Plan(update_plans, false);
    update.Bind(BindPending(update) + 1, rowid);
    update.Step(set->statement, engine.path());
    update.Reset();
    if (sqlite3_changes(engine.db()) == 0) {
      throw Error(kIntegrity, set->statement, "Inregistrarea a fost stearsa intre timp");
    }
    const auto counter = static_cast<std::size_t>(set->counter_field);
    if (set->counter_field >= 0 && changed[counter]) rowid = buffer[counter].integer;
  }
  Cell* cells = set->rows.row(row);
  for (std::size_t i = 0; i < changed.size(); ++i) {
    if (changed[i]) cells[i] = set->rows.Keep(buffer[i]);
  }
  pending = Pending::kNone;
}

void Recordset::Delete() {
  Data& data = Opened(data_);
  if (data.pending == Data::Pending::kNew) return CancelUpdate();
  CancelUpdate();
  data.Settle();
  data.RequireWritable();
  const std::int64_t row = data.CurrentRow();
  RowSet& set = *data.set;
  if (set.updatable) {
    Statement& remove =
        set.engine->EditStatement(fmt::format("DELETE FROM {} WHERE rowid = ?1", set.base_table));
    remove.Bind(1, set.rowids[static_cast<std::size_t>(row)]);
    remove.Step(set.statement, set.engine->path());
    remove.Reset();
  }
  set.RemoveLive(row);
  if (data.has_view) {
    data.view.erase(data.view.begin() + data.at);
    data.view_version = set.version;
  }
}

}  // namespace store
