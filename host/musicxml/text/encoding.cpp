#include "host/musicxml/text/encoding.h"

#include <iconv.h>

#include <algorithm>
#include <cctype>

#include "host/errors.h"
#include "host/musicxml/limits.h"

namespace sok {
namespace {

constexpr char kUtf8[] = "UTF-8";

struct Signature {
  std::string_view bytes;
  const char* encoding;
};

// Longer marks first: UTF-32LE begins like UTF-16LE.
constexpr Signature kSignatures[] = {
    {{"\xFF\xFE\0\0", 4}, "UTF-32LE"}, {{"\0\0\xFE\xFF", 4}, "UTF-32BE"}, {{"<\0\0\0", 4}, "UTF-32LE"},
    {{"\0\0\0<", 4}, "UTF-32BE"},      {{"\xFF\xFE", 2}, "UTF-16LE"},     {{"\xFE\xFF", 2}, "UTF-16BE"},
    {{"<\0", 2}, "UTF-16LE"},          {{"\0<", 2}, "UTF-16BE"},          {{"\xEF\xBB\xBF", 3}, kUtf8},
};

class Converter {
 public:
  Converter(const std::string& to, const std::string& from) : handle_(iconv_open(to.c_str(), from.c_str())) {
    // The system's converter signals failure with an address that no handle has.
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw Error("the encoding " + from + " is not known");
  }
  ~Converter() { iconv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  struct Result {
    std::string text;
    bool whole = true;  // all of the input could be converted; else the text is what could
  };
  Result Convert(std::string_view input) {
    Result result;
    char block[16384];
    char* in = const_cast<char*>(input.data());
    std::size_t in_left = input.size();
    for (bool flush = false;;) {
      char* out = block;
      std::size_t out_left = sizeof block;
      const std::size_t done = iconv(handle_, flush ? nullptr : &in, flush ? nullptr : &in_left, &out, &out_left);
      result.text.append(block, sizeof block - out_left);
      if (done == static_cast<std::size_t>(-1) && errno != E2BIG) {
        result.whole = false;
        return result;
      }
      if (done == static_cast<std::size_t>(-1)) continue;
      if (flush) return result;
      flush = true;
    }
  }

 private:
  iconv_t handle_;
};

std::string Upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return result;
}

// The name in <?xml … encoding="…"?>; empty when there is none or it is no name.
std::string DeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, std::min(text.find("?>"), std::size_t{256}));
  std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return {};
  at = declaration.find_first_of("\"'", at);
  if (at == std::string_view::npos) return {};
  const std::size_t end = declaration.find(declaration[at], at + 1);
  if (end == std::string_view::npos) return {};
  const std::string_view name = declaration.substr(at + 1, end - at - 1);
  const bool is_name = std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '-' || c == '_' || c == '.' || c == ':';
  });
  return is_name ? Upper(name) : std::string();
}

bool IsEightBit(const std::string& encoding) {
  return !encoding.starts_with("UTF-16") && !encoding.starts_with("UTF-32") && !encoding.starts_with("UCS-") &&
         !encoding.starts_with("ISO-10646");
}

}  // namespace

DecodedText DecodeText(std::string bytes) {
  DecodedText result;
  for (const Signature& signature : kSignatures) {
    if (std::string_view(bytes).starts_with(signature.bytes)) {
      result.encoding = signature.encoding;
      break;
    }
  }
  if (result.encoding.empty()) {
    const std::string declared = DeclaredEncoding(bytes);
    if (!IsEightBit(declared)) {
      result.warning = "the text declares " + declared + " but holds 8-bit characters; read as UTF-8";
    } else if (declared != "UTF8" && declared != "US-ASCII" && declared != "ASCII") {
      result.encoding = declared;
    }
    if (result.encoding.empty()) result.encoding = kUtf8;
  }
  if (result.encoding == kUtf8) {
    result.text = std::move(bytes);
  } else {
    auto [text, whole] = Converter(kUtf8, result.encoding).Convert(bytes);
    if (!whole) {
      const auto lines = std::count(text.begin(), text.end(), '\n');
      throw Error("the text is not " + result.encoding + " in line " + std::to_string(lines + 1));
    }
    result.text = std::move(text);
    result.bytes = std::move(bytes);
  }
  if (result.text.size() > kLargestText) throw Error("the text is larger than 1 GiB");
  if (result.text.find('\0') != std::string::npos) throw Error("not a text: it holds zero bytes");
  return result;
}

std::string EncodeText(std::string_view text, const std::string& encoding) {
  if (encoding == kUtf8) return std::string(text);
  Converter::Result result = Converter(encoding, kUtf8).Convert(text);
  if (!result.whole) throw Error("the text cannot be written in " + encoding);
  return std::move(result.text);
}

}  // namespace sok
