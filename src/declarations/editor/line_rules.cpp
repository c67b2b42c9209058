#include "declarations/editor/line_rules.h"

#include "calc/rates.h"
#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

constexpr std::string_view kLocal = "RON";
constexpr int kMassDecimals = 4;  // of kilograms, as the column shows them when typed over

}  // namespace

void LineRules::Bind(const store::Recordset& lines) {
  const std::pair<int*, std::string_view> fields[] = {{&tip_, "TIP"},
                                                      {&cod_fiscal_, "Cod_Fiscal"},
                                                      {&anul_, "Anul"},
                                                      {&luna_, "Luna"},
                                                      {&data_receptiei_, "DataReceptiei"},
                                                      {&cod_nc_, "Cod_NC"},
                                                      {&descriere_nc_, "Descriere_NC"},
                                                      {&cantitate_, "Cantitate"},
                                                      {&valoare_valuta_, "Valoare_Valuta"},
                                                      {&moneda_, "Moneda"},
                                                      {&curs_schimb_, "Curs_Schimb"},
                                                      {&val_fiscala_, "Val_Fiscala"},
                                                      {&val_stat_, "Val_Stat"},
                                                      {&tara_exp_, "Tara_Exp"},
                                                      {&tara_dest_, "Tara_Dest"},
                                                      {&net_, "Net"},
                                                      {&net_unitar_, "Net_Unitar"},
                                                      {&cod_ums_, "Cod_UMS"},
                                                      {&val_ums_, "Val_UMS"},
                                                      {&exista_ums_, "Exista_UMS"},
                                                      {&nat_tranz_, "Nat_Tranz"},
                                                      {&incoterms_, "Incoterms"},
                                                      {&mod_transp_, "Mod_Transp"},
                                                      {&probleme_, "Probleme"},
                                                      {&raport_stat_, "Raport_Stat"},
                                                      {&transp_document_, "Transp_Document"},
                                                      {&transport_suma_, "Transport_Suma"},
                                                      {&transport_moneda_, "Transport_Moneda"},
                                                      {&transport_curs_, "Transport_Curs"}};
  for (const auto& [field, name] : fields) *field = lines.FindField(name);
}

bool LineRules::Empty(const store::Recordset& lines, int field) const {
  return field < 0 || store::IsEmpty(lines.Get(field));
}

void LineRules::Put(store::Recordset& lines, int field, const store::Value& value) const {
  if (field >= 0) lines.Set(field, value);
}

void LineRules::FillNew(store::Recordset& lines) const {
  lines.Set(tip_, identity_.TIP);
  lines.Set(cod_fiscal_, identity_.Cod_Fiscal);
  lines.Set(anul_, identity_.Anul);
  lines.Set(luna_, identity_.Luna);
  Put(lines, probleme_, 0);
  const session::DefaultValues& defaults = session_->defaults;
  const auto fill = [&](int field, const std::string& value) {
    // A default that does not fit its column is left out.
    if (!store::IsEmpty(value)) {
      store::PassOver(session_->host.errors, "Frm_INTRASTAT", [&] { Put(lines, field, value); });
    }
  };
  if (identity_.arrivals()) {
    fill(tara_dest_, "RO");
    fill(tara_exp_, defaults.I_Tara_Exp);
    fill(incoterms_, defaults.I_Incoterms);
    fill(mod_transp_, defaults.I_Mod_Transp);
    fill(nat_tranz_, defaults.I_Nat_Tranz);
  } else {
    fill(tara_exp_, "RO");
    fill(tara_dest_, defaults.O_Tara_Dest);
    fill(incoterms_, defaults.O_Incoterms);
    fill(mod_transp_, defaults.O_Mod_Transp);
    fill(nat_tranz_, defaults.O_Nat_Tranz);
  }
}

