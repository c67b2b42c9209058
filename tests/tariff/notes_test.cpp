#include "tariff/notes.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "support/test_host.h"
#include "tariff/rtf_html.h"

namespace {

using tariff::ExplanatoryNotes;
using tariff::Paper;
using tariff::RtfToHtml;

constexpr char kPath[] = "C:\\Note.xml";
constexpr char kHead[] =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033\deflangfe1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})"
    R"({\colortbl ;\red0\green0\blue255;\red0\green0\blue0;\red255\green0\blue0;})"
    R"({\*\generator Msftedit 5.41.21.2509;}\viewkind4\uc1\pard)";

std::string Html(const ExplanatoryNotes& notes, std::string_view code, Paper paper = Paper::kLight) {
  return RtfToHtml(notes.Rtf(code), paper);
}

TEST(ExplanatoryNotes, ItemsOfTheKeysThatBeginWithTheCode) {
  test_support::TestHost machine;
  machine.files.CreateFolders("C:\\");
  machine.files.Replace(kPath,
                        R"(<CNSTEXT><SECTION><CHAPTER>
<SEITEM KEY="010121000010"><CN>Cai de
     rasa</CN><DM>Vii &amp; {sanatosi}</DM><DM>cu act</DM></SEITEM>
<SEITEM KEY="010121000020"><DM>Țap 𝄞</DM></SEITEM>
<SEITEM KEY="020101210000"><CN>Alt cod</CN></SEITEM></CHAPTER></SECTION></CNSTEXT>)");
  ExplanatoryNotes notes;
  ASSERT_TRUE(notes.Load(machine.host(), kPath));
  EXPECT_EQ(notes.Rtf("010121000010"),
            fmt::format("{}{}", kHead,
                        R"(\cf1\b\f0\fs16 010121000010\par \pard\li568\cf3\b Cai de rasa - \cf2\b Vii & )"
                        R"(\{sanatosi\} \b0 - \cf2\b cu act \b0 \par \fs24\par})"));
  const std::string both = notes.Rtf("0101");
  EXPECT_NE(both.find(R"(\fs16 010121000020\par \pard\li568\cf2\b \u538?ap \u-10188?\u-8930? \b0 \par )"),
            std::string::npos)
      << both;
  EXPECT_EQ(both.find("Alt cod"), std::string::npos);
  EXPECT_EQ(notes.Rtf("99"), "");
  EXPECT_EQ(notes.Rtf(""), "");
  EXPECT_EQ(notes.Rtf("0101'"), "");

  EXPECT_EQ(
      Html(notes, "010121000010"),
      R"(<p style="margin-left:0px"><span style="color:#0000ff;font-weight:bold;">010121000010</span></p>)"
      R"(<p style="margin-left:37px"><span style="color:#ff0000;font-weight:bold;">Cai de rasa - </span>)"
      R"(<span style="font-weight:bold;">Vii &amp; {sanatosi} </span><span style="">- </span>)"
      R"(<span style="font-weight:bold;">cu act </span></p>)");
  EXPECT_NE(Html(notes, "010121000020").find("&#538;ap &#119070;"), std::string::npos);
  EXPECT_EQ(Html(notes, "010121000010", Paper::kDark).find("#0000ff"), std::string::npos);
}

TEST(ExplanatoryNotes, AMissingOrBrokenFileHasNone) {
  test_support::TestHost machine;
  ExplanatoryNotes notes;
  EXPECT_FALSE(notes.Load(machine.host(), kPath));
  EXPECT_EQ(notes.Rtf("0101"), "");
  machine.files.CreateFolders("C:\\");
  machine.files.Replace(kPath, "<CNSTEXT><SECTION>");
  EXPECT_FALSE(notes.Load(machine.host(), kPath));
  EXPECT_EQ(notes.Rtf("0101"), "");
}

TEST(RtfToHtml, SurvivesAnyText) {
  for (const char* text : {"", "}}}", "\\", "{\\*\\x", "\\u", "\\u-", "\\cf99 x", "{\\colortbl ;;", "\\b0"}) {
    RtfToHtml(text, Paper::kLight);
  }
  EXPECT_EQ(RtfToHtml("a<b", Paper::kLight),
            "<p style=\"margin-left:0px\"><span style=\"\">a&lt;b</span></p>");
}

}  // namespace
