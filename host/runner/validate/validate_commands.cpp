#include "host/runner/validate/validate_commands.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <set>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/errors.h"
#include "host/runner/report/text.h"
#include "host/runner/run/extension_exports.h"

namespace sok {
namespace {

// Records without which an instrument is none.
constexpr std::pair<unsigned int, const char*> kInstrumentRecords[] = {
    {record_tags::kInstrument, "the definition of an instrument"},
    {record_tags::kInstrumentUsed, "an instrument's place in the list of those used"},
};

using RecordNames = std::set<std::pair<unsigned int, std::string>>;

// A key that no table has looks like a number; so may a text, but hardly such a long one.
bool ShowsKey(const std::string& alert) {
  return IsResourceNumber(alert) && (alert.size() >= 4 || alert.find(',') != std::string::npos);
}

// Whether two entries are the same music, as far as host calls on the way may tidy them.
bool SameMusic(const EXENTRY& left, const EXENTRY& right) {
  const unsigned int flags = (left.flags ^ right.flags) & ~kEntryHasRestNote;
  if (left.number != right.number || left.duration != right.duration || flags != 0) return false;
  if ((left.flags & kEntryIsNote) == 0) return true;
  const auto same_note = [](const EXNOTE& a, const EXNOTE& b) {
    return a.first == b.first && a.second == b.second && ((a.flags ^ b.flags) & ~kNoteIdentifierMask) == 0;
  };
  return left.noteCount == right.noteCount &&
         std::equal(left.notes, left.notes + left.noteCount, right.notes, same_note);
}

std::vector<FramePlace> ChangedFrames(const Document& before, const Document& after) {
  std::vector<FramePlace> changed;
  after.ForEachSetFrame([&](const FramePlace& place, std::span<const EXENTRY> entries) {
    if (!std::ranges::equal(entries, before.Entries(place), SameMusic)) changed.push_back(place);
  });
  return changed;
}

RecordNames InstrumentRecords(const Document& document) {
  RecordNames names;
  document.records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char>) {
    for (const auto& record : kInstrumentRecords) {
      if (record.first == tag) names.emplace(tag, KeyText(tag, id));
    }
  });
  return names;
}

std::string InstrumentFault(const Document& before, const Document& after) {
  const RecordNames left = InstrumentRecords(after);
  for (const auto& [tag, key] : InstrumentRecords(before)) {
    if (left.contains({tag, key})) continue;
    const auto* const record = std::ranges::find(kInstrumentRecords, tag, &std::pair<unsigned int, const char*>::first);
    return "deletes the record " + FourCharacters(tag) + " " + key + ", " + record->second;
  }
  return {};
}

std::string PartFault(const Document& before, const Document& after) {
  if (before.current_part == after.current_part) return {};
  return "leaves another part current, number " + std::to_string(after.current_part) + ", where " +
         std::to_string(before.current_part) + " was";
}

std::string SelectionFault(const Document& document, const EREGION& region, const std::vector<FramePlace>& changed) {
  for (const FramePlace& place : changed) {
    const short slot = document.InstToSlot(place.instrument, region.start.stafflist);
    if (slot < region.start.slot || slot > region.end.slot || place.measure < region.start.measure ||
        place.measure > region.end.measure) {
      return "changes " + PlaceText(place) + "; selected are " + RegionText(region);
    }
  }
  return {};
}

std::string AnswerFault(int answer, bool changed, const std::vector<FramePlace>& frames, int changes) {
  if (answer != 0 && answer != 1) {
    return "answers " + std::to_string(answer) + "; 1 says that something was changed, 0 that nothing was";
  }
  if (answer == 0 && changed) {
    return "answers 0 (nothing was changed) although it changed " +
           (frames.empty() ? std::string("data records") : PlaceText(frames.front()));
  }
  return answer == 1 && !changed && changes == 0 ? "answers 1 (something was changed) although it changed nothing" : "";
}

std::string AlertFault(const std::vector<std::string>& alerts) {
  if (std::ranges::find(alerts, "") != alerts.end()) return "shows an alert without a text";
  const auto key = std::ranges::find_if(alerts, ShowsKey);
  return key == alerts.end() ? "" : "shows the alert \"" + *key + "\": a key that the string table lacks";
}

}  // namespace

EREGION RegionOf(const Document& document, Scope scope) {
  const short staves = document.StaffCount(), measures = document.MeasureCount();
  if (scope == Scope::kWholeScore) return {{0, 1, 1, 0}, {0, staves, measures, INT_MAX}};
  if (scope == Scope::kEnd) return {{0, staves, measures, 0}, {0, staves, measures, INT_MAX}};
  const auto slot = static_cast<short>((staves + 1) / 2), first = static_cast<short>(measures / 3 + 1);
  return {{0, slot, first, 0}, {0, slot, std::max(first, static_cast<short>(2 * measures / 3)), INT_MAX}};
}

std::string RegionText(const EREGION& region) {
  const auto range = [](const char* one, const char* many, int first, int last) {
    return first == last ? std::string(one) + " " + std::to_string(first)
                         : std::string(many) + " " + std::to_string(first) + " to " + std::to_string(last);
  };
  return range("staff", "staves", region.start.slot, region.end.slot) + ", " +
         range("measure", "measures", region.start.measure, region.end.measure);
}

Findings RunCommand(CheckHost& host, int command, Scope scope, const char* entry_point) {
  const Document before = host.document;
  EREGION region = RegionOf(before, scope);
  const EREGION selected = region;
  const int answer = host.Named<InvokeFunction>(entry_point)(&host, command, &region);
  const Document& after = host.document;
  const std::vector<FramePlace> changed = ChangedFrames(before, after);
  const bool any = !changed.empty() || !(before.records == after.records);
  Findings findings = host.watch.AllFindings();
  const std::pair<const char*, std::string> more[] = {
      {"selection", SelectionFault(before, selected, changed)},
      {"answers", AnswerFault(answer, any, changed, host.watch.changes())},
      {"alerts", AlertFault(host.session.alerts)},
      {"document", InstrumentFault(before, after)},
      {"document", PartFault(before, after)},
  };
  for (const auto& [kind, fault] : more) {
    if (!fault.empty()) findings.emplace(kind, fault);
  }
  return findings;
}

void CheckEnds(CheckHost& host, int starter, int command) {
  constexpr int kOpenBefore = 8;
  EREGION region = RegionOf(host.document, Scope::kWholeScore);
  const auto invoke = host.Named<InvokeFunction>("SonkelExtensionInvoke");
  host.watch.InterruptEdits(true);
  for (int i = 0; i < kOpenBefore; ++i) {
    try {
      EREGION copy = region;
      invoke(&host, starter, &copy);
    } catch (const HostWatch::InterruptedEdit&) {
    }
  }
  host.watch.InterruptEdits(false);
  invoke(&host, command, &region);
  const int surplus = host.watch.surplus_ends();
  // One that ends all that are open, as SX_EndAllSonkelEdit does, means to.
  if (surplus <= 0 || surplus >= kOpenBefore) return;
  throw Error("ends " + Counted(surplus, "edit") +
              " more than it starts; run while another edit is open, it ends that");
}

}  // namespace sok
