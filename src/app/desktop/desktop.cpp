#include "app/desktop/desktop.h"

#include <QDesktopServices>
#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <QUrl>

#include "app/desktop/about.h"
#include "app/desktop/elevation.h"
#include "app/desktop/main_window.h"
#include "app/desktop/splash.h"
#include "app/screens/settings.h"
#include "calc/rates_update.h"
#include "companies/screens/company.h"
#include "companies/screens/company_list.h"
#include "companies/screens/defaults.h"
#include "platform/download/download.h"
#include "reports/screens/preview.h"
#include "ui/grid.h"
#include "ui/progress.h"
#include "ui/text.h"
#include "update/version_check.h"

namespace app {

using ui::Q;

namespace {

// Shown by every download of the program.
constexpr char kDownloading[] = "Descarc fisierul... Va rog asteptati...";

}  // namespace

Desktop::Desktop(session::Session& session, std::string program_folder)
    : session_(&session),
      program_folder_(std::move(program_folder)),
      memory_(session.host.files, platform::FolderOf(session.settings_file), session.user_name),
      context_{session,
               memory_,
               [this](std::string_view path) { return OpenDocument(path); },
               [this](std::string_view screen) { OpenManualAt(screen); },
               [this](std::string_view page) {
                 return OpenDocument(program_folder_ + "Help\\" + std::string(page));
               },
               [this](const ui::GridContent& content, QWidget* parent) {
                 reports::PreviewList(context_, content, parent);
               }},
      commands_(session),
      program_commands_(session, *this, program_folder_),
      start_up_(session, *this, program_folder_) {
  BindCommands();
}

Desktop::~Desktop() = default;

bool Desktop::Start() { return start_up_.Run(); }

void Desktop::BindCommands() {
  program_commands_.Bind(commands_);
  BindWorkScreens();
  commands_.Handle("FIRMA_SELECTARE", [this](const Command&) { SelectCompany(); });
  commands_.Handle("FIRMA_CREARE", [this](const Command&) { CreateCompany(); });
  commands_.Handle("FIRMA_DATE", [this](const Command&) {
    session_->creation_mode = false;
    if (companies::Frm_Firma(context_, main_window_.get()).exec() == QDialog::Accepted)
      main_window_->Refresh();
  });
  commands_.Handle("SETARI_IMPLICITE", [this](const Command&) {
    companies::Frm_Firma_Default(context_, main_window_.get()).exec();
  });
  commands_.Handle("SETARI_GENERALE", [this](const Command&) {
    Frm_Setari screen(context_, main_window_.get());
    screen.OnApplied([this] {
      main_window_->Refresh();
      for (ui::Grid* grid : main_window_->findChildren<ui::Grid*>()) grid->ReadColours();
    });
    screen.exec();
  });
  commands_.Handle("AJUTOR_DESPRE",
                   [this](const Command&) { Frm_Despre(context_, main_window_.get()).exec(); });
}

bool Desktop::OtherInstanceRuns() {
  const std::string path(platform::FolderOf(session_->settings_file));
  const QString folder = QString::fromStdU16String(session_->host.files.ToHost(path).u16string());
  if (!QDir(folder).exists()) return false;  // no installation: the next step says so
  instance_ = std::make_unique<QLockFile>(folder + QStringLiteral("/declarix.lock"));
  instance_->setStaleLockTime(0);  // only the end of its process makes a lock stale
  // A folder that cannot be written to tells nothing about other instances.
  return !instance_->tryLock(0) && instance_->error() == QLockFile::LockFailedError;
}

void Desktop::ShowSplash() {
  splash_ = std::make_unique<Splash>(*session_, program_folder_);
  splash_->show();
  QApplication::processEvents();
}

void Desktop::CloseSplash() { splash_.reset(); }

void Desktop::Pause(std::chrono::milliseconds time) {
  QEventLoop waiting;  // not a sleep: the splash screen's link can be clicked
  QTimer::singleShot(time, &waiting, &QEventLoop::quit);
  waiting.exec();
}

std::vector<std::string> Desktop::DriveRoots() { return session_->host.files.drives().Roots(); }

void Desktop::OpenScreen(Screen screen) {
  switch (screen) {
    case Screen::kCreateCompany:
      ShowFirst(new companies::Frm_Firma(context_, nullptr),
                [this] { ShowDefaults(nullptr, [this] { start_up_.CompanyReady(); }); });
      break;
    case Screen::kSelectCompany:
      ShowFirst(new companies::Frm_Firme(context_, nullptr), [this] { start_up_.CompanyReady(); });
      break;
    case Screen::kMainWindow:
      if (main_window_ == nullptr) main_window_ = std::make_unique<MainWindow>(*this);
      main_window_->Refresh();
      main_window_->show();
      main_window_->raise();
      main_window_->activateWindow();
      break;
  }
}

void Desktop::ShowFirst(QDialog* screen, std::function<void()> on_accepted) {
  screen->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(screen, &QDialog::finished, screen, [this, then = std::move(on_accepted)](int result) {
    if (result == QDialog::Accepted) {
      then();
    } else {
      Exit();
    }
  });
  screen->show();
}

void Desktop::ShowDefaults(QWidget* parent, std::function<void()> then) {
  auto* screen = new companies::Frm_Firma_Default(context_, parent);
  screen->setAttribute(Qt::WA_DeleteOnClose);
  // The company exists already: whichever way this screen is left, work goes on with it.
  QObject::connect(screen, &QDialog::finished, screen, [this, go_on = std::move(then)] {
    session_->creation_mode = false;
    go_on();
  });
  screen->open();
}

void Desktop::SelectCompany() {
  if (!CloseScreens()) return;
  if (companies::Frm_Firme(context_, main_window_.get()).exec() == QDialog::Accepted)
    start_up_.CompanyReady();
}

void Desktop::CreateCompany() {
  if (!CloseScreens()) return;
  session_->creation_mode = true;
  const bool created = companies::Frm_Firma(context_, main_window_.get()).exec() == QDialog::Accepted;
  if (created) {
    ShowDefaults(main_window_.get(), [this] { start_up_.CompanyReady(); });
  } else {
    session_->creation_mode = false;
  }
}

void Desktop::OpenOnce(std::string_view key, const std::function<QDialog*()>& make) {
  QPointer<QDialog>& screen = open_[std::string(key)];
  if (screen == nullptr) {
    screen = make();
    screen->setAttribute(Qt::WA_DeleteOnClose);
  }
  screen->show();
  screen->raise();
  screen->activateWindow();
}

bool Desktop::CloseScreens() {
  for (auto& [key, screen] : open_) {
    if (screen != nullptr && screen->isVisible() && !screen->close()) return false;
  }
  return true;
}

std::string Desktop::CheckVersion(bool interactive) {
  const ui::LongRun run(session_->host.progress, QStringLiteral("Actualizare program"),
                        ui::Stopping::kPossible, Q(kDownloading));
  return update::CheckVersion(*session_, interactive);
}

bool Desktop::RunElevated(std::string_view file, std::string_view parameters) {
  return app::RunElevated(file, parameters);
}

bool Desktop::OpenDocument(std::string_view path) {
  const std::u16string host = session_->host.files.ToHost(path).u16string();
  return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdU16String(host)));
}

// Each screen has a page that leads to its section of the manual: systems that open a file by its address
// drop the anchor at the end.
void Desktop::OpenManualAt(std::string_view screen) {
  for (const std::string& page : {"ecrane\\" + std::string(screen) + ".html", std::string("Manual.Html")}) {
    const std::string path = program_folder_ + "Help\\" + page;
    if (session_->host.files.Exists(path) && OpenDocument(path)) return;
  }
  program_commands_.OpenManual();
}

calc::RatesOutcome Desktop::UpdateRates() {
  const ui::LongRun run(session_->host.progress, QStringLiteral("Curs valutar"), ui::Stopping::kPossible,
                        Q(kDownloading));
  return calc::UpdateRates(*session_, platform::DownloaderFor(session_->host));
}

void Desktop::TakeFetchedRates() {
  const ui::LongRun run(session_->host.progress, QStringLiteral("Curs valutar"), ui::Stopping::kNotPossible);
  calc::TakeFetchedRates(*session_);
}

void Desktop::EndProcess() {
  QApplication::processEvents();
  if (main_window_ != nullptr) main_window_->hide();
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

}  // namespace app
