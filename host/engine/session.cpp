#include "host/engine/session.h"

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace sok {

bool HasKnownVersion(const HostCall& call) {
  return call.version == kInterfaceVersion ||
         (call.version == EDTScoreExpression2009::kVersion && call.tag == record_tags::kScoreExpression);
}

std::string FourCharacters(unsigned int tag) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const unsigned int byte = tag >> shift & 0xFF;
    if (byte >= 0x20 && byte <= 0x7E) {
      text += static_cast<char>(byte);
    } else {
      constexpr const char* kHex = "0123456789abcdef";
      text += {'\\', 'x', kHex[byte >> 4], kHex[byte & 0xF]};
    }
  }
  return text;
}

std::string KeyText(unsigned int tag, const EDataID& id) {
  const auto join = [](auto first, auto... rest) {
    return (std::to_string(first) + ... + ("," + std::to_string(rest)));
  };
  switch (ViewOf(tag)) {
    case KeyView::kOther:
      return join(id.other.cmper, id.other.subIndex);
    case KeyView::kDetail:
      return join(id.detail.cmper, id.detail.secondCmper, id.detail.subIndex);
    case KeyView::kDetailExtra:
      return join(id.detail.cmper, id.detail.secondCmper, id.detail.extraValue);
    case KeyView::kEntryDetail:
      return join(id.entryDetail.entryNum, id.entryDetail.subIndex);
    case KeyView::kEntry:
      return join(id.entry.entryNum);
    case KeyView::kGlobal:
      return join(id.global.instance);
  }
  return {};
}

}  // namespace sok
