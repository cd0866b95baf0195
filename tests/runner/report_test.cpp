// What sokrun says: reasons, JSON, the page, traces.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;
using nlohmann::json;

struct ReasonCase {
  char measure;
  const char* fill;  // what the report says of it
  const char* clear;
};

constexpr ReasonCase kReasons[] = {
    {'n', "kept: layer 1 is shown and holds music", "kept: layer 1 holds music"},
    {'.', "filled: no layer holds music", "kept: nothing to do"},
    {'w', "kept: layer 1 is shown and holds a whole-measure rest", "cleared: layer 1 held a whole-measure rest"},
    {'h', "kept: layer 1 is shown and holds a whole-measure rest that is not printed",
     "cleared: layer 1 held a whole-measure rest that is not printed"},
    {'l', "kept: layer 1 is shown and holds a real rest that only looks like a whole-measure rest",
     "kept: layer 1 holds a real rest that only looks like a whole-measure rest"},
    {'g', "kept: layer 1 is shown and holds grace notes beside its whole-measure rest",
     "kept: layer 1 holds grace notes beside its whole-measure rest"},
    {'2', "kept: layer 2 is shown and holds music", "kept: layer 2 holds music"},
};

TEST(SokrunReport, SaysWhyForEveryStaffMeasure) {
  std::string measures = "b";  // settles which voice is in which layer
  for (const ReasonCase& c : kReasons) measures += c.measure;
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", measures}, {"Oboe", "nnnnnnnn"}}));
  const std::string fill = Sokrun({"fill", score, "--staves", "1", "--check"}).out;
  const std::string clear = Sokrun({"clear", score, "--staves", "1", "--check"}).out;
  for (std::size_t i = 0; i < std::size(kReasons); ++i) {
    const std::string start = "\nmeasure " + std::to_string(i + 2) + "  Flute  ";
    EXPECT_NE(fill.find(start + kReasons[i].fill + "\n"), std::string::npos) << kReasons[i].measure << fill;
    EXPECT_NE(clear.find(start + kReasons[i].clear + "\n"), std::string::npos) << kReasons[i].measure << clear;
  }
  EXPECT_NE(fill.find("\n1 rest in, 0 rests out; 7 of 8 staff-measures kept"), std::string::npos) << fill;
  EXPECT_NE(clear.find("\n0 rests in, 2 rests out; 6 of 8 staff-measures kept"), std::string::npos) << clear;
}

TEST(SokrunReport, CanBeShortOrSilent) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "n.n"}, {"Oboe", "nnn"}}, {"0", "", "X1"}));
  EXPECT_EQ(Sokrun({"fill", score, "--check", "--quiet"}).out, "");
  const std::string changed = Sokrun({"fill", score, "--check", "--only-changed"}).out;
  EXPECT_EQ(changed, score + ": Fill Empty Measures with Rests\nmeasure 2  Flute  filled: no layer holds music\n" +
                         "1 rest in, 0 rests out; 5 of 6 staff-measures kept\n");
  const std::string all = Sokrun({"fill", score, "--check"}).out;
  EXPECT_NE(all.find("measure 1 (printed 0)   Flute"), std::string::npos) << all;
}

TEST(SokrunReport, IsJsonForPrograms) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flûte \"1\"", "bw"}, {"Oboe", "n2"}}, {"7", "8"}));
  const Ended ended = Sokrun({"clear", score, "-o", folder / "out.xml", "--json"});
  const json report = json::parse(ended.out);
  EXPECT_EQ(report["version"], 1);
  EXPECT_EQ(report["command"]["number"], 0);
  const json& file = report["files"][0];
  EXPECT_EQ(file["file"], score);
  EXPECT_EQ(file["written"], folder / "out.xml");
  EXPECT_EQ(file["rests_out"], 1);
  EXPECT_EQ(file["staves"][0], json({{"part", "Flûte \"1\""}, {"part_id", "P1"}, {"staff", 1}}));
  EXPECT_EQ(file["cells"].size(), 4u);
  EXPECT_EQ(file["cells"][2], json({{"measure", 2},
                                    {"number", "8"},
                                    {"staff", 1},
                                    {"outcome", "cleared"},
                                    {"reason", "whole-rest"},
                                    {"layer", 1},
                                    {"layer_shown", true},
                                    {"text", "layer 1 held a whole-measure rest"}}));
}

