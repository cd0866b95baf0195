// The text of a file as UTF-8, and back.
#pragma once

#include <string>
#include <string_view>

namespace sok {

struct DecodedText {
  std::string text;      // UTF-8; a byte-order mark stays at its front
  std::string encoding;  // "UTF-8", "UTF-16LE", or as declared
  std::string bytes;     // as given, where that is not UTF-8; else empty
  std::string warning;   // a declaration that the bytes belie; else empty
};

// What the bytes are shows in a byte-order mark or in how '<' is stored, then in the XML declaration. Throws
// Error with the reason when they are not text of that encoding.
DecodedText DecodeText(std::string bytes);

// UTF-8 text in another encoding. Throws Error when the encoding cannot hold it.
std::string EncodeText(std::string_view text, const std::string& encoding);

}  // namespace sok
