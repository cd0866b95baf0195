#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/LIB/text/instrument_names.h"
#include "SokExtShared/LIB/text/measure_texts.h"
#include "SokExtShared/LIB/text/page_texts.h"
#include "SokExtShared/LIB/text/text_blocks.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "tests/support/test_host.h"
#include "tests/text/units.h"

namespace {

using record_calls::OtherKey;
using Calls = std::vector<std::string>;
constexpr short kOrdinary = EDTTextBlock2004::kOrdinaryKind;

class TextRecords : public testing::Test {
 protected:
  // A text block and its raw text, stored past the helpers under test.
  void AddBlock(unsigned short number, std::u16string_view text, short kind = kOrdinary, short told = kOrdinary) {
    AddRaw(number, record_tags::kRawTexts | static_cast<unsigned>(kind), Units(text));
    const EDTTextBlock2004 block{static_cast<short>(number), {1, 2, 3}, told};
    host.document.records.Save(record_tags::kTextBlock, OtherKey(number, 0), &block, sizeof block);
  }
  void AddRaw(unsigned short number, unsigned tag, const std::vector<unsigned short>& units) {
    host.document.records.Save(tag, OtherKey(number, 0), units.data(), static_cast<int>(units.size() * 2));
  }
  // Every call about `word` fails, after the host has scribbled into the buffer.
  void Spoil(const std::string& word) {
    host.after = [word](sok::HostCall& call) {
      if (call.arguments.find(word) == std::string::npos) return;
      if (call.buffer != nullptr && call.size != nullptr)
        std::memset(call.buffer, 'x', static_cast<std::size_t>(*call.size));
      call.result = 0;
    };
  }

