#include "host/musicxml/writing/note_text.h"

#include <algorithm>

#include "host/errors.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/text/element_text.h"

namespace sok {
namespace {

// How new notes are laid out.
struct Layout {
  const NoteStyle& style;
  std::string_view indentation;

  std::string Note(const std::vector<std::string>& children) const {
    return style.Format(indentation, "note", children);
  }
};

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

std::string Tagged(std::string_view name, const std::string& content) {
  return "<" + std::string(name) + ">" + content + "</" + std::string(name) + ">";
}

void CheckOctave(const char* what, int step) {
  if (step >= kLowestStep && step <= kHighestStep) return;
  throw Error(what + std::to_string(step) + " is beyond the octaves 0 to 9");
}

// With the ties that it is to have.
Pitch PitchOf(const EXENTRY& entry, int note) {
  const EXNOTE& from = entry.notes[note];
  CheckOctave("pitch ", from.first);
  if (std::abs(int{from.second}) > kMostAlteration) {
    throw Error("an alteration by " + std::to_string(from.second) + " semitones has no accidental");
  }
  const int ties =
      ((from.flags & kNoteTieStart) != 0 ? kTieStart : 0) | ((from.flags & kNoteTieStop) != 0 ? kTieStop : 0);
  return {from.first, static_cast<std::int8_t>(from.second), static_cast<std::uint8_t>(ties)};
}

std::string StepName(int step) { return {"CDEFGAB"[(step % 7 + 7) % 7]}; }
std::string OctaveName(int step) { return std::to_string(4 + (step - (step % 7 + 7) % 7) / 7); }

std::string PitchElement(const Pitch& pitch) {
  const std::string alter = pitch.alter == 0 ? "" : Tagged("alter", std::to_string(pitch.alter));
  return Tagged("pitch", Tagged("step", StepName(pitch.step)) + alter + Tagged("octave", OctaveName(pitch.step)));
}

std::string RestElement(const EntryTarget& target) {
  const std::string begin = target.whole ? "<rest measure=\"yes\"" : "<rest";
  if ((target.entry.flags & kEntryRestPlaced) == 0) return begin + "/>";
  const int step = PlaceOfRest(target.entry);
  CheckOctave("a rest's place ", step);
  return begin + ">" + Tagged("display-step", StepName(step)) + Tagged("display-octave", OctaveName(step)) + "</rest>";
}

// Whether the source's rest stands elsewhere than it is to.
bool MovesRest(const WrittenEntry& source, const EXENTRY& entry) {
  const bool placed = (entry.flags & kEntryRestPlaced) != 0;
  return placed != source.placed || (placed && PlaceOfRest(entry) != source.notes.front().pitch.step);
}

// Adds the ends of ties that a note has not had.
void Tie(ElementText& note, std::uint8_t had, std::uint8_t wanted) {
  for (const TieEnd end : {kTieStop, kTieStart}) {
    if ((had & end) != 0 || (wanted & end) == 0) continue;
    if (note.Has("cue")) throw Error("a cue note cannot be tied");
    const std::string type = end == kTieStop ? " type=\"stop\"/>" : " type=\"start\"/>";
    note.Insert("<tie" + type, kNoteOrder);
    ElementText notations(note.Has("notations") ? note.Child("notations") : "<notations/>");
    notations.Insert("<tied" + type);
    note.Has("notations") ? note.Replace("notations", notations.text()) : note.Insert(notations.text(), kNoteOrder);
  }
}

void SetPitch(ElementText& note, const Pitch& old, const Pitch& pitch) {
  const bool unpitched = note.Has("unpitched");
  const std::string name = unpitched ? "unpitched" : "pitch";
  if (unpitched && pitch.alter != 0) throw Error("a note without pitch has no alteration");
  if (!note.Has(name)) {  // the score has a note that is neither a rest nor says its pitch
    note.Insert(PitchElement(pitch), kNoteOrder);
    return;
  }
  ElementText whole(note.Child(name));
  const std::string prefix = unpitched ? "display-" : "";
  whole.SetContent(prefix + "step", StepName(pitch.step), kPitchOrder);
  whole.SetContent(prefix + "octave", OctaveName(pitch.step), kPitchOrder);
  if (pitch.alter == 0 && old.alter != 0) whole.Remove("alter");
  if (pitch.alter != old.alter && pitch.alter != 0) {
    whole.SetContent("alter", std::to_string(pitch.alter), kPitchOrder);
  }
  note.Replace(name, whole.text());
}

// A rest sounds no pitch, has no stem and takes no part in beams; what is left of the notations are fermatas.
void MakeRest(ElementText& note, const std::string& rest) {
  for (const char* name : {"chord", "tie", "accidental", "stem", "notehead", "beam", "lyric"}) note.Remove(name);
  note.Has("pitch") ? note.Replace("pitch", rest) : note.Replace("unpitched", rest);
  if (!note.Has("notations")) return;
  const std::vector<std::string> fermatas = ElementText(note.Child("notations")).Children("fermata");
  note.Remove("notations");
  std::string kept;
  for (const std::string& fermata : fermatas) kept += fermata;
  if (!kept.empty()) note.Insert(Tagged("notations", kept), kNoteOrder);
}

void SetValue(ElementText& note, int duration, const EntryTarget& target) {
  const NoteValue value = ValueOf(duration);
  note.Remove("dot");
  if (target.whole || value.type.empty()) {
    note.Remove("type");
  } else {
    note.SetContent("type", value.type, kNoteOrder);
    for (int i = 0; i < value.dots; ++i) note.Insert("<dot/>", kNoteOrder);
  }
  if (note.Has("rest")) note.Replace("rest", RestElement(target));
}

void SetPlace(ElementText& note, const EntryTarget& target) {
  target.voice.empty() ? note.Remove("voice") : note.SetContent("voice", target.voice, kNoteOrder);
  target.staff == 0 ? note.Remove("staff") : note.SetContent("staff", std::to_string(target.staff), kNoteOrder);
}

// What a note of a chord shares with the first one.
std::string ChordNote(const std::string& head, const Pitch& pitch, const Layout& layout) {
  const ElementText note(head);
  std::vector<std::string> children;
  const auto take = [&](const char* name) {
    for (std::string& child : note.Children(name)) children.push_back(std::move(child));
  };
  for (const char* name : {"grace", "cue"}) take(name);
  children.emplace_back("<chord/>");
  children.push_back(PitchElement(pitch));
  for (const char* name : {"duration", "instrument", "voice", "type", "dot", "time-modification", "stem", "staff"}) {
    take(name);
  }
  ElementText added(layout.Note(children));
  Tie(added, 0, pitch.ties);
  return added.text();
}

NoteText NewHead(const EntryTarget& target, const Layout& layout) {
  NoteText note{{}, target.home, {}, !IsNote(target.entry), true};
  if (!note.rest) note.pitch = PitchOf(target.entry, 0);
  std::vector<std::string> children = {note.rest ? RestElement(target) : PitchElement(note.pitch)};
  children.push_back(Tagged("duration", target.duration));
  if (!target.voice.empty()) children.push_back(Tagged("voice", target.voice));
  const NoteValue value = target.whole ? NoteValue() : ValueOf(target.entry.duration);
  if (!value.type.empty()) children.push_back(Tagged("type", std::string(value.type)));
  for (int i = 0; i < value.dots; ++i) children.emplace_back("<dot/>");
  if (target.staff > 0) children.push_back(Tagged("staff", std::to_string(target.staff)));
  ElementText text(layout.Note(children));
  Tie(text, 0, note.pitch.ties);
  note.text = text.text();
  return note;
}

// What every note of an entry has: its value, its length and its place.
void Finish(NoteText& note, ElementText& text, const WrittenEntry& source, const EntryTarget& target) {
  if (ChangesValue(source, target)) SetValue(text, target.entry.duration, target);
  if (!target.duration.empty() && !source.grace) text.SetContent("duration", target.duration, kNoteOrder);
  if (target.moves) {
    SetPlace(text, target);
    note.staff = target.home;
  }
  note.text = std::move(text).text();
}

// The first note: what it was, with what changed.
NoteText Head(const WrittenEntry& source, const EntryTarget& target, const Layout& layout) {
  if (source.notes.empty()) return NewHead(target, layout);
  NoteText note = source.notes.front();
  ElementText text(std::move(note.text));
  const bool rest = !IsNote(target.entry);
  if (rest && !note.rest) MakeRest(text, RestElement(target));
  if (rest && note.rest && MovesRest(source, target.entry)) text.Replace("rest", RestElement(target));
  if (!rest) {
    const Pitch pitch = PitchOf(target.entry, 0);
    note.fresh = note.rest || pitch.step != note.pitch.step || pitch.alter != note.pitch.alter;
    if (note.rest) text.Replace("rest", PitchElement(pitch));
    if (note.fresh && !note.rest) SetPitch(text, note.pitch, pitch);
    Tie(text, note.pitch.ties, pitch.ties);
    note.pitch = pitch;
  }
  note.rest = rest;
  Finish(note, text, source, target);
  return note;
}

NoteText Other(const NoteText& head, const NoteText* old, const WrittenEntry& source, const EntryTarget& target,
               const Pitch& pitch, const Layout& layout) {
  if (old == nullptr) return {ChordNote(head.text, pitch, layout), head.staff, pitch, false, true};
  NoteText note = *old;
  ElementText text(std::move(note.text));
  note.fresh = pitch.step != note.pitch.step || pitch.alter != note.pitch.alter;
  if (note.fresh) SetPitch(text, note.pitch, pitch);
  Tie(text, note.pitch.ties, pitch.ties);
  note.pitch = pitch;
  Finish(note, text, source, target);
  return note;
}

}  // namespace

std::string_view AccidentalOf(int alter) {
  constexpr std::string_view kNames[] = {"triple-flat", "flat-flat",    "flat",        "natural",
                                         "sharp",       "double-sharp", "triple-sharp"};
  return alter < -3 || alter > 3 ? std::string_view() : kNames[alter + 3];
}

std::vector<int> MatchNotes(const EXENTRY& before, const EXENTRY& after) {
  std::vector<int> matched(static_cast<std::size_t>(after.noteCount), -1);
  int last = 0;
  for (std::size_t i = 0; i < matched.size(); ++i) {
    const int wanted = i == 0 ? 0 : after.notes[i].identifier - 1;  // identifiers count from 1 when they are handed out
    if (i > 0 && (wanted <= last || wanted >= before.noteCount)) continue;
    matched[i] = last = wanted;
  }
  return matched;
}

bool ChangesValue(const WrittenEntry& source, const EntryTarget& target) {
  return source.whole != target.whole || source.entry.duration != target.entry.duration;
}

std::vector<NoteText> WriteEntry(const WrittenEntry& source, const EntryTarget& target, const NoteStyle& style,
                                 std::string_view indentation) {
  const Layout layout{style, indentation};
  const EXENTRY& entry = target.entry;
  if (IsNote(entry) && entry.noteCount < 1) throw Error("a note without a pitch");
  std::vector<NoteText> notes;
  notes.push_back(Head(source, target, layout));
  if (!IsNote(entry) || entry.noteCount == 1) return notes;
  const bool was_note = !source.notes.empty() && !source.notes.front().rest;
  const std::vector<int> matched = was_note ? MatchNotes(source.entry, entry) : std::vector<int>();
  for (int i = 1; i < entry.noteCount; ++i) {
    const int from = was_note ? matched[static_cast<std::size_t>(i)] : -1;
    const bool there = from >= 0 && static_cast<std::size_t>(from) < source.notes.size();
    const NoteText* old = there ? &source.notes[static_cast<std::size_t>(from)] : nullptr;
    notes.push_back(Other(notes.front(), old, source, target, PitchOf(entry, i), layout));
  }
  return notes;
}

}  // namespace sok
