#include <dlfcn.h>

#include <algorithm>
#include <thread>

#include "platform/SokPlatform.h"
#include "tests/platform/support.h"

extern "C" __attribute__((visibility("default"))) int PlatformTestProgramFunction() { return 3; }

namespace {

CFBundleRef WithIdentifier(std::u16string_view identifier) {
  return CFBundleGetBundleWithIdentifier(String(identifier).get());
}

// A bundle whose executable is the tests' image, and its folder.
class ImageBundle {
 public:
  explicit ImageBundle(std::string_view identifier = "a.b", std::string_view more = "", std::string name = "X")
      : name_(std::move(name)) {
    folder_.Write("A.bundle/Contents/Info.plist", Information(name_, identifier, more));
    std::filesystem::create_directories(folder_ / "A.bundle/Contents/MacOS");
    std::filesystem::copy_file(SOK_TEST_IMAGE, executable());
  }
  std::string path() const { return folder_ / "A.bundle"; }
  std::string executable() const { return path() + "/Contents/MacOS/" + name_; }

 private:
  Folder folder_;
  std::string name_;
};

TEST(Bundle, AnyExistingDirectoryAndAlwaysTheSameObject) {
  const Folder folder;
  folder.Write("A.bundle/Contents/Info.plist", "").Write("file", "");
  std::filesystem::current_path(folder / "");
  const Owned<CFBundleRef> bundle = Bundle(folder / "A.bundle");
  ASSERT_NE(bundle, nullptr);
  EXPECT_EQ(CFGetTypeID(bundle.get()), CFGetTypeID(CFBundleGetMainBundle()));
  for (const std::string& path :
       {folder / "A.bundle/", folder / "A.bundle/Contents/..", std::string("A.bundle"), std::string("./A.bundle//")}) {
    EXPECT_EQ(Bundle(path), bundle) << path;
  }
  EXPECT_NE(Bundle(folder / ""), nullptr);
  EXPECT_EQ(Bundle(folder / "missing"), nullptr);
  EXPECT_EQ(Bundle(folder / "file"), nullptr);
  EXPECT_EQ(Url(""), nullptr);
  EXPECT_EQ(CFBundleCreate(nullptr, nullptr), nullptr);
}

struct LayoutCase {
  std::vector<std::pair<const char*, std::string>> files;
  const char* key;                   // the text of the executable key's value
  const char* executable = nullptr;  // below the bundle
};

TEST(Bundle, ExecutableKeyAndFile) {
  const std::string info = "{CFBundleExecutable = X;}";
  const std::string number = "<dict><key>CFBundleExecutable</key><integer>7</integer></dict>";
  const LayoutCase cases[] = {
      {{{"Contents/Info.plist", info}, {"Contents/MacOS/X", ""}, {"Contents/X", ""}}, "X", "Contents/MacOS/X"},
      {{{"Contents/Info.plist", info}}, "X"},
      {{{"Contents/Info.plist", info}, {"Contents/X", ""}, {"X", ""}}, "X", "Contents/X"},
      {{{"Contents/Info.plist", info}, {"X", ""}}, "X", "X"},
      {{{"Contents/MacOS/A", ""}}, "(null)", "Contents/MacOS/A"},
      {{{"Contents/Info.plist", "{CFBundleExecutable = X"}, {"Contents/MacOS/A", ""}}, "(null)", "Contents/MacOS/A"},
      {{{"Contents/Info.plist", "(X)"}, {"Contents/MacOS/A", ""}}, "(null)", "Contents/MacOS/A"},
      {{{"Contents/Info.plist", "CFBundleExecutable = '';"}}, ""},
      {{{"Contents/Info.plist", number}}, "7"},
      {{{"Info.plist", info}, {"MacOS/X", ""}}, "X", "MacOS/X"},
      {{{"Contents/Info.plist", info}, {"Contents/Resources/InfoPlist.strings", "CFBundleExecutable = Y;"}}, "Y"},
  };
  for (const LayoutCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    const Folder folder;
    for (const auto& [name, content] : c.files) folder.Write("A.bundle/" + std::string(name), content);
    const Owned<CFBundleRef> bundle = Bundle(folder / "A.bundle");
    EXPECT_EQ(Description(CFBundleGetValueForInfoDictionaryKey(bundle.get(), kCFBundleExecutableKey)), c.key);
    const Owned<CFURLRef> executable(CFBundleCopyExecutableURL(bundle.get()));
    EXPECT_EQ(Path(executable.get()), c.executable != nullptr ? folder / "A.bundle/" + c.executable : "(null)");
    // On the way up from an executable only the bundle itself has the key.
    for (const char* other : {"", "A.bundle/Contents", "A.bundle/Contents/MacOS"}) {
      const Owned<CFBundleRef> part = Bundle(folder / other);
      if (part == nullptr) continue;
      EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(part.get(), kCFBundleExecutableKey), nullptr) << other;
    }
  }
}

