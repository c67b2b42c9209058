#include "import/line_writer.h"

#include "calc/rates.h"
#include "calc/rounding/rounding.h"
#include "calc/rounding/typed_number.h"
#include "platform/encoding.h"
#include "platform/locale.h"

namespace importer {
namespace {

constexpr std::size_t kPathCharacters = 255;
constexpr std::size_t kFileNameCharacters = 50;

/// Codes are written "8471.30-00", "8471 30 00" or with blanks behind; a no-break blank is one too.
std::string BareCode(std::string_view text) {
  std::string code;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ' ' || text[i] == '.' || text[i] == '-') continue;
    if (text.substr(i, 2) == "\xC2\xA0") {
      ++i;
      continue;
    }
    code += text[i];
  }
  return code;
}

bool TakesNumbers(store::ColumnType type) {
  return type >= store::ColumnType::kByte && type <= store::ColumnType::kDecimal;
}

/// A text such as "1.234,50" that is a number only as people write it; nothing where the store takes the text
/// as it is. Sheets come from other countries too, so where the user's decimal mark does not fit, the other
/// one may.
std::optional<double> WrittenNumber(std::string_view text, std::string_view own_mark) {
  if (store::ParseNumber(text)) return std::nullopt;
  if (const auto number = calc::ParseTypedNumber(text, own_mark)) return number;
  return calc::ParseTypedNumber(text, own_mark == "," ? "." : ",");
}

store::Value Upper(const store::Value& value) {
  return value.is_text() ? store::Value(platform::ToUpper(value.text())) : value;
}

}  // namespace

LineWriter::LineWriter(session::Session& session, const Inputs& inputs, store::Recordset& sheet,
                       store::Recordset& lines)
    : session_(&session),
      sheet_(&sheet),
      lines_(&lines),
      decimal_mark_(platform::DecimalSeparator()),
      arrivals_(inputs.tip_operatiune.starts_with('I')),
      data_receptiei_(lines.FieldIndex("DataReceptiei")),
      cod_nc_(lines.FieldIndex("Cod_NC")),
      descriere_nc_(lines.FieldIndex("Descriere_NC")),
      cantitate_(lines.FieldIndex("Cantitate")),
      valoare_valuta_(lines.FieldIndex("Valoare_Valuta")),
      moneda_(lines.FieldIndex("Moneda")),
      curs_schimb_(lines.FieldIndex("Curs_Schimb")),
      val_fiscala_(lines.FieldIndex("Val_Fiscala")),
      val_stat_(lines.FieldIndex("Val_Stat")),
      tara_orig_(lines.FieldIndex("Tara_Orig")),
      tara_exp_(lines.FieldIndex("Tara_Exp")),
      tara_dest_(lines.FieldIndex("Tara_Dest")),
      cod_ums_(lines.FieldIndex("Cod_UMS")),
      val_ums_(lines.FieldIndex("Val_UMS")),
      exista_ums_(lines.FieldIndex("Exista_UMS")) {
  std::vector<int> stamped;  // the same on every line of the run, whatever the worksheet says
  const auto stamp = [&](const char* name, const store::Value& value) {
    stamped.push_back(lines.FieldIndex(name));
    lines.SetForNewRows(stamped.back(), value);
  };
  stamp("TIP", inputs.tip_operatiune.substr(0, 1));
  stamp("Anul", inputs.Anul);
  stamp("Luna", inputs.Luna);
  stamp("Cod_Fiscal", inputs.Cod_Fiscal);
  stamp("Data_Preluare", store::Date{platform::ToSerial(session.host.clock.Now())});
  stamp("UserName", session.user_name.empty() ? std::string("N/A") : session.user_name);
  stamp("SourceFile_FullPath", platform::Utf8Prefix(inputs.path, kPathCharacters));
  stamp("SourceFile", platform::Utf8Prefix(platform::FileNameOf(inputs.path), kFileNameCharacters));
  stamp("Probleme", 0);

  const int net = lines.FieldIndex("Net");
  const int incoterms = lines.FieldIndex("Incoterms");
  for (int from = 0; from < sheet.field_count(); ++from) {
    const int to = lines.FieldIndex(sheet.field(from).name);
    if (std::find(stamped.begin(), stamped.end(), to) != stamped.end()) continue;
    Treatment treatment = Treatment::kCopy;
    if (to == cod_nc_) treatment = Treatment::kCode;
    if (to == tara_orig_ || to == tara_exp_ || to == tara_dest_ || to == incoterms || to == moneda_) {
      treatment = Treatment::kUpper;
    }
    if (to == val_fiscala_ || to == val_stat_ || to == net || to == valoare_valuta_) {
      treatment = Treatment::kMoney;
    }
    if (to == curs_schimb_) treatment = Treatment::kRate;
    const store::ColumnType source = sheet.field(from).type, target = lines.field(to).type;
    const bool text =
        source == store::ColumnType::kText || source == store::ColumnType::kMemo || !sheet.field(from).typed;
    copies_.push_back(
        {from, to, treatment, target == store::ColumnType::kYesNo, text && TakesNumbers(target)});
  }

  const session::DefaultValues& defaults = session.defaults;
  const auto preset = [&](int field, const std::string& value) {
    if (!store::IsEmpty(value)) presets_.push_back({field, value});
  };
  preset(incoterms, platform::ToUpper(arrivals_ ? defaults.I_Incoterms : defaults.O_Incoterms));
  preset(lines.FieldIndex("Mod_Transp"), arrivals_ ? defaults.I_Mod_Transp : defaults.O_Mod_Transp);
  preset(lines.FieldIndex("Nat_Tranz"), arrivals_ ? defaults.I_Nat_Tranz : defaults.O_Nat_Tranz);
  preset(arrivals_ ? tara_exp_ : tara_dest_,
         platform::ToUpper(arrivals_ ? defaults.I_Tara_Exp : defaults.O_Tara_Dest));
}

