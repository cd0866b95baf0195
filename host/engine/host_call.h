// How the engine serves a host call: straight away without an observer, between its Before() and After() with one.
#pragma once

#include <tuple>
#include <type_traits>

#include "host/engine/engine.h"
#include "host/engine/host_text.h"

namespace sok {

// The engine of this process.
extern Engine gEngine;

// Arguments that an observer may want as text, or as fields of HostCall. Numbers stand for themselves.
struct RecordArgument {
  unsigned int tag;
  const EDataID* id;
  void* buffer = nullptr;
  int* size = nullptr;  // in and out
};
struct FrameArgument {
  EXTGF2005a* frame;
  bool any = false;  // also a frame that is not out; otherwise nothing is known of the memory behind one
};
using Text = const char*;
using Text16 = const unsigned short*;

void Describe(HostCall& call, bool as_text, long number);
void Describe(HostCall& call, bool as_text, const RecordArgument& record);
void Describe(HostCall& call, bool as_text, const FrameArgument& frame);
void Describe(HostCall& call, bool as_text, const void* handle);
void Describe(HostCall& call, bool as_text, Text text);
void Describe(HostCall& call, bool as_text, Text16 text);

// The observer sees a frame that is handed out.
inline void NoteResult(HostCall& call, EXTGF2005a* frame) { call.frame = frame; }
inline void NoteResult(HostCall&, const void*) {}

// One call to be served: Serve<Result>(__func__, version, argument...)(body), where `body` does the work and answers.
// Without a document it answers 0 or null.
template <typename Result, typename... Arguments>
class Served {
 public:
  Served(const char* name, unsigned int version, Arguments... arguments)
      : name_(name), version_(version), arguments_(arguments...) {}

  template <typename Body>
  Result operator()(Body body) const {
    const Session* const session = gEngine.session();
    if (session == nullptr || session->document == nullptr) return Result();
    if (session->observer != nullptr) return Observed(*session->observer, body);
    return static_cast<Result>(body());
  }

 private:
  template <typename Body>
  [[gnu::noinline]] Result Observed(CallObserver& observer, Body& body) const {
    HostCall call;
    call.name = name_;
    call.version = version_;
    const bool as_text = observer.WantsArguments();
    std::apply([&](const auto&... argument) { (Describe(call, as_text, argument), ...); }, arguments_);
    if (observer.Before(call)) Run(call, body);
    observer.After(call);
    if constexpr (std::is_pointer_v<Result>) {
      return reinterpret_cast<Result>(call.result);
    } else {
      return static_cast<Result>(call.result);
    }
  }

  template <typename Body>
  static void Run(HostCall& call, Body& body) {
    if constexpr (std::is_void_v<Result>) {
      body();
    } else if constexpr (std::is_pointer_v<Result>) {
      const Result result = body();
      call.result = reinterpret_cast<long>(result);
      NoteResult(call, result);
    } else {
      call.result = body();
    }
  }

  const char* name_;
  unsigned int version_;
  std::tuple<Arguments...> arguments_;
};

template <typename Result, typename... Arguments>
Served<Result, Arguments...> Serve(const char* name, unsigned int version, Arguments... arguments) {
  return {name, version, arguments...};
}

}  // namespace sok
