// The two commands on documents: what they change, and the exact order of their host calls.
#include <gtest/gtest.h>

#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"
#include "tests/extension/extension_bundle.h"
#include "tests/support/test_host.h"

namespace {

// The extension at work on a host.
class Commands : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(extension.Main(), 1); }
  TestHost host;
  const ExtensionBundle extension;
};

constexpr unsigned int kNote = 0xC0000000;
constexpr unsigned int kRest = 0x80000000;

EXENTRY Entry(int duration, unsigned int flags) {
  EXENTRY entry{};
  entry.duration = static_cast<unsigned short>(duration);
  entry.flags = flags;
  entry.noteCount = 1;
  return entry;
}

// A layer as text: W a whole-measure rest, n a quarter note, N a whole note, r a quarter rest.
std::vector<EXENTRY> Layer(const std::string& text) {
  std::vector<EXENTRY> entries;
  for (const char c : text) {
    entries.push_back(Entry(c == 'W' || c == 'N' ? 4096 : 1024, c == 'n' || c == 'N' ? kNote : kRest));
  }
  return entries;
}

std::string Text(const std::vector<EXENTRY>& entries) {
  std::string text;
  for (const EXENTRY& entry : entries) {
    const bool note = (entry.flags & 0x40000000) != 0;
    text += entry.duration == 4096 ? (note ? 'N' : 'W') : (note ? 'n' : 'r');
  }
  return text;
}

using Layers = std::vector<std::string>;  // up to four

void SetPreference(sok::Document& document, short layer, int word1) {
  const unsigned char preference[4] = {0xFF, 0xFF, static_cast<unsigned char>(word1), 0xFF};
  document.records.Save(0x70664C41, record_calls::GlobalKey(layer), preference, 4);
}

struct CommandCase {
  const char* name;
  int command;
  Layers before;
  const char* hidden;   // layers that the host hides, as digits
  const char* allowed;  // layers whose preferences let hidden music count as empty
  int layers;           // what the host answers as its layer count
  int result;
  Layers after;
  const char* unloadable = "no frame";  // slot, measure and layer of one that the host refuses
};

const CommandCase kCommandCases[] = {
    {"clear: a lone whole-measure rest goes", 0, {"W"}, "", "", 4, 1, {""}},
    {"clear: a whole note stays", 0, {"N"}, "", "", 4, 0, {"N"}},
    {"clear: a shorter rest stays", 0, {"r"}, "", "", 4, 0, {"r"}},
    {"clear: two entries stay", 0, {"Wr"}, "", "", 4, 0, {"Wr"}},
    {"clear: layers are judged one by one", 0, {"W", "nn", "W"}, "", "", 4, 1, {"", "nn", ""}},
    {"clear: layers beyond the count stay", 0, {"W", "W"}, "", "", 1, 1, {"", "W"}},
    {"clear: no layers, nothing looked at", 0, {"W"}, "", "", 0, 0, {"W"}},
    {"clear: a negative layer count", 0, {"W"}, "", "", -1, 0, {"W"}},
    {"fill: an empty measure", 1, {}, "", "", 4, 1, {"W"}},
    {"fill: music in another layer", 1, {"", "", "n"}, "", "", 4, 0, {"", "", "n"}},
    {"fill: hidden music still counts without the preference", 1, {"", "n"}, "1", "", 4, 0, {"", "n"}},
    {"fill: the preference alone is not enough", 1, {"", "n"}, "", "1", 4, 0, {"", "n"}},
    {"fill: hidden and allowed", 1, {"", "n"}, "1", "1", 4, 1, {"W", "n"}},
    {"fill: another layer's preference", 1, {"", "n"}, "1", "023", 4, 0, {"", "n"}},
    {"fill: in front of hidden music", 1, {"nn"}, "0", "0", 4, 1, {"Wnn"}},
    {"fill: music beyond the layer count", 1, {"", "n"}, "", "", 1, 1, {"W", "n"}},
    {"fill: with no layers everything is empty", 1, {"n"}, "", "", 0, 1, {"Wn"}},
    {"fill: with a negative count nothing is", 1, {}, "", "", -1, 0, {}},
    {"fill: a rest is music", 1, {"W"}, "", "", 4, 0, {"W"}},
    {"fill: nobody knows what a layer without a frame holds", 1, {}, "", "", 4, 0, {}, " 1 1 2 1"},
};