std::string LineRules::Set(store::Recordset& lines, int field, const store::Value& value) {
  const store::Value fiscal_before = val_fiscala_ < 0 ? store::Value() : lines.Get(val_fiscala_);
  lines.Set(field, value);
  std::string note;
  if (field == cod_nc_) note = FollowTariff(lines);
  if (field == curs_schimb_ && moneda_ >= 0 && platform::EqualsNoCase(lines.Get(moneda_).ToText(), kLocal) &&
      !(lines.Get(field) == store::Value(1.0))) {
    lines.Set(field, 1.0);
    note = "Pentru RON cursul este 1";
  }
  if (field == moneda_ || field == data_receptiei_) note = FollowRate(lines, field == moneda_);
  const bool in_value =
      field == valoare_valuta_ || field == moneda_ || field == curs_schimb_ || field == data_receptiei_;
  // Lines in lei alone have no value in a currency, and keep what they have.
  if (in_value && (field == valoare_valuta_ || !Empty(lines, valoare_valuta_)) && valoare_valuta_ >= 0 &&
      curs_schimb_ >= 0) {
    const bool complete = !Empty(lines, valoare_valuta_) && !Empty(lines, curs_schimb_);
    Put(lines, val_fiscala_,
        complete ? store::Value(calc::Round(
                       lines.Get(valoare_valuta_).ToDouble() * lines.Get(curs_schimb_).ToDouble(), 2))
                 : store::Value());
  }
  if (val_fiscala_ >= 0 && !(lines.Get(val_fiscala_) == fiscal_before)) {
    const std::string more = FollowStatisticalValue(lines, fiscal_before.ToDouble());
    if (note.empty()) note = more;
  }
  FollowMass(lines, field);
  return note;
}

std::string LineRules::FollowTariff(store::Recordset& lines) const {
  const std::string code = lines.Get(cod_nc_).ToText();
  CodeBook::Entry entry;
  if (!store::IsEmpty(code)) {
    entry = codes_->LookAnew(*tariff::FindCodeCheck("Cod_NC"), code);
    if (!entry.asked) return "Tariful nu s-a putut citi; verificarea completeaza ce tine de cod";
  }
  Put(lines, descriere_nc_, entry.description.empty() ? store::Value() : store::Value(entry.description));
  Put(lines, exista_ums_, entry.has_unit ? 1 : 0);
  Put(lines, cod_ums_, entry.has_unit ? store::Value(entry.unit) : store::Value());
  // A mistyped code takes no quantity away; the right one decides.
  if (entry.known && !entry.has_unit) Put(lines, val_ums_, store::Value());
  return "";
}

std::string LineRules::FollowRate(store::Recordset& lines, bool currency_changed) const {
  if (moneda_ < 0 || curs_schimb_ < 0 || Empty(lines, moneda_)) return "";
  const std::string currency = lines.Get(moneda_).ToText();
  if (platform::EqualsNoCase(currency, kLocal)) {
    lines.Set(curs_schimb_, 1.0);
    return "";
  }
  const store::Value date = data_receptiei_ < 0 ? store::Value() : lines.Get(data_receptiei_);
  // The rate is narrowed to single precision; its own four decimals are what is meant.
  const double rate = calc::Round(static_cast<double>(calc::Curs_Schimb(*session_, currency, date)), 4);
  if (rate != 0) {
    lines.Set(curs_schimb_, rate);
    return "";
  }
  // Another currency's rate would be wrong; one typed by hand for this currency stays.
  if (currency_changed) lines.Set(curs_schimb_, store::Value());
  if (date.is_null()) return currency_changed ? "Cursul se completeaza dupa data" : "";
  return fmt::format("Nu exista curs pentru {} inainte de {}", currency, date.ToText());
}

std::string LineRules::FollowStatisticalValue(store::Recordset& lines, double earlier) const {
  if (val_stat_ < 0) return "";
  const double current = lines.Get(val_stat_).ToDouble();
  if (current != 0 && current != earlier) {
    return "Valoarea statistica a ramas cea stabilita; recalculati daca este cazul";
  }
  lines.Set(val_stat_, lines.Get(val_fiscala_));
  return "";
}

void LineRules::FollowMass(store::Recordset& lines, int field) const {
  if (cantitate_ < 0 || net_ < 0 || net_unitar_ < 0) return;
  const double quantity = lines.Get(cantitate_).ToDouble();
  if ((field == cantitate_ || field == net_unitar_) && !Empty(lines, net_unitar_) &&
      !Empty(lines, cantitate_)) {
    lines.Set(net_, calc::Round(quantity * lines.Get(net_unitar_).ToDouble(), kMassDecimals));
  } else if (field == net_) {
    // Without a quantity an earlier unit mass would undo the typed mass once a quantity comes.
    lines.Set(net_unitar_, Empty(lines, net_) || quantity == 0
                               ? store::Value()
                               : store::Value(lines.Get(net_).ToDouble() / quantity));
  }
}

void LineRules::FreshenCopy(store::Recordset& lines) const {
  Put(lines, probleme_, 0);
  const bool calculated = !Empty(lines, raport_stat_) || !Empty(lines, transport_suma_);
  for (const int field :
       {raport_stat_, transp_document_, transport_suma_, transport_moneda_, transport_curs_}) {
    Put(lines, field, store::Value());
  }
  if (calculated && val_fiscala_ >= 0) Put(lines, val_stat_, lines.Get(val_fiscala_));
}

}  // namespace declarations
