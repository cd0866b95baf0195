// Makes one call of a host fail, in one of the ways that hosts fail.
#pragma once

#include <cstring>

#include "tests/support/test_host.h"

enum class Fault { kRefused, kFailureReported, kShortRecord, kOddFrameCount, kOddNoteCount, kNoEntries };

constexpr Fault kFaults[] = {Fault::kRefused,       Fault::kFailureReported, Fault::kShortRecord,
                             Fault::kOddFrameCount, Fault::kOddNoteCount,    Fault::kNoEntries};

class Saboteur {
 public:
  Saboteur(TestHost& host, std::size_t victim, Fault fault) {
    host.refuse = [this, victim, fault](const sok::HostCall&) {
      return calls_++ == victim && fault == Fault::kRefused;
    };
    host.after = [this, victim, fault](sok::HostCall& call) {
      if (calls_ == victim + 1 && !done_) {
        done_ = true;
        Disturb(call, fault);
      }
    };
  }
  std::size_t calls() const { return calls_; }

 private:
  static void Disturb(sok::HostCall& call, Fault fault) {
    if (fault == Fault::kFailureReported) call.result = 0;
    if (fault == Fault::kShortRecord && call.size != nullptr) *call.size = 1;
    if (std::strcmp(call.name, "SX_LoadTGF") != 0 || call.result == 0 || call.frame == nullptr) return;
    if (fault == Fault::kOddFrameCount) call.frame->count = -3;
    if (call.frame->count <= 0) return;
    if (fault == Fault::kOddNoteCount) call.frame->entries[0].noteCount = 13;
    if (fault == Fault::kNoEntries) {
      delete[] call.frame->entries;
      call.frame->entries = nullptr;
    }
  }

  std::size_t calls_ = 0;
  bool done_ = false;
};
