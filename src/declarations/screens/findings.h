#pragma once

#include <vector>

#include "declarations/review.h"
#include "ui/screen.h"

class QTreeWidget;

namespace declarations {

/// What the institute would refuse, before the file is written. Accepted: write it all the same. Otherwise
/// chosen() is the finding that the user wants to be led to, if any.
class Frm_Intrastat_Observatii : public ui::Screen {
  Q_OBJECT
 public:
  Frm_Intrastat_Observatii(ui::Context& context, const std::vector<Finding>& findings, QWidget* parent);

  int chosen() const { return chosen_; }  ///< -1: none

 private:
  void GoToCurrent();

  QTreeWidget* list_;
  int chosen_ = -1;
};

}  // namespace declarations
