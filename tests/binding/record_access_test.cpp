// Record loads and saves: what the wrappers do beside passing the call on.
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kFretTag = 0x4F156649;

struct FretCase {
  const char* name;
  long first_answer, second_answer;  // of the host
  unsigned char written;             // into byte 251, by each host call
  short result;
  std::size_t host_calls;
};

const FretCase kFretCases[] = {
    {"filled and reported", 1, -3, 7, -3, 2},
    {"reported but empty", 1, 1, 0, 1, 2},
    {"filled, yet reported as failed", 0, 0, 7, 1, 1},
    {"refused", 0, 0, 0, 0, 1},
};

TEST(RecordAccess, FretInstrumentsCountByTheirBytes) {
  TestHost host;
  for (const FretCase& c : kFretCases) {
    SCOPED_TRACE(c.name);
    host.calls.clear();
    host.after = [&](sok::HostCall& call) {
      EXPECT_EQ(call.arguments, "O\\x15fI 0,0 252");  // what the caller stated, in the second request too
      *call.size = 300;
      static_cast<unsigned char*>(call.buffer)[251] = c.written;
      call.result = host.calls.empty() ? c.first_answer : c.second_answer;
    };
    unsigned char buffer[253];
    std::memset(buffer, 0xAA, sizeof buffer);
    EDataID id{};
    int size = 252;
    EXPECT_EQ(SX_LoadEData(kFretTag, &id, buffer, &size, kInterfaceVersion), c.result);
    EXPECT_EQ(host.calls.size(), c.host_calls);
    EXPECT_EQ(size, 300);
    EXPECT_TRUE(std::all_of(buffer, buffer + 251, [](unsigned char byte) { return byte == 0; }));
    EXPECT_EQ(buffer[252], 0xAA);
  }
}

TEST(RecordAccess, FretInstrumentsWithoutTheHostAreZeroed) {
  unsigned char buffer[252];
  std::memset(buffer, 0xAA, sizeof buffer);
  EDataID id{};
  int size = 252;
  EXPECT_EQ(SX_LoadEData(kFretTag, &id, buffer, &size, kInterfaceVersion), 0);
  EXPECT_TRUE(std::all_of(buffer, buffer + 252, [](unsigned char byte) { return byte == 0; }));
}

TEST(RecordAccess, FretInstrumentsNeedTheirWholeSize) {
  TestHost host;
  EDataID id{};
  int size = 251;
  EXPECT_EQ(SX_LoadEData(kFretTag, &id, nullptr, &size, kInterfaceVersion), 0);  // a size query is not checked
  EXPECT_EQ(host.calls.size(), 1u);
  unsigned char buffer[252];
  for (const int stated : {251, 0}) {
    size = stated;
    EXPECT_DEATH(SX_LoadEData(kFretTag, &id, buffer, &size, kInterfaceVersion),
                 "SokExtShared/SokEDK/Source/sonkelpdk:1442: SX_LoadEData: "
                 "Assertion `\\*size >= sizeof\\(EDTFretInstrument25_3\\)' failed");
  }
  size = -1;  // read as unsigned, this is large enough
  SX_LoadEData(kFretTag, &id, buffer, &size, kInterfaceVersion);
}

// Callers with an old interface version reach the preference records of the host itself, on save only.
TEST(RecordAccess, OldVersionsSavePreferencesUntranslated) {
  TestHost host;
  host.any_version = true;
  EDataID id{};
  const unsigned char repeats[40] = {1};
  struct {
    unsigned int version;
    bool translated;
  } const cases[] = {{0, false}, {0x07FFFFFF, false}, {0x08000000, true}, {0x19300000, true}};
  for (const auto& c : cases) {
    host.calls.clear();
    EXPECT_NE(SX_SaveEData(0x70665250, &id, repeats, sizeof repeats, c.version), 0);
    EXPECT_EQ(host.CallsWith(" pfRP ").empty(), c.translated) << c.version;
    EXPECT_EQ(host.CallsWith(" ot70 ").empty(), !c.translated) << c.version;
  }
}

}  // namespace
