#include "host/runner/run/selection.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>

#include "host/errors.h"
#include "host/musicxml/text/markup.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

constexpr short kMaximum = std::numeric_limits<short>::max();

std::optional<short> Number(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || number < 1 || number > kMaximum) return std::nullopt;
  return static_cast<short>(number);
}

std::optional<NumberRange> ParseRange(std::string_view text) {
  const auto dash = text.find('-');
  if (dash == std::string_view::npos) {
    const auto number = Number(text);
    return number ? std::optional(NumberRange{*number, *number}) : std::nullopt;
  }
  const std::string_view before = text.substr(0, dash), after = text.substr(dash + 1);
  if (before.empty() && after.empty()) return std::nullopt;
  const auto first = before.empty() ? std::optional<short>(1) : Number(before);
  const auto last = after.empty() ? std::optional(kMaximum) : Number(after);
  if (!first || !last || *first > *last) return std::nullopt;
  return NumberRange{*first, *last, after.empty()};
}

// Which of the numbers 1 to `count` are chosen.
using Chosen = std::vector<bool>;  // [number - 1]

void Choose(Chosen& chosen, const std::vector<NumberRange>& ranges, std::string_view what,
            std::vector<std::string>& warnings) {
  const auto count = static_cast<short>(chosen.size());
  for (const NumberRange& range : ranges) {
    if (range.last > count && (!range.open || range.first > count)) {
      warnings.push_back("the score has " + Counted(count, what) + ": " + std::string(what) + " " +
                         RangeText(std::max<int>(range.first, count + 1), range.open ? range.first : range.last) +
                         " left out");
    }
    for (int number = range.first; number <= std::min(range.last, count); ++number) {
      chosen[static_cast<std::size_t>(number - 1)] = true;
    }
  }
}

// The number that a printed measure number begins with: 8 for "8" and "8a", none for "X1".
std::optional<int> LeadingNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && number >= 0 ? std::optional(number) : std::nullopt;
}

// Chooses where `wanted(index)` says so; whether that is anywhere.
template <typename Wanted>
bool ChooseIf(Chosen& chosen, const Wanted& wanted) {
  bool any = false;
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    if (!wanted(i)) continue;
    chosen[i] = true;
    any = true;
  }
  return any;
}

// "3-8", "-8" or "3-" of printed numbers; none for what is no range.
std::optional<std::pair<int, int>> PrintedRange(std::string_view text) {
  const auto dash = text.find('-');
  if (dash == std::string_view::npos) return std::nullopt;
  const auto first = dash == 0 ? std::optional(0) : LeadingNumber(text);
  const auto last =
      dash + 1 == text.size() ? std::optional(std::numeric_limits<int>::max()) : LeadingNumber(text.substr(dash + 1));
  return first && last ? std::optional(std::pair(*first, *last)) : std::nullopt;
}

// A printed number is itself, whatever it looks like, before it is a range: "1-0" stands in real scores.
bool ChooseNumber(Chosen& chosen, const Score& score, const std::string& wanted) {
  if (ChooseIf(chosen, [&](std::size_t i) { return score.measures()[i].number == wanted; })) return true;
  const auto range = PrintedRange(wanted);
  return range && ChooseIf(chosen, [&](std::size_t i) {
           const auto number = LeadingNumber(score.measures()[i].number);
           return number && *number >= range->first && *number <= range->second;
         });
}

void ChoosePart(Chosen& chosen, const Score& score, const std::string& wanted) {
  const auto choose = [&](const auto& same) {
    return ChooseIf(chosen, [&](std::size_t i) {
      const Staff& staff = score.staves()[i];
      return same(staff.part_name) || same(staff.part_id) || same(staff.abbreviation);
    });
  };
  if (choose([&](const std::string& name) { return name == wanted; })) return;
  if (choose([&](const std::string& name) { return SameIgnoringCase(name, wanted); })) return;
  std::string names;
  for (const Staff& staff : score.staves()) {
    if (staff.staff == 1) names += (names.empty() ? "" : ", ") + staff.part_name;
  }
  throw Error("no part is called \"" + wanted + "\"; the score has " + names);
}

Chosen ChosenMeasures(const Score& score, const Selection& selection, std::vector<std::string>& warnings) {
  Chosen measures(score.measures().size(), selection.measures.empty() && selection.numbers.empty());
  Choose(measures, selection.measures, "measure", warnings);
  for (const std::string& number : selection.numbers) {
    if (!ChooseNumber(measures, score, number)) warnings.push_back("no measure is numbered " + number);
  }
  return measures;
}

