// Files are replaced whole or not at all.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;

const std::string kBefore = ScoreText({{"Flute", "n."}});

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status;
}

// An access list with rights for user 1 under a mask, as the file system stores it.
constexpr unsigned char kAccessList[] = {2, 0, 0,   0,   1,   0,   6,  0, 255, 255, 255, 255, 2,   0,  4,
                                         0, 1, 0,   0,   0,   4,   0,  0, 0,   255, 255, 255, 255, 16, 0,
                                         4, 0, 255, 255, 255, 255, 32, 0, 0,   0,   255, 255, 255, 255};
constexpr const char* kAttributes[] = {"system.posix_acl_access", "user.sokrun"};

std::string Attribute(const std::string& path, const char* name) {
  char value[256];
  const ssize_t size = getxattr(path.c_str(), name, value, sizeof value);
  return {value, size > 0 ? static_cast<std::size_t>(size) : 0};
}

// Whoever may use a file may use it afterwards, and nobody else; its other names, and links to it, still lead to it.
TEST(SokrunOutput, InPlaceKeepsRightsLinksAndOriginals) {
  for (const bool linked : {false, true}) {
    const Folder folder;
    const std::string file = folder.Write("real.xml", kBefore), link = folder / "link.xml";
    ASSERT_EQ(symlink(file.c_str(), link.c_str()), 0);
    const bool owned = geteuid() != 0 || chown(file.c_str(), 1, 1) == 0;
    ASSERT_TRUE(owned && (!linked || ::link(file.c_str(), (folder / "same.xml").c_str()) == 0));
    folder.Write("real.xml.bak", "an older backup");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    for (const char* const name : kAttributes) {  // where the file system has them
      const bool set = setxattr(file.c_str(), name, kAccessList, sizeof kAccessList, 0) == 0;
      EXPECT_TRUE(set || errno == ENOTSUP) << name;
    }
    const struct stat before = StatusOf(file);
    const std::string attributes[] = {Attribute(file, kAttributes[0]), Attribute(file, kAttributes[1])};

    const Ended ended = Sokrun({"fill", link, "--in-place", "--backup"});
    EXPECT_EQ(ended.exit_code, 0) << ended.err;
    EXPECT_EQ(Letters(folder.Read("real.xml")), Words{"nw"});
    EXPECT_EQ(folder.Read("real.xml.bak2"), kBefore);
    for (const std::string name : {"real.xml", "real.xml.bak2"}) {
      const struct stat after = StatusOf(folder / name);
      EXPECT_EQ(after.st_mode, before.st_mode) << name;
      EXPECT_EQ(std::pair(after.st_uid, after.st_gid), std::pair(before.st_uid, before.st_gid)) << name;
      for (int i : {0, 1}) EXPECT_EQ(Attribute(folder / name, kAttributes[i]), attributes[i]) << name << i;
    }
    EXPECT_EQ(folder.Names().size(), linked ? 5u : 4u);
    EXPECT_EQ(StatusOf(folder / (linked ? "same.xml" : "real.xml")).st_ino, StatusOf(file).st_ino);
  }
}

TEST(SokrunOutput, LeavesWhatChangedMeanwhileAlone) {
  const Folder folder;
  const std::string file = folder.Write("in.xml", kBefore);
  const Ended ended =
      Sokrun({"fill", file, "-i"}, {.environment = {"LD_PRELOAD=" FAULT_INJECTOR, "FAULT=touch 1", "TOUCHED=" + file,
                                                    "ASAN_OPTIONS=verify_asan_link_order=0"}});
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_NE(ended.err.find("changed while it was being worked on"), std::string::npos) << ended.err;
  EXPECT_TRUE(folder.Read("in.xml").starts_with(kBefore + "\n"));
}

TEST(SokrunOutput, TakesLongNamesAndNoLinksThatLeadNowhere) {
  const Folder folder;
  const std::string file = folder.Write(std::string(251, 'x') + ".xml", kBefore);
  EXPECT_EQ(Sokrun({"fill", file, "-i"}).exit_code, 0);
  for (const std::string target : {"nowhere", "link"}) {
    ASSERT_EQ(symlink(target.c_str(), (folder / "link").c_str()), 0);
    EXPECT_EQ(Sokrun({"fill", file, "-o", folder / "link"}).exit_code, 1);
    ASSERT_EQ(unlink((folder / "link").c_str()), 0) << "was replaced";
  }
  EXPECT_EQ(folder.Names().size(), 1u);
}

// Nothing to change: the file is not even touched, and there is nothing to back up.
TEST(SokrunOutput, InPlaceLeavesAnUnchangedFileAlone) {
  const Folder folder;
  const std::string file = folder.Write("in.xml", kBefore);
  const struct stat before = StatusOf(file);
  ASSERT_EQ(Sokrun({"clear", file, "--in-place", "--backup"}).exit_code, 0);
  EXPECT_EQ(before.st_ino, StatusOf(file).st_ino);
  EXPECT_EQ(folder.Names(), Words{"in.xml"});
}

}  // namespace