TEST(SokrunReport, OtherExtensionsAreReportedToo) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "n."}}));
  const Ended talk = Sokrun({"run", "1", score, "--check", "--plugin", TEST_EXTENSION});
  EXPECT_NE(talk.err.find("alert: a word from the extension"), std::string::npos) << talk.err;
  EXPECT_NE(talk.err.find("did not free 1 frame"), std::string::npos) << talk.err;
  // What a score file does not carry is lost; the user has to hear of it.
  const Ended records = Sokrun({"run", "3", score, "--check", "--json", "--plugin", TEST_EXTENSION});
  EXPECT_NE(records.err.find("changed texts (1 record changed); only music is written back\n"), std::string::npos)
      << records.err;
  EXPECT_EQ(json::parse(records.out)["files"][0]["records"],
            json::parse(R"([{"kind": "ABCD", "changed": 0, "added": 1, "removed": 0},
                            {"kind": "staves", "changed": 0, "added": 0, "removed": 1},
                            {"kind": "texts", "changed": 1, "added": 0, "removed": 0}])"));
  const Ended change = Sokrun({"run", "2", score, "--check", "--plugin", TEST_EXTENSION, "--measures", "2"});
  EXPECT_EQ(change.exit_code, 1) << "entries that cannot be written";
  EXPECT_NE(change.err.find("staff 1, measure 2"), std::string::npos) << change.err;
  EXPECT_NE(change.out.find("measure 2  Flute  changed: layer 1 has other entries now"), std::string::npos)
      << change.out;
}

TEST(SokrunReport, TracesEveryCallOrThoseOfChangedMeasures) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "n."}}));
  const std::string all = Sokrun({"fill", score, "--check", "--trace"}).err;
  EXPECT_NE(all.find("SX_LoadTGF(0 1 1 0 1) -> frame of 1 entry\n"), std::string::npos) << all;
  EXPECT_NE(all.find("SX_GetMaxLayers("), std::string::npos) << all;
  const std::string changed = Sokrun({"fill", score, "--check", "--trace-changed"}).err;
  EXPECT_TRUE(changed.starts_with("measure 2, staff 1:\n  SX_LoadTGF(0 1 2 0 1) -> frame of 0 entries\n")) << changed;
  EXPECT_NE(changed.find("  SX_SaveTGF("), std::string::npos) << changed;
  EXPECT_EQ(changed.find("SX_LoadTGF(0 1 1"), std::string::npos) << changed;
}

// The extension asks this host for less than it would like; the report knows no reason in the score.
TEST(SokrunReport, SmallerHostsChangeTheOutcome) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "n."}}));
  const Ended ended = Sokrun({"fill", score, "--check", "--without", "SX_InsertEXENTRY"});
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_NE(ended.out.find("measure 2  Flute  kept: the extension or the host refused"), std::string::npos)
      << ended.out;
}

// Stands in for the engraving package: draws every measure as one system of one staff.
constexpr const char* kFakeVerovio = R"(
exports.module = {calledRun: true};
exports.toolkit = class {
  setOptions() {} select(range) { this.range = range; } redoLayout() {} getVersion() { return '9.9-x'; }
  loadData(text) { this.count = text.split('<measure').length - 1; this.rests = text.split('measure="yes"').length - 1; return true; }
  getPageCount() { return this.count; }
  renderToSVG() {
    return '<svg><g class="measure"><g class="staff" data-n="1"><g class="layer" data-n="1"><g class="mRest"></g>' +
           '</g></g></g><!-- ' + this.rests + ' --></svg>';
  }
};
)";

TEST(SokrunReport, IsAPageWithPicturesWhereTheyCanBeDrawn) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute &amp; &lt;Oboe&gt;", "n.w"}, {"Horn", "nnn"}}));
  folder.Write("node_modules/verovio/index.js", kFakeVerovio);
  const Words arguments = {"fill", score, "--check", "--html", folder / "report.html"};
  EXPECT_EQ(Sokrun(arguments, {.environment = {"PATH=/nowhere"}}).exit_code, 3);
  const std::string bare = folder.Read("report.html");
  EXPECT_NE(bare.find("No pictures of the music: Node could not be run"), std::string::npos);
  for (const char* const cell : {"<td class=\"music\"", "<td class=\"filled\"", "<td class=\"rest\""}) {
    EXPECT_NE(bare.find(cell), std::string::npos) << cell;
  }
  EXPECT_NE(bare.find("measure 2, Flute &amp; &lt;Oboe&gt; &#8211; filled: no layer holds music"), std::string::npos);
  EXPECT_EQ(bare.find("http"), std::string::npos) << "the page needs something from elsewhere";

  if (std::system("node --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no Node here";
  EXPECT_EQ(Sokrun(arguments, {.environment = {"NODE_PATH=" + (folder / "node_modules")}}).exit_code, 3);
  const std::string page = folder.Read("report.html");
  EXPECT_NE(page.find("Engraved by Verovio 9.9."), std::string::npos);
  EXPECT_NE(page.find("<h3>Measure 2</h3>"), std::string::npos) << "the one changed system, and no other";
  EXPECT_EQ(page.find("<h3>Measure 3</h3>"), std::string::npos);
  EXPECT_NE(page.find("<g class=\"mRest rest-in\"></g></g></g></g><!-- 2 -->"), std::string::npos);
  EXPECT_NE(page.find("<g class=\"mRest\"></g></g></g></g><!-- 1 -->"), std::string::npos);
}

}  // namespace
