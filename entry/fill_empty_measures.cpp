#include <memory>
#include <new>

#include "SokExtShared/SokEDK/Source/edk/frames.h"
#include "SokExtShared/SokEDK/Source/edk/preferences.h"
#include "SokExtShared/SokEDK/Source/edk/record_kinds.h"
#include "entry/measure_rests.h"

namespace {

using PreferenceArray = std::unique_ptr<edk::LayerPreferences[]>;

PreferenceArray LoadLayerPreferences(short layers) {
  const auto count = static_cast<std::size_t>(layers > 0 ? layers : 0);
  PreferenceArray preferences(new (std::nothrow) edk::LayerPreferences[count]);
  if (preferences == nullptr) return preferences;
  for (std::size_t i = 0; i < count; ++i) {
    preferences[i] = edk::LoadOrZero<edk::LayerPreferences>({static_cast<int>(i)});
  }
  return preferences;
}

// Whether a layer leaves its measure empty. The host is asked for a hidden layer while the frame is still held.
bool LayerCountsAsEmpty(const edk::Cell& cell, short layer, const edk::LayerPreferences& preferences) {
  const edk::Frame frame(cell, layer);
  if (!frame) return false;
  if (frame.IsEmpty()) return true;
  return preferences.HiddenCountsAsEmpty() && SX_GetShowLayer(layer, kInterfaceVersion) == 0;
}

// Every layer up to the layer count must be passed. A negative count is never reached, so no measure is empty then;
// with a count of 0 every measure is.
bool IsEmpty(const edk::Cell& cell, short layers, const PreferenceArray& preferences) {
  short layer = 0;
  while (layer < layers && LayerCountsAsEmpty(cell, layer, preferences[static_cast<std::size_t>(layer)])) ++layer;
  return layer == layers;
}

short RestPlacement(const edk::Cell& cell) {
  const auto definition = edk::Load<edk::InstrumentDefinition>({cell.Instrument()});
  return definition ? definition->WholeMeasureRestPlacement() : short{0};
}

bool InsertWholeMeasureRest(const edk::Cell& cell) {
  const edk::Frame frame(cell, 0);
  if (!frame || !frame.Insert(0)) return false;
  const edk::EntryViews entries = frame.Entries();
  if (entries.empty()) return false;
  entries.front().MakeWholeMeasureRest(RestPlacement(cell));
  frame.Save();  // a refused save is not noticed: the insertion is what counts
  return true;
}

}  // namespace

short FillEmptyMeasures(const EREGION& region, short layers) {
  const PreferenceArray preferences = LoadLayerPreferences(layers);
  if (preferences == nullptr) return 0;
  short changed = 0;
  for (const edk::Cell& cell : edk::Cells(region)) {
    if (IsEmpty(cell, layers, preferences) && InsertWholeMeasureRest(cell)) changed = 1;
  }
  return changed;
}
