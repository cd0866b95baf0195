// fill, clear and run on one score: what is chosen, what changes, where the score comes from and goes to.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;

struct RunCase {
  const char* name;
  Words arguments;
  std::vector<PartText> before;
  std::vector<std::string> after;
  Words numbers = {};
};

const RunCase kRunCases[] = {
    {"every empty measure of every staff", {"fill"}, {{"Flute", "n.w"}, {"Oboe", "..l"}}, {"nww", "wwl"}},
    {"every lone rest of 4096, no real rest", {"clear"}, {{"Flute", "nwl"}, {"Oboe", "wgh"}}, {"n.l", ".n."}},
    {"positions", {"fill", "--measures", "2,4-"}, {{"Flute", "n....."}}, {"nw.www"}},
    {"positions that overlap", {"fill", "--measures", "3-4,-3"}, {{"Flute", "....n"}}, {"wwwwn"}},
    {"positions beyond the end", {"fill", "--measures", "2-99"}, {{"Flute", "n.."}}, {"nww"}},
    {"printed numbers, text before ranges",
     {"fill", "--numbers", "1-0,7-8"},
     {{"Flute", "n...."}},
     {"nww.w"},
     {"6", "1-0", "7", "X1", "8a"}},
    {"printed numbers that come twice",
     {"fill", "--numbers", "2"},
     {{"Flute", "n.n."}},
     {"nwnw"},
     {"1", "2", "1", "2"}},
    {"measures by both names add up",
     {"fill", "--measures", "2", "--numbers", "9"},
     {{"Flute", "n..."}},
     {"nw.w"},
     {"1", "2", "3", "9"}},
    {"staves", {"clear", "--staves", "1,3"}, {{"Flute", "w"}, {"Oboe", "w"}, {"Horn", "w"}}, {".", "w", "."}},
    {"parts by name or id, in any case",
     {"fill", "--parts", "oboe", "--parts", "P3"},
     {{"Flute", "n."}, {"Oboe", "n."}, {"Horn", "n."}},
     {"n.", "nw", "nw"}},
    {"a hidden layer blocks without the preference", {"fill", "--hide-layer", "2"}, {{"Flute", "b2"}}, {"nn"}},
    {"the preference alone does not hide", {"fill", "--allow-hidden", "2"}, {{"Flute", "b2"}}, {"nn"}},
    {"a hidden rest is an entry", {"fill"}, {{"Flute", "nh"}}, {"nw"}},
    {"a rest that is not printed goes too", {"clear"}, {{"Flute", "nh"}}, {"n."}},
};

TEST(SokrunRun, ChangesWhatIsSelectedAndNothingElse) {
  const Folder folder;
  for (const RunCase& c : kRunCases) {
    SCOPED_TRACE(c.name);
    Words arguments = c.arguments;
    arguments.insert(arguments.end(),
                     {folder.Write("in.musicxml", ScoreText(c.before, c.numbers)), "-o", folder / "out.musicxml"});
    const Ended ended = Sokrun(arguments);
    EXPECT_EQ(ended.exit_code, 0) << ended.err;
    EXPECT_EQ(Letters(folder.Read("out.musicxml")), c.after);
  }
}

// A layer is hidden on some staves only: they need invocations of their own, each with its own answers of the host.
TEST(SokrunRun, HidesLayersByStaves) {
  const Folder folder;
  const std::string score = ScoreText({{"Flute", "b2"}, {"Oboe", "b2"}, {"Horn", "b2"}});
  const Ended ended = Sokrun({"fill", folder.Write("in.xml", score), "-o", folder / "out.xml", "--hide-layer", "2:1,3",
                              "--allow-hidden", "2"});
  EXPECT_EQ(ended.exit_code, 0) << ended.err;
  EXPECT_NE(ended.out.find("2 rests in"), std::string::npos) << ended.out;
  EXPECT_NE(ended.out.find("measure 2  Flute  filled: layer 2 holds music, but is hidden"), std::string::npos)
      << ended.out;
  EXPECT_NE(ended.out.find("measure 2  Oboe   kept: layer 2 is shown and holds music"), std::string::npos) << ended.out;
}

