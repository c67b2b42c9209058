#pragma once

#include <span>
#include <string_view>

#include "platform/spreadsheet/package.h"

namespace platform::spreadsheet {

struct XmlAttribute {
  std::string_view name, value;
};

/// Attributes of one element, names with their prefix.
class XmlAttributes {
 public:
  explicit XmlAttributes(std::span<const XmlAttribute> all) : all_(all) {}
  auto begin() const { return all_.begin(); }
  auto end() const { return all_.end(); }
  /// Empty where there is none of that name.
  std::string_view Get(std::string_view name) const {
    for (const XmlAttribute& attribute : all_) {
      if (attribute.name == name) return attribute.value;
    }
    return {};
  }

 private:
  std::span<const XmlAttribute> all_;
};

/// Receives the elements of a part. Views live as long as the call; a text may come in several pieces.
class XmlHandler {
 public:
  virtual ~XmlHandler() = default;
  virtual void OnStart(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void OnEnd(std::string_view name) = 0;
  virtual void OnText(std::string_view text) = 0;
  /// True when the rest of the part need not be read.
  virtual bool Done() const { return false; }
};

/// Parses a part. Throws SheetError (kDamaged) where it is no well-formed XML; one with a document type is
/// refused too, since office files have none and entities are a way to make little become much.
void ReadXml(Package& package, std::string_view part, XmlHandler& handler);

/// A name without its prefix: "x:sheet" and "sheet" are the same to whoever knows the namespace from the
/// place.
inline std::string_view LocalName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace platform::spreadsheet
