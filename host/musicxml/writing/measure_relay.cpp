// The entries of a voice laid anew: which notes stay, which come and go, where time has moved, and what that makes
// false of the signs on the notes.
#include <algorithm>
#include <map>
#include <numeric>

#include "host/errors.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/text/element_text.h"
#include "host/musicxml/text/markup.h"
#include "host/musicxml/writing/measure_patch.h"

namespace sok {
namespace {

Fraction Units(int duration) { return {duration, 1024}; }

// How long an entry sounds: a new value keeps the part of it that sounded, as in a tuplet.
Fraction LengthOf(const WrittenEntry& source, const PlannedEntry& planned) {
  const int value = planned.entry.duration;
  if (source.grace) return {};
  if (planned.whole) return source.whole ? source.length : planned.measure;
  if (source.notes.empty() || source.whole || source.entry.duration == 0) return Units(value);
  if (source.entry.duration == value) return source.length;
  const Fraction scaled = source.length * Fraction{value, source.entry.duration};
  return source.untyped && ToUnits(scaled) != value ? Units(value) : scaled;
}

std::string DivisionsElement(const Fraction& divisions) {
  return "<attributes><divisions>" + ToDecimal(divisions) + "</divisions></attributes>";
}

// The divisions that can say a length: those in force, or the next finer ones.
Fraction FinerFor(const Fraction& length, const Fraction& divisions) {
  const Fraction count = length * divisions;
  const Fraction finer = divisions * Fraction{count.denominator, 1};
  if (count.denominator > 1 && Fraction{kMostDivisions, 1} < finer) {
    throw Error("its length needs divisions beyond " + std::to_string(kMostDivisions));
  }
  return count.denominator == 1 ? divisions : finer;
}

std::string Count(const Fraction& length, const Fraction& divisions) { return ToDecimal(length * divisions); }

// What a sign that spans notes says on one of them: where it begins, goes on and ends.
enum class Span { kNone, kBegin, kInside, kEnd };

Span BeamOf(pugi::xml_node note) {
  for (pugi::xml_node beam = note.first_child(); beam; beam = beam.next_sibling()) {
    if (!Is(beam.name(), "beam") || beam.attribute("number").as_int(1) != 1) continue;
    const std::string_view value = Trimmed(beam.child_value());
    return value == "begin" ? Span::kBegin : value == "end" ? Span::kEnd : Span::kInside;
  }
  return Span::kNone;
}

Span TupletOf(pugi::xml_node note) {
  for (const pugi::xml_node notations : note.children("notations")) {
    for (const pugi::xml_node tuplet : notations.children("tuplet")) {
      return Is(tuplet.attribute("type").value(), "stop") ? Span::kEnd : Span::kBegin;
    }
  }
  return Span::kNone;
}

// Which notes stand under one sign, by a number for each sign; -1: none.
std::vector<int> Groups(const std::vector<Span>& spans) {
  std::vector<int> groups(spans.size(), -1);
  int open = -1;
  int next = 0;
  for (std::size_t i = 0; i < spans.size(); ++i) {
    if (spans[i] == Span::kBegin) open = next++;
    groups[i] = open;
    if (spans[i] == Span::kEnd) open = -1;
  }
  return groups;
}

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// Which notes stand under a sign that is false now: one over a note that is not `sound` any more, or over two between
// which another one came. `stays` has every entry's place among the notes, or kNowhere.
std::vector<bool> FalseSigns(const std::vector<Span>& spans, const std::vector<bool>& sound,
                             const std::vector<std::size_t>& stays) {
  std::vector<bool> is_false(spans.size());
  if (std::ranges::all_of(spans, [](Span span) { return span == Span::kNone; })) return is_false;
  const std::vector<int> groups = Groups(spans);
  std::set<int> broken;
  for (std::size_t k = 0; k < groups.size(); ++k) {
    if (!sound[k]) broken.insert(groups[k]);
  }
  std::size_t before = kNowhere;
  for (std::size_t e = 0; e < stays.size(); ++e) {
    const std::size_t next = e + 1 < stays.size() ? stays[e + 1] : kNowhere;
    if (stays[e] != kNowhere) {
      before = stays[e];
    } else if (before != kNowhere && next != kNowhere && groups[before] == groups[next]) {
      broken.insert(groups[next]);
    }
  }
  for (std::size_t k = 0; k < groups.size(); ++k) is_false[k] = groups[k] >= 0 && broken.contains(groups[k]);
  return is_false;
}

void RemoveNotation(ElementText& note, std::string_view name) {
  if (!note.Has("notations")) return;
  ElementText notations(note.Child("notations"));
  notations.Remove(name);
  notations.IsEmpty() ? note.Remove("notations") : note.Replace("notations", notations.text());
}

std::string Without(std::string_view text, bool beams, bool tuplets) {
  ElementText note(text);
  if (beams) note.Remove("beam");
  if (tuplets) RemoveNotation(note, "tuplet");
  return note.text();
}

// Those that the note has already are passed over.
void Articulate(std::string& text, const std::vector<std::string>& articulations) {
  if (articulations.empty()) return;
  ElementText note(text);
  ElementText notations(note.Has("notations") ? note.Child("notations") : "<notations/>");
  ElementText signs(notations.Has("articulations") ? notations.Child("articulations") : "<articulations/>");
  const std::string before = signs.text();
  for (const std::string& articulation : articulations) {
    if (!signs.Has(articulation)) signs.Insert("<" + articulation + "/>");
  }
  if (signs.text() == before) return;
  notations.Has("articulations") ? notations.Replace("articulations", signs.text()) : notations.Insert(signs.text());
  note.Has("notations") ? note.Replace("notations", notations.text()) : note.Insert(notations.text(), kNoteOrder);
  text = note.text();
}

// What the key makes of a step.
int KeyAlter(int fifths, int step) {
  constexpr int kOrder[] = {1, 3, 5, 0, 2, 4, 6};  // of C D E F G A B among the sharps F C G D A E B
  const int place = kOrder[(step % 7 + 7) % 7];
  return place < fifths ? 1 : 6 - place < -fifths ? -1 : 0;
}

}  // namespace

// The voice as it was, by its first notes.
struct MeasurePatch::Relaid {
  std::vector<std::size_t> heads;  // pieces
  std::vector<Fraction> gaps;      // time in front of each that no entry fills
  std::vector<std::size_t> stays;  // by entry of the plan: its place among the heads, or kNone
  std::vector<bool> kept;          // by head
  std::vector<bool> same;          // by head: its value and kind are what they were
};

WrittenEntry MeasurePatch::SourceOf(int entry) const {
  WrittenEntry source;
  for (const Piece& piece : pieces_) {
    if (piece.item == nullptr || piece.entry != entry) continue;
    const Item& item = *piece.item;
    if (source.notes.empty()) {
      source.length = item.length;
      source.grace = (item.entry.flags & kGrace) != 0;
      source.untyped = (item.entry.flags & kUntyped) != 0;
      source.placed = (item.entry.flags & kPlaced) != 0;
    }
    source.notes.push_back(
        {std::string(TextOf(piece)), item.staff, item.pitch, (item.entry.flags & kRest) != 0, false});
  }
  return source;
}

void UntieText(std::string& text, TieEnd end) {
  const std::string_view type = end == kTieStart ? "start" : "stop";
  const auto ends = [&](std::string_view sign) { return AttributeOf(sign, "type") == type; };
  ElementText note(text);
  note.RemoveIf("tie", ends);
  if (note.Has("notations")) {
    ElementText notations(note.Child("notations"));
    notations.RemoveIf("tied", ends);
    notations.IsEmpty() ? note.Remove("notations") : note.Replace("notations", notations.text());
  }
  text = note.text();
}

void MeasurePatch::Untie(int entry, std::size_t note, TieEnd end) {
  for (Piece& piece : pieces_) {
    if (piece.entry != entry || note-- > 0) continue;
    if (piece.text.empty()) piece.text = TextOf(piece);
    UntieText(piece.text, end);
    piece.untied = piece.untied || end == kTieStop;
    return;
  }
}

EntryTarget MeasurePatch::TargetOf(const VoicePlan& plan, const PlannedEntry& planned, const Fraction& divisions,
                                   Fraction& length, Fraction& finer) const {
  EntryTarget target;
  target.entry = planned.entry;
  target.whole = planned.whole;
  target.staff = plan.staff;
  target.home = plan.home;
  target.moves = planned.source == 0 || !plan.before.Holds(planned.source);
  if (target.moves) target.voice = Escaped(plan.voice);
  length = LengthOf(planned.from, planned);
  finer = divisions;
  const bool stays = !target.moves && SameLength(length, planned.from.length);
  if (stays || planned.from.grace) return target;
  if (!planned.whole) finer = FinerFor(length, divisions);
  target.duration = Count(length, finer);
  if (planned.whole) length = *ParseDecimal(target.duration) / divisions;
  return target;
}

MeasurePatch::Relaid MeasurePatch::MatchHeads(const VoicePlan& plan) {
  Relaid old;
  old.heads.reserve(pieces_.size());
  old.gaps.reserve(pieces_.size());
  old.stays.reserve(plan.entries.size());
  Fraction end;
  std::vector<std::size_t> places(static_cast<std::size_t>(plan.before.end - plan.before.first), kNone);  // by entry
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    Piece& piece = pieces_[i];
    if (!plan.before.Holds(piece.entry)) continue;
    piece.relaid = true;
    if (piece.chord) continue;
    places[static_cast<std::size_t>(piece.entry - plan.before.first)] = old.heads.size();
    old.gaps.push_back(old.heads.empty() ? Fraction() : piece.before - end);
    old.heads.push_back(i);
    end = piece.after;
  }
  old.kept.resize(old.heads.size(), false);
  old.same.resize(old.heads.size(), false);
  std::size_t next = 0;
  for (const PlannedEntry& planned : plan.entries) {
    const bool its = plan.before.Holds(planned.source);
    const std::size_t at = its ? places[static_cast<std::size_t>(planned.source - plan.before.first)] : kNone;
    const bool stays = at != kNone && at >= next;
    old.stays.push_back(stays ? at : kNone);
    if (!stays) continue;
    next = at + 1;
    old.kept[at] = true;
    const bool was_note = (planned.from.entry.flags & kEntryIsNote) != 0;
    const bool is_note = (planned.entry.flags & kEntryIsNote) != 0;
    old.same[at] = was_note == is_note && planned.from.entry.duration == planned.entry.duration;
  }
  // Time that no entry fills stays in front of what follows.
  Fraction carried;
  for (std::size_t k = 0; k < old.heads.size(); ++k) {
    old.gaps[k] = old.gaps[k] + carried;
    carried = old.kept[k] ? Fraction() : old.gaps[k];
  }
  return old;
}

