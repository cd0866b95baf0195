#include "host/runner/run/bundle_session.h"

#include <dlfcn.h>

#include <climits>
#include <filesystem>
#include <new>

#include "host/engine/host_text.h"
#include "host/errors.h"
#include "platform/SokPlatform.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

using AttachFunction = void (*)(Session*);

// The platform takes a list that it cannot read for none; an author wants to know what is wrong, and where. A wrong
// table of texts is no reason to refuse a bundle, as no host does: its texts come out as their numbers.
void CheckList(const fs::path& list) {
  std::error_code error;
  if (!fs::exists(list, error)) return;
  const int line = SokPlatformReadTexts(
      list.c_str(), [](void*, const char*, const char*) {}, nullptr);
  if (line < 0) throw Error(list.string() + ": cannot be read");
  if (line > 0) throw Error(list.string() + ":" + std::to_string(line) + ": not a property list");
}

CFBundleRef OpenBundle(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) throw Error(path + ": no such bundle");
  CheckList(path + "/Contents/Info.plist");
  const CFURLRef url = CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.data()),
                                                               static_cast<CFIndex>(path.size()), true);
  const CFBundleRef bundle = url != nullptr ? CFBundleCreate(nullptr, url) : nullptr;
  if (url != nullptr) CFRelease(url);
  if (bundle == nullptr) throw Error(path + ": is no bundle");
  return bundle;
}

void* FindFunction(CFBundleRef bundle, const char* name) {
  const CFStringRef key = CFStringCreateWithCString(nullptr, name, kCFStringEncodingUTF8);
  if (key == nullptr) throw std::bad_alloc();  // names are ASCII: there is no memory
  void* const address = CFBundleGetFunctionPointerForName(bundle, key);
  CFRelease(key);
  return address;
}

std::string Utf8(CFStringRef text) {
  std::string bytes(static_cast<std::size_t>(4 * CFStringGetLength(text)), '\0');
  CFIndex used = 0;
  CFStringGetBytes(text, {0, CFStringGetLength(text)}, kCFStringEncodingUTF8, '?', false,
                   reinterpret_cast<UInt8*>(bytes.data()), static_cast<CFIndex>(bytes.size()), &used);
  bytes.resize(static_cast<std::size_t>(used));
  return bytes;
}

// The engine, loaded so that an extension finds it by its identifier. It stays for the life of the process, as do the
// addresses that extensions keep.
AttachFunction EngineAttach() {
  static const AttachFunction attach = [] {
    const std::string path = BundleFolder() + "/SonkelEngine.bundle";
    const auto found = reinterpret_cast<AttachFunction>(FindFunction(OpenBundle(path), "SonkelEngineAttach"));
    if (found == nullptr) throw Error(path + ": the engine cannot be loaded");
    return found;
  }();
  return attach;
}

}  // namespace

std::string BundleFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return (program.parent_path().parent_path() / "lib" / "sok").string();
}

std::string DefaultPlugin() { return BundleFolder() + "/MeasureRests.bundle"; }

std::string BundleExecutable(const std::string& plugin) {
  const CFBundleRef bundle = OpenBundle(plugin);
  const CFURLRef url = CFBundleCopyExecutableURL(bundle);
  if (url == nullptr) {
    const auto named = static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleExecutableKey));
    const std::string name = named != nullptr ? Utf8(named) : fs::path(plugin).stem().string();
    throw Error(plugin + ": has no executable; looked for Contents/MacOS/" + name +
                (named != nullptr ? ", which its Info.plist names"
                                  : ", since its Info.plist is missing, broken or has no CFBundleExecutable"));
  }
  UInt8 path[PATH_MAX] = {};
  CFURLGetFileSystemRepresentation(url, true, path, sizeof path);
  CFRelease(url);
  return reinterpret_cast<const char*>(path);
}

BundleSession::BundleSession(const std::string& plugin, Session& session) : plugin_(plugin), session_(session) {
  EngineAttach()(&session_);
  try {
    bundle_ = OpenBundle(plugin_);
    Start();
    Enumerate();
  } catch (...) {
    EngineAttach()(nullptr);
    throw;
  }
}

BundleSession::~BundleSession() {
  if (const auto terminate = Find<TerminateFunction>(kTerminateEntry)) terminate();
  EngineAttach()(nullptr);
}

void* BundleSession::Address(const char* name) const { return FindFunction(bundle_, name); }

template <typename Function>
Function BundleSession::Find(const EntryPoint& entry) const {
  void* const address = Address(entry.name);
  return reinterpret_cast<Function>(address != nullptr ? address : Address(entry.alias));
}

template <typename Function>
Function BundleSession::Require(const EntryPoint& entry) const {
  const auto function = Find<Function>(entry);
  if (function == nullptr) throw Error(plugin_ + ": does not export " + entry.name);
  return function;
}

void BundleSession::Start() {
  dlerror();
  const auto main_function = reinterpret_cast<MainFunction>(Address("main"));
  if (main_function == nullptr) {
    const char* const reason = dlerror();
    const std::string executable = Executable();
    throw Error(executable + ": " + (reason != nullptr ? reason : "cannot be loaded, or does not export main"));
  }
  char* arguments[] = {plugin_.data(), nullptr};
  if (main_function(1, arguments) == 0) throw Error(plugin_ + ": finds no host (main answered 0)");
  interface_version_ = Require<VersionFunction>(kVersionEntry)(kInterfaceVersion);
  unsigned int word = 0;
  if (Require<InitFunction>(kInitEntry)(&session_, &word) == 0) {
    throw Error(plugin_ + ": refuses to start (its init answered 0)");
  }
}

void BundleSession::Enumerate() {
  const auto enumerate = Require<EnumerateFunction>(kEnumerateEntry);
  EMENUCOMMAND record{};
  for (int index = 0; index < kMostCommands && enumerate(&session_, index, &record) != 0; ++index) {
    ExtensionMenuItem item;
    for (int text = 0; text < 3; ++text) {
      item.texts[text] = Utf8FromUtf16(record.text[text], std::size(record.text[text]));
    }
    commands_.push_back(std::move(item));
    record = {};
  }
}

std::string BundleSession::Identifier() const {
  const CFStringRef identifier = CFBundleGetIdentifier(bundle_);
  return identifier != nullptr ? Utf8(identifier) : std::string();
}

int BundleSession::Invoke(int command, EREGION* region) {
  return Require<InvokeFunction>(kInvokeEntry)(&session_, command, region);
}

}  // namespace sok
