#include <gtest/gtest.h>

#include "SokExtShared/LIB/records/typed_records.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"
#include "host/musicxml/score.h"
#include "tests/support/test_host.h"

namespace {

// A document made from a score of one measure with these <defaults>.
sok::Document DocumentOf(const std::string& defaults) {
  sok::ReadOptions options;
  options.document_data = true;
  return sok::Score::Read("<score-partwise>" + defaults +
                              "<part-list><score-part id=\"P1\"><part-name/></score-part></part-list>"
                              "<part id=\"P1\"><measure number=\"1\"/></part></score-partwise>",
                          "test", options)
      ->document();
}

// No record that a preference is made of is missing.
TEST(ScorePreferences, ServeEveryPreference) {
  TestHost host;
  host.document = DocumentOf("");
  unsigned char bytes[132];
  for (const PreferenceTable& table : kPreferenceTables) EXPECT_TRUE(sx_loadglobal(table.tag, 0, bytes, 108));
  for (const char* tag : {"GD", "GG", "Gb", "Gd", "Gs", "MM", "ND", "Nd", "PF", "SC", "SN", "SP", "Sl", "TC", "TI",
                          "TX", "Tp", "Ts", "LA"}) {
    const unsigned int first = static_cast<unsigned int>(tag[0]), second = static_cast<unsigned int>(tag[1]);
    EXPECT_TRUE(sx_loadglobal(0x70660000 | first << 8 | second, 1, bytes, tag[0] == 'L' ? 4 : 132)) << tag;
  }
  EXPECT_TRUE(host.CallsWith("-> 0").empty());
}

TEST(ScorePreferences, TakeThePageFromTheScore) {
  TestHost host;
  // 40 tenths are half an inch: 3.6 units a tenth.
  host.document = DocumentOf(
      "<defaults><scaling><millimeters>12.7</millimeters><tenths>40</tenths></scaling><page-layout>"
      "<page-height>100</page-height><page-width>1e9</page-width><page-margins "
      "type=\"odd\"><left-margin>10</left-margin>"
      "<right-margin>20</right-margin><top-margin>30</top-margin><bottom-margin>-40</bottom-margin></page-margins>"
      "</page-layout><system-layout><system-distance>50</system-distance></system-layout></defaults>");
  for (const int instance : {0, 1}) {  // the score's, the parts'
    short format[24] = {};
    EXPECT_TRUE(sx_loadglobal(FourCharacterTag("pfPF"), instance, format, sizeof format));
    EXPECT_EQ(std::vector(format, format + 20),
              (std::vector<short>{360, 0, 2381, 0, 100, 108, 36, -144, 72, 180, 0, 0, 0, 108, 36, -144, 72, 0, 0, 0}));
  }
}

}  // namespace
