#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/text_arena.h"
#include "platform/spreadsheet/xml_stream.h"

namespace platform::spreadsheet {

/// What the parts around the sheets of an .xlsx file say (ECMA-376 part 1, 18).
struct XlsxParts {
  struct Sheet {
    std::string name;
    bool hidden = false;
    std::string part;
  };
  bool base_1904 = false;
  std::vector<Sheet> sheets;          ///< worksheets only
  std::vector<NumberFormat> formats;  ///< by the number of a cell's style
  std::string strings_part;           ///< empty where cells share no texts
};

/// The main part of the package by its relationships, "xl/workbook.xml" as a rule; empty where it is no
/// .xlsx.
std::string XlsxMainPart(Package& package);
XlsxParts ReadXlsxParts(Package& package, const std::string& main_part);
TextPool ReadXlsxStrings(Package& package, const std::string& part);

/// Gathers a text with its formatting runs (elements t and r): keeps white space at the ends only where
/// xml:space says so, resolves _x000D_ and leaves out how East Asian texts are pronounced.
class XlsxText {
 public:
  void Clear();
  void OnStart(std::string_view local_name, const XmlAttributes& attributes);
  void OnEnd(std::string_view local_name);
  void OnText(std::string_view text) {
    if (open_) piece_ += text;
  }
  std::string_view text() const { return text_; }

 private:
  std::string text_, piece_;
  bool open_ = false, preserve_ = false;
  int pronounced_ = 0;
};

/// Characters that XML cannot hold are written _xHHHH_, UTF-16 units in hexadecimal.
void ResolveEscapes(std::string& text);

}  // namespace platform::spreadsheet