// Beams and tuplet brackets over notes that are not what they were are taken away.
void MeasurePatch::MendGroups(const Relaid& old) {
  std::vector<Span> beams, tuplets;
  beams.reserve(old.heads.size());
  tuplets.reserve(old.heads.size());
  for (const std::size_t head : old.heads) {
    const Item& item = *pieces_[head].item;
    beams.push_back(BeamOf(item.node));
    tuplets.push_back(item.has_notations ? TupletOf(item.node) : Span::kNone);
  }
  const std::vector<bool> no_beam = FalseSigns(beams, old.same, old.stays);
  const std::vector<bool> no_tuplet = FalseSigns(tuplets, old.kept, old.stays);
  for (std::size_t k = 0; k < old.heads.size(); ++k) {
    Piece& head = pieces_[old.heads[k]];
    if (!head.gone && (no_beam[k] || no_tuplet[k])) head.text = Without(TextOf(head), no_beam[k], no_tuplet[k]);
  }
}

MeasurePatch::Piece MeasurePatch::AddedNote(const NoteText& note, std::size_t at, bool chord) const {
  Piece piece;
  piece.kind = ItemKind::kNote;
  piece.note = note;
  piece.note.text.clear();
  piece.written = true;
  piece.chord = chord;
  piece.relaid = true;
  piece.text = std::string(IndentationAt(at)) + note.text;
  piece.divisions = DivisionsAt(at);
  return piece;
}

