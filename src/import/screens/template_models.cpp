#include "import/screens/template_models.h"

#include <QMimeData>

#include "import/template_rows.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

std::size_t At(int index) { return static_cast<std::size_t>(index); }

std::vector<ui::Column> RowColumns(const std::vector<std::string>& formats) {
  auto list = std::make_shared<ui::CodeList>();
  for (const std::string& format : formats) list->lines.push_back({Q(format), {}});
  const auto column = [](int position, ui::Format format, int width, bool editable) {
    ui::Column made;
    made.field = kRowHeadings[position];
    made.caption = Q(kRowHeadings[position]);
    made.format = format;
    made.width = width;
    made.editable = editable;
    return made;
  };
  std::vector<ui::Column> columns = {
      column(0, ui::Format::kText, 22, false), column(1, ui::Format::kTick, 6, true),
      column(2, ui::Format::kWhole, 6, true),  column(3, ui::Format::kText, 14, true),
      column(4, ui::Format::kWhole, 6, true),  column(5, ui::Format::kText, 11, true)};
  columns.back().codes = [list] { return list.get(); };
  return columns;
}

std::vector<ui::Column> SampleColumns() {
  std::vector<ui::Column> columns;
  const int widths[] = {8, 16, 13};
  for (int i = 0; i < 3; ++i) {
    ui::Column column;
    column.field = kSampleHeadings[i];
    column.caption = Q(kSampleHeadings[i]);
    column.width = widths[i];
    columns.push_back(std::move(column));
  }
  return columns;
}

ui::Format FormatOf(const TemplateRow& row) {
  if (row.Format == "DATETIME") return ui::Format::kDate;
  if (row.Format != "NUMERIC") return ui::Format::kText;
  if (row.Dest_ColumnName == "Curs_Schimb") return ui::Format::kRate;
  return row.Dest_ColumnName == "Exista_UMS" ? ui::Format::kWhole : ui::Format::kAmount;
}

}  // namespace

TemplateRowModel::TemplateRowModel(TemplateDraft& draft, std::vector<std::string> formats, QObject* parent)
    : GridModel(RowColumns(formats), parent), draft_(&draft), formats_(std::move(formats)) {}

void TemplateRowModel::Reset() {
  beginResetModel();
  endResetModel();
}

void TemplateRowModel::Assign(int row, int number) {
  draft_->Assign(At(row), number);
  Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
  Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

bool TemplateRowModel::Delete(int row) {
  if (!draft_->Delete(At(row))) return false;
  Reset();
  return true;
}

void TemplateRowModel::SetSample(const std::vector<SampleColumn>& columns) {
  sample_ = columns;
  if (Rows() > 0) Q_EMIT dataChanged(index(0, 0), index(Rows() - 1, columnCount() - 1));
}

store::Value TemplateRowModel::ValueAt(int row, int index) const {
  const TemplateRow& at = RowAt(row);
  const auto number = [](const std::optional<int>& value) {
    return value ? store::Value(*value) : store::Value();
  };
  switch (index) {
    case kDescription:
      return at.Dest_ColumnDescription;
    case kPresent:
      return at.Exista_Coloana;
    case kNumber:
      return number(at.Numar_Coloana);
    case kDefault:
      return at.Valoare_Implicita;
    case kSize:
      return number(at.Marime_Maxima);
    default:
      return at.Format;
  }
}

bool TemplateRowModel::SetTextAt(int row, int index, const QString& text) {
  const std::string typed = ui::Utf8(text);
  switch (index) {
    case kPresent:
      draft_->SetPresent(At(row), typed == "1");
      return true;
    case kNumber:
      return draft_->SetNumber(At(row), typed);
    case kDefault:
      draft_->SetDefault(At(row), typed);
      return true;
    case kSize:
      return draft_->SetSize(At(row), typed);
    case kFormat:
      return draft_->SetFormat(At(row), typed, formats_);
    default:
      return false;
  }
}

QString TemplateRowModel::ProblemAt(int row, int index) const {
  if (index != -1 && index != kNumber) return {};
  const TemplateRow& at = RowAt(row);
  if (!at.Exista_Coloana) return {};
  if (!at.Numar_Coloana) return QStringLiteral("Lipseste numarul coloanei din fisierul excel");
  if (sample_.empty() || At(*at.Numar_Coloana) <= sample_.size()) return {};
  return QStringLiteral("Fisierul exemplu are numai %1 coloane").arg(sample_.size());
}

QVariant TemplateRowModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::ToolTipRole && index.column() == kNumber && ProblemAt(index.row(), kNumber).isEmpty()) {
    const auto number = RowAt(index.row()).Numar_Coloana;
    for (const SampleColumn& column : sample_) {
      if (number == column.number) return QStringLiteral("%1: %2").arg(*number).arg(Q(column.heading));
    }
  }
  return GridModel::data(index, role);
}

