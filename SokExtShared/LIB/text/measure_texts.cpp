#include "SokExtShared/LIB/text/measure_texts.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_tags::kMeasureText;

bool sx_loadmeasuretext(int cmper, int secondCmper, TMeasureUText& mt, int subIndex) {
  if (!sx_loaddetail(kMeasureText, cmper, secondCmper, &mt.record, sizeof mt.record, subIndex)) return false;
  sx_gettextblock2004_utf16(mt.record.textBlock, false, &mt.block);
  std::fill(std::begin(mt.text), std::end(mt.text), static_cast<unsigned short>(0));
  const bool loaded =
      sx_getrawtext(mt.block.textID, mt.text, static_cast<int>(std::size(mt.text)), record_tags::kRawText, 0);
  mt.text[loaded ? std::size(mt.text) - 1 : 0] = 0;
  mt.cmper = cmper;
  mt.secondCmper = secondCmper;
  return true;
}

bool sx_createmeasuretext(TMeasureUText& mt) {
  mt.block.textID = -1;
  mt.record.textBlock = -1;
  sx_puttextblock2004(mt.record.textBlock, mt.block, mt.text);
  int subIndex = -1;
  return sx_createdetailconstcmper(kMeasureText, mt.cmper, static_cast<unsigned int>(mt.secondCmper), &mt.record,
                                   sizeof mt.record, subIndex);
}

bool sx_createuniquemeasuretext(TMeasureUText& mt) {
  TMeasureUText present;
  for (int subIndex = 0; subIndex <= std::numeric_limits<short>::max(); ++subIndex) {
    if (!sx_loadmeasuretext(mt.cmper, mt.secondCmper, present, subIndex)) break;
    if (sx_strcmp(present.text, mt.text) == 0) return true;
  }
  return sx_createmeasuretext(mt);
}
