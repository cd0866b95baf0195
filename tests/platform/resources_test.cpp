#include <map>

#include "tests/platform/support.h"

namespace {

// The value of "k" in Localizable.strings, or "none".
std::string ValueOfK(CFBundleRef bundle) {
  const OwnedString value(CFBundleCopyLocalizedString(bundle, CFSTR("k"), CFSTR("none"), nullptr));
  return Ascii(value.get());
}

void SetLanguages(const std::map<std::string, std::string>& values) {
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    unsetenv(name);
    if (values.contains(name)) setenv(name, values.at(name).c_str(), 1);
  }
}

struct LanguageCase {
  std::map<std::string, std::string> environment;
  std::vector<std::string> folders;  // each with a table whose value of "k" is the folder's name; "" is Resources
  const char* region;
  const char* expected;
};

TEST(Resources, LanguageOfATable) {
  const LanguageCase cases[] = {
      {{}, {"de", "en", "fr"}, "fr", "fr"},
      {{{"LANG", "de_DE.UTF-8"}}, {"de", "en"}, "en", "de"},
      {{{"LANG", "de"}, {"LC_MESSAGES", "fr"}}, {"de", "en", "fr"}, "en", "fr"},
      {{{"LC_MESSAGES", "de"}, {"LC_ALL", "fr"}}, {"de", "en", "fr"}, "en", "fr"},
      {{{"LC_ALL", "de"}, {"LANGUAGE", "it:fr"}}, {"de", "en", "fr"}, "en", "fr"},
      {{{"LC_ALL", "C.UTF-8"}, {"LANG", "de"}}, {"de", "en"}, "en", "en"},
      {{{"LANG", "de_AT"}}, {"de", "de_AT", "en"}, "en", "de_AT"},
      {{{"LANG", "de_AT"}}, {"de_CH", "en"}, "en", "de_CH"},
      {{{"LANG", "de_AT"}}, {"German", "en"}, "en", "German"},
      {{{"LANG", "zh_TW"}}, {"zh-Hans", "zh-Hant"}, "en", "zh-Hant"},
      {{{"LANG", "de"}}, {"Base", "en"}, "en", "en"},
      {{{"LANG", "de"}}, {"Base", "fr"}, "en", "Base"},
      {{{"LANG", "de"}}, {"fr", "en"}, "it", "en"},
      {{{"LANG", "de"}}, {"fr", "ja"}, "it", "fr"},
      {{{"LANG", "de"}}, {"", "de"}, "en", ""},
      {{{"LANG", "de"}}, {}, "en", "none"},
  };
  for (const LanguageCase& c : cases) {
    SetLanguages(c.environment);
    const Folder folder;
    folder.Write("Contents/Info.plist", "{ CFBundleDevelopmentRegion = \"" + std::string(c.region) + "\"; }");
    for (const std::string& name : c.folders) {
      const std::string inside = name.empty() ? "" : name + ".lproj/";
      folder.Write("Contents/Resources/" + inside + "Localizable.strings", "k = \"" + name + "\";");
    }
    EXPECT_EQ(ValueOfK(Bundle(folder / "").get()), c.expected) << "case " << &c - cases;
  }
}

TEST(Resources, NoFallBackBetweenTables) {
  SetLanguages({{"LANG", "de"}});
  const Folder folder;
  folder.Write("A/Contents/Resources/de.lproj/Localizable.strings", "j = J;")
      .Write("A/Contents/Resources/en.lproj/Localizable.strings", "k = en;")
      .Write("B/Contents/Resources/Localizable.strings", "k = broken")
      .Write("B/Contents/Resources/de.lproj/Localizable.strings", "k = de;")
      .Write("C/Contents/Resources/de.lproj/Other.strings", "k = de;")
      .Write("C/Contents/Resources/en.lproj/Localizable.strings", "k = en;");
  EXPECT_EQ(ValueOfK(Bundle(folder / "A").get()), "none");  // the key is missing in the language chosen
  EXPECT_EQ(ValueOfK(Bundle(folder / "B").get()), "none");  // the table above all languages is broken
  EXPECT_EQ(ValueOfK(Bundle(folder / "C").get()), "none");  // `en` is not on the list, so its file does not count
}

