// What the commands change, as text.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/errors.h"
#include "tests/musicxml/score_text.h"

namespace sok {
namespace {

struct Settings {
  ReadOptions read = {};
  WriteOptions write = {};
  bool hide_first_layer = false;
};

std::string After(const std::string& text, int (*command)(Score&), const Settings& settings = {}) {
  const auto score = ReadScoreText(text, settings.read);
  score->document().SetLayerShown(0, !settings.hide_first_layer);
  command(*score);
  return score->Write(settings.write);
}

// Whatever the score: filling and clearing is clearing, what was filled is full, and untouched is unchanged.
void CheckLaws(const std::string& text, const Settings& settings = {}) {
  const std::string filled = After(text, FillMeasures, settings);
  const std::string cleared = After(text, ClearRests, settings);
  EXPECT_EQ(Short(After(filled, ClearRests, settings)), Short(cleared));
  EXPECT_EQ(After(cleared, ClearRests, settings), cleared);
  EXPECT_EQ(After(filled, FillMeasures, settings), filled);
  EXPECT_EQ(After(
                text, [](Score&) { return 0; }, settings),
            text);
}

using WritingCase = std::pair<const char*, const char*>;

void Check(std::span<const WritingCase> cases, int (*command)(Score&), const Settings& settings = {}) {
  for (const auto& [before, after] : cases) {
    SCOPED_TRACE(before);
    EXPECT_EQ(After(ScoreText(before), command, settings), Short(ScoreText(after)));
    CheckLaws(ScoreText(before), settings);
  }
}

// Measures as no program would write them: passes through two or three staves of any length, in any order. With more
// voices than layers some measures have no room for another one.
std::string RandomScore(std::mt19937& random, unsigned int voices) {
  const auto below = [&](unsigned int bound) { return static_cast<int>(random() % bound); };
  const auto pick = [&](std::initializer_list<const char*> from) {
    return from.begin()[below(static_cast<unsigned int>(from.size()))];
  };
  const int staves = 1 + below(3);
  std::string score;
  for (int part = 1 + below(2); part > 0; --part) {
    score += "S" + std::to_string(staves) + " @" + std::to_string(1 + below(4)) + pick({" %4/4 ", " %3/4 ", " "});
    for (int measure = 1 + below(4); measure > 0; --measure) {
      for (int passes = below(4); passes > 0; --passes) {
        const std::string voice = below(10) > 0 ? "v" + std::to_string(1 + below(voices)) : "";
        const std::string staff = staves > 1 && below(8) > 0 ? "s" + std::to_string(1 + below(3) % staves) : "";
        const std::string tail = voice + staff + pick({"", "", "", "h"});
        // '#' is the length, '*' voice, staff and whether it is printed; no length: as long as the type.
        std::string pass = pick({"R4*", "R4*", "r4*", "r4*", "r4*twhole", "r4*twhole", "f4", "f4", "r*twhole",
                                 "n*thalf.", "n#*", "n#* g", "n#* d", "n#* n1c", "r#*", "r#* d"});
        const int length = pass.find('#') == std::string::npos ? 4 : 1 + below(4);
        if (const auto at = pass.find('#'); at != std::string::npos) pass.replace(at, 1, std::to_string(length));
        if (const auto at = pass.find('*'); at != std::string::npos) pass.replace(at, 1, tail);
        score += pass;
        score += pick({" ", " ", " ", " d ", " @2 ", " @3 "});
        if (below(5) > 0) score += "b" + std::to_string(below(4) > 0 ? length : below(6)) + " ";
      }
      score += pick({"", "e ", "f1 "}) + std::string(measure > 1 ? "| " : "");
    }
    score += part > 1 ? "|| " : "";
  }
  return ScoreText(score);
}

// Clearing twice is left out: a measure that lost its longest rest is shorter, and other rests may fill it then.
TEST(Writing, TheLawsHoldForAnyScore) {
  std::mt19937 random(1);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = RandomScore(random, 6);
    Settings settings;
    settings.read.hidden_rests = static_cast<HiddenRests>(random() % 3);
    settings.read.fill_visited = random() % 3 == 0;
    settings.hide_first_layer = random() % 8 == 0;
    const std::string filled = After(text, FillMeasures, settings);
    const bool shows = settings.read.hidden_rests == HiddenRests::kEmpty;  // then clearing takes what filling showed
    if (!shows) {
      ASSERT_EQ(Short(After(filled, ClearRests, settings)), Short(After(text, ClearRests, settings))) << text;
    }
    // A rest in a hidden layer fills nothing, so another one goes in.
    if (settings.hide_first_layer) continue;
    ASSERT_EQ(After(filled, FillMeasures, settings), filled) << text;
  }
}

constexpr WritingCase kFills[] = {
    {"%4/4 n4v1 |", "%4/4 n4v1 | R4v1"},                                       // no note at all: as long as the metre
    {"@2 %3/4 | n6v3 | d e", "@2 %3/4 R6v3 | n6v3 | d R6v3 e"},                // divisions, voice, directions, barline
    {"@2 n3v1 || @4", "@2 n3v1 || @4 R6v1"},                                   // length of another part, own divisions
    {"@2 n3v1 || @1", "@2 n3v1 || @1 R1.5v1"},                                 // not whole in these divisions
    {"S2 n4v5s2 d | n4v1s1 d", "S2 R4v1s1 b4 n4v5s2 d | n4v1s1 b4 R4v5s2 d"},  // upper staves first
    {"S2 n2v1s1 || n4v1", "S2 n2v1s1 b2 R4v5s2 b2 || n4v1"},                   // the cursor ends where it did
    {"S3 n4v1s1 b4 n4v9s3", "S3 n4v1s1 b4 R4v5s2 b4 n4v9s3"},
    {"S2 |  n4v1s1 b4 n4v5s2", "S2 R4v1s1 b4 R4v5s2 | n4v1s1 b4 n4v5s2"},
    {"r2v1 || S2 @3 n1v5s2 @1 n1v5s2", "r2v1 || S2 @3 R6v1s1 b6 n1v5s2 @1 n1v5s2"},
    {"r2v1 || S2 @3 n1v1s1 @1 n1v1s1", "r2v1 || S2 @3 n1v1s1 @1 n1v1s1 b1.333333 R2v5s2 b0.666666"},  // thirds are cut
    {"n4v1 | f4", "n4v1 | R4v1 b4 f4"},  // where time passes
    {"S2 n4v1s1 b4 n4v5s2 | f4 b4 n4v5s2", "S2 n4v1s1 b4 n4v5s2 | R4v1s1 b4 f4 b4 n4v5s2"},
    {"S2 n4v1s1 b4 f4", "S2 n4v1s1 b4 R4v5s2 b4 f4"},
    {"n4v1 | f4 || n5v1 | n5v1", "n4v1 | f4 b4 R5v1 b1 || n5v1 | n5v1"},  // not as long: it stays
    {"n4 |", "n4 | R4"},                                                  // voices have no numbers here
    {"S2 n4v1s2 b4 n4v5s2", "S2 R4v2s1 b4 n4v1s2 b4 n4v5s2"},             // number 1 is taken by the other staff
    {"S2 n4v1s1 b4 n4v5s2 | n4v1s2", "S2 n4v1s1 b4 n4v5s2 | R4v2s1 b4 n4v1s2"},
};
constexpr WritingCase kClears[] = {
    {"R4v1 | r4v1twhole | r3v1thalf. n1v1 | r4v1", " | | r3v1thalf. n1v1 |"},
    {"R4v1 d", "f4 d"},  // something later depends on the cursor
    {"d R4v1", "d"},
    {"S2 R4v1s1 d b4 n4v5s2", "S2 f4 d b4 n4v5s2"},
    {"S2 R4v1s1 b4 R4v5s2", "S2"},
    {"S2 n3v1s1 b3 R4v5s2 b1 d", "S2 n3v1s1 d"},
    {"n4v1twhole b4 r4v2twhole", "n4v1twhole"},
    {"R4v1 gv1", "R4v1 gv1"},  // not alone
    {"R4v1y", ""},
    {"R4s99", ""},                  // on staff 1, as no staff has this number
    {"@2 rv1twhole d", "@2 f8 d"},  // no duration: as long as its type
};

TEST(Writing, RestsGoIn) { Check(kFills, FillMeasures); }
TEST(Writing, RestsGoOut) { Check(kClears, ClearRests); }

TEST(Writing, BesideMusicThatDoesNotCount) {
  constexpr WritingCase kHiddenLayer[] = {
      {"n4v1", "n4v1 b4 R4v2"},
      {"n4v1 | n4v1 b4 n4v2", "n4v1 b4 R4v2 | n4v1 b4 n4v2"},  // the other layer's voice has nothing here
      {"S2 n4v1s1 b4 n4v5s2", "S2 n4v1s1 b4 R4v2s1 b4 n4v5s2 b4 R4v6s2"},
  };
  Check(kHiddenLayer, FillMeasures, {.hide_first_layer = true});
}

TEST(Writing, RestsThatAreNotPrinted) {
  constexpr WritingCase kKept[] = {{"R4v1h | n4v1 |", "R4v1h | n4v1 | R4v1"}, {"d b4 R4v2h", "d b4 R4v2h"}};
  Check(kKept, FillMeasures, {.read = {.hidden_rests = HiddenRests::kKeep}});
  Check(std::span(kKept).subspan(1), ClearRests, {.read = {.hidden_rests = HiddenRests::kKeep}});
  const Settings empty = {.read = {.hidden_rests = HiddenRests::kEmpty}};
  EXPECT_EQ(After(ScoreText("R4v1h | n4 b4 n4v2"), FillMeasures, empty), ScoreText("R4v1 | n4 b4 n4v2"));
  EXPECT_EQ(After(ScoreText("R4v1h"), ClearRests, empty), ScoreText("R4v1h"));
}

TEST(Writing, NothingGoesWhereAnotherStaffsVoiceIsDrawn) {
  constexpr WritingCase kVisited[] = {{"S2 n2v1s1 n1v1s1 n1v1s2", "S2 n2v1s1 n1v1s1 n1v1s2"}};
  constexpr WritingCase kFilled[] = {{"S2 n2v1s1 n1v1s1 n1v1s2", "S2 n2v1s1 n1v1s1 n1v1s2 b4 R4v5s2"}};
  Check(kVisited, FillMeasures, {.read = {.fill_visited = false}});
  Check(kFilled, FillMeasures);
}

TEST(Writing, FermatasMoveToTheBarlineOnRequest) {
  const std::string fermata = "<fermata type=\"upright\"/>";
  const std::string barline = "<barline location=\"right\">";
  const std::pair<const char*, std::string> kCases[] = {
      {"R4v1y b4 R4v2y", barline + fermata + "</barline>"},
      {"R4v1y e", barline + "<bar-style>light-heavy</bar-style>" + fermata + "</barline>"},
  };
  for (const auto& [before, measure] : kCases) {
    const std::string after = After(ScoreText(before), ClearRests, {.write = {.keep_fermatas = true}});
    EXPECT_NE(after.find("<measure number=\"1\">" + measure + "</measure>"), std::string::npos) << after;
  }
  const auto score = ReadScoreText(ScoreText("R4v1y"));
  ClearRests(*score);
  ASSERT_EQ(score->Changes().size(), 1U);
  EXPECT_EQ(score->Lost(score->Changes()[0]), std::vector<std::string>{"fermata"});
}

// The layout of the text: what comes looks like its neighbours, what goes leaves no trace.
TEST(Writing, FollowsTheLayoutOfTheText) {
  const std::string begin = "<?xml version='1.0'?>\r\n<!-- c --><score-partwise>\r\n\t<part id='P1'>\r\n";
  const std::string first =
      "\t\t<measure number='1'>\r\n\t\t\t<note>\r\n\t\t\t\t<rest/>\r\n\t\t\t\t<duration>4</duration>\r\n"
      "\t\t\t\t<type>half</type>\r\n\t\t\t</note>\r\n\t\t</measure>\r\n";
  const std::string end = "\t</part>\r\n</score-partwise>\r\n\r\n";
  const std::string rest =
      "\r\n\t\t\t<note>\r\n\t\t\t\t<rest measure=\"yes\"/>\r\n\t\t\t\t<duration>4</duration>\r\n\t\t\t</note>";
  const std::pair<std::string, std::string> kCases[] = {
      {"\t\t<measure number='2'>\r\n\t\t</measure>\r\n", "\t\t<measure number='2'>" + rest + "\r\n\t\t</measure>\r\n"},
      {"\t\t<measure number='2' />\r\n", "\t\t<measure number='2' >" + rest + "\r\n\t\t</measure>\r\n"},
      {"\t\t<measure number='2'><![CDATA[ </measure> ]]>\r\n\t\t</measure>\r\n",
       "\t\t<measure number='2'>" + rest + "<![CDATA[ </measure> ]]>\r\n\t\t</measure>\r\n"},
  };
  for (const auto& [before, after] : kCases) {
    const std::string text = begin + first + before + end;
    EXPECT_EQ(After(text, FillMeasures), begin + first + after + end);
    CheckLaws(text);
  }
}

using Entries = std::vector<EXENTRY>;

EXENTRY NewNote(int duration, std::initializer_list<std::pair<int, int>> pitches) {
  EXENTRY entry{};
  entry.duration = static_cast<unsigned short>(duration);
  entry.flags = kEntryLegal | (pitches.size() > 0 ? kEntryIsNote : 0U);
  for (const auto& [step, alter] : pitches) {
    entry.notes[entry.noteCount].first = static_cast<short>(step);
    entry.notes[entry.noteCount++].second = static_cast<short>(alter);
  }
  return entry;
}

std::string MusicOf(const EXENTRY& entry) {
  std::string music = std::to_string(entry.duration);
  for (short i = 0; (entry.flags & kEntryIsNote) != 0 && i < entry.noteCount; ++i)
    music += (i == 0 ? ":" : ",") + std::to_string(entry.notes[i].first) + "+" + std::to_string(entry.notes[i].second);
  return music;
}

// What every measure holds. Layers are numbered by what was there before, and a voice lives where most of its notes
// stand, so neither is compared; nor is a lone rest's value, which goes by the length of a measure that may be another
// one now.
std::string Music(const Score& score) {
  std::string music;
  const Document& document = score.document();
  for (short measure = 1; measure <= document.MeasureCount(); ++measure) {
    std::multiset<std::string> layers;
    for (short staff = 1; staff <= document.StaffCount(); ++staff) {
      for (short layer = 0; layer < kLayers; ++layer) {
        const Entries entries = document.Entries({staff, measure, layer});
        std::string of_layer;
        for (const EXENTRY& entry : entries) of_layer += MusicOf(entry) + " ";
        const bool rest = entries.size() == 1 && (entries[0].flags & kEntryIsNote) == 0;
        if (!entries.empty()) layers.insert(rest ? "rest " : of_layer);
      }
    }
    for (const std::string& layer : layers) music += layer + "/ ";
    music += "| ";
  }
  return music;
}

// Edits frames, and expects to read again what was saved.
std::string Edited(const std::string& text, const std::function<void(Document&)>& edit) {
  const auto score = ReadScoreText(text);
  edit(score->document());
  const std::string written = score->Write();
  EXPECT_EQ(Music(*ReadScoreText(written)), Music(*score)) << text << "\n" << written;
  return written;
}

std::function<void(Document&)> InFirstFrame(std::function<void(Entries&)> edit) {
  return [edit](Document& document) {
    Entries entries = document.Entries({1, 1, 0});
    edit(entries);
    document.SetEntries({1, 1, 0}, std::move(entries));
  };
}

struct EditCase {
  const char* before;
  const char* after;
  std::function<void(Entries&)> edit;
};

constexpr unsigned int kTiedOn = 0x40000000, kTiedBack = 0x20000000;

const EditCase kEdits[] = {
    {"n1v1 d n1v1 b2 n2v2 e", "n2v1thalf d n1v1 b3 n2v2 e", [](Entries& e) { e[0].duration = 2048; }},
    {"n1v1 f1 n1v1", "n2v1thalf f1 n1v1", [](Entries& e) { e[0].duration = 2048; }},
    {"n1v1 n1v1 d n1v1 b3 n3v2", "n1v1 d n1v1 b2 n3v2", [](Entries& e) { e.erase(e.begin() + 1); }},
    {"@2 n2v1 n2v1 b4 n4v2", "@2 n2v1 n2v1 r1v1teighth b5 n4v2", [](Entries& e) { e.push_back(NewNote(512, {})); }},
    {"n1v1 n1v1", "@2 n1v1teighth @1 n1v1", [](Entries& e) { e[0].duration = 512; }},
    {"n1v1 n1v1c n1v1", "r1v1 n1v1", [](Entries& e) { e[0].flags &= ~kEntryIsNote; }},
    {"R4v1", "n2v1thalf",
     [](Entries& e) {
       e[0] = NewNote(2048, {{1, 0}});
     }},
    {"n1v1 n1v1c n1v1c", "n1v1 n1v1c", [](Entries& e) { --e[0].noteCount; }},
    {"n3v1thalf.", "n2v1thalf", [](Entries& e) { e[0].duration = 2048; }},
    {"S2 n2v1s1 b2 n2v5s2", "S2 n2v1s1 n1v1s1tquarter b3 n2v5s2",
     [](Entries& e) {
       e.push_back(NewNote(1024, {{1, 0}}));
     }},
    // What made the measure long goes: the rest of it says how long it is.
    {"%3/4 r8v1tbreve || n3v1", "%3/4 R3v1 || n3v1", [](Entries& e) { e[0].duration = 4096; }},
    // Ties have two ends, and a rest stands where its record says when its flag, or a new place, says so.
    {"n1v1 n1v1", "n1v1a n1v1z", [](Entries& e) { e[0].notes[0].flags |= kTiedOn, e[1].notes[0].flags |= kTiedBack; }},
    {"n1v1a n1v1za n1v1z", "n1v1 n1v1a n1v1z", [](Entries& e) { e[0].notes[0].flags &= ~kTiedOn; }},
    {"n1v1 n1v1z", "n1v1 n1v1", [](Entries& e) { e[1].notes[0].flags &= ~kTiedBack; }},
    {"n1v1a n1v1z | n1v1", "n1v1 n1v1atquarter n1v1z | n1v1",
     [](Entries& e) { (*e.insert(e.begin() + 1, EXENTRY(e[0]))).number = 0; }},
    {"r1v1 n1v1", "r1v1p n1v1", [](Entries& e) { e[0].notes[0].first = 6; }},
    {"r1v1p n1v1", "r1v1 n1v1", [](Entries& e) { e[0].flags &= ~kEntryRestPlaced; }},
    {"r2v1p n1v1", "r1v1ptquarter n1v1", [](Entries& e) { e[0].duration = 1024; }},
    {"n1v1 n1v1", "r1v1p n1v1",
     [](Entries& e) {
       e[0].flags = (e[0].flags & ~kEntryIsNote) | kEntryRestPlaced;
       e[0].notes[0].first = 6;
     }},
    {"R4v1p", "R4v1", [](Entries& e) { e[0].flags &= ~kEntryRestPlaced; }},
};

TEST(Writing, EntriesComeAsTheyWereSaved) {
  for (const EditCase& c : kEdits) {
    EXPECT_EQ(Edited(ScoreText(c.before), InFirstFrame(c.edit)), ScoreText(c.after));
  }
}

// Any edits of any frames of any score: what is written reads as what was saved, or is refused by name.
TEST(Writing, RandomEditsComeAsTheyWereSaved) {
  std::mt19937 random(2);
  int written = 0;
  for (int i = 0; i < 1500; ++i) {
    const std::string text = RandomScore(random, 2);
    const auto score = ReadScoreText(text);
    Document& document = score->document();
    for (unsigned edits = 1 + random() % 4; edits > 0; --edits) RandomEdit(document, random);
    try {
      const auto again = ReadScoreText(score->Write());
      EXPECT_EQ(Music(*again), Music(*score)) << text << "\n" << score->WriteText();
      ++written;
    } catch (const Error& error) {
      EXPECT_NE(std::string_view(error.what()).find("measure "), std::string_view::npos) << error.what() << "\n"
                                                                                         << text;
    }
  }
  EXPECT_GT(written, 1000);
}

TEST(Writing, RefusesWhatItCannotWrite) {
  const std::string text = ScoreText("n1v1 n1v1");
  const std::pair<std::function<void(Entries&)>, const char*> kCases[] = {
      {[](Entries& e) { e[0].flags |= 1; }, "entry 1 has flags that no score can hold (staff 1, measure 1, layer 1)"},
      {[](Entries& e) { e[1].notes[0].first = 100; }, "pitch 100"},
      {[](Entries& e) { e[1].notes[0].second = 5; }, "5 semitones"},
      {[](Entries& e) { e[1].duration = 0; }, "entry 2 has no duration"},
      {[](Entries& e) { e[0].notes[0].flags |= kTiedOn; }, "entry 1 is tied to no note of its pitch"},
      {[](Entries& e) { e[1].number = 99; }, "entry number 99 was never handed out (staff 1, measure 1, layer 1)"},
      {[](Entries& e) { (e = {NewNote(4096, {})})[0].number = 3; }, "entry number 3 was never"},
  };
  for (const auto& [edit, message] : kCases) {
    const auto score = ReadScoreText(text);
    InFirstFrame(edit)(score->document());
    try {
      score->Write();
      ADD_FAILURE() << "written: " << message;
    } catch (const Error& error) {
      EXPECT_NE(std::string_view(error.what()).find(message), std::string_view::npos) << error.what();
    }
  }
}

TEST(Writing, ArticulationsGoOntoTheirNotes) {
  const std::string text = ScoreText("n1v1 n1v1c gv1 n1v1y n1v1 b3 n3v2");
  const auto mark = [](const std::string& before, std::initializer_list<std::pair<int, short>> marks) {
    const auto score = ReadScoreText(before);
    Document& document = score->document();
    std::vector<EXENTRY> entries = document.Entries({1, 1, 0});
    for (const auto& [index, character] : marks) {
      EDataID definition{};
      definition.other.cmper = static_cast<unsigned short>(character);
      document.records.Save(record_tags::kArticulationDefinition, definition, &character, sizeof character);
      EDataID id{};
      id.entryDetail.entryNum = entries[static_cast<std::size_t>(index)].number;
      id.entryDetail.subIndex = -1;
      document.records.Create(record_tags::kArticulation, id, &character, sizeof character);
      entries[static_cast<std::size_t>(index)].flags |= kEntryHasArticulations;
    }
    document.SetEntries({1, 1, 0}, std::move(entries));
    return score->Write();
  };
  std::string expected = text;
  const auto put = [&](std::string_view place, std::string_view what) { expected.insert(expected.find(place), what); };
  put("</note><note><chord/>", "<notations><articulations><accent/><staccato/></articulations></notations>");
  put("</notations></note><note><pitch><step>D</step><octave>4</octave></pitch><duration>1</duration><voice>1</voice></"
      "note><backup>",
      "<articulations><tenuto/></articulations>");
  EXPECT_EQ(mark(text, {{0, '>'}, {0, '.'}, {2, '-'}}), expected);
  EXPECT_EQ(mark(expected, {{0, '>'}, {2, '-'}}), expected);  // there already
  EXPECT_THROW(mark(text, {{0, 'U'}}), Error);
}

// A layer that another extension empties goes out whole, chords and all.
TEST(Writing, AnEmptiedLayerOfMusicGoesOut) {
  const auto score = ReadScoreText(ScoreText("n1v1 n1v1c n2v1 gv1 n1v1 d b4 n4v2"));
  score->document().SetEntries({1, 1, 0}, {});
  EXPECT_EQ(score->Write(), ScoreText("f1 f2 f1 d b4 n4v2"));
}

}  // namespace
}  // namespace sok
