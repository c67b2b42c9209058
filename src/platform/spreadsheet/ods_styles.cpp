#include "platform/spreadsheet/ods_styles.h"

#include <charconv>

namespace platform::spreadsheet {
namespace {

int ToInt(std::string_view text) {
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace

void OdsStyles::OnStart(std::string_view name, const XmlAttributes& attributes) {
  if (name == "number:number-style") {
    number_style_ = attributes.Get("style:name");
    only_zeros_ = true;
    pad_ = 0;
  } else if (!number_style_.empty()) {
    if (name == "number:number") {
      const int digits = ToInt(attributes.Get("number:min-integer-digits"));
      only_zeros_ = only_zeros_ && ToInt(attributes.Get("number:decimal-places")) == 0 &&
                    attributes.Get("number:grouping") != "true" && digits > 1;
      pad_ = static_cast<std::uint8_t>(std::min(digits, 255));
    } else if (name != "style:map") {
      only_zeros_ = false;  // a text, a fraction, a colour beside the digits
    }
  } else if (name == "style:style") {
    Style& style = styles_[std::string(attributes.Get("style:name"))];
    style.data_style = attributes.Get("style:data-style-name");
    style.parent = attributes.Get("style:parent-style-name");
    style_ = &style;
  } else if (name == "style:table-properties" && style_ != nullptr) {
    style_->hidden = attributes.Get("table:display") == "false";
  }
}

void OdsStyles::OnEnd(std::string_view name) {
  if (name == "number:number-style") {
    if (only_zeros_ && pad_ > 0) number_pads_[number_style_] = pad_;
    number_style_.clear();
  } else if (name == "style:style") {
    style_ = nullptr;
  }
}

std::uint8_t OdsStyles::ZeroPad(std::string_view cell_style) const {
  std::string name(cell_style);
  constexpr int kDeepest = 16;  // styles that descend from themselves end here too
  for (int depth = 0; depth < kDeepest; ++depth) {
    const auto style = styles_.find(name);
    if (style == styles_.end()) return 0;
    if (!style->second.data_style.empty()) {
      const auto pad = number_pads_.find(style->second.data_style);
      return pad == number_pads_.end() ? std::uint8_t{0} : pad->second;
    }
    name = style->second.parent;
  }
  return 0;
}

bool OdsStyles::IsHiddenTable(std::string_view table_style) const {
  const auto style = styles_.find(std::string(table_style));
  return style != styles_.end() && style->second.hidden;
}

}  // namespace platform::spreadsheet
