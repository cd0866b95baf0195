#include "tests/musicxml/score_text.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace sok {
namespace {

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

// Cuts the longest prefix of such characters.
std::string Take(std::string_view& text, const char* characters) {
  const std::string taken(text.substr(0, std::min(text.find_first_not_of(characters), text.size())));
  text.remove_prefix(taken.size());
  return taken;
}

std::string TakeNumber(std::string_view& text) { return Take(text, "0123456789"); }

std::string NoteText(char kind, std::string_view rest) {
  const std::string duration = Take(rest, "0123456789.-");
  std::string voice, type, staff, chord, cue, notations, attribute, ties, place;
  while (!rest.empty()) {
    const char what = rest.front();
    rest.remove_prefix(1);
    if (what == 'v') voice = "<voice>" + TakeNumber(rest) + "</voice>";
    if (what == 's') staff = "<staff>" + TakeNumber(rest) + "</staff>";
    if (what == 'c') chord = "<chord/>";
    if (what == 'u') cue = "<cue/>";
    if (what == 'h') attribute = " print-object=\"no\"";
    if (what == 'y') notations += "<fermata type=\"upright\"/>";
    if (what == 'p') place = Element("display-step", "B") + Element("display-octave", "4");
    for (const auto& [letter, end] : {std::pair{'z', "stop"}, std::pair{'a', "start"}}) {
      if (what != letter) continue;
      ties += "<tie type=\"" + std::string(end) + "\"/>";
      notations += "<tied type=\"" + std::string(end) + "\"/>";
    }
    if (what == 't') type += Element("type", Take(rest, "abcdefghijklmnopqrstuvwxyz"));
    if (what == '.') type += "<dot/>";
  }
  const std::string sound = !place.empty() ? (kind == 'R' ? "<rest measure=\"yes\">" : "<rest>") + place + "</rest>"
                            : kind == 'r'  ? "<rest/>"
                            : kind == 'R'  ? "<rest measure=\"yes\"/>"
                                           : "<pitch><step>D</step><octave>4</octave></pitch>";
  return "<note" + attribute + ">" + (kind == 'g' ? "<grace/>" : "") + cue + chord + sound +
         (duration.empty() ? "" : Element("duration", duration)) + ties + voice + type + staff +
         (notations.empty() ? "" : Element("notations", notations)) + "</note>";
}

std::string ElementText(std::string_view token) {
  const char kind = token.front();
  const std::string rest(token.substr(1));
  if (kind == 'b') return Element("backup", Element("duration", rest));
  if (kind == 'f') return Element("forward", Element("duration", rest));
  if (kind == 'd') return "<direction><direction-type><words>x</words></direction-type></direction>";
  if (kind == 'e') return "<barline location=\"right\"><bar-style>light-heavy</bar-style></barline>";
  if (kind == '@') return Element("attributes", Element("divisions", rest));
  if (kind == 'S') return Element("attributes", Element("staves", rest));
  if (kind != '%') return NoteText(kind, rest);
  const std::size_t slash = rest.find('/');
  return Element("attributes", Element("time", Element("beats", rest.substr(0, slash)) +
                                                   Element("beat-type", rest.substr(slash + 1))));
}

}  // namespace

std::string ScoreText(std::string_view shorthand) {
  std::vector<std::string> parts(1);
  int measure = 1;
  const auto open = [&] { parts.back() += "<measure number=\"" + std::to_string(measure++) + "\">"; };
  open();
  std::istringstream tokens{std::string(shorthand)};
  for (std::string token; tokens >> token;) {
    if (token[0] == '|') {
      parts.back() += "</measure>";
      if (token == "||") {
        parts.emplace_back();
        measure = 1;
      }
      open();
    } else {
      parts.back() += ElementText(token);
    }
  }
  parts.back() += "</measure>";
  std::string list, music;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::string id = "id=\"P" + std::to_string(i + 1) + "\"";
    list += "<score-part " + id + "><part-name>Part</part-name></score-part>";
    music += "<part " + id + ">" + parts[i] + "</part>";
  }
  return "<score-partwise version=\"4.0\">" + Element("part-list", list) + music + "</score-partwise>";
}

std::unique_ptr<Score> ReadScoreText(const std::string& text, const ReadOptions& options) {
  return Score::Read(text, "score.xml", options);
}

template <typename Change>
int ForEachCell(Score& score, Change change) {
  int count = 0;
  Document& document = score.document();
  for (short measure = 1; measure <= document.MeasureCount(); ++measure) {
    for (short slot = 1; slot <= document.StaffCount(); ++slot) count += change(document, slot, measure);
  }
  return count;
}

int FillMeasures(Score& score) {
  return ForEachCell(score, [](Document& document, short slot, short measure) {
    for (short layer = 0; layer < kLayers; ++layer) {
      const FramePlace place{slot, measure, layer};
      if (!document.Exists(place) || (document.EntryCount(place) != 0 && document.LayerShown(layer))) return 0;
    }
    EXENTRY rest{};
    rest.duration = kWholeRestDuration;
    rest.flags = 0x81000800;
    rest.noteCount = 1;
    rest.notes[0].first = 6;  // the middle line
    std::vector<EXENTRY> entries = document.Entries({slot, measure, 0});
    entries.insert(entries.begin(), rest);
    return document.SetEntries({slot, measure, 0}, std::move(entries)) ? 1 : 0;
  });
}