TEST_F(Commands, WhatTheyChange) {
  host.AddScore(1, 1);
  for (const CommandCase& c : kCommandCases) {
    SCOPED_TRACE(c.name);
    for (short layer = 0; layer < 4; ++layer) {
      const auto index = static_cast<std::size_t>(layer);
      host.document.SetEntries({1, 1, layer}, Layer(index < c.before.size() ? c.before[index] : ""));
      const char digit = static_cast<char>('0' + layer);
      host.document.SetLayerShown(layer, std::strchr(c.hidden, digit) == nullptr);
      SetPreference(host.document, layer, std::strchr(c.allowed, digit) != nullptr ? 2 : 0xFD);
    }
    host.after = [&](sok::HostCall& call) {
      if (std::strcmp(call.name, "SX_GetMaxLayers") == 0) call.result = c.layers;
      const bool asks_layer = std::strcmp(call.name, "SX_GetShowLayer") == 0;
      EXPECT_TRUE(!asks_layer || host.session.frames_held == 1);  // its frame is held meanwhile
    };
    host.refuse = [&](const sok::HostCall& call) {
      return std::strcmp(call.name, "SX_LoadTGF") == 0 && call.arguments.ends_with(c.unloadable);
    };
    EREGION region = Region(1, 1, 1, 1);
    host.calls.clear();
    EXPECT_EQ(extension.Invoke(c.command, &region), c.result);
    EXPECT_EQ(std::ssize(host.CallsWith("pfLA")), c.command == 1 ? std::max(c.layers, 0) : 0);
    for (short layer = 0; layer < 4; ++layer) {
      const auto index = static_cast<std::size_t>(layer);
      EXPECT_EQ(Text(host.document.Entries({1, 1, layer})), index < c.after.size() ? c.after[index] : "")
          << "layer " << layer;
    }
    EXPECT_EQ(host.session.frames_held, 0);
  }
}

// The inserted entry, byte for byte, with the placement from the instrument's definition.
TEST_F(Commands, TheInsertedRest) {
  const struct {
    int word;  // at byte 24 of the definition; -1 here: no definition
    int placement;
  } cases[] = {{0xF400, 0xFFFE}, {0x0400, 14}, {0x00FF, 10}, {0x8000, 0xFF8A}, {0x7FFF, 137}, {-1, 0}};
  host.AddScore(1, 1);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.word);
    const EDataID id = record_calls::OtherKey(1, 0);
    unsigned char definition[136] = {};
    definition[24] = static_cast<unsigned char>(c.word);
    definition[25] = static_cast<unsigned char>(c.word >> 8);
    host.document.records.Save(0x534F4953, id, definition, sizeof definition);
    if (c.word < 0) host.document.records.Delete(0x534F4953, id);
    host.document.SetEntries({1, 1, 0}, {});
    EREGION region = Region(1, 1, 1, 1);
    EXPECT_EQ(extension.Invoke(1, &region), 1);
    const std::vector<EXENTRY> entries = host.document.Entries({1, 1, 0});
    ASSERT_EQ(entries.size(), 1u);
    EXENTRY expected{};
    expected.number = static_cast<int>(entries[0].number);
    expected.duration = 0x1000;
    expected.flags = 0x81000800;
    expected.host12 = 0x0080;
    expected.noteCount = 1;
    expected.notes[0] = {static_cast<short>(c.placement), 0, 1, 0x80010000};
    EXPECT_EQ(std::memcmp(&entries[0], &expected, sizeof expected), 0);
  }
}

