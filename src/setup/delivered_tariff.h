#pragma once

#include <string_view>
#include <vector>

#include "platform/files.h"
#include "tariff/load_nomenclature.h"

namespace setup {

/// Years for which the data folder brings the code list ("tarif\2026.txt").
std::vector<int> DeliveredTariffYears(const platform::Files& files, std::string_view data_folder);

/// The compact list of a year: sectiuni.csv, capitole.csv and lines "HHHH [unit]: NNNN NNNN …" of a heading
/// and the last four digits of its codes; "#" begins a comment. A code's text is its chapter's title. Throws
/// platform::FileError naming file and line.
tariff::Nomenclature ReadDeliveredTariff(const platform::Files& files, std::string_view data_folder,
                                         int year);

}  // namespace setup
