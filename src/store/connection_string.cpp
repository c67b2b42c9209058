#include "store/connection_string.h"

#include "platform/encoding.h"
#include "store/connection.h"

namespace store {

namespace {

using platform::EqualsNoCase;
using platform::Trim;

// End of the quoted value that starts at `at`: the quote that only blanks part from ";" or the end.
std::size_t ClosingQuote(std::string_view text, std::size_t at) {
  const char quote = text[at];
  for (std::size_t i = text.find(quote, at + 1); i != std::string_view::npos; i = text.find(quote, i + 1)) {
    const std::size_t next = text.find_first_not_of(' ', i + 1);
    if (next == std::string_view::npos || text[next] == ';') return i;
  }
  return std::string_view::npos;
}

template <typename Visit>
void ForEachPair(std::string_view text, Visit visit) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t equals = text.find_first_of("=;", at);
    if (equals == std::string_view::npos || text[equals] == ';') {
      const std::size_t end = std::min(equals, text.size());
      visit(Trim(text.substr(at, end - at)), std::string_view{});
      at = end + 1;
      continue;
    }
    const std::string_view name = Trim(text.substr(at, equals - at));
    at = std::min(text.find_first_not_of(' ', equals + 1), text.size());
    std::size_t end = std::string_view::npos;
    if (at < text.size() && (text[at] == '\'' || text[at] == '"')) end = ClosingQuote(text, at);
    if (end != std::string_view::npos) {
      visit(name, text.substr(at + 1, end - at - 1));
      at = std::min(text.find(';', end), text.size()) + 1;
    } else {
      end = std::min(text.find(';', at), text.size());
      visit(name, Trim(text.substr(at, end - at)));
      at = end + 1;
    }
  }
}

}  // namespace

ConnectionRequest ParseConnectionString(std::string_view text) {
  ConnectionRequest request;
  std::string_view properties;
  ForEachPair(text, [&](std::string_view name, std::string_view value) {
    if (EqualsNoCase(name, "Data Source")) request.data_source = value;
    if (EqualsNoCase(name, "Extended Properties")) properties = value;
    if (EqualsNoCase(name, "Mode")) request.read_only = EqualsNoCase(value, "Read");
  });
  ForEachPair(properties, [&](std::string_view name, std::string_view value) {
    if (value.empty() && name.size() >= 5 && EqualsNoCase(name.substr(0, 5), "Excel")) {
      request.kind = ConnectionRequest::Kind::kWorksheet;
    } else if (value.empty() && EqualsNoCase(name, "text")) {
      request.kind = ConnectionRequest::Kind::kTextFolder;
    } else if (EqualsNoCase(name, "HDR")) {
      request.headings = !EqualsNoCase(value, "NO");
    } else if (EqualsNoCase(name, "IMEX")) {
      request.mixed_as_text = value == "1";
    }
  });
  return request;
}

namespace {

std::string QuotedSource(std::string_view provider, std::string_view path) {
  return fmt::format("{};Data Source=;Data Source='{}';Mode=Read|Write", provider, path);
}

std::string SheetString(std::string_view path, std::string_view properties) {
  return fmt::format("Provider=Microsoft.Jet.OLEDB.4.0;Data Source={};Extended Properties=\"{}\"", path,
                     properties);
}

}  // namespace

std::string JetString(std::string_view path) {
  return QuotedSource("Provider=Microsoft.Jet.OLEDB.4.0", path);
}

std::string CommonShapeString(std::string_view path) {
  return QuotedSource("PROVIDER=MSDataShape;Data Provider=Microsoft.Jet.OLEDB.4.0", path);
}

std::string CompanyShapeString(std::string_view path) {
  return QuotedSource("Provider=MSDataShape;Data Provider=Microsoft.Jet.OLEDB.4.0", path);
}

std::string ImportSheetString(std::string_view path) { return SheetString(path, "Excel 8.0; IMEX=1;"); }

std::string SampleSheetString(std::string_view path) { return SheetString(path, "Excel 8.0"); }

std::string TextFolderString(std::string_view folder) {
  return fmt::format("Provider=Microsoft.Jet.OLEDB.4.0;Data Source={};Extended Properties='text;HDR=NO'",
                     folder);
}

}  // namespace store
