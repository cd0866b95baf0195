// The words of a score, read back by the kit's own helpers.
#include <gtest/gtest.h>

#include <random>

#include "SokExtShared/LIB/text/caret_commands.h"
#include "SokExtShared/LIB/text/instrument_names.h"
#include "SokExtShared/LIB/text/measure_texts.h"
#include "SokExtShared/LIB/text/page_texts.h"
#include "host/musicxml/records/texts.h"
#include "tests/support/test_host.h"
#include "tests/text/units.h"

namespace {

constexpr const char* kParts = R"xml(<part-list>
  <score-part id="P1"><part-name>Piano &amp;
Celesta</part-name><part-abbreviation font-style="italic">Pno.</part-abbreviation></score-part>
  <score-part id="P2"><part-name>Clarinet</part-name><part-name-display><display-text font-weight="bold">B</display-text>
    <accidental-text>flat</accidental-text><display-text font-weight="normal"> Clarinet^</display-text>
  </part-name-display></score-part></part-list>)xml";
constexpr const char* kCredits =
    R"xml(<credit page="2"><credit-words font-family="Times (New)" font-size="24">Title</credit-words>
  <credit-words font-size="12" underline="1">line</credit-words></credit><credit><credit-words>
  </credit-words></credit>)xml";
constexpr const char* kMusic =
    R"xml(<part id="P1"><measure><direction><direction-type><words>dolce</words></direction-type>
  <direction-type><words>cresc. ♭</words></direction-type><staff>2</staff></direction></measure></part>)xml";

class ScoreTexts : public testing::Test {
 protected:
  void Read(const std::string& body) {
    ASSERT_TRUE(xml.load_string(("<score-partwise>" + body + "</score-partwise>").c_str()));
    host.AddScore(3, 1);
    const std::vector<sok::Staff> staves = {
        {"P1", "", "", 0, 1, 2, 1}, {"P1", "", "", 0, 2, 2, 2}, {"P2", "", "", 1, 1, 1, 3}};
    const std::vector<sok::Measure> measures(1);
    const pugi::xml_node root = xml.document_element();
    const sok::ReaderContext context{root, host.document, staves, measures};
    sok::AddTexts(context);
    sok::AddMeasureTexts(context, root.child("part").child("measure"), 0, 1);
  }
  TestHost host;
  pugi::xml_document xml;
};

TEST_F(ScoreTexts, NamesCreditsAndWordsReachTheKit) {
  Read(kParts + std::string(kCredits) + kMusic);
  EXPECT_EQ(Text(sx_getinstname_utf16(2)), u"Piano & Celesta");
  EXPECT_EQ(Text(sx_getabbrevinstname_utf16(1)), u"Pno.");
  EXPECT_EQ(uicaretefx, kCaretItalic);
  EXPECT_EQ(Text(sx_getabbrevinstname_utf16(3)), u"Bb Clarinet\u02C6");
  EXPECT_EQ(uicaretefx, kCaretBold);

  TPageUText page;
  ASSERT_TRUE(sx_loadpagetext(2, page, 0));
  EXPECT_EQ(Text(page.text), u"^font(Times (New)^size(24)Title^size(12)^efx(underline)line");
  EXPECT_FALSE(sx_loadpagetext(1, page, 0));  // blank

  TMeasureUText words;
  ASSERT_TRUE(sx_loadmeasuretext(2, 1, words, 0));
  EXPECT_EQ(Text(words.text), u"dolce");
  ASSERT_TRUE(sx_loadmeasuretext(2, 1, words, 1));
  EXPECT_EQ(Text(words.text), u"cresc. ^flat()");
}

// The workbench reads caret commands as the kit does, wherever a command holds no further parenthesis.
TEST(WithoutCommands, AgreesWithTheKit) {
  static constexpr std::string_view kPieces[] = {"^flat()", "^sharp(x)", "^font(a b)",          "^", ")", "^flat)",
                                                 "\n\r",    "x",         "a run of plain units"};
  std::mt19937 random(6);
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    for (auto i = random() % 9; i > 0; --i) text += kPieces[random() % std::size(kPieces)];
    auto units = Units(std::u16string(text.begin(), text.end()));
    txt_strip_carets(units.data());
    const std::string plain = sok::WithoutCommands(text);
    ASSERT_EQ(std::u16string(plain.begin(), plain.end()), Text(units.data())) << text;
  }
}

}  // namespace