MeasurePatch::Piece MeasurePatch::AddedDivisions(const Fraction& divisions, std::size_t at) const {
  Piece piece;
  piece.kind = ItemKind::kPlaced;
  piece.relaid = true;
  piece.divisions = divisions;
  piece.text = std::string(IndentationAt(at)) + DivisionsElement(divisions);
  return piece;
}

// Writes an entry over the notes that it had; what comes behind them goes into `added`, by place.
void MeasurePatch::WriteInPlace(std::size_t head, const PlannedEntry& planned, std::vector<NoteText> notes,
                                Additions& added) {
  const std::size_t end = ChordEnd(head);
  const bool chords = notes.size() > 1 && !planned.from.notes.front().rest;
  const std::vector<int> matched = chords ? MatchNotes(planned.from.entry, planned.entry) : std::vector<int>{0};
  std::size_t last = head;
  for (std::size_t i = head + 1; i < end; ++i) {
    if (pieces_[i].kind == ItemKind::kNote) pieces_[i].gone = true;
  }
  for (std::size_t n = 0; n < notes.size(); ++n) {
    const int from = n < matched.size() ? matched[n] : -1;
    const std::size_t at = from < 0 ? kNone : NthNote(head, end, from);
    if (at == kNone) {
      added[last + 1].push_back(AddedNote(notes[n], last + 1, true));
      continue;
    }
    Piece& piece = pieces_[at];
    piece.gone = false;
    if (notes[n].text != TextOf(piece)) piece.text = std::move(notes[n].text);
    piece.note = std::move(notes[n]);
    piece.note.text.clear();
    piece.written = true;
    last = at;
  }
}

