#pragma once

#include <optional>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace session {

/// A settings file that cannot be understood. what() is the reason with line and column.
class SettingsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The settings file as bytes, with the places of its elements known: a change replaces just the bytes of one
/// value, so that everything else (white space, line ends, declaration, comments, spellings of entities)
/// stays as the user or the installer wrote it.
///
/// Understands UTF-8, UTF-16 and the single-byte pages that a declaration can name (windows-125x,
/// iso-8859-x).
class SettingsDocument {
 public:
  /// Throws SettingsError where the text is not well formed or its encoding not known.
  explicit SettingsDocument(std::string content);

  /// Text of the first node that the path selects, blanks at its ends left out; nothing where there is none.
  std::optional<std::string> Text(const std::string& xpath) const;
  bool Has(const std::string& xpath) const { return !Select(xpath).empty(); }

  /// Each changes the content once; afterwards the document is of no further use. Throw SettingsError where
  /// the path selects no element or the name is none.
  void SetText(const std::string& xpath, std::string_view value);
  void AppendElement(const std::string& xpath, std::string_view name, std::string_view value,
                     std::string_view space_behind);

  /// The file's bytes, in its own encoding.
  std::string content() const;

 private:
  struct Span;
  void DetectEncoding(std::string content);
  void Parse();
  pugi::xml_node Select(const std::string& xpath) const;
  Span Locate(const std::string& xpath) const;
  void OpenUp(const Span& span, const std::string& content);  ///< <x/> to <x>content</x>
  std::string Decoded(std::string_view bytes) const;
  std::string Encoded(std::string_view value) const;  ///< escaped for element text
  std::string Place(std::size_t offset) const;

  int code_page_ = 65001;
  std::string mark_;   ///< byte-order mark
  std::string bytes_;  ///< without the mark; UTF-16 files as UTF-8
  pugi::xml_document document_;
};

}  // namespace session
