#pragma once

#include "ui/screen.h"

namespace app {

/// Program name and version, the publisher's contact values, and where this installation's files lie.
class Frm_Despre : public ui::Screen {
  Q_OBJECT
 public:
  Frm_Despre(ui::Context& context, QWidget* parent);
};

}  // namespace app
