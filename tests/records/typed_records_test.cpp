#include "SokExtShared/LIB/records/typed_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

#include "SokExtShared/LIB/records/smart_shape_records.h"
#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/host_types.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kNotes = 0x45056E68;  // a tag of entry details
constexpr unsigned int kAccidentals = 0x45024168;
constexpr unsigned int kOther = 0x6F743939;   // 'ot99'
constexpr unsigned int kDetail = 0x64743939;  // 'dt99'
constexpr unsigned int kGlobal = 0x70663939;  // 'pf99'

template <typename Record>
Record record;  // one of each type
char bytes[256];

// A helper's one host call, without its result.
struct HelperCase {
  const char* call;
  bool (*helper)();
  unsigned int version = kInterfaceVersion;
};

// clang-format off
const HelperCase kHelpers[] = {
    {"SX_LoadEData SOIu 65535,-2 24", [] { return sx_loadIU(65535, -2, record<EDTInstrumentUsed>); }},
    {"SX_SaveEData SOIu 3,4 24", [] { return sx_saveIU(3, 4, record<EDTInstrumentUsed>); }},
    {"SX_DeleteEData SOIu 3,4", [] { return sx_deleteIU(3, 4); }},
    {"SX_LoadEData SOSS 65535,0 28", [] { return sx_loadstaffsystemspec(-1, record<EDTStaffSystemSpec2005>); }},
    {"SX_SaveEData SOSS 2,0 28", [] { return sx_savestaffsystemspec(2, record<EDTStaffSystemSpec2005>); }},
    {"SX_LoadEData SDNG 1,65535,0 36", [] { return sx_loadgroupspec(1, -1, record<EDTGroupSpec>); }},
    {"SX_SaveEData SDNG 1,2,0 36", [] { return sx_savegroupspec(1, 2, record<EDTGroupSpec>); }},
    {"SX_DeleteEData SDNG 1,2,0", [] { return sx_deletegroupspec(1, 2); }},
    {"SX_SaveEData E\\x05nh -7,3 20", [] { return sx_savenoteheadmod(-7, record<EDTNoteheadMods2012>, 3, kNotes); }},
    {"SX_CreateEData E\\x05nh 70000,-1 20", [] { return sx_addnoteheadmod(70000, record<EDTNoteheadMods2012>, kNotes); }},
    {"SX_SaveEData E\\x02Ah 7,3 20", [] { return sx_saveaccidentalmod(7, record<EDTAccidentalMods2012>, 3); }},
    {"SX_CreateEData E\\x02Ah 7,-1 20", [] { return sx_addaccidentalmod(7, record<EDTAccidentalMods2012>); }},
    {"SX_SaveEData E\\x05nh 7,3 30", [] { return sx_savetiealteration(kNotes, 7, record<EDTTieAltRecord>, 3); }},
    {"SX_LoadEData edsB 9,0 10", [] { return sx_loadsecbeambreak(9, record<EDTSecBeamBreak>); }},
    {"SX_SaveEData edsB 9,0 10", [] { return sx_savesecbeambreak(9, record<EDTSecBeamBreak>); }},
    {"SX_DeleteEData edsB 9,0", [] { return sx_deletesecbeambreak(9); }},
    {"SX_SaveEData SODT 5,0 77", [] { return sx_savetextexpression(5, bytes, 77, 1); }},
    {"SX_DeleteEData SODT 5,0", [] { return sx_deletetextexpression(5); }},
    {"SX_LoadEData otDe 5,0 12", [] { return sx_loadenclosure(5, record<EDTEnclosure>); }},
    {"SX_SaveEData otDe 5,0 12", [] { return sx_saveenclosure(5, record<EDTEnclosure>); }},
    {"SX_DeleteEData otDe 5,0", [] { return sx_deleteenclosure(5); }},
    {"SX_LoadEData SOMS 32768,0 30", [] { return sx_loadmeasurespec(SHRT_MIN, record<EDTMeasureSpec2014>); }},
    {"SX_SaveEData SOMS 5,0 30", [] { return sx_savemeasurespec(5, record<EDTMeasureSpec2014>); }},
    {"SX_LoadEData SODY 5,-3 24", [] { return sx_loadscoreexpression2009(5, -3, record<EDTScoreExpression2009>); }, 0x0E000000},
    {"SX_SaveEData SODY 5,6 24", [] { return sx_savescoreexpression2009(5, 6, record<EDTScoreExpression2009>); }, 0x0E000000},
    {"SX_LoadEData ot99 5,0 12", [] { return sx_loadshortcut(5, record<EDTShortcut>, kOther); }},
    {"SX_SaveEData ot99 5,0 12", [] { return sx_saveshortcut(5, record<EDTShortcut>, kOther); }},
    {"SX_DeleteEData ot99 5,0", [] { return sx_deleteshortcut(5, kOther); }},
    {"SX_LoadEData E\\x03TP 5,6 30", [] { return sx_loadtuplet(5, 6, record<EDTTuplet2005>); }},
    {"SX_SaveEData E\\x03TP 5,6 30", [] { return sx_savetuplet(5, 6, record<EDTTuplet2005>); }},
    {"SX_LoadEData dt99 65535,65535,-1 7", [] { return sx_loaddetail(kDetail, -1, -1, bytes, 7, -1); }},
    {"SX_SaveEData dt99 1,2,3 7", [] { return sx_savedetail(kDetail, 1, 2, bytes, 7, 3); }},
    {"SX_DeleteEData dt99 1,2,3", [] { return sx_deletedetail(kDetail, 1, 2, 3); }},
    {"SX_LoadEData ot99 1,-32768 7", [] { return sx_loadother(kOther, 65537, 32768, bytes, 7); }},
    {"SX_SaveEData ot99 1,2 7", [] { return sx_saveother(kOther, 1, 2, bytes, 7); }},
    {"SX_DeleteEData ot99 1,2", [] { return sx_deleteother(kOther, 1, 2); }},
    {"SX_LoadEData E\\x05nh 70000,2 7", [] { return sx_loadentrydetail(kNotes, 70000, 2, bytes, 7); }},
    {"SX_SaveEData E\\x05nh 1,2 7", [] { return sx_saveentrydetail(kNotes, 1, 2, bytes, 7); }},
    {"SX_DeleteEData E\\x05nh 1,2", [] { return sx_deleteentrydetail(kNotes, 1, 2); }},
    {"SX_LoadEData pf99 -1 7", [] { return sx_loadglobal(kGlobal, 65535, bytes, 7); }},
    {"SX_SaveEData pf99 1 7", [] { return sx_saveglobal(kGlobal, 1, bytes, 7); }},
    {"SX_LoadEData SOSC 1,65535,-100000 136", [] { return sx_loadcurrstaffspec(1, -1, -100000, record<EDTStaffSpec2014>); }},
    {"SX_LoadEData eteE 70000 52", [] { return sx_loadentry(70000, record<EDTEntry>); }},
    {"SX_SaveEData eteE 5 52", [] { return sx_saveentry(5, record<EDTEntry>); }},
    {"SX_LoadEData O\\x08Sx 65535,0 92", [] { return sx_loadsmartshape(-1, record<EDTSmartShape>); }},
    {"SX_SaveEData O\\x08Sx 5,0 92", [] { return sx_savesmartshape(5, record<EDTSmartShape>); }},
    {"SX_LoadEData D\\x03Cx 1,65535,0 22", [] { return record<EDTCenterShape>.Load(1, 65535); }},
    {"SX_SaveEData D\\x03Cx 1,2,0 22", [] { return record<EDTCenterShape>.Save(1, 2); }},
    {"SX_SaveEData otMx 65535,4 12", [] { return record<EDTSmartShapeMeasMark>.Save(-1, 4); }},
    {"SX_SaveEData edEx 70000,4 10", [] { return record<EDTSmartShapeEntMark>.Save(70000, 4); }},
};
// clang-format on

