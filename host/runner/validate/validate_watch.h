// How `sokrun validate` watches an extension's host calls, and the faults that it puts into them.
#pragma once

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "host/engine/session.h"

namespace sok {

// What is wrong with a host: at most one of these.
struct HostFault {
  std::string hidden = {};  // the entry point that it lacks
  long refused_call = -1;   // the call that it refuses, counted from 0

  // Its answers vary at random, in what a host may answer: fewer entries, records of other bytes and sizes, refused
  // calls, other numbers. Memory that it hands out stays sound.
  std::optional<unsigned int> seed = {};
};

// Keeps the books of one extension: every call, every frame handed out, every edit opened. One in a process.
class HostWatch : public CallObserver {
 public:
  explicit HostWatch(const HostFault& fault);

  // The names of the calls so far, in order, refused ones too.
  const std::vector<std::string>& calls() const { return calls_; }

  // What is wrong with frames, or with edits, once a command has returned; empty when nothing is. A call that the host
  // refuses counts as made: an extension can do no more.
  std::string FrameFault() const;
  std::string EditFault() const;
  // The first call with a wrong interface version, at any time.
  const std::string& VersionFault() const { return bad_version_; }

 private:
  // Opened for certain, opened or refused, and closed.
  struct Edits {
    int opened = 0;
    int asked = 0;
    int closed = 0;
  };

  bool WantsArguments() const override { return true; }
  bool Before(HostCall& call) override;
  void After(HostCall& call) override;
  void Vary(HostCall& call);
  int Random(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }

  HostFault fault_;
  std::mt19937 random_;
  std::vector<std::string> calls_;
  std::map<const EXTGF2005a*, std::string> frames_;  // handed out and not yet freed, with what they were asked for
  std::string bad_free_;
  std::string bad_version_;
  Edits edits_, mass_edits_;
  int capacity_ = 0;  // of the buffer of the load that is going on
};

// The names of all entry points that a host may have.
const std::vector<std::string>& EntryPointNames();

}  // namespace sok
