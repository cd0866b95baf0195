// inspect: a score as the extension sees it, as tables.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>

#include "host/engine/document.h"
#include "host/runner/commands/commands.h"

namespace sok {
namespace {

struct Topic {
  const char* name;
  void (*print)(std::ostream&, const Score&);
};

constexpr Topic kTopics[] = {
    {"frames", PrintFrames}, {"records", PrintRecords}, {"texts", PrintTexts}, {"shapes", PrintShapes}};

void PrintEntry(std::ostream& out, const FramePlace& place, std::size_t index, const EXENTRY& entry) {
  char line[160];
  std::snprintf(line, sizeof line, "%7d %5d %5d %5zu %7d %8d  %-4s %08x ", place.measure, place.instrument,
                place.layer + 1, index, entry.number, entry.duration,
                (entry.flags & kEntryIsNote) != 0 ? "note" : "rest", entry.flags);
  out << line;
  for (short note = 0; note < std::clamp<short>(entry.noteCount, 0, 12); ++note) {
    std::snprintf(line, sizeof line, " %d/%d", entry.notes[note].first, entry.notes[note].second);
    out << line;
  }
  out << '\n';
}

}  // namespace

void PrintFrames(std::ostream& out, const Score& score) {
  out << "measure staff layer index  number duration kind flags     notes (level/displacement words)\n";
  const Document& document = score.document();
  for (int measure = 1; measure <= document.MeasureCount(); ++measure) {
    for (const Staff& staff : score.staves()) {
      for (short layer = 0; layer < kLayers; ++layer) {
        const FramePlace place{staff.instrument, static_cast<short>(measure), layer};
        const std::vector<EXENTRY> entries = document.Entries(place);
        for (std::size_t i = 0; i < entries.size(); ++i) PrintEntry(out, place, i, entries[i]);
      }
    }
  }
}

void AddInspectCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("inspect", "Print a score as the extension sees it");
  const auto input = std::make_shared<std::string>();
  const auto wanted = std::make_shared<std::vector<std::string>>();
  std::vector<std::string> names;
  for (const Topic& topic : kTopics) names.emplace_back(topic.name);
  command.add_option("IN", *input, "A score, or - for stdin")->required();
  command.add_option("TOPIC", *wanted, "frames, records, texts or shapes; all of them when none is named")
      ->check(CLI::IsMember(names));
  command.footer("Examples:\n  sokrun inspect song.mxl\n  sokrun inspect song.mxl frames");
  command.callback([input, wanted] {
    ReadOptions options;
    options.document_data = true;
    const std::unique_ptr<Score> score = ReadScore(*input, options);
    for (const Topic& topic : kTopics) {
      if (!wanted->empty() && std::find(wanted->begin(), wanted->end(), topic.name) == wanted->end()) continue;
      if (wanted->size() != 1) std::cout << "== " << topic.name << '\n';
      topic.print(std::cout, *score);
    }
  });
}

}  // namespace sok
