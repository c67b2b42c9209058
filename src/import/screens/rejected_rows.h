#pragma once

#include "import/run.h"
#include "ui/list_screen.h"

namespace importer {

/// The worksheet rows that an import could not save, with their place and the reason.
class Frm_Preluare_Respinse : public ui::ListScreen {
  Q_OBJECT
 public:
  Frm_Preluare_Respinse(ui::Context& context, const Inputs& inputs, const Result& result, QWidget* parent);
};

}  // namespace importer
