#include "declarations/screens/editor_model.h"

#include "platform/encoding.h"
#include "ui/text.h"

namespace declarations {
namespace {

using ui::Q;

struct Width {
  std::string_view field;
  int characters;
};

/// First widths: what usual values need, so that a line's most important half is seen without scrolling.
constexpr Width kWidths[] = {
    {"DataReceptiei", 10},
    {"Descriere", 22},
    {"Cod_NC", 9},
    {"Descriere_NC", 22},
    {"Cantitate", 12},
    {"UM", 5},
    {"Valoare_Valuta", 13},
    {"Moneda", 6},
    {"Curs_Schimb", 9},
    {"Val_Fiscala", 13},
    {"Val_Stat", 13},
    {"Tara_Orig", 5},
    {"Tara_Exp", 5},
    {"Tara_Dest", 5},
    {"Net", 12},
    {"Cod_UMS", 6},
    {"Val_UMS", 12},
    {"Nat_Tranz", 5},
    {"Incoterms", 5},
    {"Mod_Transp", 5},
    {"Factura_Numar", 12},
    {"Factura_Data", 10},
    {"VAT_ID", 15},
    {"SourceFile", 24},
    {"Data_Preluare", 15},
    {"Document_Numar_Referinta", 12},
    {"Document_Data_Referinta", 10},
    {"UserName", 12},
};

int WidthOf(std::string_view field) {
  for (const Width& width : kWidths) {
    if (platform::EqualsNoCase(width.field, field)) return width.characters;
  }
  return 14;
}

ui::Format FormatOf(const EditorColumn& column) {
  if (column.kind == ColumnKind::kYesNo) return ui::Format::kTick;
  if (column.kind == ColumnKind::kDate) {
    return column.format.ends_with("hh:mm") ? ui::Format::kDateTime : ui::Format::kDate;
  }
  return ui::FormatByText(column.format);
}

/// Broken at the blank nearest to the middle.
QString InTwoLines(QString caption) {
  qsizetype best = -1;
  for (qsizetype at = caption.indexOf(' '); at >= 0; at = caption.indexOf(' ', at + 1)) {
    if (best < 0 || std::abs(2 * at - caption.size()) < std::abs(2 * best - caption.size())) best = at;
  }
  if (best >= 0) caption[best] = '\n';
  return caption;
}

}  // namespace

EditorModel::EditorModel(session::Session& session, Editor& editor, QObject* parent)
    : GridModel({}, parent), session_(&session), editor_(&editor) {
  SetColumns(ColumnsOf());
  for (std::size_t i = 0; i < editor.columns().size(); ++i) {
    const EditorColumn& column = editor.columns()[i];
    if (column.codes != nullptr && !column.hidden) code_columns_.push_back(static_cast<int>(i));
  }
  rows_ = RowsNow();
}

std::vector<ui::Column> EditorModel::ColumnsOf() {
  std::vector<ui::Column> columns;
  for (const EditorColumn& from : editor_->columns()) {
    ui::Column& column = columns.emplace_back();
    column.field = from.field;
    column.caption = Q(from.caption);
    column.format = FormatOf(from);
    column.width = WidthOf(from.field);
    column.hidden = from.hidden;
    column.ends_tell = platform::EqualsNoCase(from.field, "Descriere_NC");
    column.editable = !from.read_only && editor_->can_edit();
    if (!column.editable) continue;
    if (from.codes != nullptr) {
      column.codes = [this, codes = from.codes] { return Codes(*codes); };
    } else if (platform::EqualsNoCase(from.field, "Descriere")) {
      column.codes = [this] { return Descriptions(); };
      column.names = true;
    }
  }
  return columns;
}

const ui::CodeList* EditorModel::Codes(const tariff::CodeCheck& codes) {
  const auto found = lists_.find(&codes);
  if (found != lists_.end()) return &found->second;
  try {
    return &lists_.emplace(&codes, ui::CodeList::Read(session_->company, CodeListStatement(codes)))
                .first->second;
  } catch (const store::Error& error) {
    // The cell is typed into without its list.
    session_->host.errors.Write("Frm_INTRASTAT", error.what());
    return nullptr;
  }
}

const ui::CodeList* EditorModel::Descriptions() {
  const Editor::DescriptionSet& known = editor_->Descriptions();
  if (known.size() != descriptions_.lines.size()) {
    descriptions_.lines.clear();
    for (const std::string& name : known) descriptions_.lines.push_back({Q(name), Q(name)});
  }
  return &descriptions_;
}

bool EditorModel::Fits() const {
  const std::vector<EditorColumn>& now = editor_->columns();
  return std::equal(now.begin(), now.end(), columns().begin(), columns().end(),
                    [](const EditorColumn& a, const ui::Column& b) { return a.field == b.field; });
}

void EditorModel::Reload() {
  beginResetModel();
  lists_.clear();
  rows_ = RowsNow();
  endResetModel();
}

void EditorModel::Follow() {
  const int now = RowsNow();
  if (now > rows_) {
    beginInsertRows({}, rows_, now - 1);
    rows_ = now;
    endInsertRows();
  } else if (now < rows_) {
    beginRemoveRows({}, now, rows_ - 1);
    rows_ = now;
    endRemoveRows();
  }
  if (rows_ == 0) return;
  Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
  Q_EMIT headerDataChanged(Qt::Vertical, 0, rows_ - 1);
}

store::Value EditorModel::ValueAt(int row, int column) const {
  // The grid may paint between the editor's reading anew and our telling of it.
  if (row < 0 || row >= editor_->row_count() || column < 0 ||
      static_cast<std::size_t>(column) >= editor_->columns().size()) {
    return {};
  }
  return editor_->ValueAt(row, column);
}

bool EditorModel::SetTextAt(int row, int column, const QString& text) {
  const bool beginning = row >= editor_->row_count();
  const EditResult result = editor_->SetText(row, column, ui::Utf8(text));
  // A line whose first cell was refused has not begun.
  if (!result.accepted && beginning && editor_->pending_row() == row) editor_->CancelLine();
  Follow();
  if (!result.accepted) return Refuse(Q(result.message));
  Q_EMIT CellTaken(Q(result.message));
  return true;
}

QString EditorModel::ProblemAt(int row, int column) const {
  if (row < 0 || row >= editor_->row_count()) return {};
  if (column >= 0) {
    const std::string code = editor_->CodeProblem(row, column);
    const std::string checked = editor_->ProblemText(row, column);
    return Q(code.empty() || checked.empty() ? code + checked : code + "\n" + checked);
  }
  std::string text = editor_->ProblemText(row);
  for (const int each : code_columns_) {
    const std::string code = editor_->CodeProblem(row, each);
    if (!code.empty()) text += (text.empty() ? "" : "\n") + code;
  }
  return Q(text);
}

void EditorModel::SortBy(int column, Qt::SortOrder order) {
  editor_->Sort(column, order == Qt::DescendingOrder);
  rows_ = RowsNow();
}

QVariant EditorModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::ToolTipRole && index.isValid() && index.row() < editor_->row_count() &&
      ProblemAt(index.row(), index.column()).isEmpty()) {
    const std::string description = editor_->CodeDescription(index.row(), index.column());
    if (!description.empty()) return Q(description);
  }
  return GridModel::data(index, role);
}

QVariant EditorModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount()) {
    return InTwoLines(column(section).caption);
  }
  return GridModel::headerData(section, orientation, role);
}

}  // namespace declarations
