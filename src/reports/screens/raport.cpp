#include "reports/screens/raport.h"

#include <QKeyEvent>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QShortcut>
#include <QSpinBox>
#include <QTemporaryDir>

#include "reports/html.h"
#include "reports/screens/page_painter.h"
#include "reports/screens/page_view.h"
#include "reports/spreadsheet.h"
#include "ui/file_options.h"
#include "ui/icons.h"
#include "ui/list_screen.h"
#include "ui/memory.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace reports {

using ui::Q;

namespace {

constexpr PageSize kA4 = {595.28, 841.89};
constexpr int kPercents[] = {50, 75, 100, 125, 150, 200, 300, 400};
constexpr char kStopped[] = "Exportul a fost oprit; fisierul nu a fost scris";
constexpr int kFits = 2;  // entries of the zoom list before the percents: page width, whole page

std::string Made(const QString& extension) {
  return "Se scrie fisierul " + ui::Utf8(extension.mid(1).toUpper());
}

}  // namespace

Frm_Raport::Frm_Raport(ui::Context& screen_context, Subject subject, QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Raport"), parent),
      subject_(std::move(subject)),
      definitions_(subject_.plain ? Definitions() : Definitions::Read(session())),
      plain_(PlainDefinition()),
      fonts_(ReadFonts()),
      commands_(new ui::CommandRow(this)),
      view_(new PageView(this)) {
  subject_.placeholders["Titlu"] = ui::Utf8(subject_.title);
  const Definition* definition = FirstDefinition();
  SetFirstSize({1100, 700});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 8, 8, 8);
  layout->setSpacing(8);
  layout->addWidget(commands_);
  AddViewRow(layout);
  AddSearchRow(layout);
  view_->setObjectName(QStringLiteral("Pagini"));
  layout->addWidget(view_, 1);
  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("LblMesaj"));
  status_->setTextFormat(Qt::PlainText);
  layout->addWidget(status_);
  AddCommands();
  AddKeys();
  for (const Definition* each : definitions_.Family(definition->family)) {
    if (!each->has_statement() && subject_.rows == nullptr) continue;
    choice_->addItem(Q(each->name), Q(each->id));
    if (each == definition) choice_->setCurrentIndex(choice_->count() - 1);
  }
  const bool several = choice_->count() > 1;
  choice_->setVisible(several);
  findChild<QLabel*>(QStringLiteral("LblRaport"))->setVisible(several);
  connect(choice_, &QComboBox::activated, this, [this](int index) {
    Try([&] {
      try {
        Make(definitions_.Get(ui::Utf8(choice_->itemData(index).toString())));
      } catch (const ReportError& error) {
        session().host.prompter.Error(error.what());
        return;
      }
      shown_ = index;
    });
    choice_->setCurrentIndex(shown_);
    view_->setFocus();
  });
  shown_ = choice_->currentIndex();
  view_->SetFinisher([this] { return FinishPages(*layout_); });
  connect(view_, &PageView::PagesChanged, this, &Frm_Raport::ShowPlace);
  connect(view_, &PageView::ZoomStep, this, &Frm_Raport::StepZoom);
  Make(*definition);
  bool known = false;
  const int zoom = context().memory.Get(objectName(), QStringLiteral("marire")).toInt(&known);
  zoom_->setCurrentIndex(known && zoom >= 0 && zoom < zoom_->count() ? zoom : 0);
  ChooseZoom(zoom_->currentIndex());
  view_->setFocus();
}

Frm_Raport::~Frm_Raport() { delete view_; }  // it draws the layout's pages

const Definition* Frm_Raport::FirstDefinition() const {
  if (subject_.plain) return &plain_;
  const bool named = !subject_.report.empty();
  if (named && (subject_.rows == nullptr || definitions_.Has(subject_.report))) {
    return &definitions_.Get(subject_.report);
  }
  const Definition* titled = definitions_.FindByTitle(ui::Utf8(subject_.title));
  return titled == nullptr ? &plain_ : titled;
}

