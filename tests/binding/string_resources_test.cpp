// String resources, through plug-ins that have a table and that have none.
#include "SokExtShared/LIB/PORTABLE/string_resources.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "tests/support/bundles.h"
#include "tests/support/test_host.h"

namespace {

struct Probe {
  explicit Probe(const char* path) : bundle(OpenBundle(path)) { Get<void()>("ProbeInit")(); }
  template <typename Function>
  Function* Get(const char* name) const {
    return FunctionOf<Function>(bundle, name);
  }
  std::string Text8(int number, short capacity) const {
    std::string buffer(300, '\xAA');
    const char* const text = Get<char*(int, char*, short)>("ProbeText8")(number, buffer.data(), capacity);
    EXPECT_EQ(text, capacity != 0 ? buffer.data() : nullptr);
    EXPECT_EQ(buffer.find_first_not_of('\xAA', static_cast<std::size_t>(capacity)), std::string::npos)
        << "beyond capacity";
    if (capacity == 0) return "untouched";
    const std::size_t length = std::strlen(text);
    EXPECT_EQ(buffer.substr(length, static_cast<std::size_t>(capacity) - length),
              std::string(static_cast<std::size_t>(capacity) - length, '\0'))
        << "zero-filled to its capacity";
    return buffer.substr(0, length);
  }
  std::u16string Text16(int number, short capacity) const {
    std::u16string buffer(400, 0xAAAA);
    auto* const units = reinterpret_cast<unsigned short*>(buffer.data());
    const auto* const text = Get<unsigned short*(int, unsigned short*, short)>("ProbeText16")(number, units, capacity);
    EXPECT_EQ(text, capacity != 0 ? units : nullptr);
    EXPECT_EQ(buffer.find_first_not_of(0xAAAA, static_cast<std::size_t>(capacity)), std::u16string::npos);
    if (capacity == 0) return u"untouched";
    const std::size_t length = std::char_traits<char16_t>::length(buffer.data());
    if (length + 2 < static_cast<std::size_t>(capacity)) {
      EXPECT_EQ(buffer[length + 1], 0xAAAA) << "only the terminator and the last unit are written";
    }
    EXPECT_EQ(buffer[static_cast<std::size_t>(capacity) - 1], 0);
    return buffer.substr(0, length);
  }

  CFBundleRef bundle;
};

TEST(StringResources, TextsByNumberCutToTheirCapacity) {
  TestHost host;
  const Probe probe(SOK_STRING_PROBE);
  const std::string x255(255, 'x');
  const struct {
    int number;
    short capacity;
    std::string text8;
    std::u16string text16;
  } cases[] = {
      {20001, 128, "Plain", u"Plain"},
      {20001, 6, "Plain", u"Plain"},
      {20001, 5, "Plai", u"Plai"},
      {20001, 1, "", u""},
      {20001, 0, "untouched", u"untouched"},
      {128 * 65536 + 3, 64, "Indexed", u"Indexed"},
      {-2, 64, "Signed halves", u"Signed halves"},
      {65536 + 0xFFFE, 64, "Signed item", u"Signed item"},
      {20099, 64, "20099", u"20099"},
      {20000 * 65536 + 77, 64, "20000,77", u"20000,77"},
      {7, 128, "", std::u16string(127, u'x')},  // 300 units: too long for a Pascal string
      {8, 64, "", u"Fa\u00e7ade \u266d"},       // a flat sign that Mac Roman lacks
      {9, 64, "caf\x8E", u"caf\u00e9"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.number << " in " << c.capacity);
    EXPECT_EQ(probe.Text8(c.number, c.capacity), c.text8);
    EXPECT_EQ(probe.Text16(c.number, c.capacity), c.text16);
  }
  EXPECT_TRUE(host.session.alerts.empty());
}

TEST(StringResources, IndexedTextsAndIds) {
  TestHost host;
  const Probe probe(SOK_STRING_PROBE);
  char buffer[32];
  const auto indexed = probe.Get<short(short, short, char*, short)>("ProbeIndexed");
  EXPECT_EQ(indexed(128, 3, buffer, sizeof buffer), 7);
  EXPECT_STREQ(buffer, "Indexed");
  EXPECT_EQ(indexed(1, -2, buffer, sizeof buffer), 11);
  EXPECT_EQ(indexed(128, 3, buffer, 3), 2);
  EXPECT_EQ(indexed(128, 3, buffer, 0), 0);
  const struct {
    unsigned long id;
    const char* text;
  } ids[] = {{5, "By id"},       {1, "First id"},  {20001, "First id"},
             {999, "20000,999"}, {1000, "1000,0"}, {21007, "21000,7"}};
  for (const auto& c : ids) {
    EXPECT_STREQ(probe.Get<char*(unsigned long)>("ProbeId")(c.id), c.text);
    const unsigned short* const text = probe.Get<unsigned short*(unsigned long)>("ProbeId16")(c.id);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(text)),
              std::u16string(c.text, c.text + std::strlen(c.text)));
  }
}

TEST(StringResources, AMissingTableIsReportedAtEveryLookUp) {
  TestHost host;
  const Probe probe(SOK_BARE_STRING_PROBE);
  EXPECT_EQ(probe.Text8(20001, 64), "20001");
  EXPECT_EQ(probe.Text16(20001, 64), u"20001");
  EXPECT_EQ(host.CallsWith("SX_AlertMessage"),
            std::vector<std::string>(2, "SX_AlertMessage 0 0 0 \"Missing Localizable.strings\" -> 1"));
}

TEST(StringResources, OutsideOfABundleThereIsNoText) {
  char buffer[8];
  EXPECT_DEATH(PlugIn_GetStringResource(1, buffer, sizeof buffer),
               "SokExtShared/LIB/PORTABLE:176: CopyPlugInStringResource: Assertion `bundleRef != NULL' failed");
  // By a path that begins with "//", whose parents end at "//" and not at "/".
  std::string folder = "/" + std::filesystem::temp_directory_path().string() + "/outside-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string outside = folder + "/OutsideProbe";
  std::filesystem::copy_file(SOK_STRING_PROBE "/Contents/MacOS/StringProbe", outside);
  void* const image = dlopen(outside.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(image, nullptr) << dlerror();
  const auto text8 = reinterpret_cast<char* (*)(int, char*, short)>(dlsym(image, "ProbeText8"));
  EXPECT_DEATH(text8(1, buffer, sizeof buffer), "bundleRef != NULL");
  std::filesystem::remove_all(folder);
}

TEST(StringResources, PascalStringsKeepTheirTail) {
  unsigned char counted[256];
  std::memset(counted, 0xAA, sizeof counted);
  c2p(counted, "abc");
  EXPECT_EQ(std::memcmp(counted, "\3abc\xAA", 5), 0);
  c2p(counted, std::string(300, 'y').c_str());
  EXPECT_EQ(counted[0], 255);
  EXPECT_EQ(counted[255], 'y');
  char menu[] = "menu";
  EXPECT_EQ(MakeGoodMenuString(menu), menu);
}

}  // namespace
