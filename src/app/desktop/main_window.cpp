#include "app/desktop/main_window.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QUrl>

#include "app/desktop/desktop.h"
#include "app/desktop/splash.h"
#include "ui/icons.h"
#include "ui/screen.h"
#include "ui/text.h"

namespace app {

using ui::Q;

namespace {

constexpr QSize kSmallest(1024, 700);

// Drawn light by the picture whatever the theme, so what stands on it is dark.
const QColor kInk(0x1b, 0x2a, 0x3a);
const QColor kAccent(0x1b, 0x4f, 0x8a);

constexpr std::pair<std::string_view, const char*> kPictures[] = {
    {"INTRASTAT", "fisier"},       {"EXCEL_PRELUARE", "import"},
    {"MACHETA_NOUA", "macheta"},   {"CURS_ACTUALIZARE", "actualizare"},
    {"CURS_MANUAL", "curs"},       {"FIRMA_SELECTARE", "firme"},
    {"FIRMA_CREARE", "adauga"},    {"FIRMA_DATE", "firma"},
    {"SETARI_GENERALE", "setari"}, {"SETARI_UPDATE", "actualizare"},
    {"AJUTOR_AJUTOR", "ajutor"},   {"AJUTOR_DESPRE", "info"},
    {"TARIF_CODVAMAL", "tarif"},   {"IESIRE", "iesire"},
};

/// The window's page, painted with the program's picture.
class Page : public QWidget {
 public:
  explicit Page(QPixmap picture) : picture_(std::move(picture)) {}

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xf3, 0xf6, 0xfa));
    if (picture_.isNull()) return;
    const QSize whole = size() * devicePixelRatioF();
    if (scaled_.isNull() || scaled_for_ != whole) {
      scaled_ = picture_.scaled(whole, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
      scaled_.setDevicePixelRatio(devicePixelRatioF());
      scaled_for_ = whole;
    }
    painter.drawPixmap(0, 0, scaled_);
  }

 private:
  QPixmap picture_, scaled_;
  QSize scaled_for_;
};

QLabel* DarkLabel(const QString& text, double scale, QFont::Weight weight, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setWeight(weight);
  label->setFont(font);
  return label;
}

}  // namespace

MainWindow::MainWindow(Desktop& desktop) : desktop_(&desktop) {
  setObjectName(QStringLiteral("Frm_Main"));
  setWindowIcon(ui::Icon(QStringLiteral("declarix")));
  setMinimumSize(kSmallest);
  BuildMenu();
  BuildPage();
  const QStringList kept = desktop.context().memory.Get(objectName(), QStringLiteral("marime")).split('x');
  resize(kept.size() == 2 ? QSize(kept[0].toInt(), kept[1].toInt()).expandedTo(kSmallest) : QSize(1200, 720));
  const QRect room = screen()->availableGeometry();
  resize(size().boundedTo(room.size()).expandedTo(kSmallest));
  move(room.center() - rect().center());
}

void MainWindow::BuildMenu() {
  std::map<std::string_view, QMenu*> menus;
  for (const Command& command : CommandTable()) {
    if (command.kind == CommandKind::kNoAction) continue;
    QMenu* parent = command.parent.empty() ? nullptr : menus.at(command.parent);
    if (command.kind == CommandKind::kSeparator) {
      if (parent != nullptr) parent->addSeparator()->setObjectName(Q(command.key));
      continue;
    }
    if (command.kind == CommandKind::kSubMenu) {
      QMenu* menu =
          parent == nullptr ? menuBar()->addMenu(Q(command.caption)) : parent->addMenu(Q(command.caption));
      menu->setToolTipsVisible(true);
      menu->menuAction()->setObjectName(Q(command.key));
      menus[command.key] = menu;
      actions_[command.key] = menu->menuAction();
      continue;
    }
    QAction* action =
        parent == nullptr ? menuBar()->addAction(Q(command.caption)) : parent->addAction(Q(command.caption));
    action->setObjectName(Q(command.key));
    for (const auto& [key, picture] : kPictures) {
      if (key == command.key && parent != nullptr) action->setIcon(ui::Icon(QString::fromLatin1(picture)));
    }
    connect(action, &QAction::triggered, this, [this, key = command.key] {
      ui::Try(desktop_->context(), [&] { desktop_->commands().ExecuteCommand(key); });
    });
    actions_[command.key] = action;
  }
  connect(new QShortcut(QKeySequence(Qt::Key_F1), this), &QShortcut::activated, this,
          [this] { desktop_->context().open_manual(ui::Utf8(objectName())); });
}

