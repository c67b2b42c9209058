#pragma once

#include "calc/redistribution/group_calculation.h"

namespace calc {

/// The key in proportion to which an amount is shared (the screens' options of the same names).
enum class Redis_Mod : std::uint8_t {
  Redis_Mod_Cantitate,  ///< quantity
  Redis_Mod_Net,        ///< net mass; transport only
  Redis_Mod_Valoare,    ///< invoiced value
};

/// How the lines are grouped. The screen's further option Redis_Op_Proc groups nothing here: it opens the
/// percentage recalculation (StatValueRecalculation) instead.
enum class Redis_Op : std::uint8_t {
  Redis_Op_Doc,        ///< one group per invoice
  Redis_Op_Incoterms,  ///< delivery terms, country, mode of transport; transport only
  Redis_Op_VAT,        ///< partner; transport only
  Redis_Op_CodVamal,   ///< CN code; net mass only
};

/// An amount typed per ticked group and shared over the group's lines in proportion to a key. Every line's
/// share is rounded on its own and no remainder is carried: the shares may add up to slightly more or less.
/// Groups whose key adds up to 0 are not listed.
class AmountRedistribution : public GroupCalculation {
 public:
  using GroupCalculation::GroupCalculation;

  /// Sets both options and loads the list they make. Throws std::invalid_argument for an option that the
  /// calculation does not offer.
  void Choose(Redis_Mod mod, Redis_Op op);
  Redis_Mod mod() const { return mod_; }
  Redis_Op op() const { return op_; }
  /// How many ticked groups the list of these options would not carry any more.
  int LostBy(Redis_Mod mod, Redis_Op op) const;
  /// What the screen offers, in its order.
  virtual std::vector<Redis_Mod> Mods() const = 0;
  virtual std::vector<Redis_Op> Ops() const = 0;

  /// Column of the amount to share.
  virtual std::string AmountField() const = 0;
  std::string ListStatement() const override;
  bool Takes(const store::Recordset& row) const override { return row.Get("Redistribuie").ToBoolean(); }

 protected:
  /// The stored query that lists the groups, and its order clause.
  struct Grouping {
    std::string query, order;
  };
  virtual Grouping GroupingOf(Redis_Op op) const = 0;
  std::string ClosingMessage(int groups) const override;
  /// Column of the lines that is the key.
  std::string KeyColumn() const { return KeyColumn(mod_); }
  double Amount(const store::Recordset& row) const { return row.Get(AmountField()).ToDouble(); }
  /// "ROUND(Net*0.125,4)": a line's share.
  std::string Share(const store::Recordset& row, int decimals) const;

 private:
  static std::string KeyColumn(Redis_Mod mod);

  Redis_Mod mod_ = Redis_Mod::Redis_Mod_Cantitate;
  Redis_Op op_ = Redis_Op::Redis_Op_Doc;
};

}  // namespace calc
