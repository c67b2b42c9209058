#include "ui/reader.h"

#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>

#include "ui/list_screen.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr int kMostZoom = 12, kLeastZoom = -4;

}  // namespace

Reader::Reader(Context& screen_context, const QString& name, QWidget* parent)
    : Screen(screen_context, name, parent), commands_(new CommandRow(this)), text_(new QTextBrowser(this)) {
  SetFirstSize({900, 640});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 8, 12, 8);
  layout->setSpacing(8);
  layout->addWidget(commands_);
  text_->setObjectName(QStringLiteral("Text"));
  text_->setOpenExternalLinks(true);
  text_->viewport()->installEventFilter(this);
  layout->addWidget(text_, 1);
  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("LblMesaj"));
  status_->setTextFormat(Qt::PlainText);
  layout->addWidget(status_);

  const auto key = [this](const QKeySequence& sequence, std::function<void()> action) {
    connect(new QShortcut(sequence, this), &QShortcut::activated, this, std::move(action));
  };
  key(QKeySequence::ZoomIn, [this] { Zoom(1); });
  key(QKeySequence(Qt::CTRL | Qt::Key_Equal), [this] { Zoom(1); });
  key(QKeySequence::ZoomOut, [this] { Zoom(-1); });
  key(QKeySequence(Qt::CTRL | Qt::Key_0), [this] { Zoom(-zoom_); });
}

void Reader::Zoom(int steps) {
  const int wanted = std::clamp(zoom_ + steps, kLeastZoom, kMostZoom);
  text_->zoomIn(wanted - zoom_);  // negative steps zoom out
  zoom_ = wanted;
}

void Reader::SetPlainText(const QString& text) { text_->setPlainText(text); }
void Reader::SetHtml(const QString& html) { text_->setHtml(html); }
void Reader::ShowStatus(const QString& text) { status_->setText(text); }

void Reader::AddReaderCommands() {
  commands_->AddSeparator();
  commands_->Add(
      QStringLiteral("CmdTipareste"), QStringLiteral("&Tipareste"), QStringLiteral("tipareste"),
      [this] { Print(); }, QKeySequence::Print);
  commands_->Add(
      QStringLiteral("CmdPdf"), QStringLiteral("&PDF..."), QStringLiteral("pdf"), [this] { ExportPdf(); },
      QKeySequence(Qt::CTRL | Qt::Key_E));
  commands_->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("renunta"),
                      [this] { reject(); });
}

void Reader::OnLineActivated(std::function<void(int line)> handler) { on_line_ = std::move(handler); }

bool Reader::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonDblClick && on_line_) {
    const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
    on_line_(text_->cursorForPosition(at).blockNumber());
    return true;
  }
  return Screen::eventFilter(watched, event);
}

}  // namespace ui
