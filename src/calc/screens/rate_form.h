#pragma once

#include "calc/manual_rates.h"
#include "ui/form.h"

namespace calc {

/// One exchange rate, new or of the row `changed`. Accepted once it is stored.
class Frm_Curs : public ui::Form {
  Q_OBJECT
 public:
  Frm_Curs(ui::Context& context, const RateEntry& entry, std::optional<RateKey> changed, QWidget* parent);

  const RateKey& saved() const { return saved_; }  ///< once accepted

 private:
  RateEntry Typed() const;
  void Confirm();

  std::optional<RateKey> changed_;
  RateKey saved_;
};

}  // namespace calc
