#pragma once

#include "ui/form.h"

namespace companies {

/// The company screen: creates a company where the session's creation mode is on, otherwise modifies the
/// current one. Accepted once the data are stored (and, in creation, the new company is open).
class Frm_Firma : public ui::Form {
  Q_OBJECT
 public:
  Frm_Firma(ui::Context& context, QWidget* parent);

 private:
  void Confirm();
  bool creating_;
};

}  // namespace companies
