#include "host/runner/report/frame_table.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>

#include "SokExtShared/SokEDK/Source/edk/entries.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/records/tuplets.h"

namespace sok {
namespace {

constexpr char kGone = '-', kCame = '+', kStays = ' ';
constexpr const char* kHeading = "measure staff layer number  entry             what it is\n";

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

std::span<const EXNOTE> NotesOf(const EXENTRY& entry) {
  const int count = IsNote(entry) ? std::clamp<int>(entry.noteCount, 0, EXENTRY::kMostNotes) : 0;
  return {entry.notes, static_cast<std::size_t>(count)};
}

std::string PitchText(const EXNOTE& note) {
  const edk::Pitch pitch{note.first, note.second};
  const bool many = std::abs(pitch.alteration) > 3;
  std::string text(1, "CDEFGAB"[pitch.Letter()]);
  if (!many) text.append(static_cast<std::size_t>(std::abs(pitch.alteration)), pitch.alteration < 0 ? 'b' : '#');
  text += std::to_string(pitch.Octave());
  if (many) text += (pitch.alteration > 0 ? "(+" : "(") + std::to_string(pitch.alteration) + ")";
  return text;
}

std::vector<std::string> PitchTexts(const EXENTRY& entry) {
  std::vector<std::string> texts;
  for (const EXNOTE& note : NotesOf(entry)) texts.push_back(PitchText(note));
  return texts;
}

std::string Joined(const std::vector<std::string>& texts, const char* between) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : between) + text;
  return all;
}

const char* KindOf(const EXENTRY& entry) {
  if (IsNote(entry)) return entry.noteCount > 1 ? "chord" : "note";
  return entry.duration == kWholeRestDuration ? "whole-measure rest" : "rest";
}

// "3:2" by number of an entry.
using Tuplets = std::map<int, std::string>;

void AddTuplets(const Document& document, std::span<const EXENTRY> entries, Tuplets& tuplets) {
  for (const auto& [number, tuplet] : TupletsIn(document, entries)) {
    tuplets[number] = std::to_string(tuplet.notes) + ":" + std::to_string(tuplet.in_time_of);
  }
}

std::vector<ShownEntry> Shown(const std::vector<EXENTRY>& entries, const Tuplets& tuplets) {
  std::vector<ShownEntry> shown;
  for (const EXENTRY& entry : entries) {
    const auto tuplet = tuplets.find(int{entry.number});
    shown.push_back({entry, tuplet == tuplets.end() ? std::string() : tuplet->second});
  }
  return shown;
}

std::vector<std::string> FlagTexts(const ShownEntry& shown) {
  const EXENTRY& entry = shown.entry;
  const auto any = [&](unsigned int flag) {
    return std::ranges::any_of(NotesOf(entry), [flag](const EXNOTE& note) { return (note.flags & flag) != 0; });
  };
  std::vector<std::string> texts = {KindOf(entry)};
  if (!IsNote(entry) && (entry.flags & kEntryRestPlaced) != 0 && entry.noteCount > 0) {
    texts.push_back("at " + PitchText({entry.notes[0].first, 0, 0, 0}));
  }
  if ((entry.flags & kEntryIsGrace) != 0) texts.emplace_back("grace");
  if (!shown.tuplet.empty()) texts.push_back("tuplet " + shown.tuplet);
  if (any(kNoteTieStart)) texts.emplace_back("tied to next");
  if (any(kNoteTieStop)) texts.emplace_back("tied to previous");
  if ((entry.flags & kEntryHasArticulations) != 0) texts.emplace_back("articulations");
  if ((entry.flags & kEntryHasNoteheads) != 0) texts.emplace_back("noteheads");
  return texts;
}

// One line of a table, without what marks it.
std::string Row(const FramePlace& place, const ShownEntry& shown) {
  const EXENTRY& entry = shown.entry;
  char line[64];
  std::snprintf(line, sizeof line, "%7d %5d %5d %6d  ", place.measure, place.instrument, place.layer + 1, entry.number);
  std::string text = EntryText(entry);
  text.resize(std::max<std::size_t>(text.size(), 17), ' ');
  return line + text + " " + Joined(FlagTexts(shown), ", ") + "\n";
}

