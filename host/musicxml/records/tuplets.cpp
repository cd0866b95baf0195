#include "host/musicxml/records/tuplets.h"

#include <string_view>
#include <utility>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/musicxml/frames.h"

namespace sok {
namespace {

EDataID KeyOf(int entry) {
  EDataID id{};
  id.entryDetail.entryNum = entry;
  return id;
}

// 0 in the time of 0 where the note is in no tuplet.
TupletRecord RatioOf(const Item& note) {
  const pugi::xml_node ratio = note.node.child("time-modification");
  const int notes = SmallNumber(ratio.child_value("actual-notes"));
  const int in_time_of = SmallNumber(ratio.child_value("normal-notes"));
  const bool sound = notes > 0 && in_time_of > 0 && notes <= 0x7FFF && in_time_of <= 0x7FFF && notes != in_time_of;
  return sound ? TupletRecord{static_cast<short>(notes), static_cast<short>(in_time_of), 0, {}} : TupletRecord{};
}

bool HasTuplet(pugi::xml_node note, const char* type) {
  for (const pugi::xml_node notations : note.children("notations")) {
    if (notations.find_child_by_attribute("tuplet", "type", type)) return true;
  }
  return false;
}

}  // namespace

void AddTuplets(const ReaderContext& context, const OpenMeasure& measure) {
  struct Open {
    int entry = 0;
    TupletRecord tuplet{};
  };
  std::map<std::pair<std::string_view, int>, Open> voices;
  const auto close = [&](Open& open) {
    if (open.tuplet.notes != 0) {
      context.document.records.Save(record_tags::kTuplet, KeyOf(open.entry), &open.tuplet, sizeof open.tuplet);
    }
    open = {};
  };
  for (std::size_t i = 0; i < measure.parts.items.size(); ++i) {
    const Item& note = measure.parts.items[i];
    if (note.kind != ItemKind::kNote || note.chord || (note.entry.flags & kGrace) != 0) continue;
    Open& open = voices[{note.voice, note.key_staff}];
    const TupletRecord ratio = note.in_tuplet ? RatioOf(note) : TupletRecord{};
    const bool goes_on = ratio.notes == open.tuplet.notes && ratio.in_time_of == open.tuplet.in_time_of;
    if (!goes_on || (note.has_notations && HasTuplet(note.node, "start"))) {
      close(open);
      open = {measure.entries[i], ratio};
    }
    open.tuplet.written += note.entry.duration;
    if (note.has_notations && HasTuplet(note.node, "stop")) close(open);
  }
  for (auto& [voice, open] : voices) close(open);
}

std::map<int, TupletRecord> TupletsIn(const Document& document, std::span<const EXENTRY> entries) {
  std::map<int, TupletRecord> tuplets;
  TupletRecord tuplet{};
  int left = 0;
  for (const EXENTRY& entry : entries) {
    if ((entry.flags & kEntryIsGrace) != 0) continue;
    TupletRecord begins{};
    int size = sizeof begins;
    if (document.records.Load(record_tags::kTuplet, KeyOf(entry.number), &begins, &size) && begins.notes > 0) {
      tuplet = begins;
      left = begins.written;
    }
    if (left > 0) tuplets[int{entry.number}] = tuplet;
    left -= entry.duration;
  }
  return tuplets;
}

}  // namespace sok