void Frm_Raport::AddCommands() {
  const auto add = [this](const char* name, const char* caption, const char* icon,
                          std::function<void()> action, const QKeySequence& key = {}) {
    return commands_->Add(QString::fromLatin1(name), QString::fromLatin1(caption), QString::fromLatin1(icon),
                          std::move(action), key);
  };
  add(
      "CmdTipareste", "&Tipareste...", "tipareste", [this] { Print(); }, QKeySequence::Print);
  commands_->AddSeparator();
  add(
      "CmdPdf", "&PDF...", "pdf",
      [this] { Export(QStringLiteral("PDF (*.pdf)"), QStringLiteral(".pdf"), &Frm_Raport::WritePdf); },
      QKeySequence(Qt::CTRL | Qt::Key_E));
  add("CmdExcel", "E&xcel...", "excel",
      [this] { Export(QStringLiteral("Excel (*.xlsx)"), QStringLiteral(".xlsx"), &Frm_Raport::WriteXlsx); });
  add("CmdHtml", "&HTML...", "fisier",
      [this] { Export(QStringLiteral("HTML (*.html)"), QStringLiteral(".html"), &Frm_Raport::WriteHtml); });
  add("CmdEmail", "&E-mail", "email", [this] {
    SendByMail();
  })->setToolTip(QStringLiteral("Trimite raportul ca PDF"));
  commands_->AddSeparator();
  add(
      "CmdCautare", "&Cautare", "cauta",
      [this] {
        search_->show();
        search_text_->setFocus();
        search_text_->selectAll();
      },
      QKeySequence::Find);
  commands_
      ->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("renunta"),
                 [this] { reject(); })
      ->setToolTip(QStringLiteral("Esc"));
}

void Frm_Raport::AddViewRow(QVBoxLayout* layout) {
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  const auto button = [&](const char* name, const char* icon, const char* tip, std::function<void()> action) {
    auto* made = new QPushButton(ui::Icon(QString::fromLatin1(icon)), QString(), this);
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(QString::fromLatin1(tip));
    made->setAccessibleName(QString::fromLatin1(tip));
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, std::move(action));
    row->addWidget(made);
  };
  const auto label = [&](const char* name, const char* caption, QWidget* buddy) {
    auto* made = new QLabel(QString::fromLatin1(caption), this);
    made->setObjectName(QString::fromLatin1(name));
    made->setBuddy(buddy);
    row->addWidget(made);
    row->addWidget(buddy);
  };
  choice_ = new QComboBox(this);
  choice_->setObjectName(QStringLiteral("Combo_Raport"));
  choice_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  label("LblRaport", "&Raport", choice_);
  row->addSpacing(12);

  button("CmdPrima", "pagina-prima", "Prima pagina (Home)", [this] { view_->GoTo(0); });
  button("CmdInapoi", "pagina-inapoi", "Pagina dinainte (Ctrl+PgUp)",
         [this] { view_->GoTo(view_->current_page() - 1); });
  page_ = new QSpinBox(this);
  page_->setObjectName(QStringLiteral("Txt_Pagina"));
  page_->setButtonSymbols(QAbstractSpinBox::NoButtons);
  page_->setKeyboardTracking(false);
  page_->setAlignment(Qt::AlignRight);
  label("LblPagina", "Pa&gina", page_);
  page_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);
  connect(page_, &QSpinBox::valueChanged, this, [this](int page) { view_->GoTo(page - 1); });
  connect(page_->findChild<QLineEdit*>(), &QLineEdit::returnPressed, view_, qOverload<>(&QWidget::setFocus));
  pages_ = new QLabel(this);
  pages_->setObjectName(QStringLiteral("LblPagini"));
  pages_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("/ 000 ...")));
  row->addWidget(pages_);
  button("CmdInainte", "pagina-inainte", "Pagina urmatoare (Ctrl+PgDn)",
         [this] { view_->GoTo(view_->current_page() + 1); });
  button("CmdUltima", "pagina-ultima", "Ultima pagina (End)", [this] { view_->GoToEnd(); });
  row->addSpacing(12);

  button("CmdMicsoreaza", "micsoreaza", "Micsoreaza (Ctrl+-)", [this] { StepZoom(-1); });
  zoom_ = new QComboBox(this);
  zoom_->setObjectName(QStringLiteral("Combo_Marire"));
  zoom_->addItems({QStringLiteral("Latimea paginii"), QStringLiteral("Pagina intreaga")});
  for (const int percent : kPercents) zoom_->addItem(QStringLiteral("%1 %").arg(percent));
  label("LblMarire", "&Marire", zoom_);
  connect(zoom_, &QComboBox::activated, this, [this](int index) {
    ChooseZoom(index);
    view_->setFocus();
  });
  button("CmdMareste", "mareste", "Mareste (Ctrl++)", [this] { StepZoom(1); });
  row->addSpacing(12);

  orientation_ = new QComboBox(this);
  orientation_->setObjectName(QStringLiteral("Combo_Orientare"));
  orientation_->addItems({QStringLiteral("Portret"), QStringLiteral("Peisaj")});
  label("LblOrientare", "&Asezare", orientation_);
  connect(orientation_, &QComboBox::activated, this, [this](int index) {
    Try([&] { LayOut(index == 0 ? Orientation::kPortrait : Orientation::kLandscape); });
    view_->setFocus();
  });
  row->addStretch(1);
  layout->addLayout(row);
}

