#include "setup/delivered_tariff.h"

#include <fmt/format.h>

#include <cstdlib>
#include <map>

#include "platform/encoding.h"
#include "store/layout/csv.h"

namespace setup {
namespace {

bool AreDigits(std::string_view text, std::size_t count) {
  return text.size() == count && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Reads the list's lines into code -> unit, in code order whatever the lines' order.
std::map<std::string, std::string> ReadCodes(const platform::Files& files, const std::string& path) {
  std::map<std::string, std::string> codes;
  int number = 0;
  const std::string content = files.Read(path);
  for (const std::string& line : platform::SplitLines(content)) {
    ++number;
    const std::string_view text = platform::Trim(line);
    if (text.empty() || text.front() == '#') continue;
    const std::size_t colon = text.find(':');
    const std::string_view heading = text.substr(0, 4);
    if (colon == std::string_view::npos || !AreDigits(heading, 4)) {
      store::layout::FailAtLine(path, number, "nu are forma HHHH [unitate]: NNNN ...");
    }
    const std::string unit(platform::Trim(text.substr(4, colon - 4)));
    std::string_view rest = platform::Trim(text.substr(colon + 1));
    while (!rest.empty()) {
      const std::string_view last = rest.substr(0, rest.find(' '));
      const std::string code = std::string(heading) + std::string(last);
      if (!AreDigits(last, 4) || !codes.emplace(code, unit).second) {
        store::layout::FailAtLine(path, number, fmt::format("cod gresit sau repetat: {}", last));
      }
      rest = platform::Trim(rest.substr(last.size()));
    }
  }
  return codes;
}

}  // namespace

std::vector<int> DeliveredTariffYears(const platform::Files& files, std::string_view data_folder) {
  std::vector<int> years;
  for (const std::string& name : files.List(fmt::format("{}tarif\\", data_folder))) {
    if (name.ends_with(".txt") && AreDigits(std::string_view(name).substr(0, name.size() - 4), 4)) {
      years.push_back(std::atoi(name.c_str()));
    }
  }
  return years;
}

tariff::Nomenclature ReadDeliveredTariff(const platform::Files& files, std::string_view data_folder,
                                         int year) {
  const std::string folder = fmt::format("{}tarif\\", data_folder);
  tariff::Nomenclature nomenclature;
  nomenclature.version = std::to_string(year);
  const store::layout::Csv sections = store::layout::ReadCsv(files, folder + "sectiuni.csv");
  for (const auto& row : sections.rows) {
    nomenclature.sections.push_back({row[sections.Column("HS1_COD")], row[sections.Column("HS1_DESC")], ""});
  }
  const store::layout::Csv chapters = store::layout::ReadCsv(files, folder + "capitole.csv");
  std::map<std::string, std::string> titles;
  for (const auto& row : chapters.rows) {
    nomenclature.chapters.push_back(
        {row[chapters.Column("HS2_COD")], row[chapters.Column("HS2_DESC")], row[chapters.Column("HS1_COD")]});
    titles[nomenclature.chapters.back().code] = nomenclature.chapters.back().text;
  }
  const std::string list = fmt::format("{}{}.txt", folder, year);
  for (const auto& [code, unit] : ReadCodes(files, list)) {
    const auto title = titles.find(code.substr(0, 2));
    if (title == titles.end()) {
      throw platform::FileError(list, fmt::format("Fisierul : {}: codul {} nu are capitol", list, code));
    }
    nomenclature.AddParents(code, title->second, title->second);
    nomenclature.goods.push_back({code, title->second, unit, code.substr(0, 6)});
  }
  return nomenclature;
}

}  // namespace setup
