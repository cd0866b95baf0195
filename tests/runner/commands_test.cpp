// list, info, scan and inspect.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/runner/sokrun_process.h"

namespace {

using nlohmann::json;

TEST(SokrunCommands, ListShowsTheCommandsOfABundle) {
  EXPECT_TRUE(Sokrun({"list"}).out.starts_with("  0  Clear Whole-Measure Rests\n"));
  const Ended test = Sokrun({"list", TEST_EXTENSION});
  EXPECT_NE(test.out.find("  2  Add Rests\n     Puts two quarter rests in front.\n"), std::string::npos) << test.out;
  EXPECT_EQ(json::parse(Sokrun({"list", "--json"}).out)[1]["texts"][0], "Fill Empty Measures with Rests");
}

TEST(SokrunCommands, InfoTellsABundleFromAnIncompleteOne) {
  const json good = json::parse(Sokrun({"info", "--json"}).out),
             test = json::parse(Sokrun({"info", TEST_EXTENSION, "--json"}).out);
  EXPECT_EQ(good["identifier"], "com.sonkel.extension.MeasureRests");
  EXPECT_EQ(good["interface_version"], "0x19300000");
  EXPECT_EQ(good["interface"].size(), 15u);
  for (const char* const list : {"missing_exports", "other_exports", "missing_texts"})
    EXPECT_EQ(good[list], json::array()) << list;
  EXPECT_EQ(good["languages"], json({"de", "en"}));
  EXPECT_EQ(test["missing_texts"], json({"30005"}));
}

TEST(SokrunCommands, ScanFindsWithoutChanging) {
  const Folder folder;
  const std::string text = ScoreText({{"Flu&#x9b;te", "n.wlh"}, {"Oboe", "nnnnn"}});
  const std::string score = folder.Write("in.xml", text), bad = folder.Write("bad.xml", "");
  const Ended ended = Sokrun({"scan", bad, score, "--json"});
  EXPECT_EQ(ended.exit_code, 1);
  const json files = json::parse(ended.out)["files"];
  EXPECT_TRUE(files[0].contains("error"));
  EXPECT_EQ(files[1]["counts"],
            json({{"empty", 1}, {"bar-rest", 1}, {"look-alike", 1}, {"hidden-rest", 1}, {"surplus-voices", 0}}));
  const std::string lines = Sokrun({"scan", score}).out;
  EXPECT_NE(lines.find(score + ": measure 2, Flu\\x9bte: empty measure\n"), std::string::npos) << lines;
  EXPECT_EQ(folder.Read("in.xml"), text);
}

TEST(SokrunCommands, InspectPrintsEntriesAsTheExtensionSeesThem) {
  const Folder folder;
  const std::string score = folder.Write("in.xml", ScoreText({{"Flute", "nw"}}));
  const Ended ended = Sokrun({"inspect", score, "frames"});
  EXPECT_EQ(ended.exit_code, 0) << ended.err;
  EXPECT_NE(ended.out.find("      1     1     1     0       1     3072  note"), std::string::npos) << ended.out;
  EXPECT_NE(ended.out.find("      2     1     1     0       2     4096  rest"), std::string::npos) << ended.out;
  EXPECT_EQ(Sokrun({"inspect", score, "nothing"}).exit_code, 2);
}

}  // namespace