int ClearRests(Score& score) {
  return ForEachCell(score, [](Document& document, short slot, short measure) {
    int cleared = 0;
    for (short layer = 0; layer < kLayers; ++layer) {
      const std::vector<EXENTRY> entries = document.Entries({slot, measure, layer});
      if (entries.size() == 1 && entries[0].duration == kWholeRestDuration && (entries[0].flags & kEntryIsNote) == 0)
        cleared += document.SetEntries({slot, measure, layer}, {}) ? 1 : 0;
    }
    return cleared;
  });
}

void RandomEdit(Document& document, std::mt19937& random) {
  const auto below = [&](int bound) { return static_cast<short>(random() % static_cast<unsigned>(bound)); };
  const FramePlace place{static_cast<short>(1 + below(document.StaffCount())),
                         static_cast<short>(1 + below(document.MeasureCount())), below(2)};
  std::vector<EXENTRY> entries = document.Entries(place);
  if (entries.empty()) return;
  EXENTRY& entry = entries[static_cast<std::size_t>(below(static_cast<int>(entries.size())))];
  constexpr unsigned short kValues[] = {256, 512, 768, 1024, 2048, 3072};
  switch (below(10)) {
    case 0:
      entry.notes[0].first = static_cast<short>(below(20) - 5);
      break;
    case 1:
      entry.duration = kValues[below(6)];
      break;
    case 2:
      entry.flags ^= kEntryIsNote;
      entry.noteCount = 1;
      break;
    case 3:
      if (entry.noteCount < 12) entry.notes[entry.noteCount++] = {below(9), 1, 0, 0};
      break;
    case 4:
      entries.insert(entries.begin() + below(static_cast<int>(entries.size()) + 1), EXENTRY{});
      break;
    case 5:
      entries.erase(entries.begin() + below(static_cast<int>(entries.size())));
      break;
    case 6: {  // a rest placed or not, or a note tied to the next one or not
      entry.flags ^= (entry.flags & kEntryIsNote) == 0 ? kEntryRestPlaced : 0U;
      EXENTRY* const next = &entry + (&entry == &entries.back() ? 0 : 1);
      next->notes[0].first = entry.notes[0].first;
      next->notes[0].second = entry.notes[0].second;
      entry.notes[0].flags ^= 0x40000000;
      next->notes[0].flags ^= 0x20000000;
      break;
    }
    default: {  // to the other layer, or another measure, whose frame is saved first
      FramePlace other = place;
      if (below(2) == 0) other.measure = static_cast<short>(1 + below(document.MeasureCount()));
      if (other == place) other.layer = static_cast<short>(1 - place.layer);
      if (!document.Exists(other)) break;
      std::vector<EXENTRY> there = document.Entries(other);
      std::swap(there, entries);
      document.SetEntries(other, there);
    }
  }
  for (EXENTRY& each : entries) {
    if (each.duration != 0) continue;
    each.duration = kValues[below(6)];
    each.flags = kEntryLegal | (below(2) == 0 ? kEntryIsNote : 0U);
    each.noteCount = 1;
  }
  document.SetEntries(place, std::move(entries));
}

std::string Short(std::string text) {
  constexpr std::string_view kEnd = "</measure>";
  for (std::size_t at = text.find(kEnd); at != std::string::npos; at = text.find(kEnd, at + 1)) {
    const std::size_t begin = text.find_last_not_of(" \t\r\n", at - 1);
    if (text[begin] != '>' || text.compare(text.rfind('<', begin), 8, "<measure") != 0) continue;
    text.replace(begin, at + kEnd.size() - begin, "/>");
    at = begin;
  }
  return text;
}

std::string Frames(const Score& score) {
  std::string result;
  const Document& document = score.document();
  for (short measure = 1; measure <= document.MeasureCount(); ++measure) {
    if (measure > 1) result += '|';
    for (short slot = 1; slot <= document.StaffCount(); ++slot) {
      if (slot > 1) result += ';';
      std::string staff;
      for (short layer = 0; layer < kLayers; ++layer) {
        std::string entries;
        for (const EXENTRY& entry : document.Entries({slot, measure, layer})) {
          if (!entries.empty()) entries += ' ';
          entries += std::to_string(entry.duration) + ((entry.flags & kEntryIsNote) != 0 ? 'n' : 'r');
          if (entry.noteCount != 1) entries += 'x' + std::to_string(entry.noteCount);
        }
        if (layer > 0) staff += '/';
        staff += entries;
      }
      staff.erase(staff.find_last_not_of('/') + 1);
      result += staff.empty() ? "-" : staff;
    }
  }
  return result;
}

}  // namespace sok
