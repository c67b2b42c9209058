#pragma once

#include <QObject>
#include <map>

#include "ui/code_box.h"
#include "ui/context.h"

namespace declarations {

/// County and locality of an address, in two fields that show names and keep codes. The localities are those
/// of the county, all until one is chosen; a locality of another county goes, and one chosen among all brings
/// its county. A text that is no name of the list, which would be filed as a code, is marked.
class Places : public QObject {
  Q_OBJECT
 public:
  /// Reads the lists; a failing store is shown and leaves them empty. Lives as long as `town`.
  Places(ui::Context& context, ui::CodeBox* county, ui::CodeBox* town);

  void Set(const QString& county_code, const QString& town_code);

 Q_SIGNALS:
  void Changed();  ///< either field, typed, chosen, or following the other
  void CountyFollowed();

 private:
  void ShowTowns();
  void FollowCounty();
  void FollowTown();
  QAction* AddMark(ui::CodeBox* box);
  void ShowMarks();

  ui::Context* context_;
  ui::CodeBox* county_;
  ui::CodeBox* town_;
  QAction *county_mark_, *town_mark_;
  ui::CodeList all_;
  std::map<QString, QString> county_of_;  ///< by the town's code
};

}  // namespace declarations
