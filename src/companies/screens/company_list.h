#pragma once

#include <vector>

#include "companies/open_company.h"
#include "ui/form.h"

class QLabel;
class QListWidget;

namespace companies {

/// Selection of the company to work with. Accepted once it is open.
class Frm_Firme : public ui::Form {
  Q_OBJECT
 public:
  Frm_Firme(ui::Context& context, QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowList(const QString& part);
  void ShowChosen();
  void Confirm();
  void Print();  ///< the companies shown

  std::vector<ListedCompany> companies_;
  QListWidget* list_;
  QLabel* empty_;
};

}  // namespace companies
