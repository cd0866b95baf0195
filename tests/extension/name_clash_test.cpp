// A program that exports functions under the host's names. The extension's calls to its own wrappers, and its look-ups
// in the engine, must not land here.
#include <gtest/gtest.h>

#include "host/engine/session.h"
#include "tests/extension/extension_bundle.h"

namespace {

int g_reached = 0;

}  // namespace

#define CLASH(result, name)                                         \
  extern "C" __attribute__((visibility("default"))) result name() { \
    ++g_reached;                                                    \
    return 0;                                                       \
  }
CLASH(short, SX_GetMaxLayers)
CLASH(long, SX_LoadTGF)
CLASH(int, SX_FreeTGF)
CLASH(short, SX_SaveTGF)
CLASH(short, SX_InsertEXENTRY)
CLASH(short, SX_LoadEData)
CLASH(short, SX_SlotToInst)
CLASH(short, SX_GetShowLayer)

TEST(NameClash, TheExtensionAndTheEngineKeepToThemselves) {
  const auto attach = FunctionOf<decltype(SonkelEngineAttach)>(OpenBundle(SOK_ENGINE_BUNDLE), "SonkelEngineAttach");
  sok::Document document;
  document.AddStaff();
  document.AddMeasure(4096);
  sok::Session session;
  session.document = &document;
  attach(&session);

  const ExtensionBundle extension;
  ASSERT_EQ(extension.Main(), 1);
  EREGION region = Region(1, 1, 1, 1);
  EXPECT_EQ(extension.Invoke(1, &region), 1);
  EXPECT_EQ(document.EntryCount({1, 1, 0}), 1);
  EXPECT_EQ(extension.Invoke(0, &region), 1);
  EXPECT_EQ(document.EntryCount({1, 1, 0}), 0);
  EXPECT_EQ(g_reached, 0);
  attach(nullptr);
}