QVariant TemplateRowModel::headerData(int section, Qt::Orientation orientation, int role) const {
  QVariant value = GridModel::headerData(section, orientation, role);
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return value;
  // These captions are whole sentences over narrow columns.
  constexpr qsizetype kLine = 17;
  QString text;
  qsizetype line = 0;
  for (const QString& word : value.toString().split(' ')) {
    if (line > 0) text += line + 1 + word.size() > kLine ? '\n' : ' ';
    line = text.endsWith('\n') || text.isEmpty() ? word.size() : line + 1 + word.size();
    text += word;
  }
  return text;
}

SampleModel::SampleModel(const TemplateDraft& draft, QObject* parent)
    : GridModel(SampleColumns(), parent), draft_(&draft) {}

void SampleModel::SetColumns(std::vector<SampleColumn> columns) {
  beginResetModel();
  sample_ = std::move(columns);
  endResetModel();
}

void SampleModel::ShowUses() {
  if (Rows() > 0) Q_EMIT dataChanged(index(0, 0), index(Rows() - 1, 0));
}

store::Value SampleModel::ValueAt(int row, int index) const {
  const SampleColumn& at = sample_[At(row)];
  if (index == 2) return at.first_value;
  return index == 0 ? store::Value(at.number) : store::Value(at.heading);
}

QString SampleModel::PictureAt(int row, int index) const {
  if (index != 0) return {};
  const auto& rows = draft_->rows();
  const bool used = std::any_of(rows.begin(), rows.end(), [&](const TemplateRow& each) {
    return each.Numar_Coloana == sample_[At(row)].number;
  });
  return used ? QStringLiteral("verifica") : QString();
}

Qt::ItemFlags SampleModel::flags(const QModelIndex& index) const {
  return GridModel::flags(index) | Qt::ItemIsDragEnabled;
}

QMimeData* SampleModel::mimeData(const QModelIndexList& indexes) const {
  if (indexes.isEmpty()) return nullptr;
  auto* data = new QMimeData;
  data->setData(QString::fromLatin1(kMime), QByteArray::number(sample_[At(indexes.front().row())].number));
  return data;
}

std::vector<int> PreviewModel::Shown(const PreviewLines& lines) {
  std::vector<int> shown;
  for (std::size_t i = 0; i < lines.columns.size(); ++i) {
    if (std::any_of(lines.lines.begin(), lines.lines.end(), [i](const PreviewLine& line) {
          return !store::IsEmpty(line.values[i]) || !line.problems[i].empty();
        })) {
      shown.push_back(static_cast<int>(i));
    }
  }
  return shown;
}

std::vector<ui::Column> PreviewModel::GridColumns(const PreviewLines& lines,
                                                  const std::vector<TemplateRow>& rows) {
  std::vector<ui::Column> columns(1);
  columns[0].field = "rand";
  columns[0].caption = QStringLiteral("Rand");
  columns[0].format = ui::Format::kWhole;
  columns[0].width = 5;
  for (const int position : Shown(lines)) {
    const std::string& name = lines.columns[At(position)];
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const TemplateRow& each) { return each.Dest_ColumnName == name; });
    ui::Column column;
    column.field = name;
    column.caption = Q(row == rows.end() ? name : row->Dest_ColumnDescription);
    if (row != rows.end()) column.format = FormatOf(*row);
    column.width =
        column.format == ui::Format::kText ? std::clamp(row->Marime_Maxima.value_or(10), 4, 16) : 12;
    columns.push_back(std::move(column));
  }
  return columns;
}

PreviewModel::PreviewModel(PreviewLines lines, const std::vector<TemplateRow>& rows, QObject* parent)
    : GridModel(GridColumns(lines, rows), parent), read_(std::move(lines)), shown_(Shown(read_)) {}

bool PreviewModel::Replace(PreviewLines lines) {
  if (lines.columns != read_.columns || Shown(lines) != shown_) return false;
  beginResetModel();
  read_ = std::move(lines);
  endResetModel();
  return true;
}

QString PreviewModel::ProblemSummary() const {
  QStringList parts;
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const auto count = std::count_if(read_.lines.begin(), read_.lines.end(), [&](const PreviewLine& line) {
      return !line.problems[At(shown_[i])].empty();
    });
    if (count > 0) parts += QStringLiteral("%1 (%2)").arg(columns()[i + 1].caption).arg(count);
  }
  return parts.join(QStringLiteral(", "));
}

store::Value PreviewModel::ValueAt(int row, int index) const {
  if (index == 0) return LineAt(row).row;
  return LineAt(row).values[At(shown_[At(index - 1)])];
}

QString PreviewModel::ProblemAt(int row, int index) const {
  const PreviewLine& line = LineAt(row);
  if (index == 0) return {};
  if (index > 0) {
    const std::string& problem = line.problems[At(shown_[At(index - 1)])];
    return problem.empty() ? QString() : columns()[At(index)].caption + QStringLiteral(": ") + Q(problem);
  }
  QStringList problems;
  for (std::size_t i = 1; i < columns().size(); ++i) {
    const QString problem = ProblemAt(row, static_cast<int>(i));
    if (!problem.isEmpty()) problems += problem;
  }
  return problems.join('\n');
}

}  // namespace importer