TEST(SokrunRun, UnchangedIsIdenticalAndFillThenClearIsClear) {
  const Folder folder;
  const std::string untouched = ScoreText({{"Flute", "nl"}}), mixed = ScoreText({{"Flute", "n.wh"}, {"Oboe", ".b.."}});
  ASSERT_EQ(Sokrun({"fill", folder.Write("a.xml", untouched), "-o", folder / "b.xml"}).exit_code, 0);
  EXPECT_EQ(folder.Read("b.xml"), untouched);

  ASSERT_EQ(Sokrun({"fill", folder.Write("c.xml", mixed), "-o", folder / "filled.xml"}).exit_code, 0);
  ASSERT_EQ(Sokrun({"clear", folder / "filled.xml", "-i"}).exit_code, 0);
  ASSERT_EQ(Sokrun({"clear", folder / "c.xml", "-i"}).exit_code, 0);
  EXPECT_EQ(folder.Read("filled.xml"), folder.Read("c.xml"));
}

TEST(SokrunRun, StreamsKeepTheReportOutOfTheScore) {
  const std::string score = ScoreText({{"Flute", "n."}});
  const Folder folder;
  const std::string file = folder.Write("in.xml", score);
  for (const Words& arguments : {Words{"fill", "-"}, Words{"fill", "-", "-o", "-"}, Words{"fill", file, "-o", "-"}}) {
    const Ended ended = Sokrun(arguments, {.input = score});
    EXPECT_EQ(ended.exit_code, 0);
    EXPECT_EQ(Letters(ended.out), Words{"nw"}) << ended.out;
    EXPECT_NE(ended.err.find("1 rest in"), std::string::npos) << ended.err;
  }
}

TEST(SokrunRun, KeepsFermatasWhenAsked) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "nf"}}));
  const Ended lost = Sokrun({"clear", score, "-o", folder / "lost.xml"});
  EXPECT_NE(lost.out.find("fermata went with the rest"), std::string::npos) << lost.out;
  EXPECT_EQ(folder.Read("lost.xml").find("<fermata"), std::string::npos);
  const Ended kept = Sokrun({"clear", score, "-o", folder / "kept.xml", "--keep-fermatas"});
  EXPECT_NE(kept.out.find("fermata moved to the barline"), std::string::npos) << kept.out;
  EXPECT_NE(folder.Read("kept.xml").find("<fermata"), std::string::npos);
}

TEST(SokrunRun, HiddenRestsCountAsEmptyWhenAsked) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "nh"}}));
  const Ended ended = Sokrun({"fill", score, "-o", folder / "out.xml", "--hidden-rests", "empty"});
  EXPECT_NE(ended.out.find("1 rest in"), std::string::npos) << ended.out << ended.err;
}

struct RefusedCase {
  Words arguments;
  int exit_code;
  const char* message;
};

