#include "platform/spreadsheet/foreign_file.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {

using Reason = SheetError::Reason;

std::string TextHead(std::string_view content) {
  std::string head(content.substr(0, 1024));
  head.erase(std::remove(head.begin(), head.end(), '\0'), head.end());  // UTF-16
  for (const std::string_view mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
    if (head.starts_with(mark)) head.erase(0, mark.size());
  }
  head.erase(0, std::min(head.find_first_not_of(" \t\r\n"), head.size()));
  return head;
}

void RefuseDocument(std::string_view content) {
  if (content.empty()) throw SheetError(Reason::kNotAWorksheet, "fisierul este gol");
  const std::string head = TextHead(content);
  if (head.starts_with("%PDF")) throw SheetError(Reason::kNotAWorksheet, "este un document PDF, nu .xls");
  if (head.starts_with("{\\rtf")) throw SheetError(Reason::kNotAWorksheet, "este un document RTF, nu .xls");
  const std::string lower = ToLower(std::string_view(head).substr(0, 16));
  const bool xml = lower.starts_with("<?xml");
  bool page = false;
  for (const std::string_view tag : {"<html", "<!doctype", "<table", "<head", "<meta", "<style", "<!--"}) {
    page = page || lower.starts_with(tag);
  }
  if (!xml && !page) return;
  throw SheetError(Reason::kNotAWorksheet,
                   fmt::format("este un text {} cu numele schimbat, nu .xls; deschideti-l si salvati-l ca "
                               "Excel 97-2003 (.xls)",
                               xml ? "XML" : "HTML"));
}

void RefuseForeign(std::string_view content) {
  RefuseDocument(content);
  throw SheetError(
      Reason::kNotAWorksheet,
      "nu este un registru de calcul .xls, .xlsx sau .ods; un text delimitat trebuie sa aiba extensia .csv");
}

}  // namespace platform::spreadsheet
