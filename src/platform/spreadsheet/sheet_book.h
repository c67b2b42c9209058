#pragma once

#include <string>
#include <vector>

#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {

/// What the workbooks of all formats share: finding a sheet by its name and naming file and sheet in errors.
class SheetBook : public Workbook {
 public:
  const std::vector<SheetInfo>& sheets() const override { return infos_; }
  void Read(std::string_view sheet, CellSink& sink) override;
  void SetFileName(std::string file_name) { file_name_ = std::move(file_name); }

 protected:
  virtual void ReadSheet(std::size_t index, CellSink& sink) = 0;
  /// Place of the sheet of that name (without regard to case). Throws SheetError (kNoSuchSheet).
  virtual std::size_t IndexOf(std::string_view sheet) const;

  std::vector<SheetInfo> infos_;

 private:
  std::string file_name_;  ///< for messages; may be empty
};

/// What stands before the reason in a message about a file; nothing where it has no name.
std::string FilePrefix(std::string_view file_name);

}  // namespace platform::spreadsheet
