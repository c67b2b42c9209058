#include "session/settings.h"

#include <gtest/gtest.h>

#include "platform/encoding.h"
#include "support/test_host.h"

namespace session {
namespace {

using namespace std::string_literals;

constexpr char kFile[] = "C:\\ProgramData\\Declarix\\Settings.xml";
constexpr char kBare[] =
    "<?xml version=\"1.0\" encoding=\"windows-1250\"?>\r\n"
    "<!-- nu stergeti & -->\r\n"
    "<Settings>\r\n"
    "  <Declarix>\r\n"
    "    <Setari>\r\n"
    "\t\t<Culori><Meniu_Color  >16</Meniu_Color></Culori>\r\n"
    "      <Zecimale/>\r\n"
    "      <FileLocation>\n\t<System>D:\\Lucru &amp; &#68;ate</System><DataBase a='>'/></FileLocation>\r\n"
    "      <Diverse><VerificaNet><![CDATA[-1]]></VerificaNet>"
    "<ValoriRotunjite>da</ValoriRotunjite></Diverse>\r\n"
    "    </Setari>\r\n"
    "  </Declarix>\r\n"
    "</Settings>\r\n"
    "<?x y?>";

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() {
    test_.files.CreateFolders("C:\\ProgramData\\Declarix");
    Write(kBare);
  }
  void Write(const std::string& content) { test_.files.Replace(kFile, content); }
  std::string Content() { return test_.files.Read(kFile); }
  std::string Read(const char* section, const char* key) { return ReadSetting(host_, kFile, section, key); }
  /// The bare file with one place replaced.
  static std::string With(const std::string& what, const std::string& with) {
    std::string text = kBare;
    return text.replace(text.find(what), what.size(), with);
  }

  test_support::TestHost test_;
  platform::Host host_ = test_.host();
};

TEST_F(SettingsTest, ReadsTextWithReferencesAndSections) {
  EXPECT_EQ(Read(kSectionFileLocation, "System"), "D:\\Lucru & Date");
  EXPECT_EQ(Read("/Settings/Declarix/Setari/Culori/", "Meniu_Color"), "16");
  EXPECT_EQ(Read(kSectionDiverse, "VerificaNet"), "-1");
  EXPECT_EQ(Read(kSectionFileLocation, "DataBase"), "");
  EXPECT_EQ(Read(kSectionZecimale, "ZecRotLEI"), "");
  EXPECT_EQ(Read(kSectionZecimale, "not a [path"), "");
}

TEST_F(SettingsTest, UpdateChangesJustTheValue) {
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionCulori, "Meniu_Color", "255", false));
  EXPECT_EQ(Content(), With("  >16<", "  >255<"));
  Write(kBare);
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionFileLocation, "System", "C:\\A&B <x>\\", false));
  EXPECT_EQ(Content(), With("D:\\Lucru &amp; &#68;ate", "C:\\A&amp;B &lt;x&gt;\\"));
  EXPECT_EQ(Read(kSectionFileLocation, "System"), "C:\\A&B <x>\\");
  Write(kBare);
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionFileLocation, "DataBase", "C:\\", true));
  EXPECT_EQ(Content(), With("<DataBase a='>'/>", "<DataBase a='>'>C:\\</DataBase>"));
  Write(kBare);
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionDiverse, "VerificaNet", "", false));
  EXPECT_EQ(Content(), With("<![CDATA[-1]]>", ""));
}

TEST_F(SettingsTest, ANewKeyIsTheSectionsLastChildFollowedByWhiteSpace) {
  EXPECT_TRUE(CreateSetting(host_, kFile, kSectionDiverse, "www", "x", false));
  EXPECT_EQ(Content(), With("</Diverse>", "<www>x</www>\r\n \t\t\t</Diverse>"));
  Write(kBare);
  EXPECT_TRUE(CreateSetting(host_, kFile, "/Settings/Declarix/Setari/Zecimale/", "ZecRotLEI", "2", false));
  EXPECT_EQ(Content(), With("<Zecimale/>", "<Zecimale><ZecRotLEI>2</ZecRotLEI>\r\n \t\t\t</Zecimale>"));
  Write(kBare);
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionRoot, "Moneda", "EUR", true));
  EXPECT_EQ(Content(), With("</Declarix>", "<Moneda>EUR</Moneda>\r\n \t</Declarix>"));
  Write(kBare);
  EXPECT_TRUE(CreateSetting(host_, kFile, "/Settings", "K", "", false));
  EXPECT_EQ(Content(), With("</Settings>", "<K></K>\r\n </Settings>"));
}

