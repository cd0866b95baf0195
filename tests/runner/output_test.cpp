// Files are replaced whole or not at all.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

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

}  // namespace
