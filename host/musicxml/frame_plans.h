// What the saved frames mean for the entries that were read: which entry each one is, whether it came from elsewhere,
// and which ties no longer hold.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/model.h"

namespace sok {

// One end of a tie on a note of an entry that was read; notes count from 0 as they were handed out.
struct LooseEnd {
  std::size_t note = 0;
  TieEnd end = kTieStart;
};

class FramePlans {
 public:
  FramePlans(const Model& model, const Document& document, const std::vector<Change>& changes);

  // The entries of a changed frame, and those that it was handed out with.
  const std::vector<EXENTRY>& After(const FramePlace& place) const { return frames_.at(place).after; }
  // The entry as it was handed out.
  EXENTRY Before(int number) const;
  // The number of the entry that one of a frame's entries is; 0 for a new one. An entry that stands in two frames is
  // the one that was there before, and a new one in the other frame.
  int SourceOf(const FramePlace& place, const EXENTRY& entry) const;

  // The ends of ties that lost their partner, by entry.
  const std::map<int, std::vector<LooseEnd>>& LooseEnds() const { return loose_ends_; }

 private:
  struct Frame {
    std::vector<EXENTRY> before;
    std::vector<EXENTRY> after;
  };
  struct Spot {
    FramePlace place;
    std::size_t index = 0;
  };
  // An entry of a voice of a part, by its place in the model.
  struct VoicePlace {
    std::size_t part = 0;
    std::size_t measure = 0;  // from 0
    std::uint32_t voice = 0;  // index in Part::cells
  };

  std::vector<EXENTRY> Read(const FramePlace& place) const;
  std::vector<EXENTRY> Now(const FramePlace& place) const;
  void FindLooseEnds(const VoicePlace& at);
  void CheckTie(int first, int second);
  int Follower(const VoicePlace& at, int step) const;
  bool StillTied(int first, std::size_t note, int second, std::size_t other) const;
  bool FollowsStill(int first, int second) const;
  const EXNOTE* NoteNow(int number, std::size_t note, EXENTRY& entry) const;

  const Model& model_;
  ModelFrames read_;
  std::map<FramePlace, Frame> frames_;
  std::map<int, Spot> now_;  // where the entries of changed frames are
  std::map<int, std::vector<LooseEnd>> loose_ends_;
};

}  // namespace sok
