#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/host.h"

namespace session {

/// The settings record: one field per key of Settings.xml, named as the key. Folders always end in "\".
struct Settings {
  std::string ValoareLocal, AppPath, Moneda;
  std::uint32_t EvenRowStyle_BackColor = 0, OddRowStyle_BackColor = 0, HighlightRowStyle_BackColor = 0,
                HighlightRowStyle_ForeColor = 0, Meniu_Color = 0;  ///< 0x00BBGGRR
  std::uint8_t ZecRotLEI = 0, ZecRotValuta = 0, ZecRotCalcule = 0, NrZecTaxare = 0;
  bool UseFormat = false;
  std::string DataBase, System, ReportDefinitionPath, DirectorSalvare;
  bool UpdateCurs = false, VerificaUpdate = false, VerificaNet = false, ValoriRotunjite = false;
  std::string www;
};

/// "C:\ProgramData\Declarix\Settings.xml".
std::string SettingsPath();

// Section paths in the settings file.
inline constexpr char kSectionRoot[] = "/Settings/Declarix";
inline constexpr char kSectionCulori[] = "/Settings/Declarix/Setari/Culori";
inline constexpr char kSectionZecimale[] = "/Settings/Declarix/Setari/Zecimale";
inline constexpr char kSectionFileLocation[] = "/Settings/Declarix/Setari/FileLocation";
inline constexpr char kSectionDiverse[] = "/Settings/Declarix/Setari/Diverse";

/// The three primitives. Each opens and parses the whole file anew and writes it back with every byte it does
/// not touch left as it was (white space, CR LF, declaration, encoding).
std::string ReadSetting(platform::Host& host, std::string_view file, std::string_view section,
                        std::string_view key);
bool UpdateSetting(platform::Host& host, std::string_view file, std::string_view section,
                   std::string_view key, std::string_view value, bool create_if_missing);
bool CreateSetting(platform::Host& host, std::string_view file, std::string_view section,
                   std::string_view key, std::string_view value, bool update_if_exists);

/// The default pass: creates missing keys in a fixed order and rewrites the three forced ones. `app_path` is
/// the folder of the running executable, as a Windows path.
void EnsureDefaultSettings(platform::Host& host, std::string_view file, std::string_view app_path,
                           Settings& settings);
void ReadColourSettings(platform::Host& host, std::string_view file, Settings& settings);
void ReadDecimalSettings(platform::Host& host, std::string_view file, Settings& settings);
void ReadFileLocationSettings(platform::Host& host, std::string_view file, Settings& settings);
void ReadMiscSettings(platform::Host& host, std::string_view file, Settings& settings);

/// The publisher's contact values from the registry key "Software\Morvane\EU" (off Windows: the section of
/// that name of "registry.ini" in the drives folder). A missing value is empty.
struct Publisher {
  std::string Nume, NumeFirma, Telefon, Fax, Email, Adresa, Localitate, CodFiscal, RegComert, Banca,
      ContBanca, www;
};
Publisher ReadPublisherDetails(const platform::Host& host);

/// Where a key lives: its section path, whether the default pass forces it; null for an unknown key (names
/// exact).
struct KeyInfo {
  const char* section;
  bool forced;
};
const KeyInfo* FindKey(std::string_view key);

}  // namespace session
