#include "host/runner/files/kind.h"

#include <algorithm>

#include "host/musicxml/text/archive.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

constexpr std::size_t kFarEnough = 65536;  // roots stand before

struct ForeignSign {
  std::string_view start;  // of the file, empty: anything
  std::string_view holds;  // somewhere in it
  std::string_view what;
};
constexpr ForeignSign kForeignSigns[] = {
    {"MThd", "", "a MIDI file"},          {"%PDF", "", "a PDF, a picture of music"},
    {"PK", ".mscx", "a MuseScore file"},  {"", "<museScore", "a MuseScore file"},
    {"", "<mei", "an MEI file"},          {"", "<opus", "a list of scores (opus), not a score"},
    {"!!!", "", "a Humdrum file"},        {"**kern", "", "a Humdrum file"},
    {"\\version", "", "a LilyPond file"}, {"X:", "", "an ABC file"},
};

struct ForeignName {
  std::string_view ending;
  std::string_view what;
};
constexpr ForeignName kForeignNames[] = {
    {".mid", "a MIDI file"},       {".midi", "a MIDI file"},   {".mscz", "a MuseScore file"},
    {".mscx", "a MuseScore file"}, {".mei", "an MEI file"},    {".abc", "an ABC file"},
    {".krn", "a Humdrum file"},    {".ly", "a LilyPond file"}, {".pdf", "a PDF, a picture of music"},
};

bool Holds(std::string_view bytes, std::string_view part) { return bytes.find(part) != std::string_view::npos; }

bool HasScoreRoot(std::string_view start) {
  std::string text(start.substr(0, kFarEnough));
  std::erase(text, '\0');  // UTF-16
  return Holds(text, "<score-partwise") || Holds(text, "<score-timewise");
}

}  // namespace

bool LooksLikeScore(std::string_view start, std::string_view end) {
  return IsArchive(start) ? Holds(end, "META-INF/container.xml") : HasScoreRoot(start);
}

std::string_view ForeignKind(std::string_view bytes, const std::string& name) {
  const std::string_view end = bytes.substr(bytes.size() - std::min(bytes.size(), kFarEnough));
  if (LooksLikeScore(bytes, end)) return {};
  const std::string_view start = bytes.substr(0, kFarEnough);
  for (const ForeignSign& sign : kForeignSigns) {
    if (start.starts_with(sign.start) && (Holds(start, sign.holds) || Holds(end, sign.holds))) return sign.what;
  }
  for (const ForeignName& foreign : kForeignNames) {
    if (EndsWithIgnoringCase(name, foreign.ending)) return foreign.what;
  }
  return {};
}

}  // namespace sok