std::size_t MeasurePatch::ChordEnd(std::size_t head) const {
  std::size_t end = head + 1;
  for (std::size_t i = head + 1; i < pieces_.size() && pieces_[i].entry == pieces_[head].entry; ++i) end = i + 1;
  for (std::size_t i = end; i < pieces_.size(); ++i) {  // a direction may stand between the notes of a chord
    if (pieces_[i].kind == ItemKind::kNote && !pieces_[i].chord) break;
    if (pieces_[i].entry == pieces_[head].entry) end = i + 1;
  }
  return end;
}

std::size_t MeasurePatch::NthNote(std::size_t head, std::size_t end, int n) const {
  for (std::size_t i = head; i < end; ++i) {
    if (pieces_[i].entry == pieces_[head].entry && n-- == 0) return i;
  }
  return kNone;
}

// Writes an entry at a place, over the notes that it had when it stays, and steps behind it. Answers its length.
Fraction MeasurePatch::WriteAt(std::size_t& at, const VoicePlan& plan, const PlannedEntry& planned, bool stays,
                               const Fraction& onset, Additions& added) {
  const Fraction divisions = stays ? pieces_[at].divisions : DivisionsAt(at);
  Fraction length, finer;
  const EntryTarget target = TargetOf(plan, planned, divisions, length, finer);
  std::vector<NoteText> notes = WriteEntry(planned.from, target, style_, IndentationAt(at));
  Articulate(notes.front().text, planned.articulations);
  const bool refined = !(finer == divisions);
  if (refined) added[at].push_back(AddedDivisions(finer, at));
  if (stays) {
    pieces_[at].target = onset;
    pieces_[at].length = length;
    WriteInPlace(at, planned, std::move(notes), added);
    at = ChordEnd(at);
  } else {
    for (std::size_t n = 0; n < notes.size(); ++n) {
      if (planned.source != 0) notes[n].text = Without(notes[n].text, true, true);
      Piece& piece = added[at].emplace_back(AddedNote(notes[n], at, n > 0));
      piece.target = onset;
      if (n == 0) piece.length = length;
    }
  }
  if (refined) added[at].push_back(AddedDivisions(divisions, at));
  return length;
}

