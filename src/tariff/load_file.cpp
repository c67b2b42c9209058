#include "tariff/load_file.h"

#include <fmt/format.h>

#include "platform/clock.h"

namespace tariff {
namespace {

store::Value OrNull(const std::string& text) { return text.empty() ? store::Value() : store::Value(text); }

}  // namespace

std::string TariffFileName(int year) { return fmt::format("CN_{}.mdb", year); }

void WriteTariffFile(const store::Environment& environment, platform::Files& files, std::string_view path,
                     const store::layout::Database& layout, const Nomenclature& nomenclature, int year,
                     const std::function<void(int percent)>& go_on) {
  store::layout::Build(environment, files, path, layout, [&](store::Connection& connection) {
    store::layout::RowWriter sections(connection, "HS_1", {"HS1_COD", "HS1_DESC"});
    for (const auto& row : nomenclature.sections) sections.Add({row.code, row.text});
    store::layout::RowWriter chapters(connection, "HS_2", {"HS2_COD", "HS2_DESC", "HS1_COD"});
    for (const auto& row : nomenclature.chapters) chapters.Add({row.code, row.text, OrNull(row.parent)});
    store::layout::RowWriter headings(connection, "HS_4", {"HS4_COD", "HS4_DESC", "HS2_COD"});
    for (const auto& row : nomenclature.headings) headings.Add({row.code, row.text, row.parent});
    store::layout::RowWriter subheadings(connection, "HS_6", {"HS6_COD", "HS6_DESC", "HS4_COD"});
    for (const auto& row : nomenclature.subheadings) subheadings.Add({row.code, row.text, row.parent});
    store::layout::RowWriter goods(
        connection, "HS_8",
        {"HS8_COD", "HS12_COD", "DESCRIERE", "UM_SUPL", "AN_START", "DATE_START", "HS6_COD"});
    const store::Date start{platform::ToSerial({.year = year, .month = 1, .day = 1})};
    std::size_t written = 0;
    for (const auto& row : nomenclature.goods) {
      if (go_on && written % 256 == 0) go_on(static_cast<int>(written * 100 / nomenclature.goods.size()));
      ++written;
      goods.Add({row.code, row.code + "0000", row.text, OrNull(row.unit), year, start, row.parent});
    }
  });
}

}  // namespace tariff
