#include "SokExtShared/LIB/text/instrument_names.h"

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/text/text_blocks.h"
#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace {

using NameField = short EDTInstDefinition::*;

unsigned short* NameOf(short inst, NameField preferred, NameField other) {
  EDTInstDefinition record{};
  if (!sx_loadother(record_tags::kInstrument, inst, 0, &record, sizeof record)) {
    urawtxt[0] = 0;
    return urawtxt;
  }
  const unsigned short* const name = sx_gettextblock2004_utf16(record.*preferred, true, nullptr);
  if (name[0] == 0) sx_gettextblock2004_utf16(record.*other, true, nullptr);
  return urawtxt;
}

}  // namespace

unsigned short* sx_getinstname_utf16(short inst) {
  return NameOf(inst, &EDTInstDefinition::fullName, &EDTInstDefinition::abbreviatedName);
}

unsigned short* sx_getabbrevinstname_utf16(short inst) {
  return NameOf(inst, &EDTInstDefinition::abbreviatedName, &EDTInstDefinition::fullName);
}