void MeasurePatch::Relay(const VoicePlan& plan) {
  const Relaid old = MatchHeads(plan);
  for (std::size_t k = 0; k < old.heads.size(); ++k) {
    if (old.kept[k]) continue;
    for (std::size_t i = old.heads[k]; i < ChordEnd(old.heads[k]); ++i) {
      if (pieces_[i].entry == pieces_[old.heads[k]].entry) pieces_[i].gone = true;
    }
  }
  Additions added(pieces_.size() + 1);
  std::size_t at = old.heads.empty() ? PlaceOfNewVoice(plan.staff) : old.heads.front();
  Fraction onset = old.heads.empty() ? Fraction() : pieces_[at].before;
  for (std::size_t e = 0; e < plan.entries.size(); ++e) {
    const bool stays = old.stays[e] != kNone;
    if (stays) {
      at = old.heads[old.stays[e]];
      onset = onset + old.gaps[old.stays[e]];
    }
    onset = onset + WriteAt(at, plan, plan.entries[e], stays, onset, added);
  }
  MendGroups(old);
  Merge(std::move(added));
}

// Additions stand in front of the piece of their number.
void MeasurePatch::Merge(Additions added) {
  if (std::ranges::all_of(added, &std::vector<Piece>::empty)) return;
  std::vector<Piece> merged;
  for (std::size_t i = 0; i < added.size(); ++i) {
    for (Piece& piece : added[i]) merged.push_back(std::move(piece));
    if (i < pieces_.size()) merged.push_back(std::move(pieces_[i]));
  }
  pieces_ = std::move(merged);
}

// Whether a piece stands among the notes of a voice that was relaid, and moves with them.
bool MeasurePatch::InRelaidStream(std::size_t index) const {
  for (std::size_t i = index + 1; i < pieces_.size(); ++i) {
    if (pieces_[i].kind == ItemKind::kNote) return pieces_[i].relaid;
    if (pieces_[i].MovesCursor()) break;
  }
  for (std::size_t i = index; i-- > 0;) {
    if (pieces_[i].kind == ItemKind::kNote) return pieces_[i].relaid;
    if (pieces_[i].MovesCursor()) break;
  }
  return false;
}

// Between two notes of such a voice time passes as it did, wherever they are now.
bool MeasurePatch::IsGapOfRelaid(std::size_t index) const {
  if (pieces_[index].kind != ItemKind::kForward || pieces_[index].item == nullptr) return false;
  for (std::size_t i = index; i-- > 0;) {
    if (pieces_[i].MovesCursor()) return pieces_[i].kind == ItemKind::kNote && pieces_[i].relaid;
  }
  return false;
}

const Fraction* MeasurePatch::PlaceNeeded(std::size_t index) const {
  const Piece& piece = pieces_[index];
  if (piece.kind == ItemKind::kNote) return piece.chord ? nullptr : piece.relaid ? &piece.target : &piece.item->before;
  if (piece.kind != ItemKind::kPlaced) return nullptr;
  if (!piece.relaid && !InRelaidStream(index)) return &piece.item->before;
  for (std::size_t i = index + 1; i < pieces_.size(); ++i) {
    if (pieces_[i].gone || pieces_[i].chord) continue;
    if (pieces_[i].kind == ItemKind::kNote) return pieces_[i].relaid ? &pieces_[i].target : nullptr;
  }
  return nullptr;
}

