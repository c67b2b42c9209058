#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tariff {

/// A level of the nomenclature, from sections down to the eight-digit codes.
struct Level {
  int number;            ///< 1 sections, 2 chapters, 4 headings, 6 subheadings, 8 codes
  std::string_view key;  ///< of its command in the menu and of its report
  std::string_view title;
  std::string_view query;     ///< the whole level, as the menu opens it
  std::string_view show_all;  ///< the whole level, as the browser shows it again: the upper two with notes
  std::string_view children;  ///< up to the parent's code; empty for the sections
  std::string_view order;     ///< of the children, closing quote included
  std::array<std::string_view, 5> headings;
  std::string_view link;  ///< caption of the way to the next level; empty for the last
};

// Also what the menu's entries open.
inline constexpr std::array<std::string_view, 5> kLevelHeadings = {"COD", "DESCRIERE"};

inline constexpr Level kLevels[] = {
    {1, "TARIF_SECTIUNI", "SECTIUNI -", "SELECT [HS1_COD], [HS1_DESC] FROM [HS_1] ORDER BY [HS1_COD]",
     "SELECT [HS1_COD], [HS1_DESC], [HS_1_NOTE] FROM [HS_1] ORDER BY [HS1_COD]", "", "", kLevelHeadings,
     "Legatura Capitole"},
    {2, "TARIF_CAPITOLE", "CAPITOLE -", "SELECT [HS2_COD], [HS2_DESC] FROM [HS_2] ORDER BY [HS2_COD]",
     "SELECT [HS2_COD], [HS2_DESC], [HS2_NOTE] FROM [HS_2] ORDER BY [HS2_COD]",
     "SELECT [HS2_COD], [HS2_DESC], [HS2_NOTE] FROM [HS_2] WHERE [HS1_COD]='", "' ORDER BY [HS2_COD]",
     kLevelHeadings, "Legatura Grupe"},
    {4, "TARIF_GRUPE", "GRUPE -", "SELECT [HS4_COD], [HS4_DESC] FROM [HS_4] ORDER BY [HS4_COD]",
     "SELECT [HS4_COD], [HS4_DESC] FROM [HS_4] ORDER BY [HS4_COD]",
     "SELECT [HS4_COD], [HS4_DESC] FROM [HS_4] WHERE [HS2_COD]='", "' ORDER BY [HS4_COD]", kLevelHeadings,
     "Legatura HS6"},
    {6, "TARIF_HS6", "HS 6 -", "SELECT [HS6_COD], [HS6_DESC] FROM [HS_6] ORDER BY [HS6_COD]",
     "SELECT [HS6_COD], [HS6_DESC] FROM [HS_6] ORDER BY [HS6_COD]",
     "SELECT [HS6_COD], [HS6_DESC] FROM [HS_6] WHERE [HS4_COD]='", "' ORDER BY [HS6_COD]", kLevelHeadings,
     "Legatura Cod vamal"},
    {8,
     "TARIF_CODVAMAL",
     "Cod Vamal -",
     "SELECT [HS8_COD],[HS12_COD], [DESCRIERE],[UM_SUPL], [AN_START] FROM [HS_8] WHERE [AN_END] IS NULL "
     "ORDER "
     "BY [HS12_COD]",
     "SELECT [HS8_COD],[HS12_COD], [DESCRIERE],[UM_SUPL], [AN_START] FROM [HS_8] WHERE [AN_END] IS NULL "
     "ORDER "
     "BY [HS12_COD]",
     "SELECT [HS8_COD],[HS12_COD], [DESCRIERE],[UM_SUPL], [AN_START] FROM [HS_8] WHERE HS6_COD ='",
     "' AND [AN_END] IS NULL ORDER BY [HS12_COD]",
     {"COD 8", "COD 12", "DESCRIERE", "UM SUPL", "AN"},
     ""},
};

/// Null where there is no such level.
const Level* FindLevel(int number);
const Level* NextLevel(const Level& level);
const Level* LevelAbove(const Level& level);

/// Statement that answers the code above one of a level's; empty at the sections.
std::string ParentStatement(const Level& level, std::string_view code);

/// Statement of the next level's rows below a code; empty at the last level.
std::string ChildrenStatement(const Level& level, std::string_view code);

}  // namespace tariff
