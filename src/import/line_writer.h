#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "import/run.h"
#include "tariff/lookup.h"

namespace importer {

/// Makes declaration lines of worksheet rows: copies the fields, normalises them, converts the value at the
/// stored rate and looks the code up in the tariff. Answers of the tariff and the rates are asked once per
/// value and remembered for the run.
class LineWriter {
 public:
  /// Throws store::Error(kItemNotFound) where the worksheet names a column that `lines` lacks.
  LineWriter(session::Session& session, const Inputs& inputs, store::Recordset& sheet,
             store::Recordset& lines);

  /// Fills a new row of `lines` from the worksheet's current row, without saving it. Throws store::Error;
  /// `column` then names the field that refused its value.
  void Fill();
  std::string column() const;

 private:
  enum class Treatment { kCopy, kCode, kUpper, kMoney, kRate };
  struct Copy {
    int from, to;
    Treatment treatment;
    bool yes_no;
    bool typed_number;  ///< a column of texts that goes into one of numbers
  };
  struct Preset {
    int field;
    std::string value;
  };

  void Set(int field, const store::Value& value);
  void CopyFields();
  void FillDefaults();
  void ConvertAtRate();
  void FillFromTariff();
  double Rate(const store::Value& currency, const store::Value& date);
  /// What the tariff says of a code, as the values that the fields take.
  struct TariffFields {
    bool found = false, has_unit = false;
    store::Value description, unit, flag;
  };
  const TariffFields& Lookup(std::string_view code);
  void CopyValue(const Copy& copy);
  void CopyMoney(const Copy& copy, int decimals);
  void CopyUpper(const Copy& copy);

  session::Session* session_;
  store::Recordset* sheet_;
  store::Recordset* lines_;
  std::string decimal_mark_;  ///< the user's own
  bool arrivals_;
  std::vector<Copy> copies_;
  std::vector<Preset> presets_;  ///< company defaults for empty coded fields
  int field_ = -1;

  int data_receptiei_, cod_nc_, descriere_nc_, cantitate_, valoare_valuta_, moneda_, curs_schimb_,
      val_fiscala_, val_stat_, tara_orig_, tara_exp_, tara_dest_, cod_ums_, val_ums_, exista_ums_;

  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  std::unordered_map<std::string, TariffFields, Hash, std::equal_to<>> tariff_answers_;
  std::map<std::pair<std::string, double>, double> rates_;
};

}  // namespace importer