std::vector<std::string> Rows(const FramePlace& place, const std::vector<ShownEntry>& entries) {
  std::vector<std::string> rows;
  for (const ShownEntry& entry : entries) rows.push_back(Row(place, entry));
  return rows;
}

// What the lists begin with in common stays, and what they end with; the lines between went and came.
std::string MarkedRows(const FrameChange& change) {
  const std::vector<std::string> before = Rows(change.place, change.before), after = Rows(change.place, change.after);
  const auto [went, came] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  auto went_end = before.end();
  auto came_end = after.end();
  while (went_end != went && came_end != came && went_end[-1] == came_end[-1]) --went_end, --came_end;
  std::string text;
  const auto add = [&text](char mark, auto first, auto last) {
    for (; first != last; ++first) text += std::string(1, mark) + " " + *first;
  };
  add(kStays, before.begin(), went);
  add(kGone, went, went_end);
  add(kCame, came, came_end);
  add(kStays, went_end, before.end());
  return text;
}

Json EntriesJson(const std::vector<ShownEntry>& entries) {
  Json list = Json::array();
  for (const ShownEntry& shown : entries) {
    const EXENTRY& entry = shown.entry;
    list.push_back({{"number", int{entry.number}},
                    {"duration", int{entry.duration}},
                    {"pitches", PitchTexts(entry)},
                    {"flags", FlagTexts(shown)}});
  }
  return list;
}

}  // namespace

std::vector<FrameChange> FindFrameChanges(const Document& before, const Document& after,
                                          const std::vector<Change>& changes) {
  std::vector<FrameChange> frames;
  const auto place_of = [](const Change& change) { return FramePlace{change.slot, change.measure, change.layer}; };
  Tuplets tuplets;
  for (const Change& change : changes) AddTuplets(before, before.Entries(place_of(change)), tuplets);
  for (const Change& change : changes) {
    const FramePlace place = place_of(change);
    frames.push_back({place, Shown(before.Entries(place), tuplets), Shown(after.Entries(place), tuplets)});
  }
  return frames;
}

std::string EntryText(const EXENTRY& entry) {
  const std::string pitches = Joined(PitchTexts(entry), "+");
  return (IsNote(entry) ? pitches : "r") + ":" + std::to_string(entry.duration);
}

std::string EntriesText(std::span<const EXENTRY> entries) {
  std::vector<std::string> texts;
  for (const EXENTRY& entry : entries) texts.push_back(EntryText(entry));
  return texts.empty() ? "no entries" : Joined(texts, " ");
}

void PrintFrameTable(std::ostream& out, const Score& score) {
  out << kHeading;
  const Document& document = score.document();
  for (int measure = 1; measure <= document.MeasureCount(); ++measure) {
    for (const Staff& staff : score.staves()) {
      for (short layer = 0; layer < kLayers; ++layer) {
        const FramePlace place{staff.instrument, static_cast<short>(measure), layer};
        const std::vector<EXENTRY> entries = document.Entries(place);
        Tuplets tuplets;
        AddTuplets(document, entries, tuplets);
        for (const std::string& row : Rows(place, Shown(entries, tuplets))) out << row;
      }
    }
  }
}

std::string FrameTable(const std::vector<FrameChange>& changes) {
  std::string text;
  for (const FrameChange& change : changes) text += MarkedRows(change);
  return text.empty() ? text : std::string("  ") + kHeading + text;
}

Json FramesJson(const std::vector<FrameChange>& changes) {
  Json list = Json::array();
  for (const FrameChange& change : changes) {
    list.push_back({{"measure", change.place.measure},
                    {"staff", change.place.instrument},
                    {"layer", change.place.layer + 1},
                    {"before", EntriesJson(change.before)},
                    {"after", EntriesJson(change.after)}});
  }
  return list;
}

}  // namespace sok
