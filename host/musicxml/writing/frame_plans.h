// What the saved frames mean for ties: which of those that were read no longer hold, and which come.
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

  // The ends of ties that lost their partner or their flag, by entry.
  const std::map<int, std::vector<LooseEnd>>& LooseEnds() const { return loose_ends_; }
  // Leaves an entry of a changed frame the flags of those ties that it is to have. A flag that a note has not had needs
  // a note to be tied to: a new note without one is not tied, for another one Error is thrown.
  void SettleTies(EXENTRY& entry) const;

 private:
  // An entry of a voice of a part, by its place in the model.
  struct VoicePlace {
    std::size_t part = 0;
    std::size_t measure = 0;  // from 0
    std::uint32_t voice = 0;  // index in Part::cells
  };

  void FindCutTies(int number);
  void FindLooseEnds(const VoicePlace& at);
  void Loosen(int number, std::size_t note, TieEnd end);
  bool IsLoose(int number, std::size_t note, TieEnd end) const;
  bool HasPartner(int number, const EXNOTE& note, TieEnd end) const;
  void CheckTie(int first, int second);
  int Follower(const VoicePlace& at, int step) const;
  bool StillTied(int first, std::size_t note, int second, std::size_t other) const;
  bool FollowsStill(int first, int second) const;
  const EXNOTE* NoteNow(int number, std::size_t note, EXENTRY& entry) const;

  const Model& model_;
  const Document& document_;
  ModelFrames read_;
  std::map<int, std::vector<LooseEnd>> loose_ends_;
};

}  // namespace sok
