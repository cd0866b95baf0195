/// @file
/// Entries and notes by name: what an EXENTRY and an EXNOTE hold, without their bits and their packing.
///
/// `Entry` and `Note` are views: as small as a pointer, passed by value, and valid as long as the record that they look
/// at stays where it is. Insertions and removals replace a frame's entries: ask the frame for them again. Nothing here
/// calls the host, and nothing is kept before the frame is saved.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <type_traits>

#include "SokExtShared/SokEDK/Source/frame_records.h"

namespace edk {

/// Durations, in duration units.
///@{
inline constexpr int kWholeNote = 4096;
inline constexpr int kHalfNote = 2048;
inline constexpr int kQuarterNote = 1024;
inline constexpr int kEighthNote = 512;
inline constexpr int kSixteenthNote = 256;
///@}

/// A written pitch.
struct Pitch {
  int steps = 0;       ///< diatonic steps from middle C: 0 is C4, 6 is B4, -1 is B3
  int alteration = 0;  ///< in semitones: 1 is a sharp, -1 a flat

  /// The octave, 4 from middle C on, and the place in it: 0 is C, 6 is B.
  ///@{
  constexpr int Octave() const { return (steps - Letter()) / 7 + 4; }
  constexpr int Letter() const { return (steps % 7 + 7) % 7; }
  ///@}

  /// The sounding key: 60 is middle C.
  constexpr int Key() const {
    constexpr int kSemitones[] = {0, 2, 4, 5, 7, 9, 11};
    return 12 * (Octave() + 1) + kSemitones[Letter()] + alteration;
  }

  /// The pitch that stands `by_steps` higher and sounds `by_keys` higher: (1, 2) is a major second up, (-2, -3) a minor
  /// third down.
  constexpr Pitch Transposed(int by_steps, int by_keys) const {
    const Pitch natural{steps + by_steps, 0};
    return {natural.steps, Key() + by_keys - natural.Key()};
  }

  /// Equal in every field.
  friend constexpr bool operator==(const Pitch&, const Pitch&) = default;
};

/// One note of an entry, or the note record of a rest.
class Note {
 public:
  /// A view of the host's record.
  explicit Note(EXNOTE& note) : note_(&note) {}

  /// The written pitch; of a rest, `steps` is its placement.
  ///@{
  Pitch GetPitch() const { return {note_->first, note_->second}; }
  void SetPitch(const Pitch& pitch) const {
    note_->first = static_cast<short>(pitch.steps);
    note_->second = static_cast<short>(pitch.alteration);
  }
  ///@}

  /// The number that tells the note from the others of its entry. 0 in a new note: it gets one when the frame is saved.
  int Identifier() const { return note_->identifier; }

  /// The host's record.
  EXNOTE& Raw() const { return *note_; }

 private:
  EXNOTE* note_;
};

/// An iterator over positions that follow each other; `Make` turns a position into what the loop sees.
template <typename Position, typename Make>
class Stepping {
 public:
  /// As the algorithms of the standard library ask for them.
  ///@{
  using iterator_category = std::input_iterator_tag;  ///< what it points to is made on the way
  using value_type = std::invoke_result_t<Make, Position>;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = value_type;
  ///@}

  /// As iterators have them.
  ///@{
  explicit Stepping(Position at = {}) : at_(at) {}
  value_type operator*() const { return Make()(at_); }
  Stepping& operator++() {
    ++at_;
    return *this;
  }
  Stepping operator++(int) { return Stepping(at_++); }
  friend bool operator==(const Stepping&, const Stepping&) = default;
  ///@}

 private:
  Position at_;
};

/// Records that follow each other in memory, as views: a range with a size and an index.
template <typename View, typename Record>
class Views {
  struct MakeView {
    View operator()(Record* at) const { return View(*at); }
  };

 public:
  using Iterator = Stepping<Record*, MakeView>;  ///< over the views

  /// `size` records, of which `first` is the first one.
  Views(Record* first, int size) : first_(first), size_(size) {}

  /// As the containers of the standard library have them.
  ///@{
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(first_ + size_); }
  int size() const { return size_; }
  bool empty() const { return size_ == 0; }
  View operator[](int index) const { return View(first_[index]); }
  View front() const { return View(*first_); }
  View back() const { return View(first_[size_ - 1]); }
  ///@}

 private:
  Record* first_;
  int size_;
};
/// The notes of an entry.
using NoteViews = Views<Note, EXNOTE>;

/// One entry: a note, a chord or a rest.
class Entry {
 public:
  static constexpr int kMostNotes = EXENTRY::kMostNotes;  ///< of a chord

  /// A view of the host's record.
  explicit Entry(EXENTRY& entry) : entry_(&entry) {}

  /// What it is. A chord is a note, a whole-measure rest a rest.
  ///@{
  bool IsNote() const { return (entry_->flags & kEntryIsNote) != 0; }
  bool IsRest() const { return !IsNote(); }
  bool IsWholeMeasureRest() const { return IsRest() && entry_->duration == kWholeRestDuration; }
  ///@}

  /// The host's number of the entry: the key of its articulations, tuplets and other details.
  int Number() const { return entry_->number; }

  /// The written length in duration units. Setting one that an entry cannot have (below 1, above 65535) changes nothing
  /// and returns false.
  ///@{
  int Duration() const { return entry_->duration; }
  bool SetDuration(int units) const {
    if (units < 1 || units > 0xFFFF) return false;
    entry_->duration = static_cast<unsigned short>(units);
    return true;
  }
  ///@}

  /// The notes of a chord; the one note record that a rest has.
  NoteViews Notes() const { return {entry_->notes, NoteCount()}; }

  /// Adds a note behind the others; false when the entry is a rest or full.
  bool AddNote(const Pitch& pitch) const {
    const int count = NoteCount();
    if (IsRest() || count == kMostNotes) return false;
    WriteNote(count, pitch);
    entry_->noteCount = static_cast<short>(count + 1);
    return true;
  }

  /// Makes the entry a note of one pitch, or a rest of a whole measure. Its number stays. `placement` is where on the
  /// staff the rest stands.
  ///@{
  void MakeNote(int units, const Pitch& pitch) const {
    SetDuration(units);
    entry_->flags = kEntryLegal | kEntryIsNote;
    entry_->noteCount = 0;
    AddNote(pitch);
  }
  void MakeWholeMeasureRest(int placement) const {
    entry_->duration = kWholeRestDuration;
    entry_->flags = kEntryLegal | kEntryHasRestNote | kEntryRestPlaced;
    entry_->host12 = kPlacedRestWord;
    entry_->noteCount = 1;
    WriteNote(0, {placement, 0});
    entry_->notes[0].identifier = 1;
  }
  ///@}

  /// The host's record.
  EXENTRY& Raw() const { return *entry_; }

 private:
  static constexpr unsigned short kPlacedRestWord = 0x0080;

  int NoteCount() const { return std::clamp<int>(entry_->noteCount, 0, kMostNotes); }
  void WriteNote(int index, const Pitch& pitch) const {
    entry_->notes[index] = {static_cast<short>(pitch.steps), static_cast<short>(pitch.alteration), 0, kNoteLegal};
  }

  EXENTRY* entry_;
};
/// The entries of a frame.
using EntryViews = Views<Entry, EXENTRY>;

}  // namespace edk
