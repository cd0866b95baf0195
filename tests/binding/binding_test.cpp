// The wrappers: which host function each one reaches, with what, and what it answers without the host.
#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"

#include <SokPlatform.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <map>
#include <string_view>
#include <thread>
#include <tuple>
#include <type_traits>
#include <vector>

#include "SokExtShared/SokEDK/Source/sonkelpdk/dialog_handlers.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/edit_nesting.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "tests/support/recording_engine.h"
#include "tests/support/test_host.h"

namespace {

// A value that no other argument of the call has; pointers point at something that wrappers may read and write.
template <typename T>
T Distinct(int& index) {
  alignas(8) static unsigned char targets[20][256];
  const int number = index++;
  if constexpr (std::is_function_v<std::remove_pointer_t<T>>) {
    return nullptr;
  } else if constexpr (std::is_pointer_v<T>) {
    std::memset(targets[number], 0, sizeof targets[number]);
    return reinterpret_cast<T>(targets[number]);
  } else {
    return static_cast<T>(-0x7A51 - number * 257);  // negative: a 16-bit number that was widened would show
  }
}

template <typename T>
std::string Bytes(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

template <typename... Arguments>
std::tuple<Arguments...> DistinctArguments() {
  int index = 0;
  return std::tuple<Arguments...>{Distinct<Arguments>(index)...};
}

template <typename Result, typename... Arguments>
void ExpectPassedOn(RecordingEngine& engine, const char* name, Result (*wrapper)(Arguments...)) {
  SCOPED_TRACE(name);
  const auto arguments = DistinctArguments<Arguments...>();
  constexpr long kAnswer = 0x123456789ABCDEF0;
  engine.Answer(kAnswer);
  engine.calls().clear();
  if constexpr (std::is_void_v<Result>) {
    std::apply(wrapper, arguments);
  } else {
    EXPECT_EQ(Bytes(std::apply(wrapper, arguments)), Bytes(kAnswer).substr(0, sizeof(Result)));  // little-endian
  }
  ASSERT_EQ(engine.calls().size(), 1u);
  EXPECT_EQ(engine.last().name, name);
  const auto bytes = [](const auto&... each) { return std::vector<std::string>{Bytes(each)...}; };
  EXPECT_EQ(engine.last().arguments, std::apply(bytes, arguments));
}

// A row pasted under a wrong name still binds something; the recording engine knows what was reached, and how wide.
TEST(Binding, EveryWrapperReachesTheHostFunctionOfItsNameWithItsArguments) {
  RecordingEngine engine;
  SonkelEditDepth = 2;  // an end and a cancel reach the host while edits are open
#define SX_ENTRY(result, name, parameters, arguments, fallback) ExpectPassedOn(engine, #name, &name);
#define SX_CUSTOM(result, name, parameters, arguments) ExpectPassedOn(engine, #name, &name);
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
}

template <typename Result, typename... Arguments>
long Call(Result (*wrapper)(Arguments...)) {
  const auto arguments = DistinctArguments<Arguments...>();
  if constexpr (std::is_void_v<Result>) {
    std::apply(wrapper, arguments);
    return 0;
  } else if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<long>(std::apply(wrapper, arguments));
  } else {
    return std::apply(wrapper, arguments);
  }
}

void ExpectFallbacks() {
  const std::map<std::string_view, long> unusual = {
      {"SX_FontNameToNum", -1}, {"SX_FontNameToNum_UTF16", -1}, {"SX_GetCurrentPartID", -1},
      {"SX_GetNextPartID", -1}, {"SX_GetPlaybackSystem", -1},   {"SX_ProcessMidiData", -1},
      {"SX_CountParts", -1},    {"SX_GetTextEncoding", -2},     {"SX_ProcessMidiDataNoSplit", -1},
      {"SX_GetMaxLayers", 4},
  };
  SonkelEditDepth = 2;
#define SX_ENTRY(result, name, parameters, arguments, fallback)                       \
  if (std::string_view(#name) == "SX_GetPartName") {                                  \
    EXPECT_STREQ(reinterpret_cast<const char*>(Call(&name)), " ");                    \
  } else {                                                                            \
    EXPECT_EQ(Call(&name), unusual.contains(#name) ? unusual.at(#name) : 0) << #name; \
  }
#define SX_CUSTOM SX_ENTRY_CUSTOM
#define SX_ENTRY_CUSTOM(result, name, parameters, arguments) EXPECT_EQ(Call(&name), 0) << #name;
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
#undef SX_ENTRY_CUSTOM
}

// A look-up that failed is never tried again.
TEST(Binding, FallbacksWithoutAnEngineStayOnceOneIsThere) {
  ASSERT_EQ(GetSonkelBundleRef(), nullptr);
  ExpectFallbacks();
  RecordingEngine engine;
  engine.Answer(99);
  ExpectFallbacks();
  EXPECT_TRUE(engine.calls().empty());
}

TEST(Binding, TextMetricsAreZeroedWithoutTheHost) {
  ETEXTMETRICS metrics[2];
  std::memset(metrics, 0x55, sizeof metrics);
  SX_GetTextMetrics_UTF16(nullptr, nullptr, 3, 1.0, metrics, kInterfaceVersion);
  for (const long long field : metrics[0].host) EXPECT_EQ(field, 0);
  EXPECT_EQ(metrics[1].host[0], 0x5555555555555555);  // nothing behind the record
}

std::atomic<int> g_lookups = 0;

TEST(Binding, ConcurrentFirstCallsLookUpOnce) {
  RecordingEngine engine;
  g_lookups = 0;
  SokPlatformHideFunctions([](const char*) {
    ++g_lookups;
    std::this_thread::yield();
    return true;
  });
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&right] {
      const bool fallbacks = SX_GetMaxLayers(kInterfaceVersion) == 4 && SX_CountParts(kInterfaceVersion) == -1 &&
                             SX_FontNameToNum("", kInterfaceVersion) == -1;
      if (fallbacks) ++right;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
  EXPECT_EQ(g_lookups, 3);
}

TEST(Binding, DialogHandlersAskTheHostAndComeBackAsTheyAre) {
  for (const bool mach_o : {true, false}) {
    TestHost host;
    host.after = [&](sok::HostCall& call) {
      if (std::string_view(call.name) == "SX_IsMachO") call.result = mach_o;
    };
    const SF_DialogHandlerProc handler = [](void*, short, void*) { return short{0}; };
    EXPECT_EQ(NewSF_DialogHandlerProc(handler), handler);
    DisposeSF_DialogHandlerProc(handler);
    const std::vector<std::string> alerts = host.CallsWith("SX_AlertMessage");
    ASSERT_EQ(alerts.size(), mach_o ? 0u : 2u);
    for (const std::string& alert : alerts) {
      EXPECT_EQ(alert, "SX_AlertMessage 0 48 0 \"Should not get here!\" -> 1");
    }
  }
}

// The engine is found by its identifier, a second time it is not looked for; without one the program stands in.
TEST(Binding, InitializeGlobalsFindsTheEngineOnce) {
  TestHost host;
  const CFBundleRef engine = gSonkelBundle;
  gSonkelBundle = nullptr;
  EXPECT_EQ(InitializeGlobals(), 0);
  EXPECT_EQ(GetSonkelBundleRef(), engine);
  gSonkelBundle = CFBundleGetMainBundle();
  EXPECT_EQ(InitializeGlobals(), 0);
  EXPECT_EQ(gSonkelBundle, CFBundleGetMainBundle());
  EXPECT_TRUE(SonkelVersionOK(2005));
}

TEST(Binding, InitializeGlobalsFallsBackToTheMainBundle) {
  EXPECT_EQ(InitializeGlobals(), 0);
  EXPECT_EQ(GetSonkelBundleRef(), CFBundleGetMainBundle());
}

}  // namespace
