// A score in memory, as the host's interface sees it: staves, measures, layers, frames of entries, data records,
// fonts and parts.
//
// Instruments, slots and measures count from 1, layers from 0. Durations are in duration units, 1024 a quarter note.
// Texts are UTF-8. Copies are independent, except that they share the source of entries.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/engine/record_store.h"

namespace sok {

inline constexpr short kLayers = 4;

// Where a frame stands.
struct FramePlace {
  short instrument = 0;
  short measure = 0;
  short layer = 0;

  auto operator<=>(const FramePlace&) const = default;
};

// Hands out the entries of frames that nobody has set, so that a huge score need not hold them expanded. Asked for
// existing places only, at every load: both answers must be quick and always the same.
class EntrySource {
 public:
  virtual ~EntrySource() = default;

  // Whether the score has this place: parts may differ in length.
  virtual bool Has(const FramePlace& /*place*/) const { return true; }

  // The number of entries at a place, 0 to 32767.
  virtual short Count(const FramePlace& place) const = 0;

  // Fills that many entries, which are all zero. Their numbers are unique in the document and between 1 and
  // LastNumber().
  virtual void Fill(const FramePlace& place, EXENTRY* entries) const = 0;

  // The highest entry number in use; entries that come later are numbered above it.
  virtual int LastNumber() const = 0;

  // Where an entry stands and at which index; none when the number is not in use.
  struct Position {
    FramePlace place;
    short index = 0;
  };
  virtual std::optional<Position> Find(int /*number*/) const { return std::nullopt; }
};

class Document {
 public:
  RecordStore records;

  // Adds a staff at the end of the global staff list; its instrument number (which is its slot there, too), or 0 when
  // there are 32767.
  short AddStaff();
  short StaffCount() const;  // instruments are 1 to this

  // Staff list 0 is the global list, which has every staff in order of AddStaff until it is set. Others start empty.
  // Both directions answer 0 for none.
  void SetStaffList(unsigned short list, std::vector<short> instruments);
  short SlotToInst(short slot, unsigned short list) const;
  short InstToSlot(short instrument, unsigned short list) const;

  // Adds a measure at the end; its number, or 0 when there are 32767.
  short AddMeasure(int duration);
  short MeasureCount() const;
  int MeasureDuration(short measure) const;  // 0 when there is no such measure

  // Layers are shown until set otherwise. A layer that does not exist is not shown, and setting it does nothing.
  void SetLayerShown(short layer, bool shown);
  bool LayerShown(short layer) const;

  // Whether a place has a frame: its instrument, measure and layer exist, and the source has it.
  bool Exists(const FramePlace& place) const;

  // The source must outlive the document and its copies; set it once, before entries are set or numbers taken.
  void SetEntrySource(const EntrySource* source);

  // The entries of a frame; none for a place that does not exist.
  std::vector<EXENTRY> Entries(const FramePlace& place) const;
  short EntryCount(const FramePlace& place) const;
  // EntryCount() of them; none may be asked for of a place that does not exist.
  void CopyEntries(const FramePlace& place, EXENTRY* entries) const;

  // Replaces the entries of a frame. An entry whose number is 0 or less gets a new number, and so does one whose number
  // belongs to another entry of the document; once that one is gone the entry has moved, and has its number back. No
  // number is ever given twice. False for a place that does not exist, more than 32767 entries, or a note count outside
  // 0 to 12.
  bool SetEntries(const FramePlace& place, std::vector<EXENTRY> entries);

  // Calls `visit` for every frame that has been set, in order of instrument, measure and layer.
  using FrameVisitor = std::function<void(const FramePlace& place, std::span<const EXENTRY> entries)>;
  void ForEachSetFrame(const FrameVisitor& visit) const;

  // A number that no entry has.
  int NewEntryNumber();
  int LastEntryNumber() const { return last_entry_number_; }  // no entry has a higher one
  // False for a number that came with saved entries and had not been given to any entry by then.
  bool WasHandedOut(int number) const { return !made_up_numbers_.contains(number); }

  // Where an entry stands; none when no frame holds the number.
  std::optional<EntrySource::Position> FindEntry(int number) const;

  // Fonts are numbered from 0 in the order in which they are added; adding one again answers its number. -1: unknown.
  short AddFont(std::string_view name);
  short FontNumber(std::string_view name) const;
  const std::string* FontName(short font) const;  // null: no such font

  // Part 0 is the score; parts are numbered from 1 in the order in which they are added.
  short AddPart(std::string_view name);
  short PartCount() const;                        // without the score
  const std::string* PartName(short part) const;  // null: no such part

  short current_part = 0;
  bool dirty = false;  // has changes that are not saved

 private:
  const std::vector<EXENTRY>* FindSet(const FramePlace& place) const;
  int NumberFor(int wanted);
  void GiveBackNumber(int own);

  std::map<unsigned short, std::vector<short>> staff_lists_ = {{0, {}}};
  short staff_count_ = 0;
  std::vector<int> measure_durations_;
  bool layer_shown_[kLayers] = {true, true, true, true};
  const EntrySource* source_ = nullptr;
  std::unordered_map<std::uint64_t, std::vector<EXENTRY>> set_frames_;  // by packed place
  std::unordered_map<int, std::uint64_t> number_places_;  // of those entries that the source does not have there
  std::unordered_map<int, int> stand_ins_;  // numbers given to entries that stood elsewhere, too, and their own ones
  std::unordered_map<int, int> waiting_;    // own numbers of such entries, and what they are called until then
  int last_entry_number_ = 0;
  std::set<int> made_up_numbers_;
  std::vector<std::string> fonts_;
  std::vector<std::string> parts_ = {"Score"};
};

}  // namespace sok
