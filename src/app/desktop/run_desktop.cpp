#include "app/desktop/desktop.h"
#include "ui/progress.h"
#include "ui/prompter.h"
#include "ui/text.h"

namespace app {

int RunDesktop() {
  const platform::Drives drives = platform::Drives::FromEnvironment();
  platform::Files files(drives);
  const platform::SystemClock clock;
  ui::QtPrompter prompter;
  ui::QtProgress progress;
  platform::ErrorLog errors(files, clock);
  session::Session session({files, clock, prompter, progress, errors});
  const std::string folder = platform::WithBackslash(
      drives.FromHost(std::filesystem::path(QCoreApplication::applicationDirPath().toStdU16String())));
  Desktop desktop(session, folder);
  if (!desktop.Start()) {
    QApplication::processEvents();
    return 0;
  }
  return QApplication::exec();
}

}  // namespace app
