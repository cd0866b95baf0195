#include "SokExtShared/LIB/notation/definitions.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "SokExtShared/LIB/notation/first_match.h"
#include "SokExtShared/LIB/notation/instrument_lists.h"
#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace {

constexpr unsigned int kListDC = record_tags::kInstrumentList[0];
constexpr unsigned int kListdc = record_tags::kInstrumentList[1];
constexpr unsigned int kListIO = record_tags::kInstrumentList[2];
constexpr unsigned int kListio = record_tags::kInstrumentList[3];
constexpr int kLastTextRepeat = 99;

struct TextRepeat {
  unsigned char host0[4];
  short font;
  short a;
  unsigned short b;
  unsigned short c;
  unsigned char host12[4];
};
static_assert(sizeof(TextRepeat) == 16 && offsetof(TextRepeat, font) == 4, "TextRepeat layout");

using RepeatText = unsigned short[50];

constexpr EDT_DC kTopStaffOnly = {{-1}};

bool IsTopStaffOnly(unsigned int tag, int list) {
  EDT_DC dc{};
  return sx_loadother(tag, list, 0, &dc, sizeof dc) &&
         std::equal(std::begin(dc.inst), std::end(dc.inst), std::begin(kTopStaffOnly.inst));
}

bool Exists(unsigned int tag, int list) {
  EDT_DC dc{};
  return sx_loadother(tag, list, 0, &dc, sizeof dc);
}

}  // namespace

int FontNameToNum(const unsigned short* fontName) { return SX_FontNameToNum_UTF16(fontName, kInterfaceVersion); }

int FindOrCreateTextRepeat(const unsigned short* text, int font, int a, int b, int c) {
  RepeatText wanted = {};
  sx_strcpy(wanted, std::size(wanted), text);

  const int found = FirstMatch(kLastTextRepeat, [&](int number) {
    RepeatText stored = {};
    if (!sx_loadother(record_tags::kTextRepeatText, number, 0, stored, sizeof stored)) return false;
    stored[std::size(stored) - 1] = 0;
    if (sx_strcmp(stored, wanted) != 0) return false;
    TextRepeat repeat{};
    return sx_loadother(record_tags::kTextRepeat, number, 0, &repeat, sizeof repeat) && repeat.a == a &&
           repeat.b == b && repeat.c == c && repeat.font == font;
  });
  if (found != 0) return found;

  TextRepeat repeat{};
  repeat.font = static_cast<short>(font);
  repeat.a = static_cast<short>(a);
  repeat.b = static_cast<unsigned short>(b);
  repeat.c = static_cast<unsigned short>(c);
  int number = EDataID::kHostChooses;
  int subIndex = 0;
  sx_createother(record_tags::kTextRepeat, number, subIndex, &repeat, sizeof repeat);
  subIndex = 0;
  sx_createother(record_tags::kTextRepeatText, number, subIndex, wanted,
                 static_cast<int>((sx_strlen(wanted) + 1) * sizeof wanted[0]));
  return number;
}

int FindOrCreateTextRepeat(const unsigned short* text, const unsigned short* fontName, int a, int b, int c) {
  return FindOrCreateTextRepeat(text, FontNameToNum(fontName), a, b, c);
}

int FindOrCreateOnTopStaffList(const unsigned short* name) {
  const int found = FirstMatch(kLastDefinition, [&](int list) {
    return IsTopStaffOnly(kListDC, list) && IsTopStaffOnly(kListdc, list) && !Exists(kListIO, list) &&
           !Exists(kListio, list);
  });
  if (found != 0) return found;

  const EDT_DC dc = kTopStaffOnly;
  int list = EDataID::kHostChooses;
  int subIndex = 0;
  if (!sx_createother(kListDC, list, subIndex, &dc, sizeof dc)) return 0;
  if (!sx_saveother(kListdc, list, subIndex, &dc, sizeof dc)) return 0;
  sx_saveother(record_tags::kStaffListName, list, subIndex, name, static_cast<int>(sx_strlen(name) * sizeof name[0]));
  sx_deleteother(kListIO, list, subIndex);
  sx_deleteother(kListio, list, subIndex);
  return list;
}

int FindOrCreateArticulation(EDTArticulationDefinition2012 definition) {
  const int found = FirstMatch(kLastDefinition, [&](int number) {
    EDTArticulationDefinition2012 stored{};
    return sx_loadother(record_tags::kArticulationDefinition, number, 0, &stored, sizeof stored) &&
           std::equal(std::begin(stored.words), std::end(stored.words), std::begin(definition.words));
  });
  if (found != 0) return found;

  int number = EDataID::kHostChooses;
  int subIndex = 0;
  sx_createother(record_tags::kArticulationDefinition, number, subIndex, &definition, sizeof definition);
  return number;
}