// IN stands for a score, BAD for a file that is cut off in its third line, OUT for a file that is not there yet.
const RefusedCase kRefused[] = {
    {{}, 2, "say which command"},
    {{"fil", "IN"}, 2, "there is no command fil"},
    {{"fill"}, 2, "IN"},
    {{"fill", "IN"}, 2, "-o, --in-place or --output-dir"},
    {{"fill", "IN", "-o", "OUT", "--in-place"}, 2, "--in-place"},
    {{"fill", "IN", "-o", "OUT", "--dry-run"}, 2, "--dry-run"},
    {{"fill", "IN", "-o", "OUT", "--backup"}, 2, "--in-place"},
    {{"fill", "-", "--in-place"}, 2, "stdin"},
    {{"fill", "IN", "--output-dir", "HERE"}, 2, "would be written over itself"},
    {{"fill", "IN", "--check", "--html", "IN"}, 2, "is one of the scores"},
    {{"fill", "IN", "-", "--check"}, 2, "one of several inputs"},
    {{"fill", "IN", "IN", "-o", "OUT"}, 2, "--output-dir"},
    {{"fill", "IN", "IN", "--output-dir", "OUT"}, 2, "both be written"},
    {{"fill", "IN", "--check", "--measures", "0"}, 2, "--measures: \"0\""},
    {{"fill", "IN", "--check", "--staves", "3-1"}, 2, "--staves: \"3-1\""},
    {{"fill", "IN", "--check", "--hide-layer", "5"}, 2, "layers are 1 to 4"},
    {{"fill", "IN", "--check", "--hidden-rests", "maybe"}, 2, "--hidden-rests"},
    {{"fill", "IN", "--check", "--without", "SX_Nothing"}, 2, "SX_Nothing"},
    {{"fill", "IN", "--check", "--json", "--quiet"}, 2, "--quiet"},
    {{"run", "2", "IN", "--check"}, 2, "has no command 2; it has 2 commands"},
    {{"fill", "IN", "--check", "--measures", "5-9"}, 1, "nothing is selected: the score has 2 measures"},
    {{"fill", "IN", "--check", "--numbers", "X"}, 1, "no measure is numbered X"},
    {{"fill", "IN", "--check", "--parts", "Tuba"}, 1, "the score has Flute, Oboe"},
    {{"fill", "BAD", "-o", "OUT"}, 1, "bad.xml:"},
    {{"fill", "OUT", "--check"}, 1, "No such file"},
    {{"fill", "OUT\x1b[2J\n\xc2\x9b\xff", "--check"}, 1, "out\\x1b[2J\\n\\x9b\\xff: No such file"},
    {{"fill", "IN", "--check", "--plugin", "OUT"}, 1, "no such bundle"},
    {{"fill", "IN", "--check", "--plugin", "/"}, 1, "main"},
    {{"fill", "IN", "-o", "OUT/in/no/folder"}, 1, "cannot be written"},
    {{"fill", "IN", "-o", "/dev/full"}, 1, "No space left"},
};

TEST(SokrunRun, RefusesWithAReasonAndTheRightCode) {
  const Folder folder;
  const std::string in = folder.Write("in.xml", ScoreText({{"Flute", "n."}, {"Oboe", "nn"}}));
  const std::string bad = folder.Write("bad.xml", "<?xml version=\"1.0\"?>\n<score-partwise>\n<part-list");
  for (const RefusedCase& c : kRefused) {
    Words arguments = c.arguments;
    for (std::string& word : arguments) {
      if (word == "IN") word = in;
      if (word == "HERE") word = folder.path();
      if (word == "BAD") word = bad;
      if (word.starts_with("OUT")) word = folder / ("out" + word.substr(3));
    }
    const Ended ended = Sokrun(arguments);
    SCOPED_TRACE(testing::PrintToString(arguments));
    EXPECT_EQ(ended.exit_code, c.exit_code);
    EXPECT_NE(ended.err.find(c.message), std::string::npos) << ended.err;
    EXPECT_EQ(ended.out, "");
  }
  EXPECT_EQ(folder.Names(), (Words{"bad.xml", "in.xml"}));
}

TEST(SokrunRun, CheckTellsByItsCode) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "n."}}));
  const std::string text = folder.Read("in.xml");
  EXPECT_EQ(Sokrun({"fill", score, "--check"}).exit_code, 3);
  EXPECT_EQ(Sokrun({"clear", score, "--check"}).exit_code, 0);
  EXPECT_EQ(folder.Read("in.xml"), text);
}

TEST(SokrunRun, DryRunPrintsTheDifferenceAlone) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "nw"}}));
  const Ended ended = Sokrun({"clear", score, "--dry-run"});
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_TRUE(ended.out.starts_with("--- " + score + "\n+++ " + score + "\n@@ ")) << ended.out;
  EXPECT_NE(ended.out.find("\n-      <note><rest measure=\"yes\"/>"), std::string::npos) << ended.out;
  EXPECT_NE(ended.err.find("1 rest out"), std::string::npos);
  EXPECT_EQ(Letters(folder.Read("in.xml")), Words{"nw"});
}

}  // namespace