void MainWindow::BuildPage() {
  session::Session& session = desktop_->context().session;
  auto* page = new Page(BackgroundPicture(session, desktop_->program_folder()));
  QPalette ink = page->palette();
  ink.setColor(QPalette::WindowText, kInk);
  page->setPalette(ink);
  setCentralWidget(page);

  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(48, 40, 48, 24);
  layout->setSpacing(8);
  company_ = DarkLabel({}, 2.0, QFont::DemiBold, page);
  company_->setObjectName(QStringLiteral("LblFirma"));
  company_->setWordWrap(true);
  layout->addWidget(company_);
  code_ = DarkLabel({}, 1.15, QFont::Normal, page);
  code_->setObjectName(QStringLiteral("LblCodFiscal"));
  layout->addWidget(code_);
  layout->addSpacing(24);

  auto* large = new QHBoxLayout;
  large->setSpacing(16);
  const auto add = [&](const char* name, const QString& caption, const char* picture, std::string_view key) {
    auto* button = new QPushButton(ui::Icon(QString::fromLatin1(picture)), caption, page);
    button->setObjectName(QString::fromLatin1(name));
    button->setIconSize({32, 32});
    button->setMinimumSize(240, 72);
    QFont font = button->font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    button->setFont(font);
    connect(button, &QPushButton::clicked, this, [this, key] {
      ui::Try(desktop_->context(), [&] {
        if (key == kNewDeclaration) {
          desktop_->NewDeclaration();
        } else {
          desktop_->commands().ExecuteCommand(key);
        }
      });
    });
    buttons_.emplace_back(button, key);
    large->addWidget(button);
  };
  add("CmdDeclaratieNoua", QStringLiteral("Declaratie &noua"), "adauga", kNewDeclaration);
  add("CmdDeclaratii", QStringLiteral("&Declaratii Intrastat"), "fisier", "INTRASTAT");
  add("CmdPreluare", QStringLiteral("&Preluare fisier excel"), "import", "EXCEL_PRELUARE");
  large->addStretch(1);
  layout->addLayout(large);
  layout->addSpacing(16);

  auto* search = new QLineEdit(page);
  search->setObjectName(QStringLiteral("TxtCautare"));
  search->setPlaceholderText(QStringLiteral("Cauta in tariful vamal si in declaratii"));
  search->setClearButtonEnabled(true);
  search->setMinimumHeight(36);
  search->setFixedWidth(496);  // under the two buttons that are used most
  connect(search, &QLineEdit::returnPressed, this, [this, search] {
    if (search->text().trimmed().isEmpty()) return;
    ui::Try(desktop_->context(), [&] { desktop_->QuickSearch(search->text().trimmed()); });
  });
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, search, [search] {
    search->setFocus();
    search->selectAll();
  });
  auto* row = new QHBoxLayout;
  row->setSpacing(16);
  row->addWidget(search);
  auto* queries =
      new QPushButton(ui::Icon(QStringLiteral("tabele")), QStringLiteral("Interogari &baza de date"), page);
  queries->setObjectName(QStringLiteral("CmdInterogari"));
  queries->setMinimumSize(240, 36);
  connect(queries, &QPushButton::clicked, this,
          [this] { ui::Try(desktop_->context(), [this] { desktop_->OpenQueries(); }); });
  row->addWidget(queries);
  row->addStretch(1);
  layout->addLayout(row);
  layout->addStretch(1);

  publisher_ = DarkLabel({}, 1.0, QFont::DemiBold, page);
  publisher_->setObjectName(QStringLiteral("LblEditor"));
  layout->addWidget(publisher_);
  phone_ = DarkLabel({}, 1.0, QFont::Normal, page);
  phone_->setObjectName(QStringLiteral("LblTelefon"));
  phone_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(phone_);
  email_ = new QLabel(page);
  email_->setObjectName(QStringLiteral("LblEmail"));
  email_->setTextFormat(Qt::RichText);
  email_->setTextInteractionFlags(Qt::TextBrowserInteraction);
  connect(email_, &QLabel::linkActivated, this,
          [](const QString& address) { QDesktopServices::openUrl(QUrl(address, QUrl::TolerantMode)); });
  layout->addWidget(email_);
}

