// Each preference structure's load, and its save when nothing has changed, beside bare host loads of the same 12-byte
// records.
#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"
#include "host/engine/session.h"
#include "tests/support/bundles.h"

namespace {

struct Record {
  unsigned int tag;
  EDataID id;
};

// The records behind a table, each once, in the order of their loads.
std::vector<Record> RecordsOf(const PreferenceTable& table) {
  std::vector<Record> records;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    const PrefMapRow& row = table.rows[i];
    bool first = true;
    for (std::size_t j = 0; j < i; ++j) first = first && !table.rows[j].SameRecord(row);
    if (!first) continue;
    Record record{FourCharacterTag({'o', 't', row.recordChars[0], row.recordChars[1], '\0'}), {}};
    record.id.other.cmper = row.cmper != 0 ? row.cmper : EDataID::kDocument;
    record.id.other.subIndex = row.subIndex;
    records.push_back(record);
  }
  return records;
}

// The engine over a document that has every record, as sokrun attaches it: nobody watches.
struct Workbench {
  Workbench() {
    gSonkelBundle = OpenBundle(SOK_ENGINE_BUNDLE);
    for (const PreferenceTable& table : kPreferenceTables) {
      for (const Record& record : RecordsOf(table)) {
        const unsigned char words[12] = {};
        document.records.Save(record.tag, record.id, words, sizeof words);
      }
    }
    session.document = &document;
    FunctionOf<decltype(SonkelEngineAttach)>(gSonkelBundle, "SonkelEngineAttach")(&session);
    load = FunctionOf<decltype(SX_LoadEData)>(gSonkelBundle, "SX_LoadEData");
  }

  sok::Document document;
  sok::Session session;
  decltype(SX_LoadEData)* load;
};

Workbench& Bench() {
  static Workbench workbench;
  return workbench;
}

using Structure = std::array<unsigned char, 108>;

void HostLoads(benchmark::State& state, const PreferenceTable& table) {
  const std::vector<Record> records = RecordsOf(table);
  decltype(SX_LoadEData)* const load = Bench().load;
  for (auto _ : state) {
    for (const Record& record : records) {
      unsigned char words[12];
      int size = sizeof words;
      load(record.tag, &record.id, words, &size, kInterfaceVersion);
      benchmark::DoNotOptimize(words);
    }
  }
}

void Load(benchmark::State& state, const PreferenceTable& table) {
  Bench();
  const EDataID id{};
  Structure structure;
  int size = 0;
  for (auto _ : state) {
    SX_LoadEData(table.tag, &id, structure.data(), &size, kInterfaceVersion);
    benchmark::DoNotOptimize(structure);
  }
}

void SaveUnchanged(benchmark::State& state, const PreferenceTable& table) {
  Bench();
  const EDataID id{};
  Structure structure;
  int size = 0;
  SX_LoadEData(table.tag, &id, structure.data(), &size, kInterfaceVersion);
  for (auto _ : state) {
    benchmark::DoNotOptimize(SX_SaveEData(table.tag, &id, structure.data(), size, kInterfaceVersion));
  }
}

[[maybe_unused]] const bool registered = [] {
  for (const PreferenceTable& table : kPreferenceTables) {
    const std::string tag = sok::FourCharacters(table.tag);
    benchmark::RegisterBenchmark((tag + "/host_loads").c_str(), HostLoads, table);
    benchmark::RegisterBenchmark((tag + "/load").c_str(), Load, table);
    benchmark::RegisterBenchmark((tag + "/save_unchanged").c_str(), SaveUnchanged, table);
  }
  return true;
}();

}  // namespace
