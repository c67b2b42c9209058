#pragma once

#include "declarations/editor/problems.h"
#include "declarations/lines/lines.h"
#include "reports/report.h"
#include "ui/context.h"
#include "ui/grid_export.h"

namespace ui {
class Screen;
}

namespace reports {

/// What a preview shows.
struct Subject {
  /// Its definition; where the file has none of that name, rows are shown by the one titled as `title`, else
  /// by a plain one.
  std::string report;
  QString title;  ///< {Titlu}
  Placeholders placeholders;
  /// Of a list. Reports with a statement run that; those without are offered only where there are rows.
  std::shared_ptr<const Table> rows;
  bool plain = false;  ///< leaves the definition file alone
};

/// A list as its screen shows it: rows, order, columns. The content's model must outlive the subject.
Subject SubjectOf(session::Session& session, const ui::GridContent& content);

/// The preview of each, modal over `parent`. What is wrong with a definition is told in a message; rows are
/// then shown by a plain one.
void Preview(ui::Context& context, const Subject& subject, QWidget* parent);
void PreviewList(ui::Context& context, const ui::GridContent& content, QWidget* parent);
/// Line by line, or aggregated as in its file (the company's option XML_Detaliat).
void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        QWidget* parent);
/// The same from the editor, whose lines on screen are one more report; with `lines_first` that one opens.
void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        const ui::GridContent& lines, bool lines_first, QWidget* parent);
/// What the last check found, with the lines' invoices and codes; the second one only writes it as PDF to a
/// file that the user names.
void PreviewProblems(ui::Context& context, const declarations::Identity& identity,
                     const declarations::LineProblems& problems, QWidget* parent);
void ExportProblems(ui::Context& context, const declarations::Identity& identity,
                    const declarations::LineProblems& problems, ui::Screen* screen);

/// Numbers and dates as every screen shows them.
Formatter ScreenFormatter();

}  // namespace reports
