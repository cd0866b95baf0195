// Observed results of the real framework, row by row.

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <deque>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/platform/support.h"

namespace {

using Json = nlohmann::json;

const Json kVectors = Json::parse(std::ifstream(SOK_PLATFORM_VECTORS));

std::u16string ReadUnits(const Json& list) {
  std::u16string units;
  for (const Json& item : list) {
    const Json& unit = item.is_array() ? item[0] : item;
    units.append(item.is_array() ? item[1].get<std::size_t>() : 1, static_cast<char16_t>(unit.get<unsigned>()));
  }
  return units;
}

std::string ReadBytes(const Json& value) {
  std::string bytes;
  for (const Json& piece : value.is_array() ? value : Json::array({value})) {
    const std::string hex = piece.is_array() ? piece[0] : piece;
    std::string once;
    for (std::size_t i = 0; i < hex.size(); i += 2) once += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    for (int times = piece.is_array() ? piece[1].get<int>() : 1; times > 0; --times) bytes += once;
  }
  return bytes;
}

// Keeps what a row's arguments point to.
class FormatCall {
 public:
  OwnedString Run(CFStringRef format, const Json& arguments) { return Call(format, arguments, 0); }

 private:
  template <typename... Taken>
  OwnedString Call(CFStringRef format, const Json& arguments, std::size_t index, Taken... taken) {
    if (index == arguments.size()) return OwnedString(CFStringCreateWithFormat(nullptr, nullptr, format, taken...));
    if constexpr (sizeof...(taken) < 3) {
      const auto argument = arguments[index].begin();
      const std::string& type = argument.key();
      const Json& value = argument.value();
      if (type == "int") return Call(format, arguments, index + 1, taken..., value.get<int>());
      if (type == "long") return Call(format, arguments, index + 1, taken..., value.get<long>());
      if (type == "double") {
        return Call(format, arguments, index + 1, taken..., std::stod(value.get<std::string>()));
      }
      return Call(format, arguments, index + 1, taken..., Pointer(type, value));
    }
    ADD_FAILURE() << "too many arguments";
    return nullptr;
  }

  const void* Pointer(const std::string& type, const Json& value) {
    if (type == "ptr") return value.is_null() ? nullptr : &slot_;
    if (type == "bytes" || type == "pascal") return bytes_.emplace_back(ReadBytes(value)).c_str();
    if (type == "utf16") return units_.emplace_back(ReadUnits(value)).c_str();
    if (type == "cfboolean") return value.get<bool>() ? kCFBooleanTrue : kCFBooleanFalse;
    if (type == "cfnull") return kCFNull;
    if (type == "cfstring") return objects_.emplace_back(String(ReadUnits(value)).release()).get();
    EXPECT_EQ(type, "cfnumber_int");
    const int number = value;
    return objects_.emplace_back(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number)).get();
  }

  int slot_ = 0;
  std::deque<std::string> bytes_;
  std::deque<std::u16string> units_;
  std::deque<Owned<CFTypeRef>> objects_;
};

TEST(Vectors, Formats) {
  for (const Json& row : kVectors["format"]) {
    const OwnedString made = FormatCall().Run(String(ReadUnits(row["format"])).get(), row["args"]);
    ASSERT_NE(made, nullptr) << row;
    EXPECT_EQ(Units(made.get()), ReadUnits(row["out"])) << row;
  }
}

TEST(Vectors, DecodingBytes) {
  const Json& table = kVectors["decode_single_byte"][0];
  for (std::size_t byte = 1; byte < 256; ++byte) {
    const char text[] = {static_cast<char>(byte), 0};
    const OwnedString made(CFStringCreateWithCString(nullptr, text, table["encoding"]));
    EXPECT_EQ(Units(made.get())[0], table["units_for_bytes_1_to_255"][byte - 1].get<unsigned>()) << byte;
  }
  for (const Json& row : kVectors["decode_cstring"]) {
    const OwnedString made(CFStringCreateWithCString(nullptr, ReadBytes(row["bytes"]).c_str(), row["encoding"]));
    ASSERT_EQ(made == nullptr, row["out"].is_null()) << row;
    if (made != nullptr) {
      EXPECT_EQ(Units(made.get()), ReadUnits(row["out"])) << row;
    }
  }
}

