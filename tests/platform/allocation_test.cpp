// Memory that runs out: each allocation in turn, alone or with all that follow. Functions answer null, lose nothing,
// and what they keep for later is not kept half made: once there is memory again, they answer as always.
#include <cstdlib>
#include <new>

#include "tests/platform/support.h"

namespace {

constexpr long kNever = -1;
long failing = kNever;   // how many allocations succeed before the one that fails
bool all_after = false;  // whether those after it fail, too
bool has_failed = false;
long live = 0;  // allocations not yet freed

void* Allocate(std::size_t size) {
  if (failing == 0 || (has_failed && all_after)) {
    has_failed = true;
    failing = kNever;
    throw std::bad_alloc();
  }
  if (failing > 0) --failing;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  ++live;
  return memory;
}

void Free(void* memory) noexcept {
  if (memory != nullptr) --live;
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete[](void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Free(memory); }

namespace {

// What an operation works on, new for every attempt: what a bundle has once read it keeps.
struct Subject {
  std::string path;
  Owned<CFURLRef> url;
  Owned<CFBundleRef> bundle;  // when the operation takes one
  OwnedString identifier;
};

struct Operation {
  const char* name;
  bool takes_bundle;
  bool keeps_memory;  // for the whole process
  const char* expected;
  CFTypeRef (*run)(const Subject& subject);  // gives the caller a reference
};

constexpr char kLong[] = "caf\xC3\xA9, a text too long to stand inside a string object";
constexpr UniChar kUnits[] = {'l', 'o', 'n', 'g', 'e', 'r', ' ', 't', 'h', 'a', 'n', ' ', 'm', 'o', 's', 't', 0};

const CFStringRef kObject = CFSTR("%@");
const CFStringRef kKey = CFSTR("key");
const CFStringRef kReal = CFSTR("Real");
const CFStringRef kXml = CFSTR("Xml");
const CFStringRef kStrings = CFSTR("strings");
const CFStringRef kFormat = CFSTR("long %@ %S %*d %.2f %s");

// What is null because memory ended must not be retained: that ends the process.
CFTypeRef Retained(CFTypeRef object) { return object != nullptr ? CFRetain(object) : nullptr; }

CFTypeRef Localized(const Subject& subject, CFStringRef table) {
  return CFBundleCopyLocalizedString(subject.bundle.get(), kKey, nullptr, table);
}

const Operation kOperations[] = {
    {"UTF8", false, false, "caf{233}, a text too long to stand inside a string object",
     [](const Subject&) -> CFTypeRef { return CFStringCreateWithCString(nullptr, kLong, kCFStringEncodingUTF8); }},
    {"Units", false, false, "longer than most",
     [](const Subject&) -> CFTypeRef { return CFStringCreateWithCharacters(nullptr, kUnits, 16); }},
    {"Format", false, false, "long key longer than most    -7 1.50 mac",
     [](const Subject&) -> CFTypeRef {
       return CFStringCreateWithFormat(nullptr, nullptr, kFormat, kKey, kUnits, 5, -7, 1.5, "mac");
     }},
    {"Constant", false, true, nullptr,
     [](const Subject& subject) -> CFTypeRef { return __CFStringMakeConstantString(subject.path.c_str()); }},
    {"Number", false, false, "5",
     [](const Subject&) -> CFTypeRef {
       constexpr SInt32 kFive = 5;
       return CFNumberCreate(nullptr, kCFNumberSInt32Type, &kFive);
     }},
    {"RelativeUrl", false, false, nullptr,
     [](const Subject&) -> CFTypeRef {
       constexpr UInt8 kName[] = {'a', '/', 'b'};
       return CFURLCreateFromFileSystemRepresentation(nullptr, kName, 3, false);
     }},
    {"MadeBundle", false, true, nullptr,
     [](const Subject& subject) -> CFTypeRef {
       const Owned<CFBundleRef> bundle(CFBundleCreate(nullptr, subject.url.get()));
       return Retained(CFBundleGetIdentifier(bundle.get()));
     }},
    {"BundleWithIdentifier", true, true, nullptr,
     [](const Subject& subject) -> CFTypeRef {
       return CFBundleCopyBundleURL(CFBundleGetBundleWithIdentifier(subject.identifier.get()));
     }},
    {"MainBundle", false, true, "<object>",
     [](const Subject&) -> CFTypeRef { return Retained(CFBundleGetMainBundle()); }},
    {"Executable", true, true, nullptr,
     [](const Subject& subject) -> CFTypeRef { return CFBundleCopyExecutableURL(subject.bundle.get()); }},
    {"InfoValue", true, true, "1.25",
     [](const Subject& subject) -> CFTypeRef {
       return Retained(CFBundleGetValueForInfoDictionaryKey(subject.bundle.get(), kReal));
     }},
    {"OldStyleTable", true, true, "the value of a key in a table",
     [](const Subject& subject) { return Localized(subject, nullptr); }},
    {"XmlTable", true, true, "another value & of a key",
     [](const Subject& subject) { return Localized(subject, kXml); }},
    {"Resource", true, true, nullptr,
     [](const Subject& subject) -> CFTypeRef {
       return CFBundleCopyResourceURL(subject.bundle.get(), nullptr, kStrings, nullptr);
     }},
};

void WriteBundle(const Folder& folder, const std::string& name) {
  folder
      .Write(name + "/Contents/Info.plist",
             "<plist><dict><key>CFBundleIdentifier</key><string>identifier." + name +
                 "</string><key>Real</key><real>1.25</real><key>CFBundleExecutable</key><string>program</string>"
                 "<key>All</key><array><integer>-3</integer><data>QUJD</data><true/><dict/></array></dict></plist>")
      .Write(name + "/Contents/MacOS/program", "")
      .Write(name + "/Contents/Resources/en.lproj/Localizable.strings",
             "key = \"the value of a key in a table\"; b = (1, <00>);")
      .Write(name + "/Contents/Resources/en.lproj/Xml.strings",
             "<dict><key>key</key><string>another value &amp; of a key</string></dict>");
}

std::string Shown(CFTypeRef object) {
  const OwnedString text(CFStringCreateWithFormat(nullptr, nullptr, kObject, object));
  std::string shown = object != nullptr ? Ascii(text.get()) : "(null)";
  if (object != nullptr) CFRelease(object);
  return shown;
}

class Allocation : public testing::TestWithParam<Operation> {};

TEST_P(Allocation, EachFailingInTurn) {
  const Operation& operation = GetParam();
  const Folder folder;
  for (const bool all : {false, true}) {
    bool reached = true;
    for (long victim = 0; reached; ++victim) {
      SCOPED_TRACE(testing::Message() << "allocation " << victim << (all ? " and all after it" : ""));
      const std::string name = std::to_string(victim) + (all ? "all" : "one");
      WriteBundle(folder, name);
      Subject subject = {folder / name, Url(folder / name), nullptr,
                         String(u"identifier." + std::u16string(name.begin(), name.end()))};
      if (operation.takes_bundle) subject.bundle = Bundle(folder / name);

      std::string first;
      first.reserve(200);  // so that it counts for nothing
      const long before = live;
      failing = victim;
      all_after = all;
      has_failed = false;
      const CFTypeRef made = operation.run(subject);
      reached = has_failed;
      failing = kNever;
      has_failed = false;

      first += Shown(made);
      ASSERT_TRUE(operation.keeps_memory || live == before);
      const std::string second = Shown(operation.run(subject));
      ASSERT_TRUE(second != "(null)" && (operation.expected == nullptr || second == operation.expected)) << second;
      ASSERT_TRUE(first == second || (reached && first == "(null)")) << first;
      ASSERT_LT(victim, 2000);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Platform, Allocation, testing::ValuesIn(kOperations),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
