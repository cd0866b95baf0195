// Observed results of the real framework, row by row.

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "tests/platform/support.h"

namespace {

using Json = nlohmann::json;

const Json& Vectors() {
  static const Json vectors = Json::parse(std::ifstream(SOK_PLATFORM_VECTORS));
  return vectors;
}

CFStringEncoding Encoding(const Json& row) {
  if (row.contains("encoding_value")) return row["encoding_value"];
  if (row["encoding"].is_number()) return row["encoding"];
  const std::string name = row["encoding"];
  if (name == "MacRoman") return kCFStringEncodingMacRoman;
  if (name == "ASCII") return kCFStringEncodingASCII;
  EXPECT_EQ(name, "UTF8");
  return kCFStringEncodingUTF8;
}

// Units written as a list, as one unit repeated with a tail, or as runs.
std::u16string ReadUnits(const Json& value) {
  std::u16string units;
  const auto append = [&units](const Json& list) {
    for (const Json& unit : list) units += static_cast<char16_t>(unit.get<unsigned>());
  };
  if (value.is_array()) {
    append(value);
    return units;
  }
  if (value.contains("repeat")) {
    units.assign(value["repeat"][1].get<size_t>(), static_cast<char16_t>(value["repeat"][0].get<unsigned>()));
    append(value.value("then", Json::array()));
  }
  for (const Json& run : value.value("runs", Json::array())) {
    units.append(run[1].get<size_t>(), static_cast<char16_t>(run[0].get<unsigned>()));
  }
  return units;
}

std::string ReadBytes(const std::string& hex) {
  std::string bytes;
  for (size_t i = 0; i < hex.size(); i += 2) bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return bytes;
}

std::string Hex(const UInt8* bytes, size_t count) {
  std::string hex;
  for (size_t i = 0; i < count; ++i) {
    hex += "0123456789abcdef"[bytes[i] >> 4];
    hex += "0123456789abcdef"[bytes[i] & 15];
  }
  return hex;
}

// Keeps what a row's arguments point to.
class FormatCall {
 public:
  OwnedString Run(CFStringRef format, const Json& arguments) { return Call(format, arguments, 0); }

 private:
  template <typename... Taken>
  OwnedString Call(CFStringRef format, const Json& arguments, size_t index, Taken... taken) {
    if (index == arguments.size()) return OwnedString(CFStringCreateWithFormat(nullptr, nullptr, format, taken...));
    if constexpr (sizeof...(taken) < 3) {
      const auto argument = arguments[index].begin();
      const std::string& type = argument.key();
      const Json& value = argument.value();
      if (type == "int") return Call(format, arguments, index + 1, taken..., value.get<int>());
      if (type == "long" || type == "longlong") {
        return Call(format, arguments, index + 1, taken..., value.get<long>());
      }
      if (type == "double") return Call(format, arguments, index + 1, taken..., Double(value));
      return Call(format, arguments, index + 1, taken..., Pointer(type, value));
    }
    ADD_FAILURE() << "too many arguments";
    return nullptr;
  }

  static double Double(const Json& value) {
    if (value.is_string()) return value == "-inf" ? -INFINITY : INFINITY;
    return value.get<double>();
  }

  const void* Pointer(const std::string& type, const Json& value) {
    if (type == "ptr") return value.is_null() ? nullptr : &slot_;
    if (type == "bytes" || type == "pascal") return bytes_.emplace_back(ReadBytes(value)).c_str();
    if (type == "utf16") return units_.emplace_back(ReadUnits(value)).c_str();
    if (type == "cfboolean") return value.get<bool>() ? kCFBooleanTrue : kCFBooleanFalse;
    if (type == "cfnull") return kCFNull;
    if (type == "cfnumber_int") {
      const int number = value;
      return objects_.emplace_back(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number)).get();
    }
    const Json units = type == "cfstring_repeat" ? Json{{"repeat", value}} : value;
    return objects_.emplace_back(String(ReadUnits(units)).release()).get();
  }

  int slot_ = 0;
  std::deque<std::string> bytes_;
  std::deque<std::u16string> units_;
  std::deque<Owned<CFTypeRef>> objects_;
};

TEST(Vectors, Formats) {
  for (const Json& row : Vectors()["format"]) {
    const OwnedString made = FormatCall().Run(String(ReadUnits(row["format"])).get(), row["args"]);
    ASSERT_NE(made, nullptr) << row;
    const std::u16string expected = ReadUnits(row["out"]);
    const std::u16string got = Units(made.get());
    // Long numbers are told by their length and first digits.
    if (row["out"].is_object() && row["out"]["length"] != expected.size()) {
      EXPECT_EQ(got.size(), row["out"]["length"]) << row;
      EXPECT_EQ(got.substr(0, expected.size()), expected) << row;
    } else {
      EXPECT_EQ(got, expected) << row;
    }
  }
}

TEST(Vectors, DecodingBytes) {
  for (const Json& table : Vectors()["decode_single_byte"]) {
    for (int byte = 1; byte < 256; ++byte) {
      const char text[] = {static_cast<char>(byte), 0};
      const OwnedString made(CFStringCreateWithCString(nullptr, text, Encoding(table)));
      const auto index = static_cast<size_t>(byte - 1);
      EXPECT_EQ(Units(made.get())[0], table["units_for_bytes_1_to_255"][index].get<unsigned>()) << byte;
    }
  }
  for (const Json& row : Vectors()["decode_cstring"]) {
    const OwnedString made(CFStringCreateWithCString(nullptr, ReadBytes(row["bytes"]).c_str(), Encoding(row)));
    ASSERT_EQ(made == nullptr, row["out"].is_null()) << row;
    if (made != nullptr) {
      EXPECT_EQ(Units(made.get()), ReadUnits(row["out"])) << row;
    }
  }
}

