#include "ui/screen.h"

#include <QScreen>
#include <QShortcut>
#include <QSplitter>

#include "store/error.h"
#include "ui/icons.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace ui {

bool Try(Context& context, const std::function<void()>& action) {
  try {
    action();
    return true;
  } catch (const store::Error& error) {
    session::ShowError(context.session, error);
  } catch (const platform::FileError& error) {
    context.session.host.prompter.Error(error.what());
  }
  return false;
}

Screen::Screen(Context& context, const QString& name, QWidget* parent) : QDialog(parent), context_(&context) {
  setObjectName(name);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMaximizeButtonHint, true);
  setWindowIcon(Icon(QStringLiteral("declarix")));
  auto* help = new QShortcut(QKeySequence(Qt::Key_F1), this);
  connect(help, &QShortcut::activated, this, [this] {
    if (context_->open_manual) context_->open_manual(Utf8(objectName()));
  });
}

bool Screen::Try(const std::function<void()>& action) { return ui::Try(*context_, action); }

void Screen::BindKey(QPushButton* button, const QKeySequence& key) {
  auto* shortcut = new QShortcut(key, this);
  connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
  const QString keys = key.toString(QKeySequence::NativeText);
  button->setToolTip(button->toolTip().isEmpty() ? keys
                                                 : button->toolTip() + QStringLiteral(" (") + keys + ')');
}

void Screen::showEvent(QShowEvent* event) {
  if (!placed_) {
    placed_ = true;
    QSize size = first_size_.isValid() ? first_size_ : sizeHint();
    const QStringList kept = context_->memory.Get(objectName(), QStringLiteral("marime")).split('x');
    if (kept.size() == 2 && kept[0].toInt() > 0 && kept[1].toInt() > 0) {
      size = QSize(kept[0].toInt(), kept[1].toInt());
    }
    const QRect room = screen()->availableGeometry();
    resize(size.expandedTo(minimumSizeHint()).boundedTo(room.size()));
    const QRect over = parentWidget() != nullptr && parentWidget()->isVisible()
                           ? parentWidget()->window()->frameGeometry()
                           : room;
    QRect own(QPoint(), this->size());
    own.moveCenter(over.center());
    own.moveLeft(std::clamp(own.left(), room.left(), std::max(room.left(), room.right() - own.width())));
    own.moveTop(std::clamp(own.top(), room.top(), std::max(room.top(), room.bottom() - own.height())));
    move(own.topLeft());
  }
  QDialog::showEvent(event);
}

void Screen::hideEvent(QHideEvent* event) {
  if (!isMaximized() && !isMinimized()) {
    context_->memory.Set(objectName(), QStringLiteral("marime"),
                         QStringLiteral("%1x%2").arg(width()).arg(height()));
  }
  QDialog::hideEvent(event);
}

void Screen::keyPressEvent(QKeyEvent* key) {
  const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (enter && button != nullptr && button->isEnabled()) return button->click();
  QDialog::keyPressEvent(key);
}

void RememberSplit(Context& context, const QString& screen, const QString& key, QSplitter* splitter) {
  QList<int> sizes;
  for (const QString& part : context.memory.Get(screen, key).split('/')) sizes << part.toInt();
  if (sizes.size() == splitter->count() && !sizes.contains(0)) splitter->setSizes(sizes);
  QObject::connect(splitter, &QSplitter::splitterMoved, splitter, [&context, screen, key, splitter] {
    QStringList parts;
    for (const int size : splitter->sizes()) parts << QString::number(size);
    context.memory.Set(screen, key, parts.join('/'));
  });
}

}  // namespace ui
