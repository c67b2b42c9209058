#include "tariff/screens/notes_pane.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QMimeData>

#include "tariff/rtf_html.h"
#include "ui/text.h"

namespace tariff {

NotesPane::NotesPane(QWidget* parent) : QTextBrowser(parent) {
  setTabChangesFocus(true);
  setOpenLinks(false);
}

void NotesPane::SetRtf(std::string rtf) {
  rtf_ = std::move(rtf);
  Render();
}

void NotesPane::Render() {
  const bool dark = palette().base().color().lightness() < 128;
  setHtml(ui::Q(RtfToHtml(rtf_, dark ? Paper::kDark : Paper::kLight)));
}

void NotesPane::CopyAll() const {
  auto* copied = new QMimeData;
  const QByteArray rtf = QByteArray::fromStdString(rtf_);
  copied->setData(QStringLiteral("text/rtf"), rtf);
  copied->setData(QStringLiteral("application/rtf"), rtf);
  copied->setText(toPlainText());
  QApplication::clipboard()->setMimeData(copied);
}

void NotesPane::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !rtf_.empty()) Render();
}

}  // namespace tariff
