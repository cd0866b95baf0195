// The model's voices as the frames of the host's interface.
#pragma once

#include "host/engine/document.h"
#include "host/musicxml/model.h"

namespace sok {

inline constexpr unsigned int kEntryIsGrace = 0x00000100;  // in EXENTRY::flags: takes no time
inline constexpr unsigned int kNoteTieStart = 0x40000000;  // in EXNOTE::flags: tied to the next entry
inline constexpr unsigned int kNoteTieStop = 0x20000000;   // and to the one before
inline constexpr unsigned int kNoteTies = kNoteTieStart | kNoteTieStop;

// The staff's middle line in its first clef, in steps from middle C.
int MiddleLine(const Model& model, short slot);
// What a rest's note record says of its place.
inline short PlaceOfRest(const EXENTRY& rest) { return rest.noteCount > 0 ? rest.notes[0].first : short{0}; }

// How the host interface sees a score:
// - a note's first word is its diatonic steps from middle C, its second its alteration in semitones;
// - a rest has one note record, whose first word is the step that it stands on where the score says so; such a rest has
//   kEntryRestPlaced. A whole-measure rest without a place is placed on the staff's middle line, as the instrument
//   definition says, exactly as the fill command would write it;
// - flags of the host's own tell of grace notes and of both ends of ties.
class ModelFrames : public EntrySource {
 public:
  explicit ModelFrames(const Model& model) : model_(model) {}

  bool Has(const FramePlace& place) const override {
    return model_.HandsOut(place.instrument, place.measure, place.layer);
  }
  short Count(const FramePlace& place) const override;
  void Fill(const FramePlace& place, EXENTRY* entries) const override;
  int LastNumber() const override { return static_cast<int>(model_.entries.size()); }
  std::optional<Position> Find(int number) const override;

  // An entry as it is handed out, and where; none when the number is not in use.
  struct Origin {
    FramePlace place;
    EXENTRY entry;
    bool whole = false;  // it lasts a whole measure
  };
  std::optional<Origin> OriginOf(int number) const;

 private:
  struct Spot {
    const VoiceMeasure* voice = nullptr;  // null: the number is not in use
    FramePlace place;
  };
  Spot SpotOf(int number) const;
  void FillOne(const Spot& spot, std::uint32_t index, EXENTRY& entry) const;

  const Model& model_;
  mutable Spot last_;  // where an entry was found: the next one mostly stands there, too
};

// Staves, measures and the records that the commands and the kit ask for beside the music.
void FillDocument(const Model& model, Document& document);

// Whether two entries are the same music: what the tidying before a save changes does not count.
bool SameMusic(const EXENTRY& a, const EXENTRY& b);

}  // namespace sok
