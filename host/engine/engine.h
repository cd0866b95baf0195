// The state behind the exported host calls: the session attached, the frames handed out, and the documents to go back
// to when an edit is cancelled.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/engine/session.h"

namespace sok {

class Engine {
 public:
  Engine() = default;
  ~Engine() { Attach(nullptr); }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // Releases the frames that are still out and forgets open edits.
  void Attach(Session* session);
  Session* session() const { return session_; }

  // Null for a place that does not exist.
  EXTGF2005a* LoadFrame(unsigned short list, short slot, short measure, short layer, short option);
  // False for a frame that is not out. The frame is gone afterwards.
  bool FreeFrame(EXTGF2005a* frame);
  bool IsOut(EXTGF2005a* frame) const { return frames_.contains(frame); }

  // Stores the entries in the frame's place as its key words tell it. Any frame may be saved, also one that the
  // extension built. Entries that get new numbers have them in `frame` afterwards.
  bool SaveFrame(EXTGF2005a* frame);
  int FrameDuration(const EXTGF2005a* frame) const;

  // Frames that are out only; the entry array moves. New entries are zero but for their number.
  bool InsertEntries(EXTGF2005a* frame, short index, short count);
  bool DeleteEntries(EXTGF2005a* frame, short index, short count);
  void ReduceEntries(EXTGF2005a* frame);  // drops what has no duration and is no note, as an insertion leaves it

  void OpenEdit(std::string text);  // as the undo menu is to show it, UTF-8
  bool CloseEdit(bool keep);        // the innermost; false when none is open

 private:
  // The entries that a frame holds; nothing when its count and array do not fit together.
  std::optional<std::span<const EXENTRY>> EntriesOf(const EXTGF2005a* frame) const;
  void ReplaceEntries(EXTGF2005a* frame, std::span<const EXENTRY> entries);

  // The array that a frame was given, to tell a count that reaches beyond it.
  struct EntryArray {
    const EXENTRY* entries = nullptr;
    short count = 0;
  };

  Session* session_ = nullptr;
  bool guard_frames_ = false;
  std::unordered_map<const EXTGF2005a*, EntryArray> frames_;
  std::vector<Document> before_edits_;
};

// The place that a frame's key words name; it need not exist.
FramePlace PlaceOf(const EXTGF2005a& frame);

}  // namespace sok