TEST(TypedRecords, MakeOneCallEach) {
  TestHost host;
  long result = 0;
  unsigned int version = 0;
  host.after = [&](sok::HostCall& call) {
    call.result = result;
    version = call.version;
  };
  for (const HelperCase& c : kHelpers) {
    for (const long answer : {0, 1, -1, 0x100}) {
      host.calls.clear();
      result = answer;
      EXPECT_EQ(c.helper(), answer != 0) << c.call;
      EXPECT_EQ(host.calls, std::vector{c.call + (" -> " + std::to_string(answer))});
      EXPECT_EQ(version, c.version) << c.call;
    }
  }
}

// Helpers that take numbers by reference: these here. The call that they make, and the numbers after the host has
// written all ones into the key.
struct Numbers {
  int first, second, sub;
} n;

struct WriteBackCase {
  const char* call;
  Numbers before;
  Numbers after;
  bool (*helper)();
};

// clang-format off
const WriteBackCase kWriteBacks[] = {
    {"SX_NextEData ot99 1,2 7", {1, 0, 2}, {65535, 0, -1}, [] { return sx_nextother(kOther, n.first, n.sub, bytes, 7); }},
    {"SX_CreateEData ot99 65535,0 7", {65535, 0, 7}, {65535, 0, -1}, [] { return sx_createother(kOther, n.first, n.sub, bytes, 7); }},
    {"SX_CreateEData ot99 65535,7 7", {-1, 0, 7}, {65535, 0, -1}, [] { return sx_createother(kOther, n.first, n.sub, bytes, 7); }},
    {"SX_NextEData dt99 1,2,3 7", {1, 2, 3}, {65535, 65535, -1}, [] { return sx_nextdetail(kDetail, n.first, n.second, bytes, 7, n.sub); }},
    {"SX_CreateEData dt99 1,65534,3 7", {1, 0, 3}, {1, 0, -1}, [] { return sx_createdetailconstcmper(kDetail, n.first, 65534u, bytes, 7, n.sub); }},
    {"SX_CreateEData dt99 65535,2,3 7", {-1, 2, 3}, {-1, 2, -1}, [] { return sx_createdetail(kDetail, n.first, n.second, bytes, 7, n.sub); }},
    {"SX_CreateEData dt99 1,0,3 7", {1, 0, 3}, {1, 65535, -1}, [] {
       unsigned int second = 0;
       const bool created = sx_createdetail(kDetail, n.first, second, bytes, 7, n.sub);
       n.second = static_cast<int>(second);
       return created; }},
    {"SX_CreateEData E\\x05nh 9,3 7", {0, 0, 3}, {0, 0, -1}, [] { return sx_createentrydetail(kNotes, 9u, n.sub, bytes, 7); }},
    {"SX_CreateEData E\\x05nh 70000,3 7", {70000, 0, 3}, {-1, 0, -1}, [] { return sx_createentrydetail(kNotes, n.first, n.sub, bytes, 7); }},
    {"SX_CreateEData E\\x03TP 1,3 30", {1, 0, 3}, {1, 0, -1}, [] {
       short sub = 3;
       const bool created = sx_createtuplet(n.first, sub, record<EDTTuplet2005>);
       n.sub = sub;
       return created; }},
    {"SX_NextEData eteE 70000 52", {70000, 0, 0}, {-1, 0, 0}, [] { return sx_nextentry(n.first, record<EDTEntry>); }},
    {"SX_PreviousEData eteE 2 52", {2, 0, 0}, {-1, 0, 0}, [] { return sx_preventry(n.first, record<EDTEntry>); }},
    {"SX_CreateEData O\\x08Sx 4,-1 92", {4, 0, 0}, {65535, 0, 0}, [] { return sx_createsmartshape(n.first, record<EDTSmartShape>); }},
    {"SX_NextEData otMx 65534,3 12", {0, 0, 3}, {0, 0, -1}, [] {
       short sub = 3;
       const bool found = record<EDTSmartShapeMeasMark>.Next(65534, sub);
       n.sub = sub;
       return found; }},
    {"SX_NextEData edEx 70000,3 10", {70000, 0, 3}, {-1, 0, -1}, [] {
       short sub = 3;
       const bool found = record<EDTSmartShapeEntMark>.Next(n.first, sub);
       n.sub = sub;
       return found; }},
    {"SX_NextEData O\\x08Sx 4,0 92", {4, 0, 0}, {65535, 0, 0}, [] { return sx_nextsmartshape(n.first, record<EDTSmartShape>); }},
    {"SX_NextEData O\\x08Sx 4,0 92", {4, 0, 0}, {65535, 0, 0}, [] {
       unsigned short number = 4;
       const bool found = record<EDTSmartShape>.Next(number);
       n.first = number;
       return found; }},
};
// clang-format on

