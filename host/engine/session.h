// What joins the engine bundle to the program that runs it: the document that host calls work on, what they leave
// behind for the user, and an observer that may watch, refuse and alter every call.
#pragma once

#include <string>
#include <vector>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "SokExtShared/SokEDK/Source/host_types.h"
#include "host/engine/document.h"

namespace sok {

// One host call. Fields that a call has no use for are null or 0.
struct HostCall {
  const char* name = "";
  unsigned int version = 0;
  unsigned int tag = 0;
  const EDataID* id = nullptr;  // as the caller gave it; stepped and created keys are written back before After()
  void* buffer = nullptr;       // record buffers that the call fills
  int* size = nullptr;          // what a load was given and answers
  EXTGF2005a* frame = nullptr;  // the frame handed over; after SX_LoadTGF the frame handed out
  long result = 0;              // the answer; pointers as numbers, 0 where the call answers nothing
  std::string arguments;        // all arguments but the version as text, when the observer wants them
};

// The arguments as text: numbers in decimal, separated by blanks. Record calls: the tag (FourCharacters), the key's
// fields by view joined with commas, the size as stated on entry where there is one. A frame is its instrument, measure
// and layer joined with commas, and its entry count. Texts stand in quotation marks, UTF-8. A handle is 0 or "handle".
class CallObserver {
 public:
  virtual ~CallObserver() = default;
  virtual bool WantsArguments() const { return false; }
  // False: the call is refused; it does nothing and answers 0 or null. After() is called all the same.
  virtual bool Before(HostCall&) { return true; }
  // May change the result (which is cut to the call's width) and what stands in the buffer. A frame whose result is
  // changed to 0 is taken back.
  virtual void After(HostCall&) {}
};

struct Session {
  Document* document = nullptr;
  CallObserver* observer = nullptr;
  std::vector<std::string> alerts;           // UTF-8, in the order shown
  int frames_held = 0;                       // handed out and not yet freed
  std::vector<std::string> open_edits = {};  // the texts of edits that were started and not ended, UTF-8
  int mass_edits_open = 0;
  bool guard_frames = false;  // each frame on a page of its own, which nobody can touch once it is freed
};

// Whether a call carries the interface version that it has to: kInterfaceVersion, or that of score expressions, which
// have the layout of its time.
bool HasKnownVersion(const HostCall& call);

// A tag as its four characters; bytes below 0x20 and above 0x7E as \xNN.
std::string FourCharacters(unsigned int tag);

// The fields of a key that records of this tag use, in decimal, joined with commas.
std::string KeyText(unsigned int tag, const EDataID& id);

}  // namespace sok

extern "C" {

// The engine's one export beside the host entry points. Host calls work on `session` from now on, or answer 0 with
// null. Frames that are still out are released.
void SonkelEngineAttach(sok::Session* session);
}
