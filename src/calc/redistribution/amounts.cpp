#include "calc/redistribution/amounts.h"

namespace calc {

void AmountRedistribution::Choose(Redis_Mod mod, Redis_Op op) {
  const std::vector<Redis_Mod> mods = Mods();
  const std::vector<Redis_Op> ops = Ops();
  if (std::find(mods.begin(), mods.end(), mod) == mods.end() ||
      std::find(ops.begin(), ops.end(), op) == ops.end()) {
    throw std::invalid_argument("option of another calculation");
  }
  mod_ = mod;
  op_ = op;
  Load();
}

int AmountRedistribution::LostBy(Redis_Mod mod, Redis_Op op) const {
  int lost = 0;
  store::Recordset row = rows();
  row.SetFilter("");
  for (row.MoveFirst(); !row.eof(); row.MoveNext()) {
    if (Takes(row) && (op != op_ || row.Get("TOTAL_" + KeyColumn(mod)).ToDouble() == 0)) ++lost;
  }
  return lost;
}

std::string AmountRedistribution::KeyColumn(Redis_Mod mod) {
  switch (mod) {
    case Redis_Mod::Redis_Mod_Cantitate:
      return "Cantitate";
    case Redis_Mod::Redis_Mod_Net:
      return "Net";
    case Redis_Mod::Redis_Mod_Valoare:
      break;
  }
  return "Val_Fiscala";
}

std::string AmountRedistribution::ListStatement() const {
  const Grouping grouping = GroupingOf(op_);
  return "SELECT * FROM " + grouping.query + Filter() + " AND TOTAL_" + KeyColumn() + " <> 0" +
         grouping.order;
}

std::string AmountRedistribution::Share(const store::Recordset& row, int decimals) const {
  const double total = row.Get("TOTAL_" + KeyColumn()).ToDouble();
  return "ROUND(" + KeyColumn() + "*" + store::NumberText(Amount(row) / total) + "," +
         std::to_string(decimals) + ")";
}

std::string AmountRedistribution::ClosingMessage(int groups) const {
  return "Redistribuire terminata. Distribuire pe :" + std::to_string(groups) + " linii";
}

}  // namespace calc
