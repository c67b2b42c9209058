#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tariff {

struct LoadOutcome {
  std::string
      error;  ///< empty: loaded; else a Romanian sentence that names the file, and nothing has changed
  bool stopped = false;  ///< the user asked for it; nothing has changed
  std::string file;      ///< the tariff file written, "CN_2024.mdb"
  std::string version;   ///< what the nomenclature file calls itself
  int sections = 0, chapters = 0, headings = 0, subheadings = 0;
  int codes = 0, codes_with_unit = 0;
};

/// Builds the tariff file of `year` from the institute's nomenclature file and registers it in
/// InsCodeVersions of the common database (open in the session). An existing tariff of that year is replaced.
/// Runs under session.host.progress and can be stopped until the new file is in place.
/// A tariff connection open on that very file is closed and opened again. `data_folder` holds the layout.
/// `accept` is asked before anything is written where the file calls itself another version than the year;
/// without it any is taken.
LoadOutcome LoadNomenclature(session::Session& session, std::string_view data_folder,
                             std::string_view xml_path, int year,
                             const std::function<bool(const std::string& version)>& accept = {});

}  // namespace tariff