TEST(Vectors, PascalStrings) {
  for (const Json& row : Vectors()["pascal"]) {
    UInt8 buffer[512];
    std::fill(std::begin(buffer), std::end(buffer), UInt8{0xAA});
    const Json& out = row["out"];
    const Boolean result =
        CFStringGetPascalString(String(ReadUnits(row["in"])).get(), buffer, row["capacity"], Encoding(row));
    EXPECT_EQ(result != 0, out["ret"].get<bool>()) << row;
    EXPECT_EQ(buffer[0], out["length_byte"]) << row;
    int last = static_cast<int>(std::size(buffer)) - 1;
    while (last >= 0 && buffer[last] == 0xAA) --last;
    EXPECT_EQ(last, out["last_touched"]) << row;
    const std::string bytes = Hex(buffer, static_cast<size_t>(last + 1));
    if (out["buffer"].is_string()) {
      EXPECT_EQ(bytes, out["buffer"]) << row;
    } else {
      EXPECT_EQ(bytes.substr(0, 16), out["buffer"]["first8"]) << row;
      EXPECT_EQ(bytes.substr(bytes.size() - 8), out["buffer"]["last4"]) << row;
    }
  }
}

TEST(Vectors, EncodingBytes) {
  for (const Json& row : Vectors()["get_bytes"]) {
    UInt8 buffer[64] = {};
    CFIndex used = -1;
    const CFRange range = {row["range"][0], row["range"][1]};
    const CFIndex converted =
        CFStringGetBytes(String(ReadUnits(row["in"])).get(), range, Encoding(row), row["loss_byte"].get<UInt8>(),
                         row["external"].get<bool>(), row["buffer"].is_null() ? nullptr : buffer, row["max"], &used);
    EXPECT_EQ(converted, row["out"]["converted"]) << row;
    EXPECT_EQ(used, row["out"]["used"]) << row;
    const std::string bytes = row["out"]["bytes"];
    EXPECT_EQ(Hex(buffer, bytes.size() / 2), bytes) << row;
  }
}

TEST(Vectors, SizesNumbersAndOrder) {
  for (const Json& row : Vectors()["maximum_size"]) {
    EXPECT_EQ(CFStringGetMaximumSizeForEncoding(row["length"], Encoding(row)), row["out"]) << row;
  }
  for (const Json& row : Vectors()["int_value"]) {
    EXPECT_EQ(CFStringGetIntValue(String(ReadUnits(row["in"])).get()), row["out"]) << row;
  }
  for (const Json& row : Vectors()["compare"]) {
    const OwnedString a = String(ReadUnits(row["a"]));
    const OwnedString b = String(ReadUnits(row["b"]));
    EXPECT_EQ(CFStringCompare(a.get(), b.get(), 0), row["out"].get<CFIndex>()) << row;
    EXPECT_EQ(CFStringCompare(b.get(), a.get(), 0), -row["out"].get<CFIndex>()) << row;
  }
}

// The tables too long to be written down.
std::string LongTable(const std::string& what) {
  if (what == "value of 100000 characters") return "\"a\" = \"" + std::string(100000, 'x') + "\";\n\"b\" = \"B\";";
  EXPECT_EQ(what, "10000 entries");
  std::string table;
  for (int i = 0; i < 10000; ++i) {
    const std::string number = std::to_string(i);
    table += "\"k" + number + "\" = \"v" + number + "\";\n";
  }
  return table;
}

TEST(Vectors, TablesOfStrings) {
  for (const Json& row : Vectors()["strings_syntax"]) {
    const std::string bytes = row["bytes"].is_string() ? ReadBytes(row["bytes"]) : LongTable(row["what"]);
    if (row["bytes"].is_object()) {
      ASSERT_EQ(bytes.size(), row["bytes"]["length"]);
    }
    const Folder folder;
    folder.Write("A.bundle/Contents/Resources/en.lproj/Localizable.strings", bytes);
    const Owned<CFBundleRef> bundle = Bundle(folder / "A.bundle");
    for (const auto& [key, value] : row["values"].items()) {
      const OwnedString name(CFStringCreateWithCString(nullptr, key.c_str(), kCFStringEncodingUTF8));
      const OwnedString found(
          CFBundleCopyLocalizedString(bundle.get(), name.get(), CFSTR("NOT-FOUND"), CFSTR("Localizable")));
      if (value.is_object()) {
        EXPECT_NE(CFGetTypeID(found.get()), CFStringGetTypeID()) << row["what"] << " " << key;
        continue;
      }
      const OwnedString expected(
          CFStringCreateWithCString(nullptr, value.get<std::string>().c_str(), kCFStringEncodingUTF8));
      // A zero unit ends what the C string can tell.
      if (value.get<std::string>().find('\0') == std::string::npos) {
        EXPECT_EQ(Units(found.get()), Units(expected.get())) << row["what"] << " " << key;
      } else {
        EXPECT_EQ(Units(found.get())[0], 0) << row["what"] << " " << key;
      }
    }
  }
}

}  // namespace
