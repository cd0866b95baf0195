// The bundle functions as callers see them.

#include <atomic>

#include "platform/SokPlatform.h"
#include "platform/bundle_registry.h"
#include "platform/encoding.h"
#include "platform/executable.h"
#include "platform/file_system.h"
#include "platform/url.h"

namespace {

std::atomic<bool (*)(const char*)> hidden_functions = nullptr;

std::string Utf8(CFStringRef string) { return sok::ToUtf8(sok::View(string)); }

// A string handed to the caller, who gets a reference of its own.
CFStringRef Retained(CFStringRef string) { return static_cast<CFStringRef>(CFRetain(string)); }

}  // namespace

const CFStringRef kCFBundleExecutableKey = sok::Constant(sok::MakeString(u"CFBundleExecutable"));

void SokPlatformHideFunctions(bool (*hidden)(const char* name)) { hidden_functions = hidden; }

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
  if (url == nullptr) return nullptr;
  return sok::OrElse<CFBundleRef>(nullptr, [&] {
    sok::Bundle* bundle = sok::BundleAt(url->path);
    if (bundle != nullptr) bundle->Retain();
    return bundle;
  });
}

CFBundleRef CFBundleGetMainBundle() {
  return sok::OrElse<CFBundleRef>(nullptr, [] { return sok::MainBundle(); });
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
  if (identifier == nullptr) return nullptr;
  return sok::OrElse<CFBundleRef>(nullptr, [&] { return sok::BundleWithIdentifier(identifier->units()); });
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) { return bundle != nullptr ? bundle->identifier() : nullptr; }

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  if (bundle == nullptr) return nullptr;
  return sok::OrElse<CFURLRef>(nullptr, [&] { return new sok::Url(bundle->path(), true); });
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
  if (bundle == nullptr || bundle->executable().empty()) return nullptr;
  return sok::OrElse<CFURLRef>(nullptr, [&] { return new sok::Url(bundle->executable(), false); });
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
  if (bundle == nullptr || key == nullptr) return nullptr;
  return sok::OrElse<CFTypeRef>(nullptr, [&] { return bundle->Information(key->units()); });
}

Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle) { return bundle != nullptr && bundle->is_loaded(); }

Boolean CFBundleLoadExecutable(CFBundleRef bundle) {
  return bundle != nullptr && sok::OrElse(false, [&] { return bundle->Load() != nullptr; });
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name) {
  if (bundle == nullptr || name == nullptr) return nullptr;
  return sok::OrElse<void*>(nullptr, [&]() -> void* {
    const std::string symbol = Utf8(name);
    bool (*const hidden)(const char*) = hidden_functions;
    if (hidden != nullptr && hidden(symbol.c_str())) return nullptr;
    void* const image = bundle->Load();
    return image != nullptr ? sok::FindSymbol(image, symbol.c_str()) : nullptr;
  });
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type, CFStringRef subdirectory) {
  if (bundle == nullptr) return nullptr;
  return sok::OrElse<CFURLRef>(nullptr, [&]() -> CFURLRef {
    const std::optional<std::string> wanted = name != nullptr ? std::optional(Utf8(name)) : std::nullopt;
    const std::string path = bundle->FindResource(wanted, Utf8(type), Utf8(subdirectory));
    return path.empty() ? nullptr : new sok::Url(path, sok::IsDirectory(path));
  });
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value, CFStringRef table) {
  if (bundle == nullptr) return nullptr;
  return sok::OrElse<CFStringRef>(nullptr, [&]() -> CFStringRef {
    if (key == nullptr) return value != nullptr ? Retained(value) : sok::MakeString({}).Detach();
    const sok::Dictionary* strings = bundle->Table(sok::View(table).empty() ? "Localizable" : Utf8(table));
    const sok::Object* found = strings != nullptr ? strings->Find(key->units()) : nullptr;
    // Values other than strings are handed over as they are.
    if (found != nullptr) return static_cast<CFStringRef>(CFRetain(found));
    return Retained(sok::View(value).empty() ? key : value);
  });
}
