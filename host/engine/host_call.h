// How the engine serves a host call: straight away without an observer, between its Before() and After() with one.
#pragma once

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
  bool readable;  // false: nothing is known of the memory behind it
};
using Text = const char*;
using Text16 = const unsigned short*;

void Describe(HostCall& call, bool as_text, long number);
void Describe(HostCall& call, bool as_text, const RecordArgument& record);
void Describe(HostCall& call, bool as_text, const FrameArgument& frame);
void Describe(HostCall& call, bool as_text, Text text);
void Describe(HostCall& call, bool as_text, Text16 text);

template <typename Result, typename Body, typename... Arguments>
[[gnu::noinline]] Result ServeObserved(const char* name, unsigned int version, Body& body,
                                       const Arguments&... arguments) {
  CallObserver& observer = *gEngine.session()->observer;
  HostCall call;
  call.name = name;
  call.version = version;
  [[maybe_unused]] const bool as_text = observer.WantsArguments();
  (Describe(call, as_text, arguments), ...);
  if (observer.Before(call)) {
    if constexpr (std::is_void_v<Result>) {
      body();
    } else if constexpr (std::is_pointer_v<Result>) {
      const Result result = body();
      call.result = reinterpret_cast<long>(result);
      if constexpr (std::is_same_v<Result, EXTGF2005a*>) call.frame = result;
    } else {
      call.result = body();
    }
  }
  observer.After(call);
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(call.result);
  } else {
    return static_cast<Result>(call.result);
  }
}

// Runs `body`, which answers the call; 0 or null without a document.
template <typename Result, typename Body, typename... Arguments>
Result Serve(const char* name, unsigned int version, Body body, const Arguments&... arguments) {
  const Session* const session = gEngine.session();
  if (session == nullptr || session->document == nullptr) return Result();
  if (session->observer != nullptr) return ServeObserved<Result>(name, version, body, arguments...);
  return static_cast<Result>(body());
}

}  // namespace sok