Chosen ChosenSlots(const Score& score, const Selection& selection, std::vector<std::string>& warnings) {
  Chosen slots(score.staves().size(), selection.staves.empty() && selection.parts.empty());
  Choose(slots, selection.staves, "staff", warnings);
  for (const std::string& part : selection.parts) ChoosePart(slots, score, part);
  return slots;
}

bool HiddenOn(const HiddenLayer& hidden, short slot) {
  return hidden.staves.empty() ||
         std::any_of(hidden.staves.begin(), hidden.staves.end(),
                     [slot](const NumberRange& range) { return range.first <= slot && slot <= range.last; });
}

void CheckHiddenLayers(const Score& score, const Selection& selection) {
  for (const HiddenLayer& hidden : selection.hidden_layers) {
    bool found = false;
    for (std::size_t slot = 1; slot <= score.staves().size(); ++slot) {
      found = found || HiddenOn(hidden, static_cast<short>(slot));
    }
    if (found) continue;
    throw UsageError("--hide-layer " + std::to_string(hidden.layer + 1) + ": the score has " +
                     Counted(static_cast<long>(score.staves().size()), "staff") + ", and none of those that are named");
  }
}

// The runs of chosen numbers; a run also ends where `joined(number, number + 1)` says no.
template <typename Joined>
std::vector<NumberRange> Runs(const Chosen& chosen, const Joined& joined) {
  std::vector<NumberRange> runs;
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    if (!chosen[i]) continue;
    const auto number = static_cast<short>(i + 1);
    if (!runs.empty() && runs.back().last == number - 1 && joined(runs.back().last, number)) {
      runs.back().last = number;
    } else {
      runs.push_back({number, number});
    }
  }
  return runs;
}

// What was left out says why; other warnings have nothing to do with it.
[[noreturn]] void ThrowNothingSelected(const std::vector<std::string>& left_out) {
  std::string reasons;
  for (const std::string& warning : left_out) reasons += (reasons.empty() ? ": " : "; ") + warning;
  throw Error("nothing is selected" + reasons);
}

}  // namespace

std::vector<NumberRange> ParseRanges(std::string_view text, std::string_view option) {
  std::vector<NumberRange> ranges;
  for (const std::string_view item : Split(text, ',')) {
    const auto range = ParseRange(Trimmed(item));
    if (!range) {
      throw UsageError(std::string(option) + ": \"" + std::string(item) +
                       "\" is no number from 1 to 32767 and no range such as 3-8");
    }
    ranges.push_back(*range);
  }
  return ranges;
}

short ParseLayer(std::string_view text, std::string_view option) {
  const auto layer = Number(text);
  if (!layer || *layer > kLayers) {
    throw UsageError(std::string(option) + ": \"" + std::string(text) + "\" is no layer; layers are 1 to 4");
  }
  return static_cast<short>(*layer - 1);
}

HiddenLayer ParseHiddenLayer(std::string_view text) {
  const auto colon = text.find(':');
  HiddenLayer hidden{ParseLayer(text.substr(0, colon), "--hide-layer"), {}};
  if (colon != std::string_view::npos) hidden.staves = ParseRanges(text.substr(colon + 1), "--hide-layer");
  return hidden;
}

EREGION Invocation::Region(const Document& document) const {
  EREGION region{};
  region.start = {0, slots.first, measures.first, 0};
  region.end = {0, slots.last, measures.last, document.MeasureDuration(measures.last)};
  return region;
}

std::vector<Invocation> PlanInvocations(const Score& score, const Selection& selection,
                                        std::vector<std::string>& warnings) {
  if (score.staves().empty() || score.measures().empty()) throw Error("the score has no measures");
  CheckHiddenLayers(score, selection);
  const std::size_t known = warnings.size();
  const Chosen measures = ChosenMeasures(score, selection, warnings);
  const Chosen slots = ChosenSlots(score, selection, warnings);
  const auto same_layers_hidden = [&](short left, short right) {
    return std::ranges::all_of(selection.hidden_layers, [&](const HiddenLayer& hidden) {
      return HiddenOn(hidden, left) == HiddenOn(hidden, right);
    });
  };
  const std::vector<NumberRange> slot_runs = Runs(slots, same_layers_hidden);
  std::vector<Invocation> invocations;
  for (const NumberRange& measure_run : Runs(measures, [](short, short) { return true; })) {
    for (const NumberRange& slot_run : slot_runs) {
      invocations.push_back({measure_run, slot_run});
      for (const HiddenLayer& hidden : selection.hidden_layers) {
        if (HiddenOn(hidden, slot_run.first)) invocations.back().layer_shown[hidden.layer] = false;
      }
    }
  }
  if (invocations.empty()) {
    ThrowNothingSelected({warnings.begin() + static_cast<std::ptrdiff_t>(known), warnings.end()});
  }
  return invocations;
}

}  // namespace sok
