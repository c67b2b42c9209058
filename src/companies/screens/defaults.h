#pragma once

#include "ui/form.h"

namespace companies {

/// The current company's default values for new and imported lines. Accepted once they are stored.
class Frm_Firma_Default : public ui::Form {
  Q_OBJECT
 public:
  Frm_Firma_Default(ui::Context& context, QWidget* parent);
};

}  // namespace companies
