#include <filesystem>
#include <fstream>

#include "platform/encoding.h"
#include "platform/spreadsheet/csv.h"
#include "platform/spreadsheet/foreign_file.h"
#include "platform/spreadsheet/office_book.h"
#include "platform/spreadsheet/xls.h"
#include "platform/spreadsheet/xlsx_parts.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;

constexpr std::uintmax_t kLargestFile = 1u << 30;  // ten times what the formats hold in practice

bool IsDelimitedTextName(std::string_view file_name) {
  const std::size_t dot = file_name.rfind('.');
  const std::string extension = dot == std::string_view::npos ? "" : ToLower(file_name.substr(dot + 1));
  return extension == "csv" || extension == "tsv" || extension == "tab" || extension == "txt" ||
         extension == "asc";
}

std::unique_ptr<SheetBook> OpenByContent(std::string content, std::string_view file_name) {
  if (IsXls(content)) return OpenXlsContent(std::move(content));
  if (content.starts_with("PK")) return OpenPackage(OpenZip(std::move(content)));
  if (!IsDelimitedTextName(file_name)) RefuseForeign(content);
  RefuseDocument(content);
  return OpenCsv(std::move(content), std::string(file_name.substr(0, file_name.rfind('.'))));
}

std::string ReadWhole(const std::filesystem::path& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) throw SheetError(Reason::kUnreadable, "nu poate fi citit: " + error.message());
  if (size > kLargestFile) throw SheetError(Reason::kUnsupported, "este prea mare pentru o foaie de calcul");
  std::ifstream file(path, std::ios::binary);
  std::string content(static_cast<std::size_t>(size), '\0');
  if (!file || !file.read(content.data(), static_cast<std::streamsize>(size))) {
    throw SheetError(Reason::kUnreadable, "nu poate fi citit (acces interzis sau folosit de alt program)");
  }
  return content;
}

}  // namespace

std::unique_ptr<SheetBook> OpenPackage(std::unique_ptr<Package> package) {
  constexpr std::string_view kOds = "application/vnd.oasis.opendocument.spreadsheet";
  if (package->Has("mimetype") && package->Has("content.xml")) {
    if (std::string(Trim(package->ReadWhole("mimetype"))).starts_with(kOds))
      return OpenOds(std::move(package));
    throw SheetError(Reason::kNotAWorksheet, "este un document OpenDocument, dar nu o foaie de calcul .ods");
  }
  const std::string main_part = XlsxMainPart(*package);
  if (main_part.ends_with("workbook.bin")) {
    throw SheetError(Reason::kUnsupported, "este un registru .xlsb; salvati fisierul ca .xlsx sau .xls");
  }
  if (main_part.starts_with("word/") || main_part.starts_with("ppt/")) {
    throw SheetError(Reason::kNotAWorksheet, "este un document Office, dar nu o foaie de calcul .xlsx");
  }
  if (main_part.empty() || !package->Has(main_part)) {
    throw SheetError(Reason::kNotAWorksheet,
                     "este o arhiva zip fara registru de calcul (.xlsx sau .ods) in ea");
  }
  return OpenXlsx(std::move(package), main_part);
}

std::unique_ptr<Workbook> OpenWorkbookContent(std::string content, std::string_view file_name) {
  try {
    std::unique_ptr<SheetBook> book = OpenByContent(std::move(content), file_name);
    book->SetFileName(std::string(file_name));
    return book;
  } catch (const SheetError& error) {
    throw SheetError(error.reason(), FilePrefix(file_name) + error.what());
  }
}

std::unique_ptr<Workbook> OpenWorkbook(const std::string& host_path) {
  const std::filesystem::path path(std::u8string(host_path.begin(), host_path.end()));
  const std::u8string bare = path.filename().u8string();
  const std::string file_name(bare.begin(), bare.end());
  std::string content;
  try {
    content = ReadWhole(path);
  } catch (const SheetError& error) {
    throw SheetError(error.reason(), FilePrefix(file_name) + error.what());
  }
  return OpenWorkbookContent(std::move(content), file_name);
}

}  // namespace platform::spreadsheet