TEST(TypedRecords, BringKeysBackWhateverTheResult) {
  TestHost host;
  long result = 0;
  host.after = [&](sok::HostCall& call) {
    std::memset(const_cast<EDataID*>(call.id), 0xFF, sizeof(EDataID));
    call.result = result;
  };
  for (const WriteBackCase& c : kWriteBacks) {
    SCOPED_TRACE(c.call);
    for (const long answer : {0, 1}) {
      result = answer;
      n = c.before;
      EXPECT_EQ(c.helper(), answer != 0);
      EXPECT_EQ(host.calls.back(), c.call + (" -> " + std::to_string(answer)));
      EXPECT_EQ(std::make_tuple(n.first, n.second, n.sub), std::make_tuple(c.after.first, c.after.second, c.after.sub));
    }
  }
}

// Gives an entry records whose first word is 100 plus their subIndex.
void AddRecords(TestHost& host, unsigned int tag, short count, int size) {
  EDataID id{};
  for (id.entryDetail.entryNum = 7; id.entryDetail.subIndex < count; ++id.entryDetail.subIndex) {
    const short words[15] = {static_cast<short>(100 + id.entryDetail.subIndex)};
    host.document.records.Save(tag, id, words, size);
  }
}

// Searches of an entry; the words of the caller's record, and `found`, start as -9.
struct SearchCase {
  bool (*search)(short wanted, short& found);
  short records, wanted, found;
  std::size_t loads;
  short first_word, second_word;  // of the caller's record then
};

