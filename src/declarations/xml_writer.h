#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "declarations/header.h"
#include "declarations/lines/lines.h"

namespace declarations {

/// Namespace of the institute's declaration schema, version 1.0.
inline constexpr char kInsNamespace[] = "http://www.intrastat.ro/xml/InsSchema";

enum class Kind { kNew, kRevised, kNil };

/// Kind by the first letter of the chooser's text: "N-Noua" is new, anything else revised.
Kind KindOf(std::string_view Combo_Tip);

/// The fiscal code as the institute wants it: every "RO" removed, padded with "0" in front to 10 characters.
std::string PaddedFiscalCode(std::string_view fiscal_code);

/// "0000123456_A_201610.xml"; the month stands as entered, without padding. The fiscal code is the header's.
std::string DeclarationFileName(std::string_view fiscal_code, const Identity& identity, Kind kind);

/// One declared item. Values are raw; masses in kilograms, values in lei.
struct Item {
  std::string_view Cod_NC, Nat_Tranz, Incoterms, Mod_Transp, Tara_Orig, Tara_Exp, Tara_Dest, Cod_UMS;
  std::string_view Country_VAT_ID, VAT_ID1;
  double Val_Fiscala1 = 0, Val_Stat1 = 0, Net1 = 0, Val_UMS1 = 0;
  std::int64_t Pozitia = 0;  ///< Record_ID of its first line; not written
};

/// A version row: element names and values in their order.
using CodeVersions = std::vector<std::pair<std::string, std::string>>;

/// Writes the text of a declaration file: UTF-8, CR LF, indentation exactly as the institute's form has been
/// filed so far. Values are written without any escaping.
class XmlWriter {
 public:
  XmlWriter(const Identity& identity, Kind kind, bool with_statistical_value);

  void Prologue();
  void Comment(std::string_view text);  ///< one line
  void OpenRoot();
  void Versions(const CodeVersions& versions);
  /// `time`: what follows year and month in the creation stamp.
  void DeclarationHeader(const Header& header, std::string_view time);
  void AddItem(const Item& item);
  /// Makes room for that many more items at once.
  void ExpectItems(std::int64_t count) {
    text_.reserve(text_.size() + static_cast<std::size_t>(count) * kItemBytes);
  }
  void CloseRoot();

  int item_count() const { return items_; }
  const std::string& text() const { return text_; }

 private:
  static constexpr std::size_t kItemBytes = 1000;  ///< a usual item takes somewhat less

  void Line(int indent, std::string_view text);
  void Element(int indent, std::string_view name, std::string_view value);
  void Open(int indent, std::string_view name);
  void Close(int indent, std::string_view name);
  void WholeNumberElement(int indent, std::string_view name, double value);

  Identity identity_;
  Kind kind_;
  bool with_statistical_value_;
  int items_ = 0;
  std::string text_;
};

/// A company name as it is filed: "&" and "!" become "-".
std::string FiledName(std::string_view company_name);

/// A contact field of the file, in the file's order.
struct ContactField {
  std::string_view element;
  std::string_view name;  ///< of the editor's field
  std::string Header::*field;
  std::string_view placeholder;      ///< written for an empty field
  std::string_view nil_placeholder;  ///< what a nil declaration takes when the register has nothing
};
const std::array<ContactField, 6>& ContactFields();

}  // namespace declarations
