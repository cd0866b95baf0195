#include "tests/support/test_host.h"

#include <SokPlatform.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <set>
#include <string_view>

#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "tests/support/bundles.h"

namespace {

std::set<std::string>& HiddenNames() {
  static std::set<std::string> names;
  return names;
}

using AttachFunction = decltype(SonkelEngineAttach);

AttachFunction* Attach() {
  static auto* const attach =
      FunctionOf<AttachFunction>(gSonkelBundle = OpenBundle(SOK_ENGINE_BUNDLE), "SonkelEngineAttach");
  return attach;
}

std::string ResultText(const sok::HostCall& call) {
  const std::string_view name = call.name;
  if (name == "SX_LoadTGF") return call.result != 0 ? "frame" : "null";
  if (name.starts_with("SX_GetPartName")) return call.result != 0 ? "text" : "null";
  return std::to_string(call.result);
}

}  // namespace

TestHost::TestHost() {
  session.document = &document;
  session.observer = this;
  Attach()(&session);
}

TestHost::~TestHost() { Attach()(nullptr); }

void TestHost::Hide(const std::string& name) {
  HiddenNames().insert(name);
  SokPlatformHideFunctions([](const char* function) { return HiddenNames().contains(function); });
}

void TestHost::AddScore(short staves, short measures) {
  for (int i = 0; i < staves; ++i) document.AddStaff();
  for (int i = 0; i < measures; ++i) document.AddMeasure(kWholeRestDuration);
}

std::vector<std::string> TestHost::CallsWith(const std::string& word) const {
  std::vector<std::string> found;
  std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
               [&](const std::string& call) { return call.find(word) != std::string::npos; });
  return found;
}

bool TestHost::Before(sok::HostCall& call) {
  if (!any_version && !sok::HasKnownVersion(call)) {
    std::fprintf(stderr, "%s: called with the interface version 0x%08X\n", call.name, call.version);
    std::abort();
  }
  return !refuse || !refuse(call);
}

void TestHost::After(sok::HostCall& call) {
  if (after) after(call);
  std::string line = call.name;
  if (!call.arguments.empty()) line += " " + call.arguments;
  calls.push_back(line + " -> " + ResultText(call));
}
