#include <cmath>
#include <new>

#include "store/functions_call.h"

namespace store::functions {

namespace {

// FIRST and LAST take the value of a row, Null included; the state holds SQLite's own copy of it.
struct Kept {
  bool seen;
  sqlite3_value* value;
};

void Keep(Kept* kept, sqlite3_value* value) {
  sqlite3_value_free(kept->value);
  kept->value = sqlite3_value_dup(value);
  kept->seen = true;
}

Kept* KeptState(sqlite3_context* context) {
  return static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));  // zeroed by SQLite
}

void FirstStep(sqlite3_context* context, int, sqlite3_value** values) {
  Kept* kept = KeptState(context);
  if (kept != nullptr && !kept->seen) Keep(kept, values[0]);
}

void LastStep(sqlite3_context* context, int, sqlite3_value** values) {
  if (Kept* kept = KeptState(context)) Keep(kept, values[0]);
}

/// The value of a sub-query that may give one row only.
void OnlyStep(sqlite3_context* context, int, sqlite3_value** values) {
  Kept* kept = KeptState(context);
  if (kept == nullptr) return;
  if (kept->seen) {
    return LeaveError(context, {kIntegrity, "Subinterogarea poate returna cel mult o inregistrare"});
  }
  Keep(kept, values[0]);
}

void KeptFinal(sqlite3_context* context) {
  Kept* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
  if (kept == nullptr || kept->value == nullptr) return sqlite3_result_null(context);
  sqlite3_result_value(context, kept->value);
  sqlite3_value_free(kept->value);
  kept->value = nullptr;
}

/// Mean and sum of squared deviations, updated row by row (Welford), so that large values lose nothing.
struct Spread {
  std::int64_t count;
  double mean, squares;
};

void SpreadStep(sqlite3_context* context, int, sqlite3_value** values) {
  if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, sizeof(Spread)));
  if (spread == nullptr) return;
  try {
    double number = ReadNumber(values[0]);
    ++spread->count;
    double delta = number - spread->mean;
    spread->mean += delta / static_cast<double>(spread->count);
    spread->squares += delta * (number - spread->mean);
  } catch (const Failure& failure) {
    LeaveError(context, failure);
  }
}

template <int sample, bool root>
void SpreadFinal(sqlite3_context* context) {
  auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, 0));
  if (spread == nullptr || spread->count <= sample) return sqlite3_result_null(context);
  double variance = spread->squares / static_cast<double>(spread->count - sample);
  sqlite3_result_double(context, root ? std::sqrt(variance) : variance);
}

}  // namespace

void RegisterAggregates(sqlite3* db) {
  struct Aggregate {
    const char* name;
    void (*step)(sqlite3_context*, int, sqlite3_value**);
    void (*final)(sqlite3_context*);
  };
  static constexpr Aggregate kAggregates[] = {
      {"dx_first", FirstStep, KeptFinal},
      {"dx_last", LastStep, KeptFinal},
      {"dx_only", OnlyStep, KeptFinal},
      {"dx_stdev", SpreadStep, SpreadFinal<1, true>},
      {"dx_stdevp", SpreadStep, SpreadFinal<0, true>},
      {"dx_var", SpreadStep, SpreadFinal<1, false>},
      {"dx_varp", SpreadStep, SpreadFinal<0, false>},
  };
  for (const Aggregate& aggregate : kAggregates) {
    sqlite3_create_function_v2(db, aggregate.name, 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                               nullptr, nullptr, aggregate.step, aggregate.final, nullptr);
  }
}

}  // namespace store::functions
