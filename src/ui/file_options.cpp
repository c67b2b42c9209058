#include "ui/file_options.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include "ui/icons.h"
#include "ui/text.h"

#ifdef _WIN32
#include <windows.h>
// Behind windows.h, which it needs.
#include <mapi.h>
#endif

namespace ui {

bool MailWithAttachment(const QString& host_path) {
#ifdef _WIN32
  // Simple MAPI is what every Windows mail program answers to; the library is there even without one.
  const HMODULE library = LoadLibraryW(L"mapi32.dll");
  if (library == nullptr) return false;
  const auto send =
      reinterpret_cast<LPMAPISENDMAIL>(reinterpret_cast<void*>(GetProcAddress(library, "MAPISendMail")));
  bool sent = false;
  if (send != nullptr) {
    std::string path = QFile::encodeName(QDir::toNativeSeparators(host_path)).toStdString();
    MapiFileDesc file = {};
    file.nPosition = static_cast<ULONG>(-1);
    file.lpszPathName = path.data();
    MapiMessage message = {};
    message.nFileCount = 1;
    message.lpFiles = &file;
    const ULONG answer = send(0, 0, &message, MAPI_LOGON_UI | MAPI_DIALOG, 0);
    sent = answer == SUCCESS_SUCCESS || answer == MAPI_USER_ABORT;
  }
  FreeLibrary(library);
  return sent;
#else
  const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
  return !program.isEmpty() && QProcess::startDetached(program, {QStringLiteral("--attach"), host_path});
#endif
}

QString FileNameFor(const QString& title) {
  QString name;
  for (const QChar c : QString(title).replace(QStringLiteral(" / "), QStringLiteral("-"))) {
    name += QStringLiteral("\\/:*?\"<>|").contains(c) ? QChar(' ') : c;
  }
  name = name.simplified();
  while (name.endsWith('-') || name.endsWith(' ')) name.chop(1);
  return name;
}

std::string AskForFile(Screen* screen, const QString& title, const QString& caption, const QString& filter,
                       const QString& extension) {
  session::Session& session = screen->session();
  platform::Files& files = session.host.files;
  const QString name = FileNameFor(title);
  std::string folder = session.settings.DirectorSalvare;
  if (folder == "\\" || !files.FolderExists(folder)) {
    folder = files.drives().FromHost(std::filesystem::path(QDir::homePath().toStdU16String())) + "\\";
  }
  const QString start = QString::fromStdU16String(files.ToHost(folder + Utf8(name + extension)).u16string());
  QString chosen = QFileDialog::getSaveFileName(screen, caption, start, filter);
  if (chosen.isEmpty()) return {};
  if (!chosen.endsWith(extension, Qt::CaseInsensitive)) chosen += extension;
  return files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
}

Frm_Fisier_Optiuni::Frm_Fisier_Optiuni(Context& screen_context, const std::string& windows_path,
                                       QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Fisier_Optiuni"), parent), path_(windows_path) {
  setWindowTitle(QStringLiteral("Fisierul a fost scris"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 24, 24, 16);
  layout->setSpacing(12);
  auto* name = new QLabel(Q(platform::FileNameOf(path_)), this);
  name->setTextFormat(Qt::PlainText);
  QFont bold = name->font();
  bold.setBold(true);
  name->setFont(bold);
  layout->addWidget(name);
  auto* folder = new QLabel(Q(platform::FolderOf(path_)), this);
  folder->setTextFormat(Qt::PlainText);
  folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(folder);
  layout->addSpacing(4);

  const auto add = [&](const char* object, const char* caption, const char* icon,
                       std::function<void()> action) {
    auto* button = new QPushButton(Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption), this);
    button->setObjectName(QString::fromLatin1(object));
    button->setMinimumWidth(360);
    button->setStyleSheet(QStringLiteral("text-align: left; padding: 8px 12px;"));
    connect(button, &QPushButton::clicked, this, [this, run = std::move(action)] { Try(run); });
    layout->addWidget(button);
  };
  add("CmdDeschide", "&Deschide fisierul", "vizualizare", [this] {
    if (context().open_document(path_)) {
      accept();
    } else {
      session().host.prompter.Error("Fisierul nu poate fi deschis: " + path_);
    }
  });
  add("CmdFolder", "&Arata in folder", "folder", [this] {
    if (!context().open_document(platform::FolderOf(path_))) {
      session().host.prompter.Error("Folderul nu poate fi deschis: " +
                                    std::string(platform::FolderOf(path_)));
    }
  });
  add("CmdCopiaza", "&Copiaza in alt folder...", "copiaza", [this] { Copy(); });
  add("CmdEmail", "&Trimite prin e-mail", "email", [this] { SendByMail(); });

  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("LblMesaj"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  layout->addWidget(status_);
  layout->addStretch(1);
  auto* close = new QPushButton(QStringLiteral("&Inchide"), this);
  close->setObjectName(QStringLiteral("CmdInchide"));
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* bottom = new QHBoxLayout;
  bottom->addStretch(1);
  bottom->addWidget(close);
  layout->addLayout(bottom);
}

void Frm_Fisier_Optiuni::Copy() {
  const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Copiaza in folderul"));
  if (chosen.isEmpty()) return;
  CopyTo(platform::WithBackslash(
      session().host.files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()))));
}

bool Frm_Fisier_Optiuni::CopyTo(const std::string& windows_folder) {
  const std::string target = windows_folder + std::string(platform::FileNameOf(path_));
  const bool copied = Try([&] { session().host.files.Copy(path_, target); });
  if (copied) status_->setText(QStringLiteral("Copiat: ") + Q(target));
  return copied;
}

void Frm_Fisier_Optiuni::SendByMail() {
  const QString host = QString::fromStdU16String(session().host.files.ToHost(path_).u16string());
  if (MailWithAttachment(host)) {
    status_->setText(QStringLiteral("Programul de e-mail se deschide cu fisierul atasat."));
    return;
  }
  session().host.prompter.Error(
      "Nu s-a gasit un program de e-mail. Atasati fisierul dintr-un mesaj nou:\r\n" + path_);
}

}  // namespace ui
