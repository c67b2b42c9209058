#pragma once

#include <functional>
#include <string_view>

#include "platform/files.h"
#include "store/connection.h"
#include "store/layout/layout.h"
#include "tariff/load_nomenclature.h"

namespace tariff {

/// File name of a year's tariff: "CN_2026.mdb".
std::string TariffFileName(int year);

/// Writes a tariff file (tables HS_1 to HS_8, stored query HS8) as a whole, over an existing one. Every goods
/// code becomes one row, valid from 1 January of `year`, with the national subdivision "0000". `go_on` is
/// told the percents written; where it throws, what was there stays.
void WriteTariffFile(const store::Environment& environment, platform::Files& files, std::string_view path,
                     const store::layout::Database& layout, const Nomenclature& nomenclature, int year,
                     const std::function<void(int percent)>& go_on = {});

}  // namespace tariff
