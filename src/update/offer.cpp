#include "update/offer.h"

namespace update {

std::string_view OfferText() {
  return "Exista o versiune noua pentru download.\r\nDoriti descarcarea si instalarea noii versiuni ?";
}

std::string UpdaterPath(std::string_view program_folder) {
  if (program_folder.ends_with('\\')) program_folder.remove_suffix(1);
  return std::string(program_folder) + "\\UpdateWEB\\UpdateWEB.exe";
}

Launch UpdaterLaunch(std::string_view program_folder, std::string_view new_version) {
  Launch launch;
  launch.file = "\"" + UpdaterPath(program_folder) + " \"";
  launch.parameters = std::string(new_version) + "_update.exe";
  return launch;
}

}  // namespace update
