// Files are replaced whole or not at all.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;

const std::string kBefore = ScoreText({{"Flute", "n."}});

TEST(SokrunOutput, InPlaceKeepsPermissionsLinksAndOriginals) {
  const Folder folder;
  const std::string file = folder.Write("real.xml", kBefore), link = folder / "link.xml";
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  ASSERT_EQ(symlink(file.c_str(), link.c_str()), 0);
  folder.Write("real.xml.bak", "an older backup");

  ASSERT_EQ(Sokrun({"fill", link, "--in-place", "--backup"}).exit_code, 0);
  EXPECT_EQ(Letters(folder.Read("real.xml")), Words{"nw"});
  EXPECT_EQ(folder.Read("real.xml.bak"), "an older backup");
  EXPECT_EQ(folder.Read("real.xml.bak2"), kBefore);
  struct stat status {};
  ASSERT_EQ(lstat(link.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(folder.Names(), (Words{"link.xml", "real.xml", "real.xml.bak", "real.xml.bak2"}));
}

// Nothing to change: the file is not even touched, and there is nothing to back up.
TEST(SokrunOutput, InPlaceLeavesAnUnchangedFileAlone) {
  const Folder folder;
  const std::string file = folder.Write("in.xml", kBefore);
  struct stat before {
  }, after{};
  stat(file.c_str(), &before);
  ASSERT_EQ(Sokrun({"clear", file, "--in-place", "--backup"}).exit_code, 0);
  stat(file.c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(folder.Names(), Words{"in.xml"});
}

TEST(SokrunOutput, MayBeTheInputItself) {
  const Folder folder;
  const std::string file = folder.Write("in.xml", kBefore);
  ASSERT_EQ(Sokrun({"fill", file, "-o", file}).exit_code, 0);
  EXPECT_EQ(Letters(folder.Read("in.xml")), Words{"nw"});
}

// A disk that is full in the middle of the file, once as a failing write and once as a signal that ends the process.
TEST(SokrunOutput, IsWhatItWasWhenWritingFails) {
  const Folder folder;
  const std::string in = folder.Write("in.xml", kBefore), out = folder.Write("out.xml", "an earlier result");
  for (const bool ignored : {true, false}) {
    for (const Words& arguments : {Words{"fill", in, "-o", out}, Words{"fill", in, "-i"}}) {
      const Ended ended = Sokrun(arguments, {.largest_file = 300, .ignore_limit_signal = ignored});
      EXPECT_EQ(ended.exit_code, ignored ? 1 : -1);
      EXPECT_EQ(ended.signal, ignored ? 0 : SIGXFSZ);
      EXPECT_EQ(folder.Read("in.xml"), kBefore);
      EXPECT_EQ(folder.Read("out.xml"), "an earlier result");
      EXPECT_EQ(folder.Names(), (Words{"in.xml", "out.xml"}));
    }
  }
}

}  // namespace
