/// @file
/// Frames that free themselves, and loops over the music of a region.
///
/// A *cell* is one staff in one measure; the music of one of its layers is a *frame*. Every load is one SX_LoadTGF with
/// option 1, and every frame goes back with one SX_FreeTGF when its object ends. Measures and slots count from 1,
/// layers from 0; both ends of a region are inside of it.
#pragma once

#include <algorithm>
#include <iterator>
#include <memory>

#include "SokExtShared/SokEDK/Source/edk/entries.h"
#include "SokExtShared/SokEDK/Source/host_types.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"

namespace edk {

/// One staff in one measure.
struct Cell {
  unsigned short stafflist = 0;  ///< the staff list that `slot` counts in; 0 is the document's global list
  short slot = 1;                ///< from 1
  short measure = 1;             ///< from 1

  /// The number of the staff's instrument (SX_SlotToInst); 0 when there is no such staff.
  short Instrument() const { return SX_SlotToInst(slot, stafflist, kInterfaceVersion); }
};

/// The music of one layer of a cell, on loan from the host. Moved, not copied.
class Frame {
 public:
  /// Loads nothing, or a layer. Without such a layer, staff or measure the object holds no frame: ask it first.
  ///@{
  Frame() = default;
  Frame(const Cell& cell, short layer)
      : frame_(SX_LoadTGF(cell.stafflist, cell.slot, cell.measure, layer, 1, kInterfaceVersion)),
        cell_(cell),
        layer_(layer) {}
  explicit operator bool() const { return frame_ != nullptr; }
  ///@}

  /// Where it stands in the score.
  ///@{
  const Cell& Place() const { return cell_; }
  short Layer() const { return layer_; }
  ///@}

  // What follows needs a frame.

  /// Whether there is no entry at all.
  bool IsEmpty() const { return frame_->count == 0; }

  /// The entries, until the next insertion or removal.
  EntryViews Entries() const {
    const short count = frame_->count;
    return {frame_->entries, frame_->entries == nullptr ? 0 : std::max<int>(count, 0)};
  }

  /// Its length in duration units (SX_GetTGFDuration).
  int Duration() const { return SX_GetTGFDuration(frame_.get(), kInterfaceVersion); }

  /// Hand the frame to the host; false when it refuses. A change is kept when it has been saved.
  ///@{
  bool Save() const { return SX_SaveTGF(frame_.get(), kInterfaceVersion) != 0; }
  bool Insert(int index, int count = 1) const {
    return SX_InsertEXENTRY(frame_.get(), static_cast<short>(index), static_cast<short>(count), kInterfaceVersion) != 0;
  }
  bool Remove(int index, int count = 1) const {
    return SX_DeleteEXENTRY(frame_.get(), static_cast<short>(index), static_cast<short>(count), kInterfaceVersion) != 0;
  }
  ///@}

  /// Saves a frame without entries in its place. The frame in hand stays as it is.
  bool SaveEmpty() const {
    EXTGF2005a empty{};
    std::copy(std::begin(frame_->key), std::end(frame_->key), empty.key);
    return SX_SaveTGF(&empty, kInterfaceVersion) != 0;
  }

  /// Each frame takes the other's place with all that it holds, once both are saved.
  void SwapPlaces(Frame& other) {
    std::swap_ranges(std::begin(frame_->key), std::end(frame_->key), other.frame_->key);
    std::swap(cell_, other.cell_);
    std::swap(layer_, other.layer_);
  }

  /// The host's frame.
  EXTGF2005a* Raw() const { return frame_.get(); }

 private:
  struct Free {
    void operator()(EXTGF2005a* frame) const { SX_FreeTGF(frame, kInterfaceVersion); }
  };
  std::unique_ptr<EXTGF2005a, Free> frame_;
  Cell cell_;
  short layer_ = 0;
};

/// Numbers from the first to the last, for loops. Counts wider than 16 bits: a range up to the last number ends, too.
class Numbers {
  struct MakeNumber {
    short operator()(int at) const { return static_cast<short>(at); }
  };

 public:
  using Iterator = Stepping<int, MakeNumber>;  ///< over the numbers

