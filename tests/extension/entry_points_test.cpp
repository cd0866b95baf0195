// The entry points: what the bundle shows to the outside, the handshake, enumeration and dispatch.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>

#include "tests/extension/extension_bundle.h"
#include "tests/support/shell.h"
#include "tests/support/test_host.h"

namespace {

TEST(EntryPoints, NothingElseIsVisible) {
  std::istringstream lines(Shell("nm -D --defined-only " + Quoted(ExtensionBundle::ExecutablePath())).out);
  std::set<std::string> names;
  for (std::string address, kind, name; lines >> address >> kind >> name;) names.insert(name);
  std::string joined;
  for (const std::string& name : names) joined += name + " ";
  EXPECT_EQ(joined,
            "Ext_enumerate_UTF16 Ext_getmenustatus Ext_getversion Ext_init Ext_invoke Ext_terminate SokVersion "
            "SonkelExtensionEnumerate_UTF16 SonkelExtensionGetMenuStatus SonkelExtensionInit SonkelExtensionInvoke "
            "SonkelExtensionTerminate SonkelExtensionVersion SonkelVersion main ");
}

TEST(EntryPoints, Handshake) {
  TestHost host;
  const ExtensionBundle extension;
  char* list[] = {nullptr};
  const auto main_function = extension.Get<int(int, char**)>("main");
  EXPECT_EQ(main_function(0, list), 0);
  EXPECT_EQ(main_function(1, nullptr), 0);
  EXPECT_EQ(extension.Main(), 1);
  EXPECT_EQ(extension.Main(), 1);
  for (const char* name : {"SonkelExtensionVersion", "Ext_getversion"}) {
    EXPECT_EQ(extension.Get<unsigned int(unsigned int)>(name)(0x0A00000Bu), 0x19300000u);
    EXPECT_EQ(*extension.Get<unsigned int>("SokVersion"), 0x0A00000Bu);
    *extension.Get<unsigned int>("SokVersion") = 0;
  }
  for (const char* name : {"SonkelExtensionInit", "Ext_init"}) {
    unsigned int word = 77;
    EXPECT_EQ(extension.Get<int(void*, unsigned int*)>(name)(nullptr, &word), 1);
    EXPECT_EQ(word, 0u);
  }
  for (const char* name : {"SonkelExtensionGetMenuStatus", "Ext_getmenustatus"}) {
    EXPECT_EQ(extension.Get<int()>(name)(), 1);
  }
  extension.Get<void()>("SonkelExtensionTerminate")();
  extension.Get<void()>("Ext_terminate")();
  EXPECT_EQ(*extension.Get<int>("SonkelVersion"), 2005);
}

// The extension at work on a host.
class Dispatch : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(extension.Main(), 1); }
  TestHost host;
  const ExtensionBundle extension;
};

std::string Latin(const unsigned short* text) {
  std::string result;
  for (; *text != 0; ++text) result += static_cast<char>(*text);
  return result;
}

const struct {
  int index;
  unsigned short result;
  const char* first;
} kEnumerationCases[] = {
    {0, 1, "Clear Whole-Measure Rests"},
    {1, 1, "Fill Empty Measures with Rests"},
    {2, 0, nullptr},
    {0x7FFFFFFF, 0, nullptr},
    {0x10000, 0, nullptr},  // low bits 0, but beyond the last command
    {-1, 0, nullptr},       // low bits 0xFFFF
    {-0x10000, 1, "Clear Whole-Measure Rests"},
    {-0xFFFF, 1, "Fill Empty Measures with Rests"},
    {-0xFFFE, 0, nullptr},
};

