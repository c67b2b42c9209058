#include "ui/grid.h"
#include "ui/text.h"

// The search while typing: it stays in one column, moves to the first row that begins with what was typed,
// and ends with Esc, Enter or any key that moves.

namespace ui {

void Grid::StartSearch() {
  if (model_ == nullptr || model_->Rows() == 0) return;
  int column = currentIndex().column();
  if (column < 0) {
    const std::vector<int> shown = visible_columns();
    if (shown.empty()) return;
    column = shown.front();
  }
  if (searching_ && column == search_column_) return;
  if (!model_->CanSearch(column)) {
    context_->session.host.prompter.Message(
        "In aceasta coloana cautarea nu se poate realiza, rezultate obtinute inexacte", "Mesaj",
        platform::Icon::kExclamation);
    return;
  }
  searching_ = true;
  search_column_ = column;
  search_text_.clear();
  found_ = true;
  setFocus();
  Q_EMIT SearchColumn(model_->columns()[static_cast<std::size_t>(column)].caption);
  Q_EMIT SearchText(QStringLiteral("In curs de cautare : "));
}

int Grid::FindRow(const QString& text, int from) const {
  try {
    return model_->FindText(search_column_, text, from);
  } catch (const store::Error&) {
    return -1;  // a text that makes no criterion finds nothing
  }
}

void Grid::Search(const QString& text, int from) {
  // What adds to a text that was not found is not found either.
  const bool hopeless = !found_ && !search_text_.isEmpty() && text.startsWith(search_text_);
  search_text_ = text;
  found_ = true;
  QString message = QStringLiteral("In curs de cautare : ") + text;
  if (!text.isEmpty()) {
    const int row = hopeless ? -1 : FindRow(text, from);
    found_ = row >= 0;
    if (found_) {
      SelectRow(row, search_column_, PositionAtCenter);
    } else {
      message += QStringLiteral("   (nu exista)");
    }
  }
  Q_EMIT SearchText(message);
}

void Grid::SearchNext() {
  if (search_text_.isEmpty() || search_column_ < 0 || model_ == nullptr || model_->Rows() == 0) {
    StartSearch();
    return;
  }
  const int from = current_row() + 1;
  const bool ended = !searching_;
  Search(search_text_, from < model_->Rows() ? from : 0);
  if (ended) Q_EMIT SearchText({});
}

void Grid::EndSearch() {
  if (!searching_) return;
  searching_ = false;
  Q_EMIT SearchText({});
}

bool Grid::SearchKey(QKeyEvent* key) {
  switch (key->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      EndSearch();
      return true;
    case Qt::Key_Backspace:
      Search(search_text_.chopped(search_text_.isEmpty() ? 0 : 1), 0);
      return true;
    case Qt::Key_F3:
      SearchNext();
      return true;
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
      return false;
    default:
      break;
  }
  const bool chord =
      (key->modifiers() & Qt::ControlModifier) != 0 && (key->modifiers() & Qt::AltModifier) == 0;
  if (!chord && !key->text().isEmpty() && key->text().front().isPrint()) {
    // A longer text cannot be found above the row that the shorter one led to.
    Search(search_text_ + key->text(), search_text_.isEmpty() ? 0 : std::max(current_row(), 0));
    return true;
  }
  EndSearch();
  return false;
}

}  // namespace ui
