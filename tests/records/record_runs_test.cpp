#include "SokExtShared/LIB/records/record_runs.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <random>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/records/separate_placement.h"
#include "tests/support/test_host.h"

namespace {
int g_allocation_fails = 0;  // which one from here on does; 0: none
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return g_allocation_fails != 0 && --g_allocation_fails == 0 ? nullptr : ::operator new[](size);
}

namespace {

constexpr unsigned int kText = 0x6F743939;       // 'ot99'
constexpr unsigned int kPlacement = 0x6F744449;  // 'otDI'

using record_calls::OtherKey;
using Records = std::vector<std::string>;

// The records under a number, in order of their subIndex.
Records RecordsOf(const TestHost& host, unsigned short cmper) {
  Records run;
  host.document.records.ForEach([&](unsigned int, const EDataID& id, std::span<const unsigned char> record) {
    if (id.other.cmper == cmper) run.emplace_back(record.begin(), record.end());
  });
  return run;
}

void Store(TestHost& host, unsigned short cmper, int subIndex, const Records& run) {
  for (const std::string& record : run) {
    host.document.records.Save(kText, OtherKey(cmper, subIndex++), record.data(), static_cast<int>(record.size()));
  }
}

Records Pieces(std::string text) {
  text.resize((text.size() + 11) / 12 * 12);
  Records run;
  for (std::size_t i = 0; i < text.size(); i += 12) run.push_back(text.substr(i, 12));
  return run;
}

// The text of a run with its terminating zero; "null" when it cannot be loaded.
std::string LoadText(int cmper, std::size_t length) {
  char* text = nullptr;
  if (!sx_loadotherstring(kText, cmper, 0, text)) return text == nullptr ? "null" : "not null";
  const std::string loaded(text, length + 1);
  std::free(text);
  return loaded;
}

TEST(RecordRuns, KeepTextsOfAnyLength) {
  TestHost host;
  std::mt19937 random(7);
  for (std::size_t round = 0; round < 200; ++round) {
    std::string text(round == 100 ? 32767 : random() % 61, '\0');
    for (char& byte : text) byte = static_cast<char>(1 + random() % 255);
    SCOPED_TRACE(text.size());
    ASSERT_TRUE(sx_saveotherstring(kText, 5, 0, text.data()));
    ASSERT_EQ(RecordsOf(host, 5), Pieces(text));  // nothing of the longer text before is left
    ASSERT_EQ(LoadText(5, text.size()), text + '\0');
  }
}

TEST(RecordRuns, OldRecordsAreDeletedFromTheLastOne) {
  TestHost host;
  Store(host, 5, 3, Pieces(std::string(14, 'x')));
  char text[] = "short";
  host.after = [](sok::HostCall& call) {
    if (call.size != nullptr) *call.size = 1;  // not what the next record is asked for
  };
  EXPECT_TRUE(sx_saveotherstring(kText, 5, 3, text));
  EXPECT_EQ(host.calls,
            (Records{"SX_LoadEData ot99 5,3 12 -> 1", "SX_LoadEData ot99 5,4 12 -> 1", "SX_LoadEData ot99 5,5 12 -> 0",
                     "SX_DeleteEData ot99 5,4 -> 1", "SX_DeleteEData ot99 5,3 -> 1", "SX_SaveEData ot99 5,3 12 -> 1"}));
}

// What is in the records, and the text that they are read as.
struct ZeroCase {
  Records run;
  std::string text;
};

TEST(RecordRuns, EndAtTwoZerosOrWithTheLastRecord) {
  using namespace std::string_literals;
  const ZeroCase cases[] = {
      {{}, ""},
      {{"\0a\0b\0\0......"s}, "\0a\0b"s},
      {{"elevenchars\0"s}, "elevenchars"},
      {{"elevenchars\0"s, "more\0\0\0\0\0\0\0\0"s}, "elevenchars\0more"s},
      {{"elevenchars\0"s, "\0more......."s}, "elevenchars"},
      {{"twelve chars"s, "\0more.\0\0\0\0\0\0"s}, "twelve chars\0more."s},
      {{"twelve chars"s, "\0\0more......"s}, "twelve chars"},
      {{"twelve chars"s, "twelve again"s}, "twelve charstwelve again"},
      {{"short"s}, "short"},  // a record of fewer than 12 bytes
  };
  for (const ZeroCase& c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - cases);
    TestHost host;
    Store(host, 5, 0, c.run);
    EXPECT_EQ(LoadText(5, c.text.size()), c.text + '\0');
  }
}

