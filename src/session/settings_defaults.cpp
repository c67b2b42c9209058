// The default pass and the readers: which keys there are, what they start as and how they are read.
#include <cmath>
#include <cstdlib>

#include "platform/encoding.h"
#include "platform/paths.h"
#include "platform/registry.h"
#include "session/settings.h"

namespace session {
namespace {

struct Key {
  const char* name;
  KeyInfo info;
};

constexpr Key kKeys[] = {
    {"ValoareLocal", {kSectionRoot, true}},
    {"AppPath", {kSectionRoot, true}},
    {"Moneda", {kSectionRoot, true}},
    {"EvenRowStyle_BackColor", {kSectionCulori, false}},
    {"OddRowStyle_BackColor", {kSectionCulori, false}},
    {"HighlightRowStyle_BackColor", {kSectionCulori, false}},
    {"HighlightRowStyle_ForeColor", {kSectionCulori, false}},
    {"Meniu_Color", {kSectionCulori, false}},
    {"ZecRotLEI", {kSectionZecimale, false}},
    {"ZecRotValuta", {kSectionZecimale, false}},
    {"ZecRotCalcule", {kSectionZecimale, false}},
    {"NrZecTaxare", {kSectionZecimale, false}},
    {"UseFormat", {kSectionZecimale, false}},
    {"DataBase", {kSectionFileLocation, false}},
    {"System", {kSectionFileLocation, false}},
    {"ReportDefinitionPath", {kSectionFileLocation, false}},
    {"DirectorSalvare", {kSectionFileLocation, false}},
    {"UpdateCurs", {kSectionDiverse, false}},
    {"VerificaUpdate", {kSectionDiverse, false}},
    {"VerificaNet", {kSectionDiverse, false}},
    {"ValoriRotunjite", {kSectionDiverse, false}},
    {"www", {kSectionDiverse, false}},
};

constexpr char kWebAddress[] = "https://declarix.example/";
constexpr char kPublisherKey[] = "Software\\Morvane\\EU";

/// Where declarations go by default. Folders below the program files are preferred on purpose.
std::string DefaultSaveFolder(const platform::Files& files) {
  for (const char* folder :
       {"C:\\Program Files\\INTRASTAT\\declaratii\\", "C:\\Program Files (x86)\\INTRASTAT\\declaratii\\"}) {
    if (files.FolderExists(folder)) return folder;
  }
  return "C:\\Declarix\\System\\DeclaratiiXML\\";
}

/// A number written with a decimal point, blanks around it left out.
std::optional<double> Number(std::string_view text) {
  const std::string copy(platform::Trim(text));
  if (copy.empty() || copy.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;
  char* end = nullptr;
  const double value = std::strtod(copy.c_str(), &end);
  if (end != copy.c_str() + copy.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

// The conversions leave the field as it was where the text does not convert.

void ToBool(const std::string& text, bool& field) {
  if (text.empty() || text == " ") {
    field = false;
  } else if (const std::optional<double> value = Number(text)) {
    field = *value != 0;
  } else if (platform::EqualsNoCase(text, "true") || platform::EqualsNoCase(text, "false")) {
    field = platform::EqualsNoCase(text, "true");
  }
}

void ToByte(const std::string& text, std::uint8_t& field) {
  const std::optional<double> value = text.empty() ? std::optional<double>(0) : Number(text);
  if (!value) return;
  const double whole = std::nearbyint(*value);
  if (whole >= 0 && whole <= 255) field = static_cast<std::uint8_t>(whole);
}

void ToColour(const std::string& text, std::uint32_t& field) {
  const std::optional<double> value = text.empty() ? std::optional<double>(0) : Number(text);
  if (!value) return;
  const double whole = std::nearbyint(*value);
  // System colours are stored as negative numbers.
  if (whole >= -2147483648.0 && whole <= 4294967295.0) {
    field = static_cast<std::uint32_t>(static_cast<std::int64_t>(whole));
  }
}

}  // namespace

const KeyInfo* FindKey(std::string_view key) {
  for (const Key& known : kKeys) {
    if (known.name == key) return &known.info;
  }
  return nullptr;
}

void EnsureDefaultSettings(platform::Host& host, std::string_view file, std::string_view app_path,
                           Settings& settings) {
  const auto create = [&](const char* key, std::string_view value) {
    const KeyInfo& info = *FindKey(key);
    CreateSetting(host, file, info.section, key, value, info.forced);
  };
  create("ValoareLocal", "125");
  create("AppPath", app_path);
  create("Moneda", "EUR");
  settings.ValoareLocal = ReadSetting(host, file, kSectionRoot, "ValoareLocal");
  settings.Moneda = ReadSetting(host, file, kSectionRoot, "Moneda");
  settings.AppPath = app_path;
  create("EvenRowStyle_BackColor", "14737632");
  create("HighlightRowStyle_BackColor", "16711680");
  create("HighlightRowStyle_ForeColor", "16777215");
  create("OddRowStyle_BackColor", "12648447");
  create("Meniu_Color", "12648447");
  create("UpdateCurs", "1");
  create("VerificaUpdate", "1");
  create("VerificaNet", "0");
  create("www", kWebAddress);
  create("DataBase", "C:\\Declarix\\System\\DataBase\\");
  create("ReportDefinitionPath", "C:\\Declarix\\System\\ReportDefinition\\");
  create("System", "C:\\Declarix\\System\\");
  create("DirectorSalvare", DefaultSaveFolder(host.files));
  create("NrZecTaxare", "0");
  create("UseFormat", "1");
  create("ZecRotCalcule", "4");
  create("ZecRotLEI", "0");
  create("ZecRotValuta", "2");
}

void ReadColourSettings(platform::Host& host, std::string_view file, Settings& settings) {
  const auto read = [&](const char* key) { return ReadSetting(host, file, kSectionCulori, key); };
  ToColour(read("EvenRowStyle_BackColor"), settings.EvenRowStyle_BackColor);
  ToColour(read("OddRowStyle_BackColor"), settings.OddRowStyle_BackColor);
  ToColour(read("HighlightRowStyle_BackColor"), settings.HighlightRowStyle_BackColor);
  ToColour(read("HighlightRowStyle_ForeColor"), settings.HighlightRowStyle_ForeColor);
  ToColour(read("Meniu_Color"), settings.Meniu_Color);
}

void ReadDecimalSettings(platform::Host& host, std::string_view file, Settings& settings) {
  const auto read = [&](const char* key) { return ReadSetting(host, file, kSectionZecimale, key); };
  ToByte(read("ZecRotLEI"), settings.ZecRotLEI);
  ToByte(read("ZecRotValuta"), settings.ZecRotValuta);
  ToByte(read("ZecRotCalcule"), settings.ZecRotCalcule);
  ToByte(read("NrZecTaxare"), settings.NrZecTaxare);
  ToBool(read("UseFormat"), settings.UseFormat);
}

void ReadFileLocationSettings(platform::Host& host, std::string_view file, Settings& settings) {
  const auto read = [&](const char* key) {
    return platform::WithBackslash(ReadSetting(host, file, kSectionFileLocation, key));
  };
  settings.DataBase = read("DataBase");
  settings.System = read("System");
  settings.ReportDefinitionPath = read("ReportDefinitionPath");
  settings.DirectorSalvare = read("DirectorSalvare");
}

void ReadMiscSettings(platform::Host& host, std::string_view file, Settings& settings) {
  const auto read = [&](const char* key) { return ReadSetting(host, file, kSectionDiverse, key); };
  ToBool(read("UpdateCurs"), settings.UpdateCurs);
  ToBool(read("VerificaUpdate"), settings.VerificaUpdate);
  ToBool(read("VerificaNet"), settings.VerificaNet);
  ToBool(read("ValoriRotunjite"), settings.ValoriRotunjite);
  settings.www = read("www");
  if (settings.www.empty()) settings.www = kWebAddress;
}

Publisher ReadPublisherDetails(const platform::Host& host) {
  const auto read = [&](const char* name) {
    return platform::ReadRegistryText(host.files, kPublisherKey, name);
  };
  Publisher publisher;
  publisher.Nume = read("Nume");
  publisher.NumeFirma = read("NumeFirma");
  publisher.Telefon = read("Telefon");
  publisher.Fax = read("Fax");
  publisher.Email = read("Email");
  publisher.Adresa = read("Adresa");
  publisher.Localitate = read("Localitate");
  publisher.CodFiscal = read("CodFiscal");
  publisher.RegComert = read("RegComert");
  publisher.Banca = read("Banca");
  publisher.ContBanca = read("ContBanca");
  publisher.www = read("www");
  return publisher;
}

}  // namespace session
