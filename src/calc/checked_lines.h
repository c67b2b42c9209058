#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/error_log.h"
#include "store/recordset.h"

namespace calc {

/// Columns of the checker's line query, at their positions in it.
enum LineColumn : int {
  kRecord_ID,
  kTIP,
  kCod_Fiscal,
  kAnul,
  kLuna,
  kCod_NC,
  kDescriere_NC,
  kTara_Orig,
  kTara_Exp,
  kTara_Dest,
  kVal_Fiscala,
  kVal_Stat,
  kNet,
  kExista_UMS,
  kCod_UMS,
  kVal_UMS,
  kNat_Tranz,
  kIncoterms,
  kMod_Transp,
  kProbleme,
  kVAT_ID,
  kLineColumns
};

/// The lines under check, one current at a time.
///
/// The statement may be replaced by the installation, so a column can be missing or of another type: missing
/// ones read as Null and are not written. Fields are addressed by name, except where emptiness is asked: that
/// goes by position.
class CheckedLines {
 public:
  /// `log` takes what the store refuses.
  CheckedLines(store::Recordset lines, platform::ErrorLog& log);

  store::Recordset& rows() { return lines_; }

  bool EmptyAt(int position) const;
  std::string_view NameAt(int position) const;  ///< as the query returns it

  std::string_view Name(LineColumn column) const;
  /// Text of the value, "" for Null; valid until the next call for a column that is no text.
  std::string_view Text(LineColumn column);
  double Number(LineColumn column) const;  ///< Null and a missing column are 0
  bool Flag(LineColumn column) const;
  bool IsNull(LineColumn column) const;

  /// Changes a value of the current line; refused values are logged and left as they were.
  void Set(LineColumn column, const store::Value& value);
  /// Stores the current line's changes, if any.
  void Save();

 private:
  store::Recordset lines_;
  platform::ErrorLog* log_;
  std::array<int, kLineColumns> fields_{};  ///< by column; -1 where the query has none
  std::array<bool, kLineColumns> is_text_{};
  bool changed_ = false;
  std::string scratch_;
};

}  // namespace calc
