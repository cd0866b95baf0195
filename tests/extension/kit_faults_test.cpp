// The kit functions that loop over host calls or go on with what they answer, with each of those calls failing in turn:
// nothing crashes, nothing runs for ever, nothing leaks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/SokEDK.h"
#include "tests/extension/saboteur.h"

namespace {

using namespace record_calls;
using namespace record_tags;

constexpr unsigned int kRun = 0x6F747878;  // 'otxx', no tag of anybody's
constexpr unsigned short kName[] = {'A', '^', 'f', 'l', 'a', 't', '(', ')', 0};

// What the functions below find: two of everything, so that loops have something to go on to.
void FillDocument(sok::Document& document) {
  document.records = {};
  const auto save = [&](unsigned int tag, EDataID id, std::vector<unsigned char> bytes) {
    document.records.Save(tag, id, bytes.data(), static_cast<int>(bytes.size()));
  };
  for (short i = 0; i < 3; ++i) {
    const EDataID entry = EntryDetailKey(7, i);
    save(kNotehead, entry, std::vector<unsigned char>(20, static_cast<unsigned char>(i + 1)));
    save(kAccidental, entry, std::vector<unsigned char>(20, static_cast<unsigned char>(i + 1)));
    save(kSmartShapeEntryMark, entry, {5, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    save(kRun, OtherKey(1, i), std::vector<unsigned char>(12, static_cast<unsigned char>(i == 2 ? 0 : 'a')));
    save(kSeparatePlacement, OtherKey(1, i), {static_cast<unsigned char>(i), 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    save(kSeparatePlacement, OtherKey(2, i), std::vector<unsigned char>(12, 9));
    save(kInstrumentList[0], OtherKey(1, i), {1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0});
    save(kInstrumentList[0], OtherKey(2, i), {2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    save(kSmartShapeMeasureMark, OtherKey(i + 1, 0),
         {5, 0, static_cast<unsigned char>(i == 1 ? 3 : 0), 0, 0, 0, 0, 0, 0, 0, 0, 0});
    save(kTextBlock, OtherKey(i + 1, 0), std::vector<unsigned char>(26, 1));
    save(kRawText, OtherKey(i + 1, 0), {'^', 0, 'f', 0, '(', 0, ')', 0, 'x', 0, 0, 0});
    save(kInstrument, OtherKey(i + 1, 0), std::vector<unsigned char>(136, static_cast<unsigned char>(i)));
    save(kPageText, OtherKey(i + 1, 0), std::vector<unsigned char>(24, 1));
    save(kMeasureText, DetailKey(1, 1, i), {static_cast<unsigned char>(i), 0, 0, 0, 0, 0, 0, 0, 0, 0});
  }
  std::vector<unsigned char> shape(92);
  shape[5] = 0x40;  // on entries
  shape[6] = 1, shape[8] = 1, shape[10] = 7, shape[36] = 1, shape[38] = 3, shape[40] = 7;
  save(kSmartShape, OtherKey(5, 0), shape);
}

EDTSmartShape LongShape() {
  EDTSmartShape shape{};
  shape.flags = 0x40000000;
  shape.startStaff = shape.endStaff = 1;
  shape.startMeasure = 1;
  shape.endMeasure = 4;
  shape.startEntry = shape.endEntry = 7;
  return shape;
}

struct KitCall {
  const char* name;
  void (*call)();
};

// clang-format off
const KitCall kCalls[] = {
    {"search helpers", [] {
       EDTNoteheadMods2012 notehead{};
       EDTAccidentalMods2012 accidental{};
       short found = 0;
       sx_loadnoteheadmod(7, 99, notehead, found, kNotehead);
       sx_loadaccidentalmod(7, 99, accidental, found);
     }},
    {"delete all", [] { sx_deletenoteheadmod(7, kNotehead); sx_deleteaccidentalmod(7); }},
    {"preference structures", [] {
       unsigned char buffer[132] = {};
       EDataID id{};
       for (const unsigned int tag : {0x70664450u, 0x70664D53u, 0x70665353u, 0x70664747u}) {
         int size = sizeof buffer;
         SX_LoadEData(tag, &id, buffer, &size, kInterfaceVersion);
         buffer[0] ^= 1;
         SX_SaveEData(tag, &id, buffer, sizeof buffer, kInterfaceVersion);
       }
     }},
    {"runs of records", [] {
       char* text = nullptr;
       if (sx_loadotherstring(kRun, 1, 0, text)) std::free(text);
       char longer[] = "a text that takes more than two records to keep";
       sx_saveotherstring(kRun, 1, 0, longer);
     }},
    {"UTF-16 records", [] {
       unsigned short* text = nullptr;
       if (sx_loadotherstring_UTF16(kRawText, 1, 0, text)) delete[] text;
       unsigned short longer[] = {'m', 'o', 'r', 'e', ' ', 't', 'h', 'a', 'n', ' ', 'o', 'n', 'e', 0};
       sx_saveotherstring_UTF16(kRun, 1, 0, longer);
     }},
    {"arrays", [] {
       unsigned char elements[60] = {1};
       const EDataID id = OtherKey(1, 0);
       OrvelOtArray_Save(kRun, &id, 5, 12, elements);
     }},
    {"separate placements", [] {
       EDTSeparatePlacement placement{};
       LoadSeparatePlacement(1, placement, 4, 99, true);
     }},
    {"instrument names", [] { sx_getinstname_utf16(1); sx_getabbrevinstname_utf16(2); }},
    {"page texts", [] {
       TPageUText text{};
       sx_loadpagetext(1, text, 0);
       sx_savepagetext(text, 0);
       sx_createpagetext(text);
     }},
    {"measure texts", [] {
       TMeasureUText text{};
       text.cmper = text.secondCmper = 1;
       std::copy(std::begin(kName), std::end(kName), text.text);
       sx_createuniquemeasuretext(text);
       sx_loadmeasuretext(1, 1, text, 0);
     }},
    {"regions", [] {
       EREGION region{};
       region.start = {3, 1, 1, 0};
       region.end = {3, 1, 1, 4096};
       InRegion(1, 512, region, 1);
       TranslateRegionToGlobalStaffList(region);
     }},
    {"the last record", [] {
       unsigned char buffer[136];
       FindLastItem(kInstrument, sizeof buffer, 2, buffer, 1);
     }},
    {"instrument lists", [] {
       InstInList(kInstrumentList[0], 9, 1, true, false);
       InstInList(kInstrumentList[0], 9, 1, false, true);
       ValidInstInList(kInstrumentList[0], 1);
       InstInLists(9, 1, true, true);
       MakeSureInstIsInLists(1, 9, 0, 15);
       DeleteInstFromLists(9, 1);
     }},
    {"definitions", [] {
       FindOrCreateTextRepeat(kName, kName, 2, 3, 4);
       FindOrCreateOnTopStaffList(kName);
       FindOrCreateArticulation({});
     }},
    {"chord suffixes", [] {
       std::vector<EDTChordSuffix2012> suffix(3);
       int number = -1;
       sx_savechordsuffix(number, suffix);
       sx_loadchordsuffix(number, suffix);
       suffix[0].words[0] = 9;
       FindOrCreateChordSuffix(suffix);
     }},
    {"shapes created", [] {
       EDTSmartShape shape = LongShape();
       unsigned short number = 0;
       shape.FullCreate(number);
       shape.FullSave(number);
     }},
    {"shapes erased", [] { LongShape().FullErase(5); }},
    {"marks erased", [] {
       unsigned short center = 0;
       EDTCenterShape{}.FullCreate(1, 5, center);
       EDTSmartShapeMeasMark::FindAndEraseWithCenterShapes(1, 5);
       EDTSmartShapeMeasMark::FindAndEraseMarkOnly(1, 5);
       EDTSmartShapeEntMark::FindAndErase(7, 5);
     }},
    {"shapes copied", [] {
       EREGION source{};
       source.start = {0, 1, 1, 0};
       source.end = {0, 1, 3, 0};
       EREGION target = source;
       target.start.measure = 2;
       target.end.measure = 4;
       EDTSmartShape::CopyMeasureShapes(source, target, 0, 0);
     }},
};
// clang-format on

void PrintTo(const KitCall& call, std::ostream* out) { *out << call.name; }

class KitFaults : public testing::TestWithParam<KitCall> {};

TEST_P(KitFaults, EachHostCallFailingInTurn) {
  TestHost host;
  host.AddScore(2, 4);
  host.document.SetStaffList(3, {2, 1});
  SokVersion = 0x19000000;
  for (const Fault fault : kFaults) {
    std::size_t total = 2;  // every one of these functions makes at least two calls
    for (std::size_t victim = 0; victim <= total; ++victim) {
      SCOPED_TRACE(testing::Message() << "fault " << static_cast<int>(fault) << " at call " << victim);
      FillDocument(host.document);
      host.calls.clear();
      const Saboteur saboteur(host, victim, fault);
      GetParam().call();
      if (victim == 0) total = std::min<std::size_t>(saboteur.calls() + 20, 120);
      ASSERT_LT(saboteur.calls(), 3000u);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kit, KitFaults, testing::ValuesIn(kCalls), [](const auto& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
  return name;
});

}  // namespace