  TestHost host;
};

// Numbers come back although the host reports failure, and the block is stored although its text was not.
TEST_F(TextRecords, BlocksAreCreatedThenSavedOver) {
  EDTTextBlock2004 block{-1, {9}, 0};
  short number = -1;
  EXPECT_TRUE(sx_puttextblock2004(number, block, Units(u"abc").data()));
  EXPECT_TRUE(sx_puttextblock2004(number, block, Units(u"de").data()));
  EXPECT_EQ(host.calls, (Calls{"SX_CreateEData txbl 65535,0 8 -> 1", "SX_CreateEData SOTX 65535,0 26 -> 1",
                               "SX_SaveEData txbl 1,0 6 -> 1", "SX_SaveEData SOTX 1,0 26 -> 1"}));
  EXPECT_TRUE(number == 1 && block.textID == 1 && block.textTag == kOrdinary);
  EDTTextBlock2004 read;
  EXPECT_EQ(Text(sx_gettextblock2004_utf16(number, false, &read)), u"de");
  EXPECT_EQ(std::memcmp(&read, &block, sizeof read), 0);

  Spoil("txbl");
  number = block.textID = -1;
  EXPECT_TRUE(sx_puttextblock2004(number, block, Units(u"abc").data()));
  EXPECT_TRUE(number == 2 && block.textID == 2);
  Spoil("SOTX");
  number = -1;
  EXPECT_FALSE(sx_puttextblock2004(number, block, Units(u"abc").data()));
  EXPECT_EQ(number, 3);
}

TEST_F(TextRecords, TheBlockNamesTheKindOfItsText) {
  AddBlock(1, u"ordinary", kOrdinary, 0);
  AddBlock(3, u"high", static_cast<short>(0x8080), static_cast<short>(0x8080));
  EXPECT_EQ(Text(sx_gettextblock2004_utf16(1, false, nullptr)), u"ordinary");
  EXPECT_EQ(Text(sx_gettextblock2004_utf16(3, false, nullptr)), u"high");
  EXPECT_EQ(host.calls[3], "SX_LoadEData \\xff\\xff\\x80\\x80 3,0 2000 -> 1");
}

TEST_F(TextRecords, TheSharedTextAlwaysEnds) {
  AddBlock(1, u"");
  AddRaw(1, 0x7478626c, std::vector<unsigned short>(1200, 'x'));
  EXPECT_EQ(Text(sx_gettextblock2004_utf16(1, false, nullptr)), std::u16string(999, u'x'));
  AddRaw(1, 0x7478626c, {'x', 'x', 'x'});  // nothing of the longer text before may follow
  EXPECT_EQ(Text(sx_gettextblock2004_utf16(1, false, nullptr)), u"xxx");
  EDTTextBlock2004 block;
  for (const char* failing : {"txbl", "SOTX"}) {
    Spoil(failing);
    EXPECT_EQ(Text(sx_gettextblock2004_utf16(1, true, &block)), u"") << failing;
  }
  EXPECT_EQ(std::memcmp(&block, &(const EDTTextBlock2004&)EDTTextBlock2004{}, sizeof block), 0);
}

TEST_F(TextRecords, InstrumentNamesStandInForEachOther) {
  EDTInstDefinition record{};
  record.fullName = 1;
  record.abbreviatedName = 2;
  host.document.records.Save(0x534f4953, OtherKey(4, 0), &record, sizeof record);
  struct {
    std::u16string full, abbreviated, name, short_name;
  } const cases[] = {
      {u"^font(Times)Viola", u"Vla.\n", u"Viola", u"Vla. "},
      {u"^font(Times)", u"^size(9)Vla.", u"Vla.", u"Vla."},  // empty once its commands are gone
      {u"Viola", u"^efx(bold)", u"Viola", u"Viola"},
  };
  for (const auto& c : cases) {
    AddBlock(1, c.full);
    AddBlock(2, c.abbreviated);
    EXPECT_EQ(Text(sx_getinstname_utf16(4)), c.name);
    EXPECT_EQ(Text(sx_getabbrevinstname_utf16(4)), c.short_name);
  }
  sx_strcpy(urawtxt, Units(u"left over").data());
  EXPECT_EQ(Text(sx_getinstname_utf16(5)), u"");
  EXPECT_EQ(host.calls.back(), "SX_LoadEData SOIS 5,0 136 -> 0");
}

TEST_F(TextRecords, PageTextsGoThereAndBack) {
  TPageUText text{};
  text.number = 3;
  sx_strcpy(text.text, Units(u"^font(Times)Title").data());
  EXPECT_TRUE(sx_createpagetext(text));
  EXPECT_EQ(host.calls.back(), "SX_CreateEData O\\x02pT 3,-1 24 -> 1");
  EXPECT_EQ(text.number, 3);

  TPageUText read{};
  std::fill(std::begin(read.text), std::end(read.text), static_cast<unsigned short>('y'));
  EXPECT_FALSE(sx_loadpagetext(4, read, 0));
  EXPECT_TRUE(read.number == 0 && read.text[0] == 'y');
  EXPECT_TRUE(sx_loadpagetext(3, read, 0));
  EXPECT_TRUE(read.number == 3 && read.text[1023] == 0 && read.block.textID == 1);
  EXPECT_EQ(Text(read.text), u"^font(Times)Title");

  sx_strcpy(read.text, Units(u"Other").data());
  host.calls.clear();
  EXPECT_TRUE(sx_savepagetext(read, 0));
  EXPECT_EQ(host.calls, (Calls{"SX_SaveEData txbl 1,0 12 -> 1", "SX_SaveEData SOTX 1,0 26 -> 1",
                               "SX_SaveEData O\\x02pT 3,0 24 -> 1"}));
}

TEST_F(TextRecords, MeasureTextsAreCreatedOnce) {
  TMeasureUText text{};
  text.cmper = 2;
  text.secondCmper = 40000;
  for (const std::u16string words : {u"dolce", u"arco"}) {
    sx_strcpy(text.text, Units(words).data());
    EXPECT_TRUE(sx_createuniquemeasuretext(text));
  }
  EXPECT_EQ(host.CallsWith("SX_CreateEData dtmt"), Calls(2, "SX_CreateEData dtmt 2,40000,-1 10 -> 1"));
  EXPECT_TRUE(sx_createuniquemeasuretext(text));  // "arco" is the second there
  EXPECT_EQ(host.CallsWith("SX_CreateEData dtmt").size(), 2u);

  TMeasureUText read{};
  EXPECT_TRUE(sx_loadmeasuretext(2, 40000, read, 1));
  EXPECT_EQ(Text(read.text), u"arco");
  EXPECT_TRUE(read.cmper == 2 && read.secondCmper == 40000);
  EXPECT_EQ(host.calls.back(), "SX_LoadEData txbl 2,0 2048 -> 1");
}

// The characters are those of the ordinary kind under the block's number, whatever kind the block names.
TEST_F(TextRecords, MeasureTextsReadTheOrdinaryKind) {
  AddBlock(1, u"other^flat()", 0x6578, 0x6578);
  const EDTMeasureText record{1, {}};
  host.document.records.Save(0x64746d74, EDataID{}, &record, sizeof record);
  TMeasureUText text{};
  text.text[0] = 'y';
  EXPECT_TRUE(sx_loadmeasuretext(0, 0, text, 0));
  EXPECT_EQ(Text(text.text), u"");
  EXPECT_EQ(Text(urawtxt), u"other^flat()");                      // with its commands
  AddRaw(1, 0x7478626c, std::vector<unsigned short>(1200, 'x'));  // longer than there is room for
  EXPECT_TRUE(sx_loadmeasuretext(0, 0, text, 0));
  EXPECT_EQ(Text(text.text), std::u16string(1023, u'x'));
  AddRaw(1, 0x7478626c, {'x'});
  Spoil("txbl");
  EXPECT_TRUE(sx_loadmeasuretext(0, 0, text, 0));
  EXPECT_EQ(Text(text.text), u"");
}

}  // namespace