void Frm_Raport::AddSearchRow(QVBoxLayout* layout) {
  search_ = new QWidget(this);
  auto* row = new QHBoxLayout(search_);
  row->setContentsMargins(0, 0, 0, 0);
  search_text_ = new QLineEdit(search_);
  search_text_->setObjectName(QStringLiteral("Txt_Cautare"));
  search_text_->setMaximumWidth(320);
  search_text_->setClearButtonEnabled(true);
  auto* caption = new QLabel(QStringLiteral("Caut &textul"), search_);
  caption->setBuddy(search_text_);
  row->addWidget(caption);
  row->addWidget(search_text_, 1);
  row->addWidget(
      new QLabel(QStringLiteral("F3 urmatorul   Shift+F3 precedentul   Esc inchide cautarea"), search_));
  row->addStretch(1);
  search_->hide();
  layout->addWidget(search_);
  connect(search_text_, &QLineEdit::returnPressed, this, [this] { FindNext(1); });
}

void Frm_Raport::AddKeys() {
  const auto key = [this](const QKeySequence& sequence, std::function<void()> action) {
    connect(new QShortcut(sequence, this), &QShortcut::activated, this, std::move(action));
  };
  key(QKeySequence::ZoomIn, [this] { StepZoom(1); });
  key(QKeySequence(Qt::CTRL | Qt::Key_Equal), [this] { StepZoom(1); });
  key(QKeySequence::ZoomOut, [this] { StepZoom(-1); });
  key(QKeySequence(Qt::CTRL | Qt::Key_0), [this] {
    zoom_->setCurrentIndex(0);
    ChooseZoom(0);
  });
  key(QKeySequence(Qt::CTRL | Qt::Key_9), [this] {
    zoom_->setCurrentIndex(1);
    ChooseZoom(1);
  });
  key(QKeySequence(Qt::CTRL | Qt::Key_G), [this] {
    page_->setFocus();
    page_->selectAll();
  });
  key(QKeySequence(Qt::Key_F3), [this] { FindNext(1); });
  key(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { FindNext(-1); });
  key(QKeySequence(Qt::Key_Escape), [this] {
    if (!search_->isVisible()) {
      reject();
      return;
    }
    search_->hide();
    status_->clear();
    view_->ForgetFound();
    view_->setFocus();
  });
}

void Frm_Raport::keyPressEvent(QKeyEvent* key) {
  switch (key->key()) {
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
    case Qt::Key_Home:
    case Qt::Key_End:
      QCoreApplication::sendEvent(view_, key);  // from whatever command the focus is on
      break;
    default:
      Screen::keyPressEvent(key);
      break;
  }
}

void Frm_Raport::Make(const Definition& definition) {
  const std::string file = &definition == &plain_ ? std::string() : definitions_.file();
  std::unique_ptr<Report> made;
  if (definition.has_statement()) {
    made = std::make_unique<Report>(
        RunStatement(session(), definition, file, subject_.placeholders, ScreenFormatter()));
  } else if (subject_.rows == nullptr) {
    throw ReportError(
        fmt::format("Fisierul {}, raportul {}: nu are o fraza SELECT (Source)", file, definition.id));
  } else {
    made =
        std::make_unique<Report>(definition, file, subject_.rows, subject_.placeholders, ScreenFormatter());
  }
  const std::unique_ptr<Report> before = std::exchange(report_, std::move(made));
  setWindowTitle(Title());
  LayOut(report_->orientation());
}

void Frm_Raport::LayOut(Orientation orientation) {
  PageSize page = kA4;
  if (orientation == Orientation::kLandscape) std::swap(page.width, page.height);
  auto layout = std::make_unique<Layout>(*report_, fonts_, page, FooterOf(session()), orientation);
  view_->SetLayout(layout.get());
  layout_ = std::move(layout);
  orientation_->setCurrentIndex(landscape() ? 1 : 0);
  ShowPlace();
}

bool Frm_Raport::landscape() const { return layout_->page().width > layout_->page().height; }

QString Frm_Raport::Title() const { return Q(report_->title()).trimmed(); }

