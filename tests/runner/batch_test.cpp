// Many files: outputs by name, one report in order, and failures that stay with their file.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;
using nlohmann::json;

// Four scores in folders, one of them broken, beside files that are no scores.
void WriteCollection(const Folder& folder) {
  folder.Write("in/a.musicxml", ScoreText({{"Flute", "n."}}));
  folder.Write("in/b.xml", "no score at all");
  folder.Write("in/deeper/a.XML", ScoreText({{"Flute", "nn"}}));
  folder.Write("in/deeper/notes.txt", "not to be looked at");
  folder.Write("in/.hidden/c.xml", "not to be looked at");
  folder.Write("in/z.musicxml", ScoreText({{"Flute", ".."}, {"Oboe", "n."}}));
}

TEST(SokrunBatch, AFailureStopsNoOtherFile) {
  for (const char* const jobs : {"1", "3"}) {
    const Folder folder;
    WriteCollection(folder);
    const Ended ended = Sokrun({"fill", folder / "in", "--output-dir", folder / "out", "-j", jobs, "--only-changed"});
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_NE(ended.err.find("b.xml:1:"), std::string::npos) << ended.err;
    EXPECT_EQ(ended.err.find('\r'), std::string::npos) << "a progress bar where there is no terminal";
    EXPECT_EQ(Letters(folder.Read("out/a.musicxml")), Words{"nw"});
    EXPECT_EQ(Letters(folder.Read("out/z.musicxml")), (Words{"ww", "nw"}));
    EXPECT_EQ(folder.Read("out/deeper/a.XML"), folder.Read("in/deeper/a.XML"));
    EXPECT_EQ(folder.Names("out"), (Words{"a.musicxml", "deeper", "z.musicxml"}));
    EXPECT_LT(ended.out.find("in/a.musicxml:"), ended.out.find("in/deeper/a.XML:"));
    EXPECT_LT(ended.out.find("in/deeper/a.XML:"), ended.out.find("in/z.musicxml:"));
    EXPECT_NE(ended.out.find("4 files: 2 changed, 1 unchanged, 1 failed; 4 rests in, 0 rests out"), std::string::npos)
        << ended.out;
  }
}

TEST(SokrunBatch, OneJsonReportForAll) {
  const Folder folder;
  WriteCollection(folder);
  const Ended ended = Sokrun({"fill", folder / "in", "--check", "--json", "-j", "2"});
  EXPECT_EQ(ended.exit_code, 1);  // a failure outweighs a change
  const json report = json::parse(ended.out);
  ASSERT_EQ(report["files"].size(), 4u);
  const char* const kStatus[] = {"changed", "failed", "unchanged", "changed"};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(report["files"][i]["status"], kStatus[i]);
  EXPECT_EQ(report["summary"],
            json({{"files", 4}, {"changed", 2}, {"unchanged", 1}, {"failed", 1}, {"rests_in", 4}, {"rests_out", 0}}));
}

// What an extension does to its process, or to stdout, is seen in the report of that file, and nowhere else.
TEST(SokrunBatch, ACrashStopsNoOtherFile) {
  const Folder folder;
  for (const char* const measures : {"nn", "n", "nnn"})
    folder.Write(std::string("in/") + measures + ".xml", ScoreText({{"Flute", measures}}));
  for (const std::string only : {"", "/nnn.xml"}) {
    const Ended ended = Sokrun({"run", "0", folder / ("in" + only), "--check", "--plugin", TEST_EXTENSION, "--json",
                                "--html", folder / "page.html"});
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_NE(ended.err.find("nnn.xml: the extension ended the process, with exit code 0"), std::string::npos);
    const json report = json::parse(ended.out);
    EXPECT_EQ(report["summary"]["failed"], only.empty() ? 2 : 1) << ended.out;
    EXPECT_EQ(report["summary"]["unchanged"], only.empty() ? 1 : 0) << ended.out;
    EXPECT_NE(folder.Read("page.html").find("ended the process"), std::string::npos);
  }
}

}  // namespace
