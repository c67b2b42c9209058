#pragma once

#include <gmock/gmock.h>

#include "calc/rates.h"
#include "declarations/editor/editor.h"
#include "support/sample_lines.h"

namespace declarations {

/// An installation with one arrivals declaration, March 2026, and what is typed into it.
class EditorTest : public testing::Test {
 protected:
  static constexpr double kMarch2 = 46083;  ///< 2 March 2026

  std::int64_t AddLine(const test_support::LineValues& changes = {}, const std::string& TIP = "I") {
    return test_support::AddLine(at.session, TIP, 2026, 3, changes);
  }

  Editor& Open(Editor::Mode mode = Editor::Mode::kModify, const std::string& TIP = "I") {
    editor_.emplace(at.session, Identity{TIP, test_support::Installation::kCompany, 2026, 3}, mode, ",");
    EXPECT_TRUE(editor_->Open());
    return *editor_;
  }

  EditResult Type(int row, std::string_view field, std::string_view text) {
    return editor_->SetText(row, editor_->ColumnOf(field), text);
  }
  void MustType(int row, std::string_view field, std::string_view text) {
    const EditResult result = Type(row, field, text);
    EXPECT_TRUE(result.accepted) << field << ": " << result.message;
  }
  std::string Text(int row, std::string_view field) { return editor_->TextAt(row, editor_->ColumnOf(field)); }
  /// Values of the only line of a statement, as the database has them.
  std::string Stored(std::string_view select) {
    const store::Recordset rows = at.session.company.Query(select);
    std::string text;
    for (int i = 0; i < rows.field_count(); ++i) text += (i == 0 ? "" : "|") + rows.Get(i).ToText();
    return text;
  }

  test_support::Installation at;
  std::optional<Editor> editor_;
};

}  // namespace declarations