TEST(RecordRuns, RefusedRecords) {
  TestHost host;
  std::string text(30, 'x');
  host.refuse = [](const sok::HostCall& call) {
    return std::strcmp(call.name, "SX_SaveEData") == 0 && call.id->other.subIndex == 1;
  };
  EXPECT_FALSE(sx_saveotherstring(kText, 5, 0, text.data()));
  EXPECT_EQ(RecordsOf(host, 5), Records{std::string(12, 'x')});
  EXPECT_EQ(host.calls.back(), "SX_SaveEData ot99 5,1 12 -> 0");
  // A record that goes between measuring and copying, a full one or the last.
  Store(host, 6, 0, Pieces(text));
  for (const std::size_t gone : {3u, 5u}) {
    host.calls.clear();
    host.refuse = [&](const sok::HostCall&) { return host.calls.size() == gone; };
    EXPECT_EQ(LoadText(6, 0), "null");
  }
}

// What cannot be stored is refused while the old run is still there.
TEST(RecordRuns, RefuseWhatDoesNotFit) {
  TestHost host;
  Store(host, 5, 32766, {"old record.."});
  const EDataID key = OtherKey(5, 32766);
  std::string data(65541, 'x');  // its length would be 5 in 16 bits
  EXPECT_FALSE(sx_saveotherstring(kText, 5, 32766, data.data()));
  EXPECT_FALSE(sx_saveotherstring(kText, 5, 32766, nullptr));
  EXPECT_EQ(OrvelOtArray_Save(kText, &key, -1, 12, data.data()), 0);
  EXPECT_EQ(OrvelOtArray_Save(kText, &key, 1, 25, data.data()), 0);  // beyond the last subIndex
  EXPECT_EQ(OrvelOtArray_Save(kText, &key, 32767, 0x7FFFFFFF, data.data()), 0);
  EXPECT_TRUE(host.calls.empty());
  EXPECT_EQ(OrvelOtArray_Save(kText, &key, 2, 12, data.data()), 1);
  EXPECT_EQ(RecordsOf(host, 5), Records(2, std::string(12, 'x')));
  EXPECT_EQ(OrvelOtArray_Save(kText, &key, -4, 0, data.data()), 1);  // an empty run
  EXPECT_TRUE(RecordsOf(host, 5).empty());
  EXPECT_TRUE(host.CallsWith("-32768").empty());  // nothing is looked for behind the last subIndex
}

// Texts with their terminator, and records of odd sizes or without a zero unit; all of them grow after their size was
// asked for.
TEST(Utf16Records, NeverOverrunTheBuffer) {
  for (const std::size_t size : {0u, 1u, 5u, 6u, 12u}) {
    TestHost host;
    const std::string record = std::string("a\0b\0c\0d\0e\0\0\0", 12).substr(0, size);
    Store(host, 5, 0, {record});
    host.after = [&](sok::HostCall& call) {
      if (call.buffer == nullptr) Store(host, 5, 0, {record + "abcdefghij"});
    };
    unsigned short* text = nullptr;
    ASSERT_TRUE(sx_loadotherstring_UTF16(kText, 5, 0, text));
    EXPECT_EQ(std::memcmp(text, record.data(), size / 2 * 2), 0);
    EXPECT_EQ(text[size == 12 ? 5 : size / 2], 0);
    EXPECT_TRUE(sx_saveotherstring_UTF16(kText, 5, 0, text));
    EXPECT_EQ(RecordsOf(host, 5)[0].size(), size == 12 ? 12 : size / 2 * 2 + 2);
    delete[] text;
  }
}

