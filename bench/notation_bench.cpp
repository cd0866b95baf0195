// Find-or-create over 1,000 definitions, beside a bare loop of the loads that the search needs.
// The wrappers and the host are the same in both. The searched contents are those of the last definition.
#include <CoreFoundation/CoreFoundation.h>
#include <benchmark/benchmark.h>

#include "SokExtShared/LIB/notation/chord_suffixes.h"
#include "SokExtShared/LIB/notation/definitions.h"
#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "host/engine/session.h"
#include "tests/support/bundles.h"

namespace {

using record_tags::kArticulationDefinition;
using record_tags::kChordSuffix;
constexpr int kDefinitions = 1000;
constexpr int kElements = 3;

// 1,000 definitions of each kind; only the last of them is like the one that is looked for.
struct Workbench {
  Workbench() {
    gSonkelBundle = OpenBundle(SOK_ENGINE_BUNDLE);
    session.document = &document;
    FunctionOf<decltype(SonkelEngineAttach)>(gSonkelBundle, "SonkelEngineAttach")(&session);
    for (int number = 1; number <= kDefinitions; ++number) {
      const short mark = number == kDefinitions ? 1 : 0;
      EDTArticulationDefinition2012 articulation{};
      articulation.words[24] = mark;
      sx_saveother(kArticulationDefinition, number, 0, &articulation, sizeof articulation);
      for (int i = 0; i < kElements; ++i) {
        EDTChordSuffix2012 element{};
        element.words[7] = mark;
        sx_saveother(kChordSuffix, number, i, &element, sizeof element);
      }
      const short top[6] = {-1};
      for (const unsigned int tag : record_tags::kInstrumentList) {
        if (mark == 0 || tag == record_tags::kInstrumentList[0] || tag == record_tags::kInstrumentList[1]) {
          sx_saveother(tag, number, 0, top, sizeof top);
        }
      }
    }
  }

  sok::Document document;
  sok::Session session;
};

void Prepare() { static Workbench workbench; }

bool BareLoad(unsigned int tag, int number, int place, void* buffer, int size) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(number);
  id.other.subIndex = static_cast<short>(place);
  return SX_LoadEData(tag, &id, buffer, &size, kInterfaceVersion) != 0;
}

void Articulation_Bare(benchmark::State& state) {
  Prepare();
  for (auto _ : state) {
    EDTArticulationDefinition2012 record;
    for (int number = 1; number <= kDefinitions; ++number) {
      benchmark::DoNotOptimize(BareLoad(kArticulationDefinition, number, 0, &record, sizeof record));
    }
  }
}
BENCHMARK(Articulation_Bare);

void Articulation_FindOrCreate(benchmark::State& state) {
  Prepare();
  EDTArticulationDefinition2012 wanted{};
  wanted.words[24] = 1;
  for (auto _ : state) {
    if (FindOrCreateArticulation(wanted) != kDefinitions) state.SkipWithError("wrong number");
  }
}
BENCHMARK(Articulation_FindOrCreate);

void ChordSuffix_Bare(benchmark::State& state) {
  Prepare();
  for (auto _ : state) {
    EDTChordSuffix2012 record;
    for (int number = 1; number <= kDefinitions; ++number) {
      for (int i = 0; BareLoad(kChordSuffix, number, i, &record, sizeof record); ++i) benchmark::DoNotOptimize(record);
    }
  }
}
BENCHMARK(ChordSuffix_Bare);

void ChordSuffix_FindOrCreate(benchmark::State& state) {
  Prepare();
  std::vector<EDTChordSuffix2012> wanted(kElements);
  for (auto& element : wanted) element.words[7] = 1;
  for (auto _ : state) {
    if (FindOrCreateChordSuffix(wanted) != kDefinitions) state.SkipWithError("wrong number");
  }
}
BENCHMARK(ChordSuffix_FindOrCreate);

// The optional lists of all but the last definition end the look at it with the third load.
void TopStaffList_Bare(benchmark::State& state) {
  Prepare();
  for (auto _ : state) {
    short record[6];
    for (int number = 1; number <= kDefinitions; ++number) {
      for (int list = 0; list < 3; ++list) {
        benchmark::DoNotOptimize(BareLoad(record_tags::kInstrumentList[list], number, 0, record, sizeof record));
      }
    }
  }
}
BENCHMARK(TopStaffList_Bare);

void TopStaffList_FindOrCreate(benchmark::State& state) {
  Prepare();
  const unsigned short name[] = {0};
  for (auto _ : state) {
    if (FindOrCreateOnTopStaffList(name) != kDefinitions) state.SkipWithError("wrong number");
  }
}
BENCHMARK(TopStaffList_FindOrCreate);

}  // namespace
