#include "ui/code_list.h"

#include "ui/text.h"

namespace ui {

CodeList CodeList::Read(store::Connection& connection, std::string_view statement, int code_column,
                        int description_column) {
  CodeList list;
  for (store::Recordset rows = connection.Query(statement); !rows.eof(); rows.MoveNext()) {
    list.lines.push_back({Q(rows[code_column].ToText()), Q(rows[description_column].ToText())});
  }
  return list;
}

const CodeList::Line* CodeList::Find(const QString& code) const {
  for (const Line& line : lines) {
    if (line.code == code) return &line;
  }
  return nullptr;
}

}  // namespace ui
