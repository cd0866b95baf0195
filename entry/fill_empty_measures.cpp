#include <memory>
#include <new>

#include "SokExtShared/LIB/records/typed_records.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"
#include "entry/measure_rests.h"

namespace {

constexpr unsigned int kLayerPreferencesTag = 0x70664C41;      // 'pfLA'
constexpr unsigned int kInstrumentDefinitionTag = 0x534F4953;  // 'SOIS'

struct LayerPreferences {
  unsigned char bytes[4];

  bool HiddenCountsAsEmpty() const { return (bytes[2] & 0x02) != 0; }
};

struct InstrumentDefinition {
  unsigned char host0[24];
  short restPlacement;  // the high byte, plus 10, places a rest on the staff
  unsigned char host26[110];
};
static_assert(sizeof(InstrumentDefinition) == 136 && offsetof(InstrumentDefinition, restPlacement) == 24);

using PreferenceArray = std::unique_ptr<LayerPreferences[]>;

// One staff in one measure of the selection.
struct Cell {
  unsigned short stafflist;
  short slot;
  short measure;

  EXTGF2005a* LoadLayer(short layer) const { return SX_LoadTGF(stafflist, slot, measure, layer, 1, kInterfaceVersion); }
};

PreferenceArray LoadLayerPreferences(short layers) {
  PreferenceArray preferences(new (std::nothrow) LayerPreferences[static_cast<size_t>(layers > 0 ? layers : 0)]);
  if (preferences == nullptr) return preferences;
  for (short layer = 0; layer < layers; ++layer) {
    sx_loadglobal(kLayerPreferencesTag, layer, &preferences[static_cast<size_t>(layer)], sizeof(LayerPreferences));
  }
  return preferences;
}

// Whether a layer leaves its measure empty. The host is asked for a hidden layer while the frame is still held.
bool LayerCountsAsEmpty(const Cell& cell, short layer, const LayerPreferences& preferences) {
  EXTGF2005a* const frame = cell.LoadLayer(layer);
  if (frame == nullptr) return false;
  bool empty = frame->count == 0;
  if (!empty && preferences.HiddenCountsAsEmpty()) empty = SX_GetShowLayer(layer, kInterfaceVersion) == 0;
  SX_FreeTGF(frame, kInterfaceVersion);
  return empty;
}

// Every layer up to the layer count must be passed. A negative count is never reached, so no measure is empty then;
// with a count of 0 every measure is.
bool IsEmpty(const Cell& cell, short layers, const PreferenceArray& preferences) {
  short layer = 0;
  while (layer < layers && LayerCountsAsEmpty(cell, layer, preferences[static_cast<size_t>(layer)])) ++layer;
  return layer == layers;
}

short RestPlacement(const Cell& cell) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(SX_SlotToInst(cell.slot, cell.stafflist, kInterfaceVersion));
  InstrumentDefinition definition{};
  int size = sizeof definition;
  if (SX_LoadEData(kInstrumentDefinitionTag, &id, &definition, &size, kInterfaceVersion) == 0) return 0;
  return static_cast<short>((definition.restPlacement >> 8) + 10);
}

void MakeWholeMeasureRest(EXENTRY& entry, const Cell& cell) {
  entry.duration = kWholeRestDuration;
  entry.flags = kEntryLegal | kEntryHasRestNote | kEntryRestPlaced;
  entry.host12 = 0x0080;
  entry.noteCount = 1;
  entry.notes[0] = {.first = RestPlacement(cell), .second = 0, .identifier = 1, .flags = kNoteLegal};
}

bool InsertWholeMeasureRest(const Cell& cell) {
  EXTGF2005a* const frame = cell.LoadLayer(0);
  if (frame == nullptr) return false;
  // The host may replace the entry array, hence the second look at it.
  const bool inserted = SX_InsertEXENTRY(frame, 0, 1, kInterfaceVersion) != 0 && frame->entries != nullptr;
  if (inserted) {
    MakeWholeMeasureRest(frame->entries[0], cell);
    SX_SaveTGF(frame, kInterfaceVersion);  // a refused save is not noticed: the insertion is what counts
  }
  SX_FreeTGF(frame, kInterfaceVersion);
  return inserted;
}

}  // namespace

short FillEmptyMeasures(const EREGION& region, short layers) {
  const PreferenceArray preferences = LoadLayerPreferences(layers);
  if (preferences == nullptr) return 0;
  short changed = 0;
  // Wider than the 16-bit numbers, so that a selection that ends at the last of them ends.
  for (int measure = region.start.measure; measure <= region.end.measure; ++measure) {
    for (int slot = region.start.slot; slot <= region.end.slot; ++slot) {
      const Cell cell = {region.start.stafflist, static_cast<short>(slot), static_cast<short>(measure)};
      if (IsEmpty(cell, layers, preferences) && InsertWholeMeasureRest(cell)) changed = 1;
    }
  }
  return changed;
}