std::string LineWriter::column() const { return field_ < 0 ? "" : lines_->field(field_).name; }

void LineWriter::Set(int field, const store::Value& value) {
  field_ = field;
  lines_->Set(field, value);
}

void LineWriter::Fill() {
  field_ = -1;
  lines_->AddNew();
  CopyFields();
  FillDefaults();
  ConvertAtRate();
  Set(arrivals_ ? tara_dest_ : tara_exp_, "RO");
  if (!arrivals_ && store::IsEmpty(lines_->Get(tara_orig_))) Set(tara_orig_, "RO");
  FillFromTariff();
  field_ = -1;
}

void LineWriter::CopyFields() {
  for (const Copy& copy : copies_) {
    if (sheet_->IsNull(copy.from)) {
      if (!copy.yes_no) Set(copy.to, store::Null{});
      continue;
    }
    switch (copy.treatment) {
      case Treatment::kCopy:
        CopyValue(copy);
        break;
      case Treatment::kCode:
        Set(copy.to, BareCode(sheet_->Get(copy.from).ToText()));
        break;
      case Treatment::kUpper:
        CopyUpper(copy);
        break;
      case Treatment::kMoney:
        CopyMoney(copy, 2);
        break;
      case Treatment::kRate:
        CopyMoney(copy, 4);
        break;
    }
  }
}

void LineWriter::CopyUpper(const Copy& copy) {
  field_ = copy.to;
  const store::Value value = sheet_->Get(copy.from);
  const bool lower = value.is_text() && std::any_of(value.text().begin(), value.text().end(),
                                                    [](char c) { return c < 'A' || c > 'Z'; });
  if (lower) {
    lines_->Set(copy.to, Upper(value));
  } else {
    lines_->SetFrom(copy.to, *sheet_, copy.from);
  }
}

void LineWriter::CopyValue(const Copy& copy) {
  field_ = copy.to;
  if (copy.typed_number) {
    const store::Value value = sheet_->Get(copy.from);
    if (const auto number = value.is_text() ? WrittenNumber(value.text(), decimal_mark_) : std::nullopt) {
      lines_->Set(copy.to, *number);
      return;
    }
  }
  lines_->SetFrom(copy.to, *sheet_, copy.from);  // a number written as text is converted here
}

void LineWriter::CopyMoney(const Copy& copy, int decimals) {
  CopyValue(copy);
  const double stored = lines_->Get(copy.to).ToDouble();
  const double rounded = calc::RoundStored(stored, decimals);
  if (rounded != stored) lines_->Set(copy.to, rounded);
}

void LineWriter::FillDefaults() {
  for (const Preset& preset : presets_) {
    if (store::IsEmpty(lines_->Get(preset.field))) Set(preset.field, preset.value);
  }
}

void LineWriter::ConvertAtRate() {
  // A missing value counts as 0, so that sheets in a currency need no column in lei.
  if (calc::RoundStored(lines_->Get(val_fiscala_).ToDouble(), 0) != 0) return;
  const store::Value currency = lines_->Get(moneda_);
  if (currency.is_text() && currency.text() == "RON") return;
  field_ = moneda_;
  const double rate = Rate(currency, lines_->Get(data_receptiei_));
  const double value = calc::RoundStored(lines_->Get(valoare_valuta_).ToDouble() * rate, 2);
  Set(curs_schimb_, rate);
  Set(val_fiscala_, value);
  Set(val_stat_, value);
}

void LineWriter::FillFromTariff() {
  const bool is_text = !lines_->IsNull(cod_nc_);
  const TariffFields& fields = Lookup(is_text ? lines_->TextView(cod_nc_) : std::string_view());
  if (!fields.found) return;
  Set(descriere_nc_, fields.description);
  Set(cod_ums_, fields.unit);
  Set(exista_ums_, fields.flag);
  if (fields.has_unit) {
    Set(val_ums_, calc::RoundStored(lines_->Get(cantitate_).ToDouble(), 0));
  } else {
    Set(val_ums_, store::Null{});
  }
}

double LineWriter::Rate(const store::Value& currency, const store::Value& date) {
  const auto [known, is_new] =
      rates_.try_emplace({currency.ToText(), date.is_null() ? -1.0 : date.ToDate().days}, 0.0);
  if (is_new) {
    try {
      known->second = static_cast<double>(calc::Curs_Schimb(*session_, currency, date));
    } catch (const store::Error&) {
      rates_.erase(known);  // the next row asks, and is refused, again
      throw;
    }
  }
  return known->second;
}

const LineWriter::TariffFields& LineWriter::Lookup(std::string_view code) {
  const auto known = tariff_answers_.find(code);
  if (known != tariff_answers_.end()) return known->second;
  const tariff::TariffAnswer answer = tariff::SplitAnswer(tariff::Cautare_Tarif(*session_, code));
  return tariff_answers_
      .emplace(code,
               TariffFields{answer.found, answer.flag != "0", answer.description, answer.unit, answer.flag})
      .first->second;
}

}  // namespace importer
