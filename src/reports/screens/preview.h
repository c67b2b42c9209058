#pragma once

#include "declarations/editor/problems.h"
#include "declarations/lines/lines.h"
#include "reports/report.h"
#include "ui/context.h"
#include "ui/grid_export.h"

namespace reports {

/// What a preview shows.
struct Subject {
  std::string report;  ///< its definition; empty: the one titled as `title`, else a plain one
  QString title;       ///< {Titlu}
  Placeholders placeholders;
  std::shared_ptr<const Table> rows;  ///< of a list; null: the definition's statement is run
};

/// A list as its screen shows it: rows, order, columns. The content's model must outlive the subject.
Subject SubjectOf(session::Session& session, const ui::GridContent& content);

/// The preview of each, modal over `parent`; a report that cannot be made is told in a message.
void Preview(ui::Context& context, const Subject& subject, QWidget* parent);
void PreviewList(ui::Context& context, const ui::GridContent& content, QWidget* parent);
/// Line by line, or aggregated as in its file (the company's option XML_Detaliat).
void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        QWidget* parent);
/// What the last check found, with the lines' invoices and codes.
void PreviewProblems(ui::Context& context, const declarations::Identity& identity,
                     const declarations::LineProblems& problems, QWidget* parent);

/// Numbers and dates as every screen shows them.
Formatter ScreenFormatter();

}  // namespace reports