void MainWindow::Refresh() {
  const session::Session& session = desktop_->context().session;
  setWindowTitle(QStringLiteral("Declarix - ") + Q(session.current.Nume_Firma));
  company_->setText(Q(session.current.Nume_Firma));
  code_->setText(QStringLiteral("Cod de inregistrare fiscala ") + Q(session.current.Cod_Fiscal));
  publisher_->setText(Q(session.publisher.NumeFirma));
  publisher_->setVisible(!session.publisher.NumeFirma.empty());
  phone_->setText(QStringLiteral("Telefon : ") + Q(session.publisher.Telefon));
  phone_->setVisible(!session.publisher.Telefon.empty());
  const QString address = Q(session.publisher.Email);
  email_->setText(QStringLiteral("Email : <a href=\"mailto:%1?subject=\" style=\"color:%2\">%1</a>")
                      .arg(address.toHtmlEscaped(), kAccent.name()));
  email_->setVisible(!address.isEmpty());
  for (const Command& command : CommandTable()) {
    QAction* entry = action(command.key);
    if (entry == nullptr) continue;
    const bool built = desktop_->commands().IsBuilt(command);
    entry->setEnabled(built);
    entry->setToolTip(built ? QString() : QString::fromLatin1(kNotBuilt));
  }
  for (const auto& [button, key] : buttons_) {
    const Command* command = FindCommand(key);
    const bool built = command == nullptr || desktop_->commands().IsBuilt(*command);
    button->setEnabled(built);
    button->setToolTip(built ? QString() : QString::fromLatin1(kNotBuilt));
  }
  ApplyMenuColour();
}

void MainWindow::ApplyMenuColour() {
  const QColor colour = ui::FromBgr(desktop_->context().session.settings.Meniu_Color);
  const QColor text = ui::ReadableOn(colour);
  // A tint over the user's colour, so that texts and icons stay readable on it.
  const QString chosen =
      text == Qt::black ? QStringLiteral("rgba(27, 79, 138, 60)") : QStringLiteral("rgba(255, 255, 255, 60)");
  const QColor faint = text == Qt::black ? QColor(0x5c, 0x5c, 0x5c) : QColor(0xc8, 0xc8, 0xc8);
  menuBar()->setStyleSheet(
      QStringLiteral("QMenuBar, QMenu { background-color: %1; color: %2; }"
                     "QMenuBar::item { padding: 6px 12px; background: transparent; }"
                     "QMenu::item { padding: 5px 28px 5px 28px; }"
                     "QMenu::icon { padding-left: 8px; }"
                     "QMenuBar::item:selected, QMenu::item:selected { background-color: %3; color: %2; }"
                     "QMenuBar::item:disabled, QMenu::item:disabled { color: %4; }"
                     "QMenu::item:disabled:selected { background-color: transparent; color: %4; }"
                     "QMenu::separator { height: 1px; background: %4; margin: 4px 8px; }")
          .arg(colour.name(), text.name(), chosen, faint.name()));
}

QAction* MainWindow::action(std::string_view key) const {
  const auto found = actions_.find(key);
  return found == actions_.end() ? nullptr : found->second;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // the exit action hides the window, or a screen with unsaved work keeps it
  desktop_->context().memory.Set(objectName(), QStringLiteral("marime"),
                                 QStringLiteral("%1x%2").arg(width()).arg(height()));
  desktop_->Exit();
}

}  // namespace app
