#include "declarations/screens/places.h"

#include <QAction>

#include "tariff/codes.h"
#include "ui/icons.h"
#include "ui/screen.h"
#include "ui/text.h"

namespace declarations {

using ui::Q;

Places::Places(ui::Context& context, ui::CodeBox* county, ui::CodeBox* town)
    : QObject(town), context_(&context), county_(county), town_(town) {
  county_mark_ = AddMark(county_);
  town_mark_ = AddMark(town_);
  county_->ShowDescriptions(true);
  town_->ShowDescriptions(true);
  ui::Try(context, [this] {
    store::Connection& company = context_->session.company;
    county_->SetList(ui::CodeList::Read(company, tariff::kCountiesList));
    std::map<QString, int> times;
    store::Recordset rows = company.Query(tariff::kTownsList);
    for (; !rows.eof(); rows.MoveNext()) {
      const QString code = Q(rows.Get(0).ToText()), name = Q(rows.Get(1).ToText());
      all_.lines.push_back({code, name});
      county_of_[code] = Q(rows.Get(2).ToText());
      ++times[name];
    }
    // Among all, counties tell towns of one name apart.
    for (ui::CodeList::Line& line : all_.lines) {
      if (times[line.description] < 2) continue;
      const ui::CodeList::Line* of = county_->list().Find(county_of_[line.code]);
      if (of != nullptr) line.description += " (" + of->description + ')';
    }
  });
  ShowTowns();
  connect(county_, &ui::CodeBox::CodeChanged, this, &Places::FollowCounty);
  connect(town_, &ui::CodeBox::CodeChanged, this, &Places::FollowTown);
  // Not while the list that the town was chosen from is still at work.
  connect(this, &Places::CountyFollowed, this, &Places::ShowTowns, Qt::QueuedConnection);
}

QAction* Places::AddMark(ui::CodeBox* box) {
  QAction* mark =
      box->lineEdit()->addAction(ui::Icon(QStringLiteral("problema")), QLineEdit::TrailingPosition);
  mark->setObjectName(QStringLiteral("Necunoscut"));
  mark->setToolTip(QStringLiteral("Nu este un nume din lista; INS ar refuza declaratia"));
  mark->setVisible(false);
  connect(mark, &QAction::triggered, box, &QComboBox::showPopup);
  connect(box->lineEdit(), &QLineEdit::editingFinished, this, &Places::ShowMarks);
  connect(box, &ui::CodeBox::CodeChanged, mark, [mark] { mark->setVisible(false); });  // still being typed
  return mark;
}

void Places::ShowMarks() {
  for (const auto& [box, mark] : {std::pair{county_, county_mark_}, std::pair{town_, town_mark_}}) {
    mark->setVisible(!box->list().lines.empty() && !box->code().isEmpty() && box->description().isEmpty());
  }
}

void Places::Set(const QString& county_code, const QString& town_code) {
  town_->SetCode({});
  county_->SetCode(county_code);
  ShowTowns();
  town_->SetCode(town_code);
  ShowMarks();
}

void Places::ShowTowns() {
  const QString kept = town_->code();
  if (county_->description().isEmpty()) {
    town_->SetList(all_);
  } else {
    ui::Try(*context_, [&] {
      town_->SetList(
          ui::CodeList::Read(context_->session.company, tariff::TownsOfCounty(ui::Utf8(county_->code()))));
    });
  }
  town_->SetCode(kept);
}

void Places::FollowCounty() {
  ShowTowns();
  // A town of another county would be filed with the wrong one.
  if (!county_->description().isEmpty() && town_->description().isEmpty()) town_->SetCode({});
  Q_EMIT Changed();
}

void Places::FollowTown() {
  const auto of = county_of_.find(town_->code());
  if (county_->code().isEmpty() && of != county_of_.end()) {
    county_->SetCode(of->second);
    Q_EMIT CountyFollowed();
  }
  Q_EMIT Changed();
}

}  // namespace declarations
