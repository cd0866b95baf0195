// A wrapper beside a direct call of the same host function, and both commands beside bare loops of the host calls that
// they make.
#include <CoreFoundation/CoreFoundation.h>
#include <benchmark/benchmark.h>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "host/engine/session.h"
#include "tests/extension/extension_bundle.h"
#include "tests/support/bundles.h"

namespace {

constexpr short kStaves = 8;
constexpr short kMeasures = 250;

// Every second cell holds music in layer 0, the others nothing.
bool HasMusic(int slot, int measure) { return (slot + measure) % 2 == 0; }

// The engine over a score, as sokrun attaches it: nobody watches.
struct Workbench {
  Workbench() {
    gSonkelBundle = OpenBundle(SOK_ENGINE_BUNDLE);
    for (short slot = 1; slot <= kStaves; ++slot) document.AddStaff();
    for (short measure = 1; measure <= kMeasures; ++measure) document.AddMeasure(4096);
    for (short slot = 1; slot <= kStaves; ++slot) {
      for (short measure = 1; measure <= kMeasures; ++measure) {
        if (!HasMusic(slot, measure)) continue;
        std::vector<EXENTRY> entries(4);
        for (EXENTRY& entry : entries) entry.duration = 1024, entry.flags = 0xC0000000, entry.noteCount = 1;
        document.SetEntries({slot, measure, 0}, entries);
      }
    }
    session.document = &document;
    Find<decltype(SonkelEngineAttach)>("SonkelEngineAttach")(&session);
    extension.Main();
    load = Find<decltype(SX_LoadTGF)>("SX_LoadTGF");
    free = Find<decltype(SX_FreeTGF)>("SX_FreeTGF");
    save = Find<decltype(SX_SaveTGF)>("SX_SaveTGF");
    insert = Find<decltype(SX_InsertEXENTRY)>("SX_InsertEXENTRY");
    load_record = Find<decltype(SX_LoadEData)>("SX_LoadEData");
    slot_to_inst = Find<decltype(SX_SlotToInst)>("SX_SlotToInst");
    is_mach_o = Find<decltype(SX_IsMachO)>("SX_IsMachO");
  }
  template <typename Function>
  static Function* Find(const char* name) {
    return FunctionOf<Function>(gSonkelBundle, name);
  }

  sok::Document document;
  sok::Session session;
  ExtensionBundle extension;
  decltype(SX_LoadTGF)* load;
  decltype(SX_FreeTGF)* free;
  decltype(SX_SaveTGF)* save;
  decltype(SX_InsertEXENTRY)* insert;
  decltype(SX_LoadEData)* load_record;
  decltype(SX_SlotToInst)* slot_to_inst;
  decltype(SX_IsMachO)* is_mach_o;
};

Workbench& Bench() {
  static Workbench workbench;
  return workbench;
}

template <typename Visit>
void ForEachCell(Visit visit) {
  for (short measure = 1; measure <= kMeasures; ++measure) {
    for (short slot = 1; slot <= kStaves; ++slot) visit(slot, measure);
  }
}

void RunCommand(int command) {
  EREGION region = Region(1, kStaves, 1, kMeasures);
  benchmark::DoNotOptimize(Bench().extension.Invoke(command, &region));
}

void BareFill(Workbench& host) {
  for (short layer = 0; layer < 4; ++layer) {
    EDataID id{};
    id.global.instance = layer;
    unsigned char preference[4] = {};
    int size = 4;
    host.load_record(record_tags::kLayerPreferences, &id, preference, &size, kInterfaceVersion);
  }
  ForEachCell([&](short slot, short measure) {
    const short layers = HasMusic(slot, measure) ? 1 : 4;
    for (short layer = 0; layer < layers; ++layer) {
      host.free(host.load(0, slot, measure, layer, 1, kInterfaceVersion), kInterfaceVersion);
    }
    if (HasMusic(slot, measure)) return;
    EXTGF2005a* const frame = host.load(0, slot, measure, 0, 1, kInterfaceVersion);
    host.insert(frame, 0, 1, kInterfaceVersion);
    frame->entries[0].duration = 4096;
    EDataID id{};
    id.other.cmper = static_cast<unsigned short>(host.slot_to_inst(slot, 0, kInterfaceVersion));
    unsigned char definition[136] = {};
    int size = sizeof definition;
    host.load_record(record_tags::kInstrument, &id, definition, &size, kInterfaceVersion);
    host.save(frame, kInterfaceVersion);
    host.free(frame, kInterfaceVersion);
  });
}

void BareClear(Workbench& host) {
  ForEachCell([&](short slot, short measure) {
    for (short layer = 0; layer < 4; ++layer) {
      EXTGF2005a* const frame = host.load(0, slot, measure, layer, 1, kInterfaceVersion);
      if (layer == 0 && !HasMusic(slot, measure)) {
        EXTGF2005a empty{};
        std::copy(std::begin(frame->key), std::end(frame->key), empty.key);
        host.save(&empty, kInterfaceVersion);
      }
      host.free(frame, kInterfaceVersion);
    }
  });
}

void Kit_Wrapper(benchmark::State& state) {
  Bench();
  for (auto _ : state) benchmark::DoNotOptimize(SX_IsMachO(kInterfaceVersion));
}
void Direct_Wrapper(benchmark::State& state) {
  auto* volatile function = Bench().is_mach_o;
  for (auto _ : state) benchmark::DoNotOptimize(function(kInterfaceVersion));
}
BENCHMARK(Kit_Wrapper);
BENCHMARK(Direct_Wrapper);

// Each of the two runs on a score that the other one left, untimed.
template <typename Timed, typename Untimed>
void Alternate(benchmark::State& state, Timed timed, Untimed untimed) {
  for (auto _ : state) {
    state.PauseTiming();
    untimed();
    state.ResumeTiming();
    timed();
  }
}
void Kit_Fill(benchmark::State& state) {
  Alternate(
      state, [] { RunCommand(1); }, [] { RunCommand(0); });
}
void Bare_Fill(benchmark::State& state) {
  Alternate(
      state, [] { BareFill(Bench()); }, [] { RunCommand(0); });
}
void Kit_Clear(benchmark::State& state) {
  Alternate(
      state, [] { RunCommand(0); }, [] { RunCommand(1); });
}
void Bare_Clear(benchmark::State& state) {
  Alternate(
      state, [] { BareClear(Bench()); }, [] { RunCommand(1); });
}
BENCHMARK(Kit_Fill)->Unit(benchmark::kMicrosecond);
BENCHMARK(Bare_Fill)->Unit(benchmark::kMicrosecond);
BENCHMARK(Kit_Clear)->Unit(benchmark::kMicrosecond);
BENCHMARK(Bare_Clear)->Unit(benchmark::kMicrosecond);

}  // namespace