TEST_F(SettingsTest, ExistingKeysAreUpdatedOnlyWhenAsked) {
  EXPECT_FALSE(CreateSetting(host_, kFile, kSectionCulori, "Meniu_Color", "9", false));
  EXPECT_FALSE(UpdateSetting(host_, kFile, kSectionCulori, "OddRowStyle_BackColor", "9", false));
  EXPECT_EQ(Content(), kBare);
  EXPECT_TRUE(CreateSetting(host_, kFile, kSectionCulori, "Meniu_Color", "9", true));
  EXPECT_EQ(Read(kSectionCulori, "Meniu_Color"), "9");
}

TEST_F(SettingsTest, ValuesTakeTheFilesEncoding) {
  const std::string value = "Z:\\Țară € 日";
  EXPECT_TRUE(UpdateSetting(host_, kFile, kSectionCulori, "Meniu_Color", value, false));
  EXPECT_EQ(Content(), With(">16<",
                            ">Z:\\\xDE"
                            "ar\xE3 \x80 &#26085;<"));
  EXPECT_EQ(Read(kSectionCulori, "Meniu_Color"), value);

  const std::string utf8 = "\xEF\xBB\xBF<Settings><S><K/></S></Settings>";
  for (const std::string& file : {utf8, "\xFF\xFE"s + platform::ToCodePage(utf8.substr(3), 1200)}) {
    Write(file);
    EXPECT_TRUE(UpdateSetting(host_, kFile, "/Settings/S", "K", value, false));
    EXPECT_EQ(Read("/Settings/S", "K"), value);
    EXPECT_TRUE(UpdateSetting(host_, kFile, "/Settings/S", "K", "", false));
    EXPECT_EQ(Content().size(), file.size() + (file == utf8 ? 3 : 6));  // <K></K> for <K/>
    EXPECT_EQ(Content().substr(0, 2), file.substr(0, 2));
  }
}

TEST_F(SettingsTest, FailuresAreShownAndLeaveTheFile) {
  test_.prompter.ExpectError("Eroare la creare setari: /Settings/Declarix/LipsaCheieValoare");
  test_.prompter.ExpectStarting("Lipseste elementul ", "EROARE", platform::Icon::kCritical);
  EXPECT_FALSE(CreateSetting(host_, kFile, "/Settings/Declarix/Lipsa/", "Cheie", "Valoare", false));
  test_.prompter.ExpectError("Eroare la creare setari: /Settings/Declarixnu e nume1");
  test_.prompter.ExpectError("numele nu este valid");
  EXPECT_FALSE(CreateSetting(host_, kFile, kSectionRoot, "nu e nume", "1", false));
  test_.files.refuses = [](std::string_view) { return true; };
  test_.prompter.ExpectError("Eroare la actualizare setari: /Settings/Declarix/Setari/Culori/Meniu_Color7");
  test_.prompter.ExpectError(
      "Nu se poate scrie fisierul : C:\\ProgramData\\Declarix\\Settings.xml (nu mai este loc pe disc)");
  EXPECT_FALSE(UpdateSetting(host_, kFile, kSectionCulori, "Meniu_Color", "7", false));
  EXPECT_EQ(Content(), kBare);
}

TEST_F(SettingsTest, AFileThatDoesNotParseIsNamedWithItsPlace) {
  const std::string start = "Fisierul de setari C:\\ProgramData\\Declarix\\Settings.xml nu poate fi citit: ";
  const struct {
    std::string content, reason;
  } kCases[] = {
      {"<Settings>\n<Declarix>\n</Settings>",
       "sfarsitul elementului nu corespunde inceputului (linia 3, coloana 3)"},
      {"", "fisierul nu are element radacina (linia 1, coloana 1)"},
      {"<S><K>a & b</K></S>", "semnul & nu incepe o entitate cunoscuta (linia 1, coloana 9)"},
      {"<S/><S/>", "fisierul are mai multe elemente radacina (linia 1, coloana 6)"},
      {"<S>\xC8</S>", "contine caractere care nu sunt UTF-8"},
      {"<?xml version='1.0' encoding='x-user'?><S/>", "codificare necunoscuta : x-user"},
  };
  for (const auto& bad : kCases) {
    Write(bad.content);
    test_.prompter.ExpectError(start + bad.reason);
    EXPECT_EQ(Read(kSectionRoot, "Moneda"), "");
    test_.prompter.ExpectError(start + bad.reason);
    EXPECT_FALSE(UpdateSetting(host_, kFile, kSectionRoot, "Moneda", "EUR", true));
    test_.prompter.ExpectError(start + bad.reason);
    EXPECT_FALSE(CreateSetting(host_, kFile, kSectionRoot, "Moneda", "EUR", true));
    EXPECT_EQ(Content(), bad.content);
  }
}