TEST_F(Dispatch, EnumerationFollowsTheLowBits) {
  setenv("LANGUAGE", "en", 1);
  for (const char* name : {"SonkelExtensionEnumerate_UTF16", "Ext_enumerate_UTF16"}) {
    for (const auto& c : kEnumerationCases) {
      SCOPED_TRACE(testing::Message() << name << " " << c.index);
      struct {
        EMENUCOMMAND record;
        unsigned char behind[4];
      } buffer, untouched;
      std::memset(&buffer, 0xAA, sizeof buffer);
      std::memset(&untouched, 0xAA, sizeof untouched);
      EXPECT_EQ(extension.Get<unsigned short(void*, int, EMENUCOMMAND*)>(name)(nullptr, c.index, &buffer.record),
                c.result);
      if (c.result == 0) {
        EXPECT_EQ(std::memcmp(&buffer, &untouched, sizeof buffer), 0);
        continue;
      }
      EXPECT_EQ(Latin(buffer.record.text[0]), c.first);
      for (const auto& text : buffer.record.text) {
        EXPECT_NE(text[0], 0);
        EXPECT_FALSE(Latin(text).starts_with("2000")) << "a text that the table lacks";
      }
      const int active = buffer.record.active;
      EXPECT_EQ(active, 1);
      EXPECT_EQ(buffer.behind[0], 0xAA);
    }
  }
  EXPECT_TRUE(host.session.alerts.empty());
}

// Of the two ways to choose a language this is the stand-in's: the user's own. On macOS the languages of the program
// decide, and this test program has none, so that the text would be the English one.
TEST_F(Dispatch, TextsSpeakTheUsersLanguageOnTheWorkbench) {
  setenv("LANGUAGE", "de", 1);
  EMENUCOMMAND record;
  extension.Get<unsigned short(void*, int, EMENUCOMMAND*)>("SonkelExtensionEnumerate_UTF16")(nullptr, 0, &record);
  EXPECT_EQ(Latin(record.text[0]), "Ganztaktpausen entfernen");
}

TEST_F(Dispatch, WithoutASelectionThereIsAnAlertAndNothingElse) {
  setenv("LANGUAGE", "en", 1);
  for (const int index : {0, 1, -1}) {
    host.calls.clear();
    EXPECT_EQ(extension.Invoke(index, nullptr, reinterpret_cast<void*>(0x1234)), 0);
    EXPECT_EQ(host.calls,
              std::vector<std::string>{"SX_AlertMessage handle 48 0 \"Please select the measures and staves "
                                       "to work on first.\" -> 1"});
  }
  host.calls.clear();
  EXPECT_EQ(extension.Invoke(2, nullptr), 0);
  EXPECT_TRUE(host.calls.empty());
}

// The clear command never asks for preferences, the fill command always does.
TEST_F(Dispatch, InvocationFollowsTheLowBits) {
  host.AddScore(1, 1);
  const struct {
    int index;
    const char* command;
  } cases[] = {{0, "clear"}, {1, "fill"}, {-1, "fill"}, {-0x10000, "clear"}, {-0xFFFE, "fill"}, {2, ""}, {0x10000, ""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.index);
    EREGION region = Region(1, 1, 1, 1);
    host.calls.clear();
    extension.Invoke(c.index, &region);
    const std::string expected = c.command;
    EXPECT_EQ(host.CallsWith("SX_GetMaxLayers").size(), expected.empty() ? 0u : 1u);
    EXPECT_EQ(host.CallsWith("pfLA").size(), expected == "fill" ? 4u : 0u);
    EXPECT_EQ(host.CallsWith("SX_LoadTGF").empty(), expected.empty());
  }
  EXPECT_EQ(extension.Get<int(void*, int, EREGION*)>("Ext_invoke")(nullptr, 2, nullptr), 0);
}

// Before main has run, every host call falls back: no frames, nothing changed.
TEST(EntryPoints, BeforeTheEngineIsKnownNothingHappens) {
  TestHost host;
  host.AddScore(1, 1);
  const ExtensionBundle extension;
  EREGION region = Region(1, 1, 1, 1);
  EXPECT_EQ(extension.Invoke(0, &region), 0);
  EXPECT_EQ(extension.Invoke(1, &region), 0);
  EXPECT_TRUE(host.calls.empty());
}

}  // namespace