// Runs of ASCII of every length before and between other characters: they are taken in blocks.
TEST(Decoding, LongTextsAreTheirCharacters) {
  const auto decoded = [](const std::string& bytes, CFStringEncoding encoding) {
    return Units(OwnedString(CFStringCreateWithCString(nullptr, bytes.c_str(), encoding)).get());
  };
  for (std::size_t before = 0; before < 20; ++before) {
    for (std::size_t between = 0; between < 20; ++between) {
      const std::string start = std::string("abcdefghijklmnopqrst").substr(0, before);
      const std::string middle = std::string("ABCDEFGHIJKLMNOPQRST").substr(0, between);
      const std::u16string wide(start.begin(), start.end()), wide_middle(middle.begin(), middle.end());
      EXPECT_EQ(decoded(start + "\x8E" + middle + "\xDB", kCFStringEncodingMacRoman),
                wide + u"\u00E9" + wide_middle + u"\u20AC");
      EXPECT_EQ(decoded(start + "\xC3\xA9" + middle + "\xF0\x9F\x98\x80z", kCFStringEncodingUTF8),
                wide + u"\u00E9" + wide_middle + u"\U0001F600z");
    }
  }
}

TEST(Vectors, PascalStrings) {
  for (const Json& row : kVectors["pascal"]) {
    UInt8 buffer[512];
    std::fill(std::begin(buffer), std::end(buffer), UInt8{0xAA});
    const Json& out = row["out"];
    const Boolean result =
        CFStringGetPascalString(String(ReadUnits(row["in"])).get(), buffer, row["capacity"], row["encoding"]);
    EXPECT_EQ(result != 0, out["ret"].get<bool>()) << row;
    EXPECT_EQ(buffer[0], out["length_byte"]) << row;
    const std::string bytes(std::begin(buffer), std::end(buffer));
    const std::size_t touched = bytes.find_last_not_of('\xAA') + 1;
    EXPECT_EQ(static_cast<int>(touched) - 1, out["last_touched"]) << row;
    EXPECT_TRUE(bytes.starts_with(ReadBytes(out["first"]))) << row;
    EXPECT_TRUE(bytes.substr(0, touched).ends_with(ReadBytes(out["last"]))) << row;
  }
}

TEST(Vectors, EncodingBytes) {
  for (const Json& row : kVectors["get_bytes"]) {
    UInt8 buffer[64] = {};
    CFIndex used = -1;
    const CFRange range = {row["range"][0], row["range"][1]};
    const CFIndex converted =
        CFStringGetBytes(String(ReadUnits(row["in"])).get(), range, row["encoding"], row["loss_byte"].get<UInt8>(),
                         row["external"].get<bool>(), row["buffer"].is_null() ? nullptr : buffer, row["max"], &used);
    EXPECT_EQ(converted, row["out"]["converted"]) << row;
    EXPECT_EQ(used, row["out"]["used"]) << row;
    const std::string bytes = ReadBytes(row["out"]["bytes"]);
    EXPECT_EQ(std::string(buffer, buffer + bytes.size()), bytes) << row;
  }
}

TEST(Vectors, SizesNumbersAndOrder) {
  for (const Json& row : kVectors["maximum_size"]) {
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(row["length"], row["encoding"]), row["out"]) << row;
  }
  for (const Json& row : kVectors["int_value"]) {
    EXPECT_EQ(CFStringGetIntValue(String(ReadUnits(row["in"])).get()), row["out"]) << row;
  }
  for (const Json& row : kVectors["compare"]) {
    const OwnedString a = String(ReadUnits(row["a"]));
    const OwnedString b = String(ReadUnits(row["b"]));
    EXPECT_EQ(CFStringCompare(a.get(), b.get(), 0), row["out"].get<CFIndex>()) << row;
    EXPECT_EQ(CFStringCompare(b.get(), a.get(), 0), -row["out"].get<CFIndex>()) << row;
  }
}

TEST(Vectors, TablesOfStrings) {
  for (const Json& row : kVectors["strings_syntax"]) {
    const Folder folder;
    folder.Write("A.bundle/Contents/Resources/en.lproj/Localizable.strings", ReadBytes(row["bytes"]));
    const Owned<CFBundleRef> bundle = Bundle(folder / "A.bundle");
    for (const auto& [key, value] : row["values"].items()) {
      const OwnedString name(CFStringCreateWithCString(nullptr, key.c_str(), kCFStringEncodingUTF8));
      const OwnedString found(
          CFBundleCopyLocalizedString(bundle.get(), name.get(), CFSTR("NOT-FOUND"), CFSTR("Localizable")));
      const bool is_string = CFGetTypeID(found.get()) == CFStringGetTypeID();
      ASSERT_EQ(is_string, !value.is_null()) << row["what"] << " " << key;
      if (!is_string) continue;
      EXPECT_EQ(Units(found.get()), ReadUnits(value)) << row["what"] << " " << key;
    }
  }
}

}  // namespace
