#include "tariff/notes.h"

#include <fmt/format.h>

#include <pugixml.hpp>

namespace tariff {
namespace {

// The pane's own rich text; other programs that paste it rely on its tables.
constexpr char kHead[] =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033\deflangfe1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})"
    R"({\colortbl ;\red0\green0\blue255;\red0\green0\blue0;\red255\green0\blue0;})"
    R"({\*\generator Msftedit 5.41.21.2509;}\viewkind4\uc1\pard)";
constexpr char kKey[] = R"(\cf1\b\f0\fs16 )";
constexpr char kBody[] = R"(\par \pard\li568)";
constexpr char kTitle[] = R"(\cf3\b )";
constexpr char kRemark[] = R"(\cf2\b )";
constexpr char kPlain[] = R"( \b0)";
constexpr char kItemEnd[] = R"( \par )";
constexpr char kTail[] = R"(\fs24\par})";

/// Escapes what rich text reads as its own; letters beyond ASCII as signed UTF-16 units with a stand-in. The
/// file's line ends and indents become single blanks.
void AppendText(const std::string& utf8, std::string& rtf) {
  const auto unit = [&rtf](std::uint32_t value) {
    rtf += fmt::format("\\u{}?", static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
  };
  bool blank = false;
  for (const wchar_t wide : pugi::as_wide(utf8)) {
    const auto letter = static_cast<std::uint32_t>(wide);
    const bool is_blank = letter <= ' ';
    if (is_blank && blank) continue;
    blank = is_blank;
    if (is_blank) {
      rtf += ' ';
    } else if (letter < 0x80) {
      if (letter == '\\' || letter == '{' || letter == '}') rtf += '\\';
      rtf += static_cast<char>(letter);
    } else if (letter <= 0xFFFF) {
      unit(letter);
    } else {
      unit(0xD800 + ((letter - 0x10000) >> 10));
      unit(0xDC00 + ((letter - 0x10000) & 0x3FF));
    }
  }
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

}  // namespace

struct ExplanatoryNotes::Parts {
  pugi::xml_document document;
  pugi::xpath_variable_set variables;
  pugi::xpath_query keys, item, text;

  Parts() {
    variables.add("code", pugi::xpath_type_string);
    variables.add("key", pugi::xpath_type_string);
    keys = pugi::xpath_query("/CNSTEXT/SECTION/CHAPTER/SEITEM/@KEY[starts-with(.,$code)]", &variables);
    item = pugi::xpath_query("/CNSTEXT/SECTION/CHAPTER/SEITEM[@KEY=$key]", &variables);
    text = pugi::xpath_query("string(.)");
  }

  void AppendItem(const pugi::xml_node& node, std::string& rtf) const {
    bool first = true;
    for (const pugi::xml_node& child : node.children()) {
      const std::string_view name = child.name();
      if (name != "CN" && name != "DM") continue;
      if (!first) rtf += " - ";
      first = false;
      rtf += name == "CN" ? kTitle : kRemark;
      AppendText(Trimmed(text.evaluate_string(child)), rtf);
      if (name == "DM") rtf += kPlain;
    }
    rtf += kItemEnd;
  }
};

ExplanatoryNotes::ExplanatoryNotes() = default;
ExplanatoryNotes::~ExplanatoryNotes() = default;

bool ExplanatoryNotes::Load(const platform::Host& host, std::string_view windows_path) {
  parts_.reset();
  if (!host.files.Exists(windows_path)) return false;
  try {
    const std::string xml = host.files.Read(windows_path);
    auto parts = std::make_unique<Parts>();
    const pugi::xml_parse_result read = parts->document.load_buffer(xml.data(), xml.size());
    if (!read) {
      host.errors.Write("note explicative", fmt::format("{}: {}", windows_path, read.description()));
      return false;
    }
    parts_ = std::move(parts);
  } catch (const platform::FileError& error) {
    host.errors.Write("note explicative", error.what());
  }
  return parts_ != nullptr;
}

std::string ExplanatoryNotes::Rtf(std::string_view HS12_COD) const {
  if (parts_ == nullptr || HS12_COD.empty()) return {};  // without a code every note would match
  parts_->variables.set("code", std::string(HS12_COD).c_str());
  const pugi::xpath_node_set found = parts_->keys.evaluate_node_set(parts_->document);
  if (found.empty()) return {};
  std::string rtf = kHead;
  for (const pugi::xpath_node& each : found) {
    const char* key = each.attribute().value();
    rtf += kKey;
    AppendText(key, rtf);
    rtf += kBody;
    parts_->variables.set("key", key);
    for (const pugi::xpath_node& item : parts_->item.evaluate_node_set(parts_->document)) {
      parts_->AppendItem(item.node(), rtf);
    }
  }
  return rtf + kTail;
}

}  // namespace tariff
