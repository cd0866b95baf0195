#include "host/musicxml/records/preferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace sok {
namespace {

constexpr unsigned int kPerFieldTag = 0x6F740000;  // 'ot' and two characters
constexpr double kUnitsPerMillimeter = 288 / 25.4;

using Words = std::array<unsigned short, 6>;

// The per-field records that stand alone, and those of which several follow each other, subIndex 0 and on.
constexpr std::string_view kSingleRecords =
    "01 02 03 04 05 09 11 12 13 14 15 16 17 18 19 20 21 22 23 27 31 36 37 38 39 44 45 50 51 56 58 59 60 61 62 64 65 66 "
    "67 68 69 70 71 72 76 79 80 91 92 93";
struct Several {
  const char* record;
  short count;
};
constexpr Several kSeveralRecords[] = {
    {"25", 2}, {"26", 15}, {"40", 128}, {"41", 3},  {"52", 2}, {"53", 2}, {"77", 9}, {"78", 9},
    {"84", 4}, {"85", 4},  {"86", 5},   {"88", 11}, {"90", 9}, {"94", 3}, {"97", 2}, {"98", 4},
};
constexpr unsigned short kSmartShapeCmpers[] = {10, 11, 12};  // of the records 'otFI'

void Save(Document& document, std::string_view record, unsigned short cmper, short subIndex, const Words& words = {}) {
  const unsigned int tag =
      kPerFieldTag | static_cast<unsigned int>(record[0]) << 8 | static_cast<unsigned int>(record[1]);
  EDataID id{};
  id.other = {cmper, subIndex};
  document.records.Save(tag, id, words.data(), sizeof words);
}

void SaveEmptyRecords(Document& document) {
  for (std::size_t i = 0; i < kSingleRecords.size(); i += 3) {
    Save(document, kSingleRecords.substr(i, 2), EDataID::kDocument, 0);
  }
  for (const Several& several : kSeveralRecords) {
    for (short i = 0; i < several.count; ++i) Save(document, several.record, EDataID::kDocument, i);
  }
  for (const unsigned short cmper : kSmartShapeCmpers) Save(document, "FI", cmper, 0);
  for (short layer = 0; layer < kLayers; ++layer) {
    EDataID id{};
    id.global.instance = layer;
    const unsigned char preferences[4] = {};
    document.records.Save(record_tags::kLayerPreferences, id, preferences, sizeof preferences);
  }
}

struct Margins {
  short top;
  short left;
  short bottom;
  short right;
};

struct PageFormat {
  int height;
  int width;
  short percent;
  Margins left_page;
  Margins system;
  Margins right_page;
  short host34[2];
  short pages_differ;
  short host40[4];
};
static_assert(sizeof(PageFormat) == 48 && offsetof(PageFormat, pages_differ) == 38);

// Lengths of the score's layout in units.
class Layout {
 public:
  explicit Layout(pugi::xml_node defaults) {
    const pugi::xml_node scaling = defaults.child("scaling");
    const double scale = scaling.child("millimeters").text().as_double() / scaling.child("tenths").text().as_double();
    if (std::isfinite(scale) && scale > 0) units_per_tenth_ = scale * kUnitsPerMillimeter;
  }

  // The length in a child element, or `otherwise` when it is missing or no length that a page could have.
  short Length(pugi::xml_node parent, const char* name, short otherwise) const {
    const pugi::xml_text text = parent.child(name).text();
    const double units = std::round(text.as_double() * units_per_tenth_);
    return text.empty() || !(std::abs(units) <= 32767) ? otherwise : static_cast<short>(units);
  }

  Margins PageMargins(pugi::xml_node margins, const Margins& otherwise) const {
    return {Length(margins, "top-margin", otherwise.top), Length(margins, "left-margin", otherwise.left),
            Length(margins, "bottom-margin", otherwise.bottom), Length(margins, "right-margin", otherwise.right)};
  }

 private:
  double units_per_tenth_ = 7.2 / 40 * kUnitsPerMillimeter;  // a staff of 7.2 mm, for scores that do not say
};

short Millimeters(double length) { return static_cast<short>(std::lround(length * kUnitsPerMillimeter)); }

// The margins for one side of the sheet; those for both, or for the other one, where it has none of its own.
pugi::xml_node MarginsFor(pugi::xml_node page, const char* type) {
  const pugi::xml_node own = page.find_child_by_attribute("page-margins", "type", type);
  return own ? own : page.child("page-margins");
}

PageFormat ReadPageFormat(pugi::xml_node defaults) {
  const short margin = Millimeters(15);
  const Margins margins = {margin, margin, margin, margin};
  const Layout layout(defaults);
  const pugi::xml_node page = defaults.child("page-layout");
  const pugi::xml_node system = defaults.child("system-layout");
  PageFormat format{};
  format.height = std::max<short>(layout.Length(page, "page-height", Millimeters(297)), 1);
  format.width = std::max<short>(layout.Length(page, "page-width", Millimeters(210)), 1);
  format.percent = 100;
  format.left_page = layout.PageMargins(MarginsFor(page, "even"), margins);
  format.right_page = layout.PageMargins(MarginsFor(page, "odd"), margins);
  format.pages_differ = std::memcmp(&format.left_page, &format.right_page, sizeof(Margins)) != 0;
  format.system = layout.PageMargins(system.child("system-margins"), {});
  format.system.top = layout.Length(system, "system-distance", 0);
  return format;
}

unsigned short Word(int value) { return static_cast<unsigned short>(value); }

Words MarginWords(const Margins& margins) {
  return {Word(margins.top), Word(margins.left), Word(margins.bottom), Word(margins.right)};
}

void SavePageFormat(Document& document, const PageFormat& format) {
  const auto save = [&](const char* record, const Words& words) {
    Save(document, record, EDataID::kDocument, 0, words);
  };
  save("14", {Word(format.height >> 16), Word(format.height)});
  save("15", {0, 0, Word(format.width >> 16), Word(format.width)});
  save("39", {0, 0, Word(format.percent)});
  save("16", MarginWords(format.left_page));
  save("02", MarginWords(format.system));
  Words right_page = MarginWords(format.right_page);
  std::swap(right_page[2], right_page[3]);
  save("17", right_page);
  save("13", {0, 0, 0, 0, 0, Word(format.pages_differ)});
  std::array<Words, sizeof(PageFormat) / sizeof(Words)> parts;
  std::memcpy(parts.data(), &format, sizeof format);
  for (short i = 0; i < static_cast<short>(parts.size()); ++i) {
    Save(document, "77", EDataID::kDocument, i, parts[static_cast<std::size_t>(i)]);
  }
}

}  // namespace

void AddPreferences(const ReaderContext& context) {
  SaveEmptyRecords(context.document);
  SavePageFormat(context.document, ReadPageFormat(context.root.child("defaults")));
}

}  // namespace sok
