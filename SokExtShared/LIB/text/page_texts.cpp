#include "SokExtShared/LIB/text/page_texts.h"

#include <iterator>

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_tags::kPageText;

bool sx_loadpagetext(short number, TPageUText& pt, int subIndex) {
  if (!sx_loadother(kPageText, number, subIndex, &pt.record, sizeof pt.record)) return false;
  pt.number = number;
  sx_strncpy(pt.text, sx_gettextblock2004_utf16(pt.record.textBlock, false, &pt.block), std::size(pt.text));
  return true;
}

bool sx_savepagetext(TPageUText& pt, int subIndex) {
  sx_puttextblock2004(pt.record.textBlock, pt.block, pt.text);
  return sx_saveother(kPageText, pt.number, subIndex, &pt.record, sizeof pt.record);
}

bool sx_createpagetext(TPageUText& pt) {
  pt.block.textID = -1;
  pt.record.textBlock = -1;
  sx_puttextblock2004(pt.record.textBlock, pt.block, pt.text);
  int number = pt.number;
  int subIndex = -1;
  return sx_createother(kPageText, number, subIndex, &pt.record, sizeof pt.record);
}