TEST(Resources, KeysValuesAndTables) {
  const Folder folder;
  folder.Write("Contents/Resources/Localizable.strings", "k = v; empty = \"\";")
      .Write("Contents/Resources/Other.strings", "k = other;");
  const Owned<CFBundleRef> bundle = Bundle(folder / "");
  struct Case {
    CFStringRef key, value, table;
    const char* expected;
  };
  const Case cases[] = {
      {CFSTR("k"), CFSTR("d"), CFSTR(""), "v"},
      {CFSTR("k"), nullptr, CFSTR("Other"), "other"},
      {CFSTR("empty"), CFSTR("d"), nullptr, ""},
      {CFSTR("x"), nullptr, nullptr, "x"},
      {CFSTR("x"), CFSTR(""), nullptr, "x"},
      {CFSTR("x"), CFSTR("d"), nullptr, "d"},
      {nullptr, CFSTR("d"), nullptr, "d"},
      {nullptr, nullptr, nullptr, ""},
      {CFSTR("k"), CFSTR("d"), CFSTR("Missing"), "d"},
  };
  for (const Case& c : cases) {
    const OwnedString found(CFBundleCopyLocalizedString(bundle.get(), c.key, c.value, c.table));
    EXPECT_EQ(Ascii(found.get()), c.expected) << "case " << &c - cases;
  }
}

TEST(Resources, PathsOfFiles) {
  SetLanguages({{"LANG", "de"}});
  const Folder folder;
  const std::string top = folder / "Contents/Resources/";
  for (const char* name : {"a.txt", "sub/in.txt", "de.lproj/a.txt", "de.lproj/g.txt", "de.lproj/sub/g.txt",
                           "fr.lproj/f.txt", "Dir.d/x", "../out.txt"}) {
    folder.Write("Contents/Resources/" + std::string(name), "");
  }
  const Owned<CFBundleRef> bundle = Bundle(folder / "");
  struct Case {
    CFStringRef name, type, subfolder;
    const char* expected;  // below Resources; null when nothing is found
  };
  const Case cases[] = {
      {CFSTR("a"), CFSTR("txt"), nullptr, "a.txt"},
      {CFSTR("a"), CFSTR(".txt"), nullptr, "a.txt"},
      {CFSTR("a.txt"), nullptr, nullptr, "a.txt"},
      {CFSTR("a.txt"), CFSTR(""), nullptr, "a.txt"},
      {CFSTR("A"), CFSTR("txt"), nullptr, nullptr},
      {CFSTR("g"), CFSTR("txt"), nullptr, "de.lproj/g.txt"},
      {CFSTR("f"), CFSTR("txt"), nullptr, nullptr},
      {CFSTR("in"), CFSTR("txt"), nullptr, nullptr},
      {CFSTR("sub/in"), CFSTR("txt"), nullptr, "sub/in.txt"},
      {CFSTR("in"), CFSTR("txt"), CFSTR("sub"), "sub/in.txt"},
      {CFSTR("g"), CFSTR("txt"), CFSTR("sub/"), "de.lproj/sub/g.txt"},
      {CFSTR("Dir"), CFSTR("d"), nullptr, "Dir.d"},
      {nullptr, CFSTR("txt"), nullptr, "a.txt"},
      {CFSTR("../out"), CFSTR("txt"), nullptr, nullptr},
  };
  for (const Case& c : cases) {
    const Owned<CFURLRef> url(CFBundleCopyResourceURL(bundle.get(), c.name, c.type, c.subfolder));
    const std::string path = Path(url.get());
    EXPECT_EQ(path == "(null)" ? path : std::filesystem::weakly_canonical(path).string(),
              c.expected != nullptr ? top + c.expected : "(null)")
        << "case " << &c - cases;
  }
}

}  // namespace
