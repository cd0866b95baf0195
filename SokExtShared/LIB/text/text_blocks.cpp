#include "SokExtShared/LIB/text/text_blocks.h"

#include <algorithm>
#include <iterator>

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/LIB/text/caret_commands.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

unsigned short urawtxt[1000];

namespace {

constexpr short kNewRecord = -1;

// The kind's 16 bits are sign-extended, so a kind from 0x8000 on sets the tag's high half.
unsigned int TagOfKind(short kind) { return record_tags::kRawTexts | static_cast<unsigned int>(kind); }

// Saves the record `number`, or creates one when that is -1; brings back the number in the key.
bool Put(unsigned int tag, short& number, const void* record, int size) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(number);
  const short result = number == kNewRecord ? SX_CreateEData(tag, &id, record, size, kInterfaceVersion)
                                            : SX_SaveEData(tag, &id, record, size, kInterfaceVersion);
  number = static_cast<short>(id.other.cmper);
  return result != 0;
}

}  // namespace

bool sx_getrawtext(short textID, unsigned short* buffer, int capacity, unsigned int tag, int subIndex) {
  return sx_loadother(tag, textID, subIndex, buffer, capacity * 2);
}

bool sx_putrawtext(short& textID, const unsigned short* text, unsigned int tag) {
  return Put(tag, textID, text, static_cast<int>((sx_strlen(text) + 1) * sizeof *text));
}

unsigned short* sx_gettextblock2004_utf16(short blockID, bool stripCarets, EDTTextBlock2004* blockOut) {
  // All zero, so that a text that the host leaves unterminated ends where the host stopped.
  std::fill(std::begin(urawtxt), std::end(urawtxt), static_cast<unsigned short>(0));
  EDTTextBlock2004 block{};
  if (!sx_loadother(record_tags::kTextBlock, blockID, 0, &block, sizeof block)) {
    block = {};
  } else {
    const short kind = block.textTag != 0 ? block.textTag : EDTTextBlock2004::kOrdinaryKind;
    const bool loaded = sx_getrawtext(block.textID, urawtxt, std::size(urawtxt), TagOfKind(kind), 0);
    urawtxt[loaded ? std::size(urawtxt) - 1 : 0] = 0;
    if (loaded && stripCarets) txt_strip_carets(urawtxt);
  }
  if (blockOut != nullptr) *blockOut = block;
  return urawtxt;
}

bool sx_puttextblock2004(short& blockID, EDTTextBlock2004& block, const unsigned short* text) {
  if (block.textTag == 0) block.textTag = EDTTextBlock2004::kOrdinaryKind;
  sx_putrawtext(block.textID, text, TagOfKind(block.textTag));
  return Put(record_tags::kTextBlock, blockID, &block, sizeof block);
}
