// What scores hold, as the host's frames.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/musicxml/score_text.h"

namespace sok {
namespace {

struct ReadingCase {
  const char* name;
  const char* score;
  const char* frames;
};

void Check(std::span<const ReadingCase> cases, const ReadOptions& options = {}) {
  for (const ReadingCase& c : cases) EXPECT_EQ(Frames(*ReadScoreText(ScoreText(c.score), options)), c.frames) << c.name;
}

constexpr ReadingCase kRests[] = {
    {"marked and typed otherwise", "%3/4 R3v1thalf.", "4096r"},
    {"no type, as long as the measure", "%3/4 r3v1", "4096r"},
    {"no type, shorter than another part", "%4/4 r3v1 || n4v1twhole", "3072r;4096n"},
    {"type whole, lasting 3", "%3/4 r3v1twhole", "4096r"},
    {"quarter in an upbeat", "%4/4 r1v1tquarter", "1024r"},
    {"marked beside a note", "R4v1 n4v1twhole", "4096r 4096n"},
    {"marked beside a grace note", "gv1teighth R3v1", "512n 3072r"},
};
constexpr ReadingCase kVoices[] = {
    {"no voice, two staves", "S2 n4s1twhole b4 n4s2twhole", "4096n;4096n"},
    {"layers by order of appearance", "n4v7twhole b4 r4v3 | n4v3twhole b4 n4v7twhole", "4096n/4096r|4096n/4096n"},
    {"five voices", "n4v1twhole b4 n4v2twhole b4 n4v3twhole b4 n4v4twhole b4 R4v5", "4096n/4096n/4096n/4096n 4096r"},
    {"home in each measure", "S2 n4v1s1twhole | n4v1s2twhole | n1v1s2 n1v1s2 n1v1s1 | R4v1s2",
     "4096n;-|-;4096n|-;1024n 1024n 1024n|-;4096r"},
    {"rests do not move a home", "S2 n1v1s1 R4v1s2 R4v1s2", "1024n 4096r 4096r;-"},
    {"a number breaks ties", "S2 n1v5s2 n1v5s1 | n1v2s2 n1v2s1 | n1v9s2 n1v9s1",
     "-;1024n 1024n|1024n 1024n;-|/1024n 1024n;-"},
    {"layers stay where they are", "S2 n1v1s1 b1 n1v5s2 | n1v1s2 b1 n1v5s2", "1024n;1024n|-;1024n/1024n"},
};
constexpr ReadingCase kTimes[] = {
    {"chord, dots, tuplet as written",
     "@3 n3v1tquarter n3v1ctquarter n2v1tquarter n2v1tquarter n2v1tquarter n3v1teighth.",
     "1024nx2 1024n 1024n 1024n 768n"},
    {"divisions change, also inside", "@1 n1v1 @4 n4v1 n8v1 | r16v1", "1024n 1024n 2048n|4096r"},
    {"forward takes time, never an entry", "f3 n1v1 | f4 | b2 n4v1", "1024n|-|4096n"},
    {"rest as long as thirds of another part", "@3 r4v1 || @1 f1 @3 n1v1", "4096r;341n"},
    {"upbeat beside an empty part", "n1v1tquarter || %4/4", "1024n;-"},
};

TEST(Reading, TellsWholeRestsFromOthers) { Check(kRests); }
TEST(Reading, PutsVoicesOnLayersAndStaves) { Check(kVoices); }
TEST(Reading, ReckonsExactly) { Check(kTimes); }

TEST(Reading, OptionsDecideOnHiddenRests) {
  constexpr ReadingCase kHidden[] = {{"hidden rest", "R4v1h | r1v1h r3v1", "-|1024r 3072r"}};
  Check(kHidden, {.hidden_rests = HiddenRests::kEmpty});
  Check(kHidden, {.hidden_rests = HiddenRests::kKeep});
}

// Which layers there are on a staff where another staff's voice is drawn, where a hidden rest is kept, and by option.
TEST(Reading, OptionsDecideWhichLayersAreThere) {
  struct {
    const char* score;
    short slot;
    short layer;
    ReadOptions options;
    bool there;
  } const kCases[] = {
      {"S2 n1v1s1 n1v1s1 n1v1s2", 2, 0, {}, true},
      {"S2 n1v1s1 n1v1s1 n1v1s2", 2, 0, {.fill_visited = false}, false},
      {"S2 n1v1s1 n1v1s1 n1v1s2 b3 n4v5s2", 2, 0, {.fill_visited = false}, true},
      {"S2 n1v1s1 n1v1s1 n1v1s2 b3 n4v5s2", 2, 1, {.fill_visited = false}, false},
      {"S2 n1v1s1 n1v1s1 r1v1s2h", 2, 0, {.fill_visited = false}, true},  // nothing is drawn there
      {"R4v1h", 1, 0, {.hidden_rests = HiddenRests::kKeep}, false},
      {"n4v1", 1, 1, {.layers = 0b0110}, true},
      {"n4v1", 1, 0, {.layers = 0b0110}, false},
  };
  for (const auto& c : kCases) {
    const auto score = ReadScoreText(ScoreText(c.score), c.options);
    EXPECT_EQ(score->document().Exists({c.slot, 1, c.layer}), c.there) << c.score;
  }
}

TEST(Reading, MeasuresAreAsLongAsTheirFurthestVoice) {
  struct {
    const char* score;
    int duration;
    bool assumed;
  } const kCases[] = {
      {"%3/4 n1v1 b1 n2v2 || n1v1", 2048, false},
      {"%3+2/8", 2560, true},
      {"d", 4096, true},
      {"%3/4 | %6/8", 3072, true},
      {"@480 f1 n479v1", 1024, false},
  };
  for (const auto& c : kCases) {
    const auto score = ReadScoreText(ScoreText(c.score));
    EXPECT_EQ(score->measures()[0].duration, c.duration) << c.score;
    EXPECT_EQ(score->document().MeasureDuration(1), c.duration) << c.score;
    EXPECT_EQ(score->measures()[0].length_assumed, c.assumed) << c.score;
  }
}

TEST(Reading, FactsTellWhyALayerStays) {
  const auto score = ReadScoreText(ScoreText(
      "S2 R4v1s1y b4 n4v2s1h | r3v1s1thalf. | gv1s1teighth R3v1s1 | n1v1us1 r2v1s1 b3 n3v5s2 | n2v1s1 n1v1s2 || n4v1"));
  EXPECT_TRUE(score->Facts(1, 1, 0).whole_rest && score->Facts(1, 1, 0).fermata);
  EXPECT_TRUE(score->Facts(1, 1, 1).hidden && score->LayerWhollyHidden(1, 1));
  EXPECT_TRUE(score->Facts(1, 2, 0).looks_whole);
  EXPECT_TRUE(score->Facts(1, 3, 0).grace && score->Facts(1, 3, 0).bar_rest_beside);
  EXPECT_TRUE(score->Facts(1, 4, 0).cue);
  EXPECT_FALSE(score->Facts(2, 4, 0).cue);
  EXPECT_TRUE(score->Facts(1, 5, 0).cross_staff);
  EXPECT_EQ(score->Facts(2, 5, 0).entry_count, 0);
  EXPECT_TRUE(score->Around(2, 5).visited);  // the other staff's voice is drawn there
  EXPECT_FALSE(score->Around(1, 5).visited || score->Around(2, 4).visited);
  EXPECT_FALSE(score->Exists(3, 2));
  EXPECT_FALSE(score->document().Exists({3, 2, 0}));
}

// Every entry is found again where it stands; other numbers nowhere.
TEST(Reading, EntriesAreFoundByNumber) {
  const auto score = ReadScoreText(ScoreText("n1v1 b1 n1v2 n1v1 | | n4v2 || n1v1 n1v1 | | n2v1 n1v1"));
  const Document& document = score->document();
  int entries = 0;
  for (int at = 0; at < 3 * 2 * kLayers; ++at) {
    const FramePlace place{static_cast<short>(at % 2 + 1), static_cast<short>(at / 2 % 3 + 1),
                           static_cast<short>(at / 6)};
    short index = 0;
    for (const EXENTRY& entry : document.Entries(place)) {
      const auto found = document.FindEntry(entry.number);
      ASSERT_TRUE(found && found->place == place && found->index == index++) << entries;
      ++entries;
    }
  }
  EXPECT_EQ(entries, 8);
  EXPECT_FALSE(document.FindEntry(9) || document.FindEntry(0));
}

// The placement that the fill command reckons from the instrument is the middle line of the staff's clef.
TEST(Reading, InstrumentsPlaceRestsByClef) {
  constexpr std::pair<const char*, int> kCases[] = {
      {"<sign>G</sign><line>2</line>", 6},
      {"<sign>F</sign><line>4</line>", -6},
      {"<sign>C</sign><line>4</line>", -2},
      {"<sign>percussion</sign>", 6},
      {"<sign>G</sign><line>2</line><clef-octave-change>-1</clef-octave-change>", -1}};
  for (const auto& [clef, steps] : kCases) {
    std::string text = ScoreText("R4v1");
    text.insert(text.find("<note>"), std::string("<attributes><clef>") + clef + "</clef></attributes>");
    const auto score = ReadScoreText(text);
    EDataID id{};
    id.other.cmper = 1;
    unsigned char record[136];
    int size = sizeof record;
    ASSERT_TRUE(score->document().records.Load(0x534F4953, id, record, &size));
    EXPECT_EQ(static_cast<signed char>(record[25]) + 10, steps) << clef;
    EXPECT_EQ(record[24], 0);
    EXPECT_EQ(short{score->document().Entries({1, 1, 0})[0].notes[0].first}, steps) << clef;
  }
}

TEST(Reading, WarnsWithPlace) {
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"n1v1 b4 n1v1", "measure 1: a <backup> goes back beyond"},
      {"n1v1 b0", "measure 1: a <backup> of no length"},
      {"| n1v1 bx", "measure 2: a <backup> without"},
      {"n1v1 | | n1v1 || n1v1", "part P2 has 1 of 3 measures"},
      {"@0 n1v1", "<divisions> is no number above 0"},
      {"n1v1s99", "no staff has this number"},
      {"n1v1 b1 n1v2 b1 n1v3 b1 n1v4 b1 n1v5", "voice 5 is one more than there are layers"},
  };
  for (const auto& [text, part_of_warning] : kCases) {
    const auto score = ReadScoreText(ScoreText(text));
    EXPECT_TRUE(std::ranges::any_of(score->warnings(), [&, wanted = part_of_warning](const Warning& warning) {
      return warning.text.find(wanted) != std::string::npos;
    })) << text;
  }
}

TEST(Reading, SignsOverSeveralMeasures) {
  std::string text = ScoreText("r4v1 | r4v1 | r4v1 | r4v1");
  const auto put = [&](int measure, const std::string& style) {
    const std::string tag = "<measure number=\"" + std::to_string(measure) + "\">";
    text.insert(text.find(tag) + tag.size(), "<attributes><measure-style>" + style + "</measure-style></attributes>");
  };
  put(1, "<multiple-rest>2</multiple-rest>");
  put(3, "<slash type=\"start\"/>");
  put(4, "<slash type=\"stop\"/>");
  put(4, "<measure-repeat type=\"start\">1</measure-repeat>");
  const auto score = ReadScoreText(text);
  EXPECT_TRUE(score->Around(1, 2).multiple_rest);
  EXPECT_FALSE(score->Around(1, 3).multiple_rest);
  EXPECT_TRUE(score->Around(1, 3).slash);
  EXPECT_FALSE(score->Around(1, 4).slash);
  EXPECT_TRUE(score->Around(1, 4).measure_repeat);
}

}  // namespace
}  // namespace sok
