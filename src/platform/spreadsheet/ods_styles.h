#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/spreadsheet/xml_stream.h"

namespace platform::spreadsheet {

/// What the styles of an .ods file matter here: number formats made of zeros only, and hidden sheets. Kinds
/// of values need no styles, the cells name them.
class OdsStyles {
 public:
  void OnStart(std::string_view name, const XmlAttributes& attributes);
  void OnEnd(std::string_view name);

  /// Digits to which a cell of this style is padded; 0 for none.
  std::uint8_t ZeroPad(std::string_view cell_style) const;
  bool IsHiddenTable(std::string_view table_style) const;

 private:
  struct Style {
    std::string data_style, parent;
    bool hidden = false;
  };
  std::unordered_map<std::string, std::uint8_t> number_pads_;
  std::unordered_map<std::string, Style> styles_;
  std::string number_style_;  ///< being read; empty for none
  std::uint8_t pad_ = 0;
  bool only_zeros_ = false;
  Style* style_ = nullptr;  ///< being read
};

}  // namespace platform::spreadsheet
