// A host for tests of the kit: the built engine bundle over a document of the test's own, watched and, where a test
// wants it, disturbed. The kit's wrappers reach it as they reach any host. A call with a wrong interface version ends
// the test program with a message, unless the test passes such versions itself.
//
// One at a time, and at most one in a process where the wrappers are called: they look their host functions up once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/engine/session.h"

class TestHost : public sok::CallObserver {
 public:
  TestHost();
  ~TestHost() override;
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  // Makes the engine lack a function. Before the first call of its wrapper in this process.
  static void Hide(const std::string& name);

  // A score of so many staves and measures of 4096, without entries.
  void AddScore(short staves, short measures);

  // The calls in whose text this word stands: a function, a tag.
  std::vector<std::string> CallsWith(const std::string& word) const;

  sok::Document document;
  sok::Session session;

  // Every call in order, refused ones too: "SX_LoadEData ot21 65534,0 12 -> 1". Frames handed out are "frame" or
  // "null".
  std::vector<std::string> calls;

  bool any_version = false;

  // True for a call that the host refuses: it does nothing and answers 0 or null.
  std::function<bool(const sok::HostCall&)> refuse;
  // Runs after a call, refused ones too; may change its result and what it left in the buffer.
  std::function<void(sok::HostCall&)> after;

 private:
  bool WantsArguments() const override { return true; }
  bool Before(sok::HostCall& call) override;
  void After(sok::HostCall& call) override;
};
