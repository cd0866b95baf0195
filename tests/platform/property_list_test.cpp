#include "tests/platform/support.h"

namespace {

struct ListCase {
  const char* what;
  std::string bytes;
  const char* expected;  // the text of the value of "k"; "(null)" when the list is refused or has no such key
};

// Each as an Info.plist.
void Check(std::initializer_list<ListCase> cases) {
  for (const ListCase& c : cases) {
    const Folder folder;
    const Owned<CFBundleRef> bundle = Bundle(folder.Write("Contents/Info.plist", c.bytes) / "");
    EXPECT_EQ(Description(CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("k"))), c.expected) << c.what;
  }
}

std::string Xml(const std::string& value,
                const std::string& type = "PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x.dtd\"") {
  return "<?xml version=\"1.0\"?>\n<!DOCTYPE plist " + type + ">\n<plist version=\"1.0\"><dict><key>k</key>" + value +
         "</dict></plist>";
}

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<array>";
  for (int i = 0; i < depth; ++i) text += "</array>";
  return text;
}

TEST(PropertyList, Xml) {
  Check({
      {"text", Xml("<string> a&lt;&#98;&#x63;<![CDATA[<d>]]><!-- no -->e </string>"), " a<bc<d>e "},
      {"empty text", Xml("<string/>"), ""},
      {"comments", Xml("<!-- <key>j</key> --><string>v</string>"), "v"},
      {"integers", Xml("<integer> -42 </integer>"), "-42"},
      {"hexadecimal", Xml("<integer>0x1F</integer>"), "31"},
      {"real", Xml("<real>1.5e2</real>"), "150"},
      {"truth", Xml("<true/>"), "true"},
      {"untruth", Xml("<false></false>"), "false"},
      {"the last of two", Xml("<string>a</string><key>k</key><string>b</string>"), "b"},
      {"no plist element", "<dict><key>k</key><string>v</string></dict>", "v"},
      {"byte order mark", "\xEF\xBB\xBF" + Xml("<string>v</string>"), "v"},
      {"a document type of its own", Xml("<string>v</string>", "[<!ENTITY x \"y\">]"), "(null)"},
      {"not a number", Xml("<integer>4x</integer>"), "(null)"},
      {"unknown element", Xml("<what>v</what>"), "(null)"},
      {"unknown entity", Xml("<string>&x;</string>"), "(null)"},
      {"surrogate reference", Xml("<string>&#xD800;</string>"), "(null)"},
      {"wrong end", Xml("<string>v</real>"), "(null)"},
      {"key without value", Xml("<string>v</string><key>l</key>"), "(null)"},
      {"value without key", Xml("<string>v</string><string>w</string>"), "(null)"},
      {"cut off", Xml("<string>v</string>").substr(0, 120), "(null)"},
      {"array on top", "<plist><array/></plist>", "(null)"},
      {"too deep", Xml("<string>v</string><key>l</key>" + Nested(100000)), "(null)"},
      {"deep enough", Xml("<string>v</string><key>l</key>" + Nested(100)), "v"},
  });
}

std::string Wide(std::string_view ascii, std::size_t width, bool big_endian) {
  std::string bytes(ascii.size() * width, '\0');
  for (std::size_t i = 0; i < ascii.size(); ++i) bytes[i * width + (big_endian ? width - 1 : 0)] = ascii[i];
  return bytes;
}

TEST(PropertyList, OldStyle) {
  using namespace std::string_literals;
  const std::string list = "{k = v;}";
  Check({
      {"braces", list, "v"},
      {"no braces", "// c\nk = /* c */ v;", "v"},
      {"UTF-16 little", "\xFF\xFE" + Wide(list, 2, false), "v"},
      {"UTF-16 big", "\xFE\xFF" + Wide(list, 2, true), "v"},
      {"UTF-32 little", "\xFF\xFE\0\0"s + Wide(list, 4, false), "v"},
      {"UTF-32 big", "\0\0\xFE\xFF"s + Wide(list, 4, true), "v"},
      // Octal escapes from 128 on count in the old character set, and wrap at a byte.
      {"octal", "k = \"\\201\\341\\777\\60\";", "{192}{198}{65533}0"},
      {"escapes", "k = '\\101\\x\\U0042\\\"\\'';", "AxB\"'"},
      {"other values before it", "j = (a, \"b\", (c,),); d = <01 2aF>; s = {t = u;}; k = v;", "(null)"},
      {"values nest", "j = (a, \"b\", (c,),); d = <012a fF>; s = {t = u;}; k = v;", "v"},
      {"slash in a word", "k = http://v;", "http://v"},
      {"comment never closed", "k = v; /* c", "v"},
      {"a character no key begins with", "k = v; ! j = w;", "v"},
      {"the same in braces", "{k = v; ! j = w;}", "(null)"},
      {"something behind the braces", "{k = v;} x", "(null)"},
      {"a key broken later", "k = v; \"j = w;", "(null)"},
      {"backslash at the end", "k = \"v\\", "(null)"},
      {"a text on top", "k", "(null)"},
      {"too deep", "k = v; j = " + std::string(100000, '('), "(null)"},
  });
}

}  // namespace
