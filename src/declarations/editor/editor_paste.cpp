// Blocks of cells from a spreadsheet.

#include "declarations/editor/editor.h"
#include "declarations/editor/typed_text.h"
#include "platform/encoding.h"

namespace declarations {

PasteResult Editor::Paste(int row, const std::vector<int>& columns, std::string_view text) {
  PasteResult result;
  const std::vector<std::vector<std::string>> block = SplitBlock(text);
  if (RefuseWriting() || block.empty() || !SaveLine()) return result;
  row = std::clamp(row, 0, row_count());
  const int lines_before = row_count();
  if (row + static_cast<int>(block.size()) > lines_before && !rules_.can_add()) {
    session_->host.prompter.Error(kCannotAdd);
    return result;
  }
  const std::int64_t expected_before = expected_;
  std::size_t pasted = 0;
  try {
    store::Transaction transaction(session_->company);
    for (std::size_t i = 0; i < block.size(); ++i) {
      if (block.size() > kShowProgressFrom) {
        session_->host.progress.Update("Lipire linii ..... ", static_cast<int>(i * 100 / block.size()));
        if (session_->host.progress.Cancelled()) break;
      }
      row += PasteLine(row, columns, block[i], result) ? 1 : 0;
      pasted = i + 1;
    }
    if (pasted == block.size()) {
      transaction.Commit();
      result.done = true;
    }
  } catch (const store::Error& error) {
    session::ShowError(*session_, error);
    CancelLine();
  }
  if (result.done) return result;
  descriptions_.reset();
  expected_ = expected_before;
  Reload();  // the rows in memory are ahead of what was undone
  return {};
}

bool Editor::PasteLine(int row, const std::vector<int>& columns, const std::vector<std::string>& cells,
                       PasteResult& result) {
  const bool is_new = row == row_count();
  const bool blank = std::all_of(cells.begin(), cells.end(), [](const std::string& c) { return c.empty(); });
  if (is_new && blank) return false;
  if (is_new) {
    BeginLine();
  } else {
    Enter(row);
  }
  const std::size_t count = std::min(cells.size(), columns.size());
  for (std::size_t i = 0; i < count; ++i) {
    const EditorColumn& column = columns_[Index(columns[i])];
    if (column.read_only || (is_new && cells[i].empty())) continue;
    const EditResult put = PutText(columns[i], platform::Trim(cells[i]));
    if (put.accepted) {
      ++result.cells;
    } else {
      result.refused.push_back({row, columns[i], cells[i], put.message});
    }
  }
  // A block from this very grid brings what the system fills by itself; only what differs is worth a word.
  for (std::size_t i = 0; i < count; ++i) {
    if (columns_[Index(columns[i])].read_only && !cells[i].empty() &&
        cells[i] != TypedText(lines_.Get(columns[i]), decimal_mark_)) {
      result.refused.push_back({row, columns[i], cells[i], *WhyNot(row, columns[i])});
    }
  }
  for (std::size_t i = count; i < cells.size(); ++i) {
    if (!cells[i].empty()) result.refused.push_back({row, -1, cells[i], "Nu mai sunt coloane la dreapta"});
  }
  if (!touched_) {
    CancelLine();
    return !is_new;
  }
  Store();
  if (is_new) ++result.lines_added;
  return true;
}

}  // namespace declarations
