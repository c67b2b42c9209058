#pragma once

#include <string>

#include "declarations/editor/code_book.h"
#include "declarations/lines/lines.h"
#include "session/session.h"
#include "store/recordset.h"

namespace declarations {

/// What follows when a value of a line changes: values in lei, masses, the tariff's columns. Columns that the
/// line query leaves out are left alone.
class LineRules {
 public:
  LineRules(session::Session& session, const Identity& identity, CodeBook& codes)
      : session_(&session), identity_(identity), codes_(&codes) {}

  /// To be called with every new recordset.
  void Bind(const store::Recordset& lines);
  /// Whether the query has what identifies a declaration, so that lines may be added.
  bool can_add() const { return tip_ >= 0 && cod_fiscal_ >= 0 && anul_ >= 0 && luna_ >= 0; }

  /// Identity and default values of a line just begun.
  void FillNew(store::Recordset& lines) const;
  /// Sets a field of the current line and whatever follows from it. Throws store::Error where the value does
  /// not fit. Answers what the user should know (no rate for the currency), mostly nothing.
  std::string Set(store::Recordset& lines, int field, const store::Value& value);
  /// Takes off a copied line what belongs to the original alone: marks and shares of transport cost.
  void FreshenCopy(store::Recordset& lines) const;

 private:
  std::string FollowTariff(store::Recordset& lines) const;
  std::string FollowRate(store::Recordset& lines, bool currency_changed) const;
  void FollowMass(store::Recordset& lines, int field) const;
  std::string FollowStatisticalValue(store::Recordset& lines, double earlier) const;
  bool Empty(const store::Recordset& lines, int field) const;
  void Put(store::Recordset& lines, int field, const store::Value& value) const;

  session::Session* session_;
  Identity identity_;
  CodeBook* codes_;
  int tip_ = -1, cod_fiscal_ = -1, anul_ = -1, luna_ = -1, data_receptiei_ = -1, cod_nc_ = -1,
      descriere_nc_ = -1, cantitate_ = -1, valoare_valuta_ = -1, moneda_ = -1, curs_schimb_ = -1,
      val_fiscala_ = -1, val_stat_ = -1, tara_exp_ = -1, tara_dest_ = -1, net_ = -1, net_unitar_ = -1,
      cod_ums_ = -1, val_ums_ = -1, exista_ums_ = -1, nat_tranz_ = -1, incoterms_ = -1, mod_transp_ = -1,
      probleme_ = -1, raport_stat_ = -1, transp_document_ = -1, transport_suma_ = -1, transport_moneda_ = -1,
      transport_curs_ = -1;
};

}  // namespace declarations
