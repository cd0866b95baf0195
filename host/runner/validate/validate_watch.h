// How `sokrun validate` watches an extension's host calls, and the faults that it puts into them.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "host/engine/session.h"

namespace sok {

// What is wrong with a host: at most one of these.
struct HostFault {
  std::string hidden = {};  // the function that it lacks
  long refused_call = -1;   // the call that it refuses, counted from 0

  // Its answers vary at random, in what a host may answer: fewer entries, records of other bytes and sizes, refused
  // calls, other numbers. Memory that it hands out stays sound.
  std::optional<unsigned int> seed = {};

  bool None() const { return hidden.empty() && refused_call < 0 && !seed; }
};

// What is wrong, in words, by the kind of check that finds it; the first of each kind.
using Findings = std::map<std::string, std::string, std::less<>>;

// Keeps the books of one extension: every call, every frame handed out, every edit opened. One in a process. Calls
// from other threads than its own are noted and refused.
class HostWatch : public CallObserver {
 public:
  // `document` is the one that the calls work on.
  HostWatch(const HostFault& fault, const Document& document);

  // The names of the calls so far, in order, refused ones too.
  const std::vector<std::string>& calls() const { return calls_; }

  // Calls `say` with every call in words, before it is served.
  void TellCalls(const std::function<void(const std::string&)>& say) { say_ = say; }

  // The same for whatever else is worth telling.
  void Say(const std::string& text) const { say_(text); }

  // How many calls changed something, or asked for it and were not refused; and a number that stands for all calls with
  // their arguments.
  int changes() const { return changes_; }
  std::size_t trace() const { return trace_; }
  int edits_asked() const { return edits_.asked; }

  // What is wrong with calls, frames and edits, once a command has returned. A call that the host refuses counts as
  // made: an extension can do no more. What only a sound host can tell is left out on others.
  Findings AllFindings() const;

  // A freed frame that holds this address, in words; empty when there is none.
  std::string FreedFrameAt(const void* address) const;

  // From now on every start of an edit throws InterruptedEdit through the extension, or no longer; the books begin
  // anew.
  // Told before it does, in case that nothing but the end of the process comes of it: kInterrupts.
  struct InterruptedEdit {};
  static constexpr const char* kInterrupts = "an exception was thrown through it";
  void InterruptEdits(bool interrupt);
  int surplus_ends() const { return edits_.closed - edits_.asked; }

 private:
  // Opened for certain, opened or refused, and closed.
  struct Edits {
    int opened = 0;
    int asked = 0;
    int closed = 0;
  };

  struct Frame {
    std::string words;  // where it stands
    const EXENTRY* entries = nullptr;
    short count = 0;  // of its array
  };

  bool WantsArguments() const override { return true; }
  bool Before(HostCall& call) override;
  void After(HostCall& call) override;
  void BeforeEditCall(const HostCall& call);
  void NoteCall(const HostCall& call);
  void BeforeFrameCall(const HostCall& call);
  void AfterFrameCall(const HostCall& call);
  void CheckSaved(const HostCall& call);
  std::string CountFault(const EXTGF2005a& frame) const;
  void NoteChange(const HostCall& call);
  void Vary(HostCall& call);
  void VaryFrame(EXTGF2005a& frame);
  void VaryRecord(HostCall& call);
  void VaryAnswer(HostCall& call);
  int Random(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  void Find(const char* kind, const std::string& what) { findings_.emplace(kind, what); }
  std::string EditFault() const;

  const HostFault fault_;
  const Document& document_;
  const Document before_ = document_;
  const std::thread::id thread_ = std::this_thread::get_id();
  std::atomic<const char*> foreign_call_ = nullptr;  // made by another thread
  std::mt19937 random_;
  std::vector<std::string> calls_;
  std::function<void(const std::string&)> say_ = [](const std::string&) {};
  std::map<const EXTGF2005a*, Frame> frames_;  // handed out and not yet freed
  std::map<const EXTGF2005a*, std::string> freed_;
  Findings findings_;
  Edits edits_, mass_edits_;
  int changes_ = 0;
  std::string change_outside_;  // of an edit
  bool interrupt_edits_ = false;
  std::size_t trace_ = 0;
  int capacity_ = 0;  // of the buffer of the load that is going on
};

// "staff 1, measure 2, layer 0": where a frame stands by its key words.
std::string PlaceText(const FramePlace& place);

}  // namespace sok