  /// Both ends are inside; none when the last is below the first.
  Numbers(short first, short last) : first_(first), last_(last) {}
  /// For range-based loops.
  ///@{
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(std::max<int>(first_, last_ + 1)); }
  ///@}

 private:
  int first_;
  int last_;
};

/// The slots and the measures of a region.
///@{
inline Numbers Slots(const EREGION& region) { return {region.start.slot, region.end.slot}; }
inline Numbers Measures(const EREGION& region) { return {region.start.measure, region.end.measure}; }
///@}

/// The cells of a region: measure by measure, and in a measure slot by slot. The start point's staff list counts.
class Cells {
 public:
  class Iterator {
   public:
    using value_type = Cell;
    using difference_type = std::ptrdiff_t;
    explicit Iterator(const Cells& cells) : cells_(cells), slot_(cells.first_slot_), measure_(cells.first_measure_) {
      if (cells_.first_slot_ > cells_.last_slot_) measure_ = cells_.last_measure_ + 1;
    }
    Cell operator*() const { return {cells_.stafflist_, static_cast<short>(slot_), static_cast<short>(measure_)}; }
    Iterator& operator++() {
      if (++slot_ > cells_.last_slot_) slot_ = cells_.first_slot_, ++measure_;
      return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return measure_ > cells_.last_measure_; }

   private:
    const Cells& cells_;
    int slot_;  // wider than the 16-bit numbers, so that a region that ends at the last of them ends
    int measure_;
  };

  /// Of a whole region, of one of its slots, of one cell.
  ///@{
  explicit Cells(const EREGION& region)
      : stafflist_(region.start.stafflist),
        first_slot_(region.start.slot),
        last_slot_(region.end.slot),
        first_measure_(region.start.measure),
        last_measure_(region.end.measure) {}
  Cells(const EREGION& region, short slot) : Cells(region) { first_slot_ = last_slot_ = slot; }
  explicit Cells(const Cell& cell)
      : stafflist_(cell.stafflist),
        first_slot_(cell.slot),
        last_slot_(cell.slot),
        first_measure_(cell.measure),
        last_measure_(cell.measure) {}
  ///@}

  /// For range-based loops.
  ///@{
  Iterator begin() const { return Iterator(*this); }
  std::default_sentinel_t end() const { return {}; }
  ///@}

 private:
  unsigned short stafflist_;
  int first_slot_;
  int last_slot_;
  int first_measure_;
  int last_measure_;
};

/// The frames of cells: cell by cell, and in a cell layer by layer, from 0 to below `layers`. Layers that the host has
/// no frame for are passed over. A frame is freed before the next one is loaded, unless the loop moves it out.
class Frames {
 public:
  class Iterator {
   public:
    using value_type = Frame;
    using difference_type = std::ptrdiff_t;
    Iterator(const Cells& cells, int layers) : cell_(cells), layers_(layers) { ++*this; }
    Frame& operator*() { return frame_; }
    Iterator& operator++() {
      frame_ = Frame();  // goes back first
      for (; layers_ > 0 && cell_ != std::default_sentinel; ++cell_, layer_ = 0) {
        while (layer_ < layers_) {
          frame_ = Frame(*cell_, static_cast<short>(layer_++));
          if (frame_) return *this;
        }
      }
      return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return !frame_; }

   private:
    Cells::Iterator cell_;
    int layers_;
    int layer_ = 0;  // the next one to load
    Frame frame_;
  };

  /// Of cells, of a region, of one cell. `layers` is what the command was given.
  ///@{
  Frames(const Cells& cells, short layers) : cells_(cells), layers_(layers) {}
  Frames(const EREGION& region, short layers) : Frames(Cells(region), layers) {}
  Frames(const Cell& cell, short layers) : Frames(Cells(cell), layers) {}
  ///@}

  /// For range-based loops.
  ///@{
  Iterator begin() const { return {cells_, layers_}; }
  std::default_sentinel_t end() const { return {}; }
  ///@}

 private:
  Cells cells_;
  int layers_;
};

}  // namespace edk