void Frm_Raport::ShowPlace() {
  if (layout_ == nullptr) return;
  const int current = view_->current_page() + 1, count = layout_->page_count();
  const QSignalBlocker quiet(page_);
  page_->setRange(1, count);
  page_->setValue(current);
  pages_->setText(
      QStringLiteral("/ %1%2").arg(count).arg(layout_->complete() ? QString() : QStringLiteral(" ...")));
  for (const char* name : {"CmdPrima", "CmdInapoi"}) {
    findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(current > 1);
  }
  for (const char* name : {"CmdInainte", "CmdUltima"}) {
    findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(current < count || !layout_->complete());
  }
}

void Frm_Raport::ChooseZoom(int index) {
  context().memory.Set(objectName(), QStringLiteral("marire"), QString::number(index));
  if (index == 0) view_->SetZoom(PageView::Zoom::kWidth);
  if (index == 1) view_->SetZoom(PageView::Zoom::kPage);
  if (index >= kFits) view_->SetZoom(PageView::Zoom::kFixed, kPercents[index - kFits]);
}

void Frm_Raport::StepZoom(int direction) {
  const double now = view_->percent();
  int wanted = -1;
  for (int i = 0; i < static_cast<int>(std::size(kPercents)); ++i) {
    if (direction > 0 && wanted < 0 && kPercents[i] > now + 1) wanted = i;
    if (direction < 0 && kPercents[i] < now - 1) wanted = i;
  }
  if (wanted < 0) return;
  zoom_->setCurrentIndex(kFits + wanted);
  ChooseZoom(kFits + wanted);
}

void Frm_Raport::FindNext(int direction) {
  const QString text = search_text_->text();
  if (text.isEmpty()) {
    search_->show();
    search_text_->setFocus();
    return;
  }
  const PageView::Found found = view_->Find(text, direction);
  if (found == PageView::Found::kNot && !layout_->complete()) return;  // stopped
  const QString from_other_end = direction > 0 ? QStringLiteral("Cautarea a reluat de la inceput")
                                               : QStringLiteral("Cautarea a reluat de la sfarsit");
  status_->setText(found == PageView::Found::kNot
                       ? QStringLiteral("Textul \"%1\" nu se gaseste in raport").arg(text)
                   : found == PageView::Found::kFromOtherEnd ? from_other_end
                                                             : QString());
}

bool Frm_Raport::FinishPages(Layout& pages) {
  if (pages.complete()) return true;
  platform::Progress& progress = session().host.progress;
  const ui::LongRun run(progress, QStringLiteral("Raport"), ui::Stopping::kPossible);
  while (!pages.complete()) {
    progress.Update("Se asaza paginile", pages.progress());
    if (progress.Cancelled()) return false;
    pages.BreakNextPage();
  }
  return true;
}

