#pragma once

#include "desk.h"

namespace screenshots {

/// The recalculation, transport and net mass screens.
std::vector<Shot> CalculationShots();

}  // namespace screenshots
