#include "host/runner/run/record_changes.h"

#include <algorithm>
#include <map>
#include <set>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/engine/session.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/records/shapes.h"
#include "host/musicxml/records/texts.h"
#include "host/musicxml/records/tuplets.h"
#include "host/musicxml/writing/articulations.h"
#include "host/runner/report/report.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

struct KindRow {
  unsigned int tag;
  unsigned int mask;  // of the tag's bits that count
  const char* name;
};

constexpr unsigned int kWholeTag = 0xFFFFFFFF;
constexpr unsigned int kFamily = 0xFFFF0000;

constexpr KindRow kKinds[] = {
    {record_tags::kRawText, kWholeTag, "texts"},
    {record_tags::kTextBlock, kWholeTag, "texts"},
    {record_tags::kPageText, kWholeTag, "texts"},
    {record_tags::kMeasureText, kWholeTag, "texts"},
    {record_tags::kSmartShape, kWholeTag, "lines"},
    {record_tags::kCenterShape, kWholeTag, "lines"},
    {record_tags::kSmartShapeMeasureMark, kWholeTag, "lines"},
    {record_tags::kSmartShapeEntryMark, kWholeTag, "lines"},
    {record_tags::kTuplet, kWholeTag, "tuplets"},
    {record_tags::kArticulation, kWholeTag, "articulations"},
    {record_tags::kArticulationDefinition, kWholeTag, "articulations"},
    {record_tags::kInstrument, kWholeTag, "staves"},
    {record_tags::kInstrumentUsed, kWholeTag, "staves"},
    {record_tags::kMeasure, kWholeTag, "measures"},
    {0x70660000, kFamily, "preferences"},
    {0x6F740000, kFamily, "preferences"},
};

std::string KindOf(unsigned int tag) {
  const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                        [tag](const KindRow& row) { return row.tag == (tag & row.mask); });
  return kind != std::end(kKinds) ? kind->name : FourCharacters(tag);
}

using RecordPlace = std::pair<unsigned int, PackedKey>;
using Records = std::map<RecordPlace, std::pair<EDataID, std::span<const unsigned char>>>;

Records AllOf(const RecordStore& store) {
  Records records;
  store.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    records[{tag, PackKey(ViewOf(tag), id)}] = {id, bytes};
  });
  return records;
}

// Articulations travel with the entries of frames that changed.
bool IsWritten(const Document& document, unsigned int tag, const EDataID& id, const std::vector<Change>& music) {
  FramePlace place;
  if (const auto entry = document.FindEntry(id.entryDetail.entryNum); entry) place = entry->place;
  return std::ranges::any_of(music, [&](const Change& change) {
    const bool here = place == FramePlace{change.slot, change.measure, change.layer};
    return change.kind == ChangeKind::kOther &&
           (tag == record_tags::kArticulationDefinition || (tag == record_tags::kArticulation && here));
  });
}

}  // namespace

std::vector<RecordChanges> FindRecordChanges(const Document& before, const Score& score,
                                             const std::vector<Change>& music) {
  const Document& document = score.document();
  if (document.records == before.records) return {};
  const Records old = AllOf(before.records), now = AllOf(document.records);
  std::map<std::string, RecordChanges> kinds;
  for (const auto& [place, record] : now) {
    const auto found = old.find(place);
    if (found == old.end()) {
      if (!IsWritten(document, place.first, record.first, music)) ++kinds[KindOf(place.first)].added;
    } else if (!std::ranges::equal(found->second.second, record.second)) {
      ++kinds[KindOf(place.first)].changed;
    }
  }
  for (const auto& [place, record] : old) {
    if (!now.contains(place)) ++kinds[KindOf(place.first)].removed;
  }
  std::vector<RecordChanges> all;
  for (auto& [kind, changes] : kinds) {
    changes.kind = kind;
    all.push_back(std::move(changes));
  }
  return all;
}

std::vector<std::string> FindOrphans(const Document& before, const Score& score) {
  const Document& document = score.document();
  struct Left {
    long records = 0;
    std::set<short> measures;
  };
  std::map<std::string, Left> kinds;
  document.records.ForEach([&](unsigned int tag, const EDataID& id, auto) {
    if (ViewOf(tag) != KeyView::kEntryDetail) return;
    const auto was = before.FindEntry(id.entryDetail.entryNum);
    if (!was || document.FindEntry(id.entryDetail.entryNum)) return;
    Left& left = kinds[KindOf(tag)];
    ++left.records;
    left.measures.insert(was->place.measure);
  });
  std::vector<std::string> texts;
  for (const auto& [kind, left] : kinds) {
    texts.push_back(kind + " are left without their entry in " +
                    MeasuresLabel(score, {left.measures.begin(), left.measures.end()}) + " (" +
                    Counted(left.records, "record") + ")");
  }
  return texts;
}

std::string RecordChangesText(const RecordChanges& changes) {
  std::string counts;
  const auto add = [&counts](long count, const char* what) {
    if (count > 0) counts += (counts.empty() ? "" : ", ") + Counted(count, "record") + " " + what;
  };
  add(changes.changed, "changed");
  add(changes.added, "added");
  add(changes.removed, "removed");
  return "the extension changed " + changes.kind + " (" + counts + "); only music is written back";
}

}  // namespace sok