void Frm_Raport::Print() {
  if (!FinishPages(*layout_)) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageOrientation(landscape() ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setDocName(ui::FileNameFor(Title()));  // also that of a file printed to
  printer.setFromTo(1, layout_->page_count());
  QPrintDialog dialog(&printer, this);
  dialog.setOption(QAbstractPrintDialog::PrintCurrentPage);
  dialog.setMinMax(1, layout_->page_count());
  if (dialog.exec() != QDialog::Accepted) return;
  // The paper chosen in the dialog, and margins that the printer can reach.
  const QPageLayout paper = printer.pageLayout();
  const QSizeF size = paper.fullRectPoints().size();
  const QMarginsF least = paper.minimumMargins();
  PageSize page = {size.width(), size.height()};
  page.margin = std::max({page.margin, least.left(), least.right(), least.top(), least.bottom()});
  Layout pages(*report_, fonts_, page, FooterOf(session()),
               size.width() > size.height() ? Orientation::kLandscape : Orientation::kPortrait);
  if (!FinishPages(pages)) return;
  int first = 0, last = pages.page_count() - 1;
  if (dialog.printRange() == QAbstractPrintDialog::CurrentPage) first = last = view_->current_page();
  if (dialog.printRange() == QAbstractPrintDialog::PageRange) {
    first = std::max(printer.fromPage() - 1, 0);
    last = std::min(printer.toPage() - 1, last);
  }
  first = std::min(first, pages.page_count() - 1);
  const ui::LongRun run(session().host.progress, QStringLiteral("Tiparire"), ui::Stopping::kPossible);
  const bool printed =
      PrintPages(pages, printer, first, std::max(first, std::min(last, pages.page_count() - 1)),
                 [&](int number, int count) {
                   session().host.progress.Update("Tiparire", number * 100 / count);
                   return !session().host.progress.Cancelled();
                 });
  if (printed) {
    status_->setText(QStringLiteral("Trimis la imprimanta"));
  } else if (session().host.progress.Cancelled()) {
    session().host.prompter.Info("Tiparirea a fost oprita");
  } else {
    session().host.prompter.Error("Imprimanta nu poate fi folosita");
  }
}

void Frm_Raport::Export(const QString& filter, const QString& extension, Writer writer) {
  const std::string path = ui::AskForFile(this, Title(), QStringLiteral("Salvare raport"), filter, extension);
  if (path.empty() || !(this->*writer)(path)) return;
  status_->setText(QStringLiteral("Salvat: ") + Q(path));
  ui::Frm_Fisier_Optiuni(context(), path, this).exec();
}

QByteArray Frm_Raport::MakePdf() {
  const std::string caption = Made(QStringLiteral(".pdf"));
  const ui::LongRun run(session().host.progress, Q(caption), ui::Stopping::kPossible);
  QByteArray bytes;
  const bool whole = FinishPages(*layout_);
  ShowPlace();
  if (whole)
    bytes = Pdf(*layout_, Title(), [&](int page, int pages) {
      session().host.progress.Update(caption, page * 100 / pages);
      return !session().host.progress.Cancelled();
    });
  if (bytes.isEmpty()) session().host.prompter.Info(kStopped);
  return bytes;
}

bool Frm_Raport::Store(const std::string& windows_path, std::string_view bytes) {
  try {
    session().host.files.Replace(windows_path, bytes);
  } catch (const platform::FileError& failure) {
    session().host.prompter.Error(failure.what());
    return false;
  }
  return true;
}

bool Frm_Raport::WritePdf(const std::string& windows_path) {
  const QByteArray bytes = MakePdf();
  return !bytes.isEmpty() && Store(windows_path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

bool Frm_Raport::WriteHtml(const std::string& windows_path) {
  const ui::LongRun run(session().host.progress, Q(Made(QStringLiteral(".html"))), ui::Stopping::kPossible);
  const std::string page = Html(*report_, FooterOf(session()), landscape(), session().host.progress);
  if (page.empty()) session().host.prompter.Info(kStopped);
  return !page.empty() && Store(windows_path, page);
}

bool Frm_Raport::WriteXlsx(const std::string& windows_path) {
  const ui::LongRun run(session().host.progress, QStringLiteral("Export in Excel"), ui::Stopping::kPossible);
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("raport.xlsx"));
  platform::Prompter& prompter = session().host.prompter;
  std::string reason = ui::Utf8(folder.errorString());
  const SpreadsheetOutcome outcome =
      folder.isValid()
          ? WriteSpreadsheet(*report_, landscape(), QFile::encodeName(file).toStdString(),
                             QFile::encodeName(folder.path()).toStdString(), session().host.progress, reason)
          : SpreadsheetOutcome::kFailed;
  switch (outcome) {
    case SpreadsheetOutcome::kCancelled:
      prompter.Info(kStopped);
      return false;
    case SpreadsheetOutcome::kTooLong:
      prompter.Error("Raportul are prea multe randuri pentru un fisier Excel (cel mult 1.048.575)");
      return false;
    case SpreadsheetOutcome::kFailed:
      prompter.Error(fmt::format("Fisierul {} nu s-a putut scrie: {}", windows_path, reason));
      return false;
    case SpreadsheetOutcome::kWritten:
      break;
  }
  QFile written(file);
  if (!written.open(QIODevice::ReadOnly)) {
    prompter.Error(
        fmt::format("Fisierul {} nu s-a putut scrie: {}", windows_path, ui::Utf8(written.errorString())));
    return false;
  }
  const QByteArray bytes = written.readAll();
  return Store(windows_path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void Frm_Raport::SendByMail() {
  const QByteArray bytes = MakePdf();
  if (bytes.isEmpty()) return;
  // The mail program reads the file when it likes: it stays among the user's temporary files.
  const QString path = QDir::temp().filePath(ui::FileNameFor(Title()) + QStringLiteral(".pdf"));
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
    session().host.prompter.Error(
        fmt::format("Fisierul {} nu s-a putut scrie: {}", ui::Utf8(path), ui::Utf8(file.errorString())));
    return;
  }
  file.close();
  if (ui::MailWithAttachment(path)) {
    status_->setText(QStringLiteral("Programul de e-mail se deschide cu raportul atasat."));
  } else {
    session().host.prompter.Error(
        "Nu s-a gasit un program de e-mail. Salvati raportul ca PDF si atasati-l unui mesaj nou.");
  }
}

}  // namespace reports
