#include "ui/grid_model.h"
#include "ui/text.h"

namespace ui {

RecordsetModel::RecordsetModel(std::vector<Column> columns, store::Recordset rows, QObject* parent)
    : GridModel(std::move(columns), parent), rows_(std::move(rows)) {
  Bind();
}

void RecordsetModel::Bind() {
  const int known = rows_.field_count();
  fields_.clear();
  for (const Column& each : columns()) {
    const int position = static_cast<int>(fields_.size());
    if (known == 0) {
      fields_.push_back(-1);
    } else if (each.field.empty()) {
      fields_.push_back(position < known ? position : -1);
    } else {
      fields_.push_back(rows_.FindField(each.field));
    }
  }
}

void RecordsetModel::SetRows(store::Recordset rows) {
  beginResetModel();
  rows_ = std::move(rows);
  Bind();
  if (!sort_.empty() && rows_.field_count() > 0) rows_.SetSort(sort_);
  endResetModel();
}

void RecordsetModel::SetFilter(std::string_view criterion) {
  struct Reset {
    RecordsetModel* model;
    explicit Reset(RecordsetModel* m) : model(m) { model->beginResetModel(); }
    ~Reset() { model->endResetModel(); }
  } reset(this);
  rows_.SetFilter(criterion);
}

int RecordsetModel::Rows() const { return static_cast<int>(rows_.record_count()); }

store::Value RecordsetModel::ValueAt(int row, int column) const {
  const int field = FieldOf(column);
  if (field < 0) return {};
  rows_.set_position(row);
  return rows_.Get(field);
}

bool RecordsetModel::SetTextAt(int row, int index, const QString& text) {
  const int field = FieldOf(index);
  if (field < 0) return false;
  store::Value value;
  const QString typed = text.trimmed();
  const Format format = column(index).format;
  if (format == Format::kTick) {
    value = typed == "1";
  } else if (RightAligned(format) && !typed.isEmpty()) {
    const std::optional<double> number = ParseNumber(typed, format);
    if (!number) return Refuse(QStringLiteral("\"%1\" nu este un numar").arg(typed));
    value = *number;
  } else if ((format == Format::kDate || format == Format::kDateTime) && !typed.isEmpty()) {
    const std::optional<store::Date> date = store::ParseDate(Utf8(typed));
    if (!date) return Refuse(QStringLiteral("\"%1\" nu este o data").arg(typed));
    value = *date;
  } else if (!typed.isEmpty()) {
    value = Utf8(text);
  }
  rows_.set_position(row);
  try {
    rows_.Set(field, value);
    rows_.Update();
  } catch (const store::Error&) {
    rows_.CancelUpdate();
    throw;
  }
  return true;
}

void RecordsetModel::SortBy(int index, Qt::SortOrder order) {
  sort_.clear();
  if (index >= 0 && FieldOf(index) >= 0) {
    sort_ =
        fmt::format("[{}]{}", rows_.field(FieldOf(index)).name, order == Qt::DescendingOrder ? " DESC" : "");
  }
  if (rows_.field_count() > 0) rows_.SetSort(sort_);
}

int RecordsetModel::FindText(int index, const QString& text, int from) const {
  if (FieldOf(index) < 0) return -1;
  QString quoted = text;
  quoted.replace('\'', "''");
  const std::string criterion =
      fmt::format("[{}] LIKE '{}*'", rows_.field(FieldOf(index)).name, Utf8(quoted));
  if (from < Rows() && rows_.Find(criterion, from)) return static_cast<int>(rows_.position());
  if (from > 0 && rows_.Find(criterion, 0)) return static_cast<int>(rows_.position());
  return -1;
}

bool RecordsetModel::CanSearch(int index) const {
  if (FieldOf(index) < 0) return false;
  const store::FieldInfo& field = rows_.field(FieldOf(index));
  return !field.typed || field.type == store::ColumnType::kText || field.type == store::ColumnType::kMemo;
}

}  // namespace ui