// clang-format off
EDTNoteheadMods2012 heads;
EDTAccidentalMods2012 accidentals;
EDTTieAltRecord ties;
bool Notehead(short wanted, short& found) { return sx_loadnoteheadmod(7, wanted, heads, found, kNotes); }
bool Accidental(short wanted, short& found) { return sx_loadaccidentalmod(7, wanted, accidentals, found); }
bool Tie(short wanted, short& found) { return sx_loadtiealteration(kNotes, 7, wanted, ties, found); }
// clang-format on

constexpr SearchCase kSearches[] = {
    {Notehead, 0, 100, -9, 1, 0, 0},  // zeroed at the end
    {Notehead, 3, 102, 2, 3, 102, 0},
    {Notehead, 3, -1, -9, 4, 0, 0},
    {Notehead, 1001, 1099, 999, 1000, 1099, 0},
    {Notehead, 1001, 1100, -9, 1000, 1099, 0},
    {Accidental, 0, -1, -9, 1, -9, -9},
    {Accidental, 3, -1, 0, 1, 100, 0},  // any first record
    {Accidental, 3, 103, -9, 4, 102, 0},
    {Accidental, 1001, 1100, -9, 1000, 1099, 0},
    {Tie, 25, 119, 19, 20, 119, 0},
    {Tie, 25, 120, -9, 20, 119, 0},
    {Tie, 2, -1, -9, 3, 101, 0},
};

TEST(RecordSearches, EndAsEachTypeHasIt) {
  for (const SearchCase& c : kSearches) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kSearches);
    TestHost host;
    AddRecords(host, c.search == Accidental ? kAccidentals : kNotes, c.records, c.search == Tie ? 30 : 20);
    short words[15];
    std::fill(std::begin(words), std::end(words), short{-9});
    const std::size_t size = c.search == Tie ? 30 : 20;
    void* const caller = c.search == Notehead     ? &heads
                         : c.search == Accidental ? &accidentals
                                                  : static_cast<void*>(&ties);
    std::memcpy(caller, words, size);
    short found = -9;
    EXPECT_EQ(c.search(c.wanted, found), c.found != -9);
    EXPECT_EQ(found, c.found);
    EXPECT_EQ(host.calls.size(), c.loads);
    std::memcpy(words, caller, size);
    EXPECT_EQ(words[0], c.first_word);
    EXPECT_EQ(words[1], c.second_word);
  }
}

TEST(RecordSearches, DeleteAllUntilTheHostRefuses) {
  TestHost host;
  AddRecords(host, kNotes, 2, 20);
  EXPECT_FALSE(sx_deletenoteheadmod(7, kNotes));
  EXPECT_FALSE(sx_deleteaccidentalmod(7));
  const std::string note = "SX_DeleteEData E\\x05nh 7,0 -> ", accidental = "SX_DeleteEData E\\x02Ah 7,0 -> ";
  EXPECT_EQ(host.calls, (std::vector{note + "1", note + "1", note + "0", accidental + "0"}));
}

TEST(TypedRecords, BringBackTheSizeOfTextExpressionsAndGlobals) {
  TestHost host;
  host.document.records.Save(0x534F4454, EDataID{}, "eight..", 8);
  host.document.records.Save(kGlobal, EDataID{}, "xy", 2);
  char buffer[] = "zzzzzz";
  int size = 5;
  EXPECT_TRUE(sx_loadtextexpression(0, buffer, size, 0));
  EXPECT_EQ(size, 8);
  EXPECT_STREQ(buffer, "eightz");
  size = 4;
  EXPECT_TRUE(sx_loadglobalwithsize(kGlobal, 0, buffer, size));
  EXPECT_EQ(size, 2);
  EXPECT_EQ(std::string(buffer, 6), std::string("xy\0\0tz", 6));  // zeroed as far as the stated size
}

TEST(TypedRecords, GlobalsReadAsZerosWithoutTheEntryPoint) {
  TestHost host;
  TestHost::Hide("SX_LoadEData");
  unsigned char layer[5] = {1, 2, 3, 4, 5};
  EXPECT_FALSE(sx_loadglobal(0x70664C41, 0, layer, 4));
  EXPECT_EQ(std::vector(layer, layer + 5), (std::vector<unsigned char>{0, 0, 0, 0, 5}));
  sx_loadglobal(0x70664C41, 0, layer, -1);  // nothing to zero
  EXPECT_EQ(layer[4], 5);
}

TEST(SafeGetMeasureDuration, IsNeverZero) {
  TestHost host;
  long duration = 0;
  host.after = [&](sok::HostCall& call) { call.result = duration; };
  EXPECT_EQ(SafeGetMeasureDuration(3, 2), 4096);
  duration = -70000;
  EXPECT_EQ(SafeGetMeasureDuration(3, 2), -70000);
  EXPECT_EQ(host.calls[0], "SX_GetMeasureDuration 3 2 -> 0");
}

}  // namespace