TEST(Utf16Records, Refusals) {
  TestHost host;
  unsigned short own = 0;
  unsigned short* text = &own;
  EXPECT_FALSE(sx_loadotherstring_UTF16(kText, 5, 0, text));
  EXPECT_EQ(text, &own);  // not even its size is known: the pointer stays
  Store(host, 5, 0, {"abcd"});
  host.refuse = [](const sok::HostCall& call) { return call.buffer != nullptr; };
  EXPECT_FALSE(sx_loadotherstring_UTF16(kText, 5, 0, text));
  EXPECT_EQ(text, nullptr);
  host.refuse = nullptr;
  for (const int missing : {1, 2}) {  // the buffer, or the longer one for a record without a zero unit
    g_allocation_fails = missing;
    text = &own;
    EXPECT_FALSE(sx_loadotherstring_UTF16(kText, 5, 0, text));
    EXPECT_EQ(text, nullptr);
  }
  EXPECT_FALSE(sx_saveotherstring_UTF16(kText, 5, 0, nullptr));
  EXPECT_EQ(host.calls.size(), 6u);
}

struct PlacementCase {
  std::vector<std::pair<short, short>> records;  // first and second word, from subIndex 0
  int match_second, match_first;
  bool delete_matches;
  int result;
  std::size_t left;          // records left
  const char* last;          // last host call
  bool first_fails = false;  // the first load fills the record and answers failure
};

TEST(SeparatePlacements, AreFoundByBothWords) {
  const PlacementCase cases[] = {
      {{}, 2, 1, true, -1, 0, "SX_NextEData otDI 5,0 12 -> 0"},
      {{{1, 2}}, 2, 1, false, 0, 1, "SX_LoadEData otDI 5,0 12 -> 1"},
      {{{9, 2}, {1, 9}, {1, 2}}, 2, 1, false, 2, 3, "SX_NextEData otDI 5,1 12 -> 1"},
      {{{-1, -2}}, -2, -1, false, 0, 1, "SX_LoadEData otDI 5,0 12 -> 1"},
      {{{-1, -2}}, 65534, 65535, false, -1, 1, "SX_NextEData otDI 5,0 12 -> 1"},  // words are signed
      {{{1, 2}}, 2, 65537, false, -1, 1, "SX_NextEData otDI 5,0 12 -> 1"},
      {{{1, 2}, {3, 2}}, 2, 1, true, 0, 1, "SX_DeleteEData otDI 5,0 -> 1"},
      // The step goes on from subIndex 0, so of the records that moved down one is passed over.
      {{{9, 2}, {8, 2}, {1, 2}}, 2, 1, true, 1, 1, "SX_DeleteEData otDI 5,0 -> 1"},
      {{{1, 2}, {7, 3}}, 2, 1, true, -1, 2, "SX_NextEData otDI 5,1 12 -> 1", true},
      {{{1, 2}, {7, 3}}, 3, 7, false, 1, 2, "SX_NextEData otDI 5,0 12 -> 1", true},
  };
  for (const PlacementCase& c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - cases);
    TestHost host;
    for (std::size_t i = 0; i < c.records.size(); ++i) {
      const EDTSeparatePlacement placement = {c.records[i].first, c.records[i].second, {}};
      host.document.records.Save(kPlacement, OtherKey(5, static_cast<int>(i)), &placement, sizeof placement);
    }
    const EDTSeparatePlacement neighbour = {1, 2, {}};  // the number after this one holds a match
    if (!c.records.empty()) host.document.records.Save(kPlacement, OtherKey(6, 0), &neighbour, sizeof neighbour);
    host.after = [&](sok::HostCall& call) {
      if (c.first_fails && std::strcmp(call.name, "SX_LoadEData") == 0) call.result = 0;
    };
    EDTSeparatePlacement found{};
    EXPECT_EQ(LoadSeparatePlacement(5, found, c.match_second, c.match_first, c.delete_matches), c.result);
    EXPECT_EQ(host.calls.back(), c.last);
    EXPECT_EQ(RecordsOf(host, 5).size(), c.left);
  }
}

}  // namespace
