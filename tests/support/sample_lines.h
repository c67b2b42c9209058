#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "session/session.h"
#include "store/value.h"
#include "support/installation.h"

namespace test_support {

using LineValues = std::vector<std::pair<std::string, store::Value>>;

/// A line of the open company that passes every check in 2026; `changes` replace its values. Arrivals are
/// laptops from China via Germany, dispatches the same to a customer in Italy. Answers its Record_ID.
std::int64_t AddLine(session::Session& session, const std::string& TIP, int Anul, int Luna,
                     const LineValues& changes = {});

/// Lets the delivered tariff of 2026 stand in for the one of another year.
void LendTariff(Installation& at, int year);

}  // namespace test_support
