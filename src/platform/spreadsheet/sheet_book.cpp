#include "platform/spreadsheet/sheet_book.h"

#include "platform/encoding.h"

namespace platform::spreadsheet {

std::string FilePrefix(std::string_view file_name) {
  return file_name.empty() ? "" : fmt::format("Fisierul {}: ", file_name);
}

std::size_t SheetBook::IndexOf(std::string_view sheet) const {
  const std::string wanted = ToLower(sheet);
  std::string names;
  for (std::size_t i = 0; i < infos_.size(); ++i) {
    if (ToLower(infos_[i].name) == wanted) return i;
    names += (names.empty() ? "" : ", ") + infos_[i].name;
  }
  throw SheetError(SheetError::Reason::kNoSuchSheet,
                   fmt::format("{}foaia \"{}\" nu exista; foile fisierului sunt: {}", FilePrefix(file_name_),
                               sheet, names));
}

void SheetBook::Read(std::string_view sheet, CellSink& sink) {
  const std::size_t index = IndexOf(sheet);
  try {
    ReadSheet(index, sink);
  } catch (const SheetError& error) {
    throw SheetError(error.reason(), fmt::format("{}foaia \"{}\": {}", FilePrefix(file_name_),
                                                 infos_[index].name, error.what()));
  }
}

}  // namespace platform::spreadsheet