// Lays a <backup> or <forward> in place of one that was there, or anew.
void MeasurePatch::LayMove(Additions& added, std::size_t at, std::size_t owed, const Fraction& from,
                           const Fraction& to) {
  if (SameLength(from, to)) return;
  const bool back = to < from;
  const Fraction length = back ? from - to : to - from;
  const char* const name = back ? "backup" : "forward";
  const bool anew = owed == kNone;
  Piece fresh;
  Piece& move = anew ? fresh : pieces_[owed];
  const Fraction divisions = anew ? DivisionsAt(at) : move.divisions;
  const Fraction finer = FinerFor(length, divisions);
  const std::string indentation(anew ? IndentationAt(pieces_.size()) : Indentation(text_, move.item->begin));
  std::string text;
  if (!anew && Is(move.item->node.name(), name)) {
    ElementText there(TextOf(move));
    there.SetContent("duration", Count(length, finer));
    text = there.text();
  } else {
    text = (anew ? indentation : "") +
           style_.Format(indentation, name, {"<duration>" + Count(length, finer) + "</duration>"});
  }
  if (!(finer == divisions)) {
    text = (anew ? indentation : "") + DivisionsElement(finer) + (anew ? "" : indentation) + text + indentation +
           DivisionsElement(divisions);
  }
  move.kind = back ? ItemKind::kBackup : ItemKind::kForward;
  move.gone = false;
  move.length = length;
  move.text = text;
  move.divisions = divisions;
  if (anew) added[at].push_back(std::move(fresh));
}

// Every note and everything that stands where the cursor is comes to its place; moves that lead elsewhere are laid
// anew.
void MeasurePatch::LayMoves() {
  Additions added(pieces_.size() + 1);
  Fraction now;
  std::size_t owed = kNone;  // the first move since then that was taken away
  Fraction owed_to;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    Piece& piece = pieces_[i];
    const bool move = piece.kind == ItemKind::kBackup || piece.kind == ItemKind::kForward;
    if (!piece.gone && piece.kind != ItemKind::kStanding && !move) {
      const Fraction* place = PlaceNeeded(i);
      if (place != nullptr && (owed != kNone || !InRelaidStream(i) || piece.kind == ItemKind::kNote)) {
        LayMove(added, i, owed, now, *place);
        now = *place;
        owed = kNone;
      }
      now = now + piece.length;
    } else if (move && !piece.gone) {
      if (owed == kNone && IsGapOfRelaid(i)) {
        now = now + piece.length;
      } else if (owed == kNone && SameLength(now, piece.item->before)) {
        now = piece.item->after;
      } else {
        owed_to = piece.item->after;
        piece.gone = true;
        owed = std::min(owed, i);
      }
    }
  }
  if (owed != kNone && now < owed_to) LayMove(added, pieces_.size(), owed, now, owed_to);
  Merge(std::move(added));
}

// Divisions that are given up and at once the same again need not be given up.
void MeasurePatch::JoinDivisions() {
  Piece* before = nullptr;
  for (Piece& piece : pieces_) {
    if (piece.gone) continue;
    const bool divisions = piece.item == nullptr && piece.kind == ItemKind::kPlaced;
    if (divisions && before != nullptr) {
      std::size_t at = static_cast<std::size_t>(before - pieces_.data());
      Fraction in_force = measure_.cell.divisions;
      while (at-- > 0) {
        if (pieces_[at].gone || pieces_[at].item != nullptr || pieces_[at].kind != ItemKind::kPlaced) continue;
        in_force = pieces_[at].divisions;
        break;
      }
      before->gone = true;
      piece.gone = in_force == piece.divisions;
    }
    before = divisions && !piece.gone ? &piece : nullptr;
  }
}

