#pragma once

#include <QString>
#include <string>
#include <vector>

#include "store/connection.h"

namespace ui {

/// What a look-up offers: a code and its description a line, in the order of showing.
struct CodeList {
  struct Line {
    QString code, description;
  };
  std::vector<Line> lines;
  QString code_heading = QStringLiteral("Cod"), description_heading = QStringLiteral("Denumire");

  /// The first two columns of a statement. `Show the first, keep the second` lists (counties by name) pass
  /// `code_column` and `description_column`. Throws store::Error.
  static CodeList Read(store::Connection& connection, std::string_view statement, int code_column = 0,
                       int description_column = 1);

  /// Null where the code is unknown; compared as typed.
  const Line* Find(const QString& code) const;
};

}  // namespace ui