TEST(Bundle, FunctionsOfItsOwnExecutableOnly) {
  const ImageBundle image;
  const Owned<CFBundleRef> bundle = Bundle(image.path());
  EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
  void* const address = CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestFunction"));
  ASSERT_NE(address, nullptr);
  EXPECT_TRUE(CFBundleIsExecutableLoaded(bundle.get()));
  EXPECT_EQ(reinterpret_cast<int (*)()>(address)(), 42);
  EXPECT_NE(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestVariable")), nullptr);
  // Of the dependency, the C library, the platform, the program; nothing at all.
  for (const char* name : {"PlatformTestDependencyFunction", "malloc", "CFRelease", "PlatformTestProgramFunction",
                           "PlatformTestMissing", ""}) {
    const OwnedString symbol(CFStringCreateWithCString(nullptr, name, kCFStringEncodingASCII));
    EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), symbol.get()), nullptr) << name;
  }
  SokPlatformHideFunctions([](const char* name) { return std::string_view(name) == "PlatformTestFunction"; });
  EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestFunction")), nullptr);
  EXPECT_NE(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestVariable")), nullptr);
  SokPlatformHideFunctions(nullptr);
  EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestFunction")), address);
}

TEST(Bundle, ExecutableThatCannotBeLoaded) {
  const Folder folder;
  folder.Write("Contents/Info.plist", Information("X", "no.image")).Write("Contents/MacOS/X", "no image");
  for (const std::string& path : {folder / "", folder / "Contents/MacOS"}) {
    const Owned<CFBundleRef> bundle = Bundle(path);
    EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("f")), nullptr);
    EXPECT_FALSE(CFBundleLoadExecutable(bundle.get()));
    EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
  }
}

TEST(Bundle, MainBundleIsTheProgram) {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  EXPECT_TRUE(CFBundleIsExecutableLoaded(bundle));
  EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleExecutableKey), nullptr);
  EXPECT_EQ(CFBundleGetIdentifier(bundle), nullptr);
  const Owned<CFURLRef> url(CFBundleCopyBundleURL(bundle));
  EXPECT_EQ(Path(url.get()), std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
  EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle, CFSTR("PlatformTestProgramFunction")),
            reinterpret_cast<void*>(&PlatformTestProgramFunction));
  EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle, CFSTR("CFRelease")), nullptr);
}

TEST(Bundle, FoundByIdentifierWhenItsImageIsLoaded) {
  const ImageBundle image("loaded.image");
  EXPECT_EQ(WithIdentifier(u"loaded.image"), nullptr);
  void* const handle = dlopen(image.executable().c_str(), RTLD_LAZY | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr);
  const Owned<CFBundleRef> made = Bundle(image.path());
  EXPECT_FALSE(CFBundleIsExecutableLoaded(made.get()));  // loaded behind the bundle's back
  EXPECT_EQ(WithIdentifier(u"loaded.image"), made.get());
  EXPECT_TRUE(CFBundleIsExecutableLoaded(made.get()));
  EXPECT_EQ(CFBundleGetFunctionPointerForName(made.get(), CFSTR("PlatformTestFunction")),
            dlsym(handle, "PlatformTestFunction"));
  EXPECT_EQ(WithIdentifier(u"Loaded.Image"), nullptr);
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(nullptr), nullptr);
}

TEST(Bundle, TheBestOfSeveralWithOneIdentifier) {
  const ImageBundle low("same", "CFBundleVersion = 1.9;"), high("same", "CFBundleVersion = 1.10;");
  const ImageBundle later("same", "CFBundleVersion = 1.10;");
  Bundle(high.path());
  const CFBundleRef first = WithIdentifier(u"same");  // released, yet known
  ASSERT_NE(first, nullptr);
  Bundle(low.path());
  EXPECT_EQ(WithIdentifier(u"same"), first);
  const Owned<CFBundleRef> second = Bundle(later.path());
  EXPECT_EQ(WithIdentifier(u"same"), second.get());
  const Owned<CFBundleRef> loaded = Bundle(low.path());
  EXPECT_TRUE(CFBundleLoadExecutable(loaded.get()));
  EXPECT_EQ(WithIdentifier(u"same"), loaded.get());
}

// First look-ups from many threads find one object, one image, one address; wherever the image's name ends in memory.
TEST(Bundle, FirstLookUpsFromManyThreads) {
  for (std::size_t length = 1; length <= 8; ++length) {
    const ImageBundle image(std::string(length, 'i'), "", std::string(length, 'x'));
    const OwnedString identifier = String(std::u16string(length, u'i'));
    constexpr int kThreads = 8;
    std::vector<std::pair<CFBundleRef, void*>> found(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        const Owned<CFBundleRef> bundle = Bundle(image.path());
        found[i] = {CFBundleGetBundleWithIdentifier(identifier.get()),
                    CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("PlatformTestFunction"))};
        const OwnedString text(CFBundleCopyLocalizedString(bundle.get(), CFSTR("k"), nullptr, nullptr));
        EXPECT_EQ(Ascii(text.get()), "k");
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(found[0].first != nullptr && found[0].second != nullptr);
    EXPECT_EQ(std::count(found.begin(), found.end(), found[0]), kThreads);
  }
}

}  // namespace
