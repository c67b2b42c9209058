#pragma once

#include <QPixmap>
#include <QWidget>
#include <string>

#include "session/session.h"

namespace app {

/// "Imagini\Background.jpg" of the program's folder; a null picture where it is missing.
QPixmap BackgroundPicture(session::Session& session, const std::string& program_folder);

/// The first window of the start: the program's picture, name and version, and a link to the setting `www`.
class Splash : public QWidget {
 public:
  Splash(session::Session& session, const std::string& program_folder);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QPixmap picture_;
};

}  // namespace app
