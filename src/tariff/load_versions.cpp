#include "tariff/load_versions.h"

#include <cstdlib>

namespace tariff {
namespace {

std::optional<int> OptionalYear(const store::Value& value) {
  if (value.is_null()) return std::nullopt;
  return static_cast<int>(value.ToInteger());
}

Validity ReadValidity(const store::Recordset& row) {
  return {static_cast<int>(row["Anul"].ToInteger()), static_cast<int>(row["Luna"].ToInteger()),
          OptionalYear(row["Anul_End"]), OptionalYear(row["Luna_End"])};
}

store::Value ToValue(const std::optional<int>& number) {
  return number ? store::Value(*number) : store::Value();
}

void WriteValidity(store::Recordset& row, const Validity& validity) {
  row.Set("Anul", validity.Anul);
  row.Set("Luna", validity.Luna);
  row.Set("Anul_End", ToValue(validity.Anul_End));
  row.Set("Luna_End", ToValue(validity.Luna_End));
}

std::vector<store::Value> ReadFields(const store::Recordset& row) {
  std::vector<store::Value> fields;
  fields.reserve(static_cast<std::size_t>(row.field_count()));
  for (int i = 0; i < row.field_count(); ++i) fields.push_back(row.Get(i));
  return fields;
}

/// Position of the row whose versions a new row of that year takes over; -1 where there is none.
int NearestRow(const std::vector<Validity>& rows, int year) {
  int best = -1, best_distance = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const int last = rows[i].open() ? year : rows[i].Anul_End.value_or(rows[i].Anul);
    int distance = 0;
    if (rows[i].Anul > year) {
      distance = 10000 + rows[i].Anul - year;  // any earlier row is nearer than a later one
    } else if (last < year) {
      distance = year - last;
    }
    if (best == -1 || distance < best_distance) {
      best = static_cast<int>(i);
      best_distance = distance;
    }
  }
  return best;
}

}  // namespace

bool Validity::Holds(int year, int month) const {
  if (Anul > year || Luna > month) return false;
  if (open()) return true;
  return Anul_End && Luna_End && *Anul_End >= year && *Luna_End >= month;
}

YearPlan PlanYear(const std::vector<Validity>& rows, int year) {
  bool newest = true;
  for (const Validity& row : rows) {
    if (row.Anul > year || (!row.open() && row.Anul_End.value_or(row.Anul) > year)) newest = false;
  }
  YearPlan plan;
  plan.fresh = {year, 1, std::nullopt, std::nullopt};
  if (!newest) plan.fresh = {year, 1, year, 12};
  for (const Validity& row : rows) {
    std::vector<Validity> left;
    const int last = row.open() ? year + 1 : row.Anul_End.value_or(row.Anul);
    if (last < year || row.Anul > year) {
      left.push_back(row);
    } else {
      if (row.Anul < year) left.push_back({row.Anul, row.Luna, year - 1, row.Luna_End.value_or(12)});
      if (!newest && last > year) left.push_back({year + 1, row.Luna, row.Anul_End, row.Luna_End});
    }
    plan.remains.push_back(std::move(left));
  }
  return plan;
}

void RegisterYear(store::Connection& common, int year, std::string_view CN_File,
                  const std::map<std::string, std::string>& versions) {
  store::Transaction transaction(common);
  store::Recordset rows = common.QueryForUpdate("SELECT * FROM InsCodeVersions");
  std::vector<Validity> present;
  std::vector<std::vector<store::Value>> fields;
  for (; !rows.eof(); rows.MoveNext()) {
    present.push_back(ReadValidity(rows));
    fields.push_back(ReadFields(rows));
  }
  const YearPlan plan = PlanYear(present, year);
  const int model = NearestRow(present, year);

  const auto add = [&](const std::vector<store::Value>* like, const Validity& validity) {
    rows.AddNew();
    for (int i = 0; like != nullptr && i < rows.field_count(); ++i) {
      if (!(*like)[static_cast<std::size_t>(i)].is_null()) rows.Set(i, (*like)[static_cast<std::size_t>(i)]);
    }
    WriteValidity(rows, validity);
  };
  for (std::size_t i = present.size(); i-- > 0;) {  // from the end: deleting moves the later rows up
    const std::vector<Validity>& left = plan.remains[i];
    rows.set_position(static_cast<std::int64_t>(i));
    if (left.empty()) {
      rows.Delete();
    } else if (left.front() != present[i]) {
      WriteValidity(rows, left.front());
      rows.Update();
    }
  }
  for (std::size_t i = 0; i < present.size(); ++i) {
    if (plan.remains[i].size() < 2) continue;
    add(&fields[i], plan.remains[i][1]);
    rows.Update();
  }
  add(model < 0 ? nullptr : &fields[static_cast<std::size_t>(model)], plan.fresh);
  rows.Set("CN_File", CN_File);
  rows.Set("CnVer", std::to_string(year));
  for (const auto& [column, version] : versions) rows.Set(column, version);
  rows.Update();
  transaction.Commit();
}

}  // namespace tariff
