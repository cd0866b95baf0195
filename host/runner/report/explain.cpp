#include "host/runner/report/explain.h"

#include <algorithm>
#include <cstddef>

#include "host/engine/document.h"

namespace sok {
namespace {

struct ReasonText {
  Reason reason;
  std::string_view code;
  std::string_view text;  // of what a layer holds, or the whole text when no layer decided
};

constexpr ReasonText kReasons[] = {
    {Reason::kNoMusic, "no-music", "no layer holds music"},
    {Reason::kHiddenMusicOnly, "hidden-music-only", "holds music, but is hidden and does not count"},
    {Reason::kWholeRest, "whole-rest", "holds a whole-measure rest"},
    {Reason::kHiddenWholeRest, "hidden-whole-rest", "holds a whole-measure rest that is not printed"},
    {Reason::kOtherChange, "other-change", "has other entries now"},
    {Reason::kMusic, "music", "holds music"},
    {Reason::kHiddenMusic, "hidden-music", "holds music that is not printed"},
    {Reason::kLooksWhole, "looks-whole", "holds a real rest that only looks like a whole-measure rest"},
    {Reason::kRestBesideGrace, "rest-beside-grace", "holds grace notes beside its whole-measure rest"},
    {Reason::kRestBesideOthers, "rest-beside-others", "holds other entries beside its whole-measure rest"},
    {Reason::kCue, "cue", "holds cue notes"},
    {Reason::kSurplusVoices, "surplus-voices", "holds music of more voices than there are layers"},
    {Reason::kCrossStaff, "cross-staff", "holds music that is drawn on another staff"},
    {Reason::kVisited, "visited", "voices of another staff are drawn here"},
    {Reason::kNothing, "nothing", "nothing to do"},
    {Reason::kMissing, "missing", "the part does not have this measure"},
    {Reason::kPassedOver, "passed-over", "the extension or the host refused"},
};

const ReasonText& Row(Reason reason) { return kReasons[static_cast<std::size_t>(reason)]; }

constexpr bool RowsAreInOrder() {
  for (std::size_t i = 0; i < std::size(kReasons); ++i) {
    if (kReasons[i].reason != static_cast<Reason>(i)) return false;
  }
  return std::size(kReasons) == static_cast<std::size_t>(Reason::kPassedOver) + 1;
}
static_assert(RowsAreInOrder(), "a row a reason");

Reason ReasonOf(const LayerFacts& facts) {
  if (facts.whole_rest) return facts.hidden_rest ? Reason::kHiddenWholeRest : Reason::kWholeRest;
  if (facts.looks_whole) return Reason::kLooksWhole;
  if (facts.bar_rest_beside) return facts.grace ? Reason::kRestBesideGrace : Reason::kRestBesideOthers;
  if (facts.surplus) return Reason::kSurplusVoices;
  if (facts.hidden) return Reason::kHiddenMusic;
  if (facts.cue) return Reason::kCue;
  if (facts.cross_staff) return Reason::kCrossStaff;
  return Reason::kMusic;
}

// How much a layer's reason tells a user who wonders why `clear` left the staff-measure alone.
int Weight(Reason reason) {
  switch (reason) {
    case Reason::kWholeRest:
    case Reason::kHiddenWholeRest:
      return 3;
    case Reason::kLooksWhole:
    case Reason::kRestBesideGrace:
    case Reason::kRestBesideOthers:
      return 2;
    default:
      return 1;
  }
}

bool AreOneKind(const std::vector<Change>& changes) {
  return std::ranges::all_of(changes, [&](const Change& change) { return change.kind == changes.front().kind; });
}

// What happened to one of several layers.
std::string EditsOf(const Score& score, const Change& change) {
  if (change.kind == ChangeKind::kOther) return score.Edits(change);
  return change.kind == ChangeKind::kFilled ? "a whole-measure rest in" : "every entry out";
}

Verdict ExplainChange(const std::vector<Change>& changes, const std::vector<LayerFacts>& layers,
                      const Settings& settings) {
  const Change& first = changes.front();
  const bool shown = settings.layer_shown[first.layer];
  if (!AreOneKind(changes) || first.kind == ChangeKind::kOther) {
    return {Outcome::kChanged, Reason::kOtherChange, first.layer, shown};
  }
  if (first.kind == ChangeKind::kCleared) {
    return {Outcome::kCleared, ReasonOf(layers[static_cast<std::size_t>(first.layer)]), first.layer, shown};
  }
  for (short layer = 0; layer < kLayers; ++layer) {
    if (layers[static_cast<std::size_t>(layer)].entry_count > 0) {
      return {Outcome::kFilled, Reason::kHiddenMusicOnly, layer, settings.layer_shown[layer]};
    }
  }
  return {Outcome::kFilled, Reason::kNoMusic};
}

// Nothing was there for a fill to look at.
bool IsHeldBack(const Score& score, short slot, short measure, const std::vector<LayerFacts>& layers) {
  const bool own =
      std::any_of(layers.begin(), layers.end(), [](const LayerFacts& facts) { return facts.entry_count > 0; });
  return !own && !score.document().Exists({slot, measure, 0}) && score.Around(slot, measure).visited;
}

// The first layer that counts is the one that stops the extension.
Verdict ExplainNotFilled(const std::vector<LayerFacts>& layers, const Settings& settings) {
  for (short layer = 0; layer < kLayers; ++layer) {
    const LayerFacts& facts = layers[static_cast<std::size_t>(layer)];
    const bool shown = settings.layer_shown[layer];
    if (facts.entry_count == 0 || (!shown && settings.count_hidden[layer])) continue;
    return {Outcome::kKept, ReasonOf(facts), layer, shown};
  }
  return {Outcome::kKept, Reason::kPassedOver};
}

// The layer that tells most, the first of equals.
Verdict ExplainKept(const Score& score, short slot, short measure, const std::vector<LayerFacts>& layers,
                    const Settings& settings) {
  Verdict verdict;
  int weight = 0;
  for (short layer = 0; layer < kLayers; ++layer) {
    const LayerFacts& facts = layers[static_cast<std::size_t>(layer)];
    if (facts.entry_count == 0 || Weight(ReasonOf(facts)) <= weight) continue;
    verdict = {Outcome::kKept, ReasonOf(facts), layer, settings.layer_shown[layer]};
    weight = Weight(verdict.reason);
  }
  const bool there = score.document().Exists({slot, measure, std::max<short>(verdict.layer, 0)});
  const bool passed_over = settings.purpose == Purpose::kClear && weight == 3 && there;
  return passed_over ? Verdict{Outcome::kKept, Reason::kPassedOver} : verdict;
}

// What went with a change.
void AddLost(const Score& score, const Change& change, bool was_rest, bool fermatas_kept,
             std::vector<std::string>& notes) {
  for (const std::string& lost : score.Lost(change)) {
    const bool kept = fermatas_kept && lost == "fermata";
    notes.push_back(lost + (kept ? " moved to the barline" : was_rest ? " went with the rest" : " went with its note"));
  }
}

void AddSurroundings(const Score& score, const Change& change, std::vector<std::string>& notes) {
  const Surroundings around = score.Around(change.slot, change.measure);
  if (around.multiple_rest) notes.emplace_back("inside a multiple-measure rest");
  if (around.measure_repeat) notes.emplace_back("inside a measure repeat");
  if (around.slash) notes.emplace_back("inside slash notation");
  if (around.visited) notes.emplace_back("notes of another staff's voice are drawn here");
  if (score.measures()[static_cast<std::size_t>(change.measure - 1)].length_assumed) {
    notes.emplace_back("its length is assumed, nothing in the measure tells it");
  }
}

}  // namespace

Verdict Explain(const Score& score, short slot, short measure, const std::vector<Change>& changes,
                const Settings& settings) {
  if (changes.empty() && !score.Exists(slot, measure)) return {Outcome::kKept, Reason::kMissing};
  if (changes.empty() && settings.purpose == Purpose::kOther) return {};
  std::vector<LayerFacts> layers;
  for (short layer = 0; layer < kLayers; ++layer) layers.push_back(score.Facts(slot, measure, layer));
  if (!changes.empty()) return ExplainChange(changes, layers, settings);
  if (settings.purpose != Purpose::kFill) return ExplainKept(score, slot, measure, layers, settings);
  if (IsHeldBack(score, slot, measure, layers)) return {Outcome::kKept, Reason::kVisited};
  return ExplainNotFilled(layers, settings);
}

std::string_view Name(Outcome outcome) {
  static constexpr std::string_view kNames[] = {"filled", "cleared", "changed", "kept"};
  return kNames[static_cast<std::size_t>(outcome)];
}

std::string_view Code(Reason reason) { return Row(reason).code; }

std::string VerdictText(const Verdict& verdict, Purpose purpose) {
  std::string holds(Row(verdict.reason).text);
  if (verdict.layer < 0) return holds;
  const std::string number = std::to_string(verdict.layer + 1);
  std::string text = "layer " + number + " ";
  if (verdict.outcome == Outcome::kCleared) return text + "held" + holds.substr(holds.find(' '));
  if (verdict.outcome == Outcome::kKept && purpose == Purpose::kFill) {
    text += verdict.layer_shown ? "is shown and " : "is hidden, but counts without --allow-hidden " + number + ", and ";
  }
  return text + holds;
}

std::vector<std::string> Notes(const Score& score, const std::vector<Change>& changes, bool fermatas_kept) {
  std::vector<std::string> notes;
  const bool each = !AreOneKind(changes) || changes.front().kind == ChangeKind::kOther;
  for (const Change& change : changes) {
    if (each) notes.push_back("layer " + std::to_string(change.layer + 1) + ": " + EditsOf(score, change));
    const bool rest =
        change.kind == ChangeKind::kCleared && score.Facts(change.slot, change.measure, change.layer).whole_rest;
    AddLost(score, change, rest, fermatas_kept, notes);
  }
  AddSurroundings(score, changes.front(), notes);
  return notes;
}

}  // namespace sok
