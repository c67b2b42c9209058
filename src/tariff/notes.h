#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/host.h"

namespace tariff {

/// The explanatory notes of the nomenclature: a file "CNSTEXT" of SEITEM elements, each with the 12-character
/// code it explains as KEY and its texts as CN (what the code covers) and DM (remarks).
class ExplanatoryNotes {
 public:
  ExplanatoryNotes();
  ~ExplanatoryNotes();

  /// False where the file is missing or cannot be read (which is logged); there are no notes then.
  bool Load(const platform::Host& host, std::string_view windows_path);

  /// Rich text of all items whose key begins with the code; empty where there is none.
  std::string Rtf(std::string_view HS12_COD) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tariff