void MeasurePatch::Settle() {
  MendAccidentals();
  LayMoves();
  JoinDivisions();
  Walk();
}

// One note as accidentals see it.
struct MeasurePatch::Sounding {
  int staff = 1;
  Fraction onset;
  Pitch pitch;
  std::size_t piece = 0;
  bool shown = false;
};

int MeasurePatch::Fifths() const {
  int fifths = measure_.cell.fifths;
  for (const Piece& piece : pieces_) {
    if (piece.item == nullptr || !piece.item->before.IsZero()) continue;
    if (const pugi::xml_node key = piece.item->node.child("key")) {
      fifths = std::clamp(SmallNumber(key.child_value("fifths")), -7, 7);
    }
  }
  return fifths;
}

// What every note would sound without an accidental of its own, by piece.
std::map<std::size_t, int> MeasurePatch::Implied(std::vector<Sounding> notes) const {
  std::stable_sort(notes.begin(), notes.end(), [](const Sounding& a, const Sounding& b) { return a.onset < b.onset; });
  const int fifths = Fifths();
  std::map<std::pair<int, int>, int> state;  // by staff and step
  std::map<std::size_t, int> implied;
  for (const Sounding& note : notes) {
    const auto [at, is_new] = state.try_emplace({note.staff, note.pitch.step}, KeyAlter(fifths, note.pitch.step));
    const bool tied = (note.pitch.ties & kTieStop) != 0 && !note.shown;  // sounds on, whatever the key
    implied[note.piece] = tied ? note.pitch.alter : at->second;
    if (!tied) at->second = note.pitch.alter;
  }
  return implied;
}

void MeasurePatch::MendAccidentals() {
  const bool mends = std::ranges::any_of(pieces_, [](const Piece& piece) {
    const bool fresh = piece.written && piece.note.fresh;
    return piece.kind == ItemKind::kNote && (fresh || piece.untied || piece.Sounded() != piece.Sounds());
  });
  if (!mends) return;
  std::vector<Sounding> before, after;
  Fraction old_onset, new_onset;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (piece.kind != ItemKind::kNote) continue;
    const Item* item = piece.item;
    if (!piece.chord && item != nullptr) old_onset = item->before;
    if (!piece.chord) new_onset = piece.relaid ? piece.target : old_onset;
    const bool shown = item != nullptr && item->node.child("accidental");
    if (piece.Sounded()) before.push_back({item->staff, old_onset, item->pitch, i, shown});
    if (!piece.Sounds()) continue;
    Pitch pitch = piece.written ? piece.note.pitch : item->pitch;
    if (piece.untied) pitch.ties = 0;
    after.push_back({piece.written ? piece.note.staff : item->staff, new_onset, pitch, i, shown});
  }
  const std::map<std::size_t, int> was = Implied(std::move(before));
  const std::map<std::size_t, int> is = Implied(after);
  for (const Sounding& note : after) {
    Piece& piece = pieces_[note.piece];
    const bool fresh = piece.written && piece.note.fresh;
    const bool relied = !fresh && !note.shown && was.contains(note.piece) && was.at(note.piece) == note.pitch.alter;
    const bool needed = is.at(note.piece) != note.pitch.alter;
    if (fresh || (relied && needed)) ShowAccidental(piece, needed ? note.pitch.alter : kNoAccidental);
  }
}

void MeasurePatch::ShowAccidental(Piece& piece, int alter) const {
  const std::string text(TextOf(piece));
  const std::size_t begin = text.find('<');
  ElementText note(text.substr(begin));
  if (note.Has("unpitched")) return;
  if (alter == kNoAccidental) {
    note.Remove("accidental");
  } else {
    note.SetContent("accidental", std::string(AccidentalOf(alter)), kNoteOrder);
  }
  if (text.substr(begin) != note.text()) piece.text = text.substr(0, begin) + note.text();
}

}  // namespace sok
