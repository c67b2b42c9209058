#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "session/session.h"
#include "tariff/codes.h"

namespace declarations {

/// What the code lists say of codes, remembered until Forget: a grid asks on every painting.
class CodeBook {
 public:
  explicit CodeBook(session::Session& session) : session_(&session) {}

  struct Entry {
    bool asked = false;  ///< false: the list could not be read, nothing is known of the code
    bool known = false;
    std::string code;  ///< as the list spells it
    std::string description;
    std::string unit;       ///< goods codes: supplementary unit
    bool has_unit = false;  ///< goods codes
  };
  /// Looks a code up, compared as it stands. A code that breaks the statement is an unknown one; any other
  /// failure is logged, and remembered so that painting does not repeat it.
  const Entry& Look(const tariff::CodeCheck& codes, std::string_view code);
  /// The same for a code just typed, which is worth asking for again after a failure.
  const Entry& LookAnew(const tariff::CodeCheck& codes, std::string_view code);
  void Forget() { lists_.clear(); }

 private:
  Entry Ask(const tariff::CodeCheck& codes, const std::string& code);

  session::Session* session_;
  std::map<const tariff::CodeCheck*, std::unordered_map<std::string, Entry>> lists_;
};

}  // namespace declarations
