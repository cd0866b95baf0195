#include "SokExtShared/LIB/text/instrument_names.h"

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/text/text_blocks.h"

namespace {

constexpr unsigned int kInstrumentTag = 0x534f4953;  // 'SOIS'

using NameField = short EDTInstrumentNames::*;

unsigned short* NameOf(short inst, NameField preferred, NameField other) {
  EDTInstrumentNames record{};
  if (!sx_loadother(kInstrumentTag, inst, 0, &record, sizeof record)) {
    urawtxt[0] = 0;
    return urawtxt;
  }
  const unsigned short* const name = sx_gettextblock2004_utf16(record.*preferred, true, nullptr);
  if (name[0] == 0) sx_gettextblock2004_utf16(record.*other, true, nullptr);
  return urawtxt;
}

}  // namespace

unsigned short* sx_getinstname_utf16(short inst) {
  return NameOf(inst, &EDTInstrumentNames::fullName, &EDTInstrumentNames::abbreviatedName);
}

unsigned short* sx_getabbrevinstname_utf16(short inst) {
  return NameOf(inst, &EDTInstrumentNames::abbreviatedName, &EDTInstrumentNames::fullName);
}