TEST_F(Commands, OrderOfHostCalls) {
  host.AddScore(2, 2);
  host.document.SetStaffList(3, {2, 1});
  host.after = [&](sok::HostCall& call) {
    if (std::strcmp(call.name, "SX_GetMaxLayers") == 0) call.result = 2;
  };
  EREGION region = Region(1, 2, 1, 1);
  region.start.stafflist = 3;
  region.end.stafflist = 9;  // the start point's list counts

  host.document.SetEntries({1, 1, 0}, Layer("n"));
  EXPECT_EQ(extension.Invoke(1, &region), 1);
  const std::vector<std::string> fill = {
      "SX_GetMaxLayers -> 2",          "SX_LoadEData pfLA 0 4 -> 0",     "SX_LoadEData pfLA 1 4 -> 0",
      "SX_LoadTGF 3 1 1 0 1 -> frame", "SX_FreeTGF 2,1,0 0 -> 1",        "SX_LoadTGF 3 1 1 1 1 -> frame",
      "SX_FreeTGF 2,1,1 0 -> 1",       "SX_LoadTGF 3 1 1 0 1 -> frame",  "SX_InsertEXENTRY 2,1,0 0 0 1 -> 1",
      "SX_SlotToInst 1 3 -> 2",        "SX_LoadEData SOIS 2,0 136 -> 0", "SX_SaveTGF 2,1,0 1 -> 1",
      "SX_FreeTGF 2,1,0 1 -> 1",       "SX_LoadTGF 3 2 1 0 1 -> frame",  "SX_FreeTGF 1,1,0 1 -> 1",
  };
  EXPECT_EQ(host.calls, fill);

  host.calls.clear();
  EXPECT_EQ(extension.Invoke(0, &region), 1);
  const std::vector<std::string> clear = {
      "SX_GetMaxLayers -> 2",          "SX_LoadTGF 3 1 1 0 1 -> frame", "SX_SaveTGF 2,1,0 0 -> 1",
      "SX_FreeTGF 2,1,0 1 -> 1",       "SX_LoadTGF 3 1 1 1 1 -> frame", "SX_FreeTGF 2,1,1 0 -> 1",
      "SX_LoadTGF 3 2 1 0 1 -> frame", "SX_FreeTGF 1,1,0 1 -> 1",       "SX_LoadTGF 3 2 1 1 1 -> frame",
      "SX_FreeTGF 1,1,1 0 -> 1",
  };
  EXPECT_EQ(host.calls, clear);

  host.document.SetEntries({2, 1, 1}, Layer("W"));
  host.refuse = [](const sok::HostCall& call) { return call.arguments == "3 1 1 0 1"; };
  EXPECT_EQ(extension.Invoke(0, &region), 1);  // the frame that is not there is passed over
  EXPECT_EQ(host.document.EntryCount({2, 1, 1}), 0);
}

// Results follow the save when clearing, the insertion when filling. Backward selections do nothing, and the last
// measures and slots there can be still end.
TEST_F(Commands, ResultsAndRanges) {
  const struct {
    const char* name;
    int command;
    const char* refused;
    EREGION region;
    int result;
    bool lies = false;  // the host answers success to what it refuses
  } cases[] = {
      {"a refused save leaves a clear without result", 0, "SX_SaveTGF", Region(1, 1, 2, 2), 0},
      {"a refused save does not undo a fill's result", 1, "SX_SaveTGF", Region(1, 1, 1, 1), 1},
      {"a refused insertion", 1, "SX_InsertEXENTRY", Region(1, 1, 1, 1), 0},
      {"an insertion that leaves no entries", 1, "SX_InsertEXENTRY", Region(1, 1, 1, 1), 0, true},
      {"measures backward, clear", 0, "", Region(1, 1, 2, 1), 0},
      {"measures backward, fill", 1, "", Region(1, 1, 2, 1), 0},
      {"slots backward", 1, "", Region(2, 1, 1, 1), 0},
      {"the last measure there can be", 1, "", Region(1, 1, 32760, 32767), 0},
      {"the last slot there can be", 0, "", Region(32760, 32767, 1, 1), 0},
      {"negative numbers", 1, "", Region(-2, -1, -2, -1), 0},
  };
  host.AddScore(1, 2);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    host.document.SetEntries({1, 1, 0}, {});
    host.document.SetEntries({1, 2, 0}, Layer("W"));
    host.calls.clear();
    host.refuse = [&](const sok::HostCall& call) { return std::strcmp(call.name, c.refused) == 0; };
    host.after = [&](sok::HostCall& call) { call.result |= c.lies && std::strcmp(call.name, c.refused) == 0; };
    EREGION region = c.region;
    EXPECT_EQ(extension.Invoke(c.command, &region), c.result);
    EXPECT_EQ(host.session.frames_held, 0);
    if (c.region.start.measure > c.region.end.measure) {
      EXPECT_EQ(host.CallsWith("pfLA").size(), c.command == 1 ? 4u : 0u);
    }
  }
}

}  // namespace
