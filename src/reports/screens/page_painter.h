#pragma once

#include <QByteArray>
#include <QPainter>

#include "reports/layout.h"

class QPrinter;

namespace reports {

/// The letters' widths of the program's font, as pages are drawn with it.
Fonts ReadFonts();

/// Draws a page; the painter's unit is a point, its origin the page's upper left corner.
void PaintPage(QPainter& painter, const PageContent& content);

/// A whole report on paper or as PDF, page after page; `progress` hears the page and may stop it (false).
using PageProgress = std::function<bool(int page, int pages)>;

/// The pages from `first` to `last`, counted from 0. False where it was stopped or the printer refused.
bool PrintPages(const Layout& layout, QPrinter& printer, int first, int last, const PageProgress& progress);
/// Empty where it was stopped.
QByteArray Pdf(const Layout& layout, const QString& title, const PageProgress& progress);

}  // namespace reports