TEST_F(SettingsTest, TheDefaultPassForcesThreeKeysAndLeavesTheUsersValues) {
  Settings settings;
  EnsureDefaultSettings(host_, kFile, "C:\\Program", settings);
  EXPECT_EQ(settings.ValoareLocal, "125");
  EXPECT_EQ(settings.Moneda, "EUR");
  const std::string completed = Content();
  EnsureDefaultSettings(host_, kFile, "C:\\Program", settings);
  EXPECT_EQ(Content(), completed);

  UpdateSetting(host_, kFile, kSectionRoot, "Moneda", "USD", false);
  UpdateSetting(host_, kFile, kSectionDiverse, "UpdateCurs", "0", false);
  EnsureDefaultSettings(host_, kFile, "C:\\Program", settings);
  EXPECT_EQ(Read(kSectionRoot, "Moneda"), "EUR");
  EXPECT_EQ(Read(kSectionRoot, "AppPath"), "C:\\Program");
  EXPECT_EQ(Read(kSectionDiverse, "UpdateCurs"), "0");
  EXPECT_EQ(Read(kSectionCulori, "Meniu_Color"), "16");
  EXPECT_EQ(Read(kSectionFileLocation, "DirectorSalvare"), "C:\\Declarix\\System\\DeclaratiiXML\\");
  // Document order of the section's own keys follows the pass.
  EXPECT_LT(completed.find("<NrZecTaxare>"), completed.find("<UseFormat>"));
  EXPECT_LT(completed.find("<ZecRotLEI>"), completed.find("<ZecRotValuta>"));
}

TEST_F(SettingsTest, TheSaveFolderPrefersProgramFiles) {
  Settings settings;
  test_.files.CreateFolders("C:\\Program Files (x86)\\INTRASTAT\\declaratii");
  EnsureDefaultSettings(host_, kFile, "C:\\P", settings);
  EXPECT_EQ(Read(kSectionFileLocation, "DirectorSalvare"),
            "C:\\Program Files (x86)\\INTRASTAT\\declaratii\\");
  Write(kBare);
  test_.files.CreateFolders("C:\\Program Files\\INTRASTAT\\declaratii");
  EnsureDefaultSettings(host_, kFile, "C:\\P", settings);
  EXPECT_EQ(Read(kSectionFileLocation, "DirectorSalvare"), "C:\\Program Files\\INTRASTAT\\declaratii\\");
}

TEST_F(SettingsTest, ReadersConvertOrLeaveTheField) {
  Settings settings;
  EnsureDefaultSettings(host_, kFile, "C:\\P", settings);
  UpdateSetting(host_, kFile, kSectionZecimale, "ZecRotValuta", "256", false);
  UpdateSetting(host_, kFile, kSectionZecimale, "ZecRotCalcule", "patru", false);
  UpdateSetting(host_, kFile, kSectionCulori, "OddRowStyle_BackColor", "-2147483643", false);
  UpdateSetting(host_, kFile, kSectionFileLocation, "DirectorSalvare", "", false);
  settings.ZecRotValuta = 7;
  settings.ZecRotCalcule = 8;
  settings.ValoriRotunjite = true;
  ReadColourSettings(host_, kFile, settings);
  ReadDecimalSettings(host_, kFile, settings);
  ReadFileLocationSettings(host_, kFile, settings);
  ReadMiscSettings(host_, kFile, settings);
  EXPECT_EQ(settings.ZecRotValuta, 7);
  EXPECT_EQ(settings.ZecRotCalcule, 8);
  EXPECT_TRUE(settings.UseFormat);
  EXPECT_EQ(settings.OddRowStyle_BackColor, 0x80000005u);
  EXPECT_EQ(settings.EvenRowStyle_BackColor, 14737632u);
  EXPECT_EQ(settings.System, "D:\\Lucru & Date\\");
  EXPECT_EQ(settings.DirectorSalvare, "\\");
  EXPECT_TRUE(settings.VerificaNet);
  EXPECT_TRUE(settings.ValoriRotunjite);  // "da" converts to nothing
  Write(With("<ValoriRotunjite>da</ValoriRotunjite>", ""));
  ReadMiscSettings(host_, kFile, settings);
  EXPECT_FALSE(settings.ValoriRotunjite);
  EXPECT_EQ(settings.www, "https://declarix.example/");
}

TEST_F(SettingsTest, PublisherComesFromTheRegistryFile) {
  EXPECT_EQ(ReadPublisherDetails(host_).NumeFirma, "");
  test_.files.Replace(test_.drives.FromHost(test_.folder.path() / "registry.ini"),
                      "[Altceva]\r\nEmail=x\r\n[software\\morvane\\EU]\r\nEmail = office@editor.example\r\n"
                      ";Telefon=1\r\nNumeFirma=A=B\r\n");
  const Publisher publisher = ReadPublisherDetails(host_);
  EXPECT_EQ(publisher.Email, "office@editor.example");
  EXPECT_EQ(publisher.NumeFirma, "A=B");
  EXPECT_EQ(publisher.Telefon, "");
}

}  // namespace
}  // namespace session
