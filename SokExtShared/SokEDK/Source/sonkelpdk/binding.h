// Binding of a wrapper to the host entry point of its name. For the kit's own sources.
#pragma once

// The address of a host entry point in the engine bundle; null when the host lacks it or no engine bundle is known.
void* FindEntryPoint(const char* name) noexcept;

template <typename Function>
Function* BindEntryPoint(const char* name) {
  return reinterpret_cast<Function*>(FindEntryPoint(name));
}

// Declares `fpProc`, the host entry point of a wrapper's own name: looked up at the first call, once for the life of
// the process. The guard of the static makes concurrent first calls wait for the one that looks up.
#define SX_BIND(name) static const auto fpProc = BindEntryPoint<decltype(name)>(#name)
