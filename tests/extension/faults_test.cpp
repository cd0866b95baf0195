// A host that fails: every host call of both commands in turn, in every way a host can fail. Nothing crashes, every
// frame goes back, and what is written is what the calls before the fault allow.
#include <gtest/gtest.h>

#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "tests/extension/extension_bundle.h"
#include "tests/extension/saboteur.h"
#include "tests/support/test_host.h"

namespace {

void FillDocument(sok::Document& document, int variant) {
  for (short measure = 1; measure <= 2; ++measure) {
    for (short layer = 0; layer < 4; ++layer) {
      std::vector<EXENTRY> entries;
      const int kind = (variant + measure + layer) % 4;  // empty, a whole-measure rest, music, two rests
      for (int i = 0; i < (kind == 0 ? 0 : kind == 1 ? 1 : 2); ++i) {
        EXENTRY entry{};
        entry.duration = kind == 1 ? 4096 : 2048;
        entry.flags = kind == 2 ? 0xC0000000 : 0x80000000;
        entry.noteCount = static_cast<short>(kind == 3 ? 0 : 1);
        entries.push_back(entry);
      }
      if (variant == 3) entries.clear();
      document.SetEntries({1, measure, layer}, entries);
      document.SetLayerShown(layer, variant != 2);
      const unsigned char preference[4] = {0, 0, static_cast<unsigned char>(variant == 2 ? 2 : 0), 0};
      document.records.Save(record_tags::kLayerPreferences, record_calls::GlobalKey(layer), preference, 4);
    }
  }
}

TEST(Faults, EveryHostCallFailingInTurn) {
  const ExtensionBundle extension;
  TestHost host;
  host.AddScore(1, 2);
  ASSERT_EQ(extension.Main(), 1);
  for (int variant = 0; variant < 4; ++variant) {
    for (const int command : {0, 1}) {
      for (const Fault fault : kFaults) {
        constexpr std::size_t kMostCalls = 60;  // of either command on these documents
        std::size_t most = 0;
        for (std::size_t victim = 0; victim < kMostCalls; ++victim) {
          SCOPED_TRACE(testing::Message() << "variant " << variant << ", command " << command << ", fault "
                                          << static_cast<int>(fault) << ", call " << victim);
          FillDocument(host.document, variant);
          host.calls.clear();
          Saboteur saboteur(host, victim, fault);
          EREGION region = Region(1, 1, 1, 2);
          const int result = extension.Invoke(command, &region);
          most = std::max(most, saboteur.calls());
          // A frame whose freeing the host refused was freed all the same, as far as the extension can tell.
          ASSERT_EQ(host.CallsWith("-> frame").size(), host.CallsWith("SX_FreeTGF").size());
          ASSERT_TRUE(host.session.open_edits.empty());
          const char* const proof = command == 0 ? "SX_SaveTGF" : "SX_InsertEXENTRY";
          ASSERT_TRUE(result == 0 || !host.CallsWith(proof).empty());
          ASSERT_TRUE(command == 1 || host.CallsWith("SX_InsertEXENTRY").empty());
        }
        ASSERT_GT(most, 4u);
        ASSERT_LT(most, kMostCalls);
      }
    }
  }
}

}  // namespace
