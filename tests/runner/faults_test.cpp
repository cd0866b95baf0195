// Whatever happens to sokrun, a file is what it was or wholly what it is to be.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <csignal>

#include "tests/runner/sokrun_process.h"

namespace {

using Words = std::vector<std::string>;

const std::string kBefore = ScoreText({{"Flute", "n."}, {"Oboe", "..."}});
const std::string kEarlier = "an earlier result";

// What a run is, on the files in/a.xml and in/b.xml, beside out/a.xml and out/b.xml of an earlier run.
struct Way {
  const char* name;
  Words arguments;
  std::string target;   // the folder that it writes to
  bool linked = false;  // the input has another name, so that it is written over
};
const Way kWays[] = {
    {"OneFile", {"fill", "in/a.xml", "-o", "out/a.xml"}, "out"},
    {"OverItself", {"fill", "in/a.xml", "-o", "in/a.xml"}, "in"},
    {"OverAllItsNames", {"fill", "in/a.xml", "-i"}, "in", true},
    {"SeveralAtATime", {"fill", "in", "--output-dir", "out", "-j", "2"}, "out"},
    {"SeveralWithBackups", {"fill", "in/a.xml", "in/b.xml", "-i", "--backup"}, "in"},
};

class Faults : public testing::TestWithParam<Way> {
 protected:
  static void SetUpTestSuite() {
    const Folder folder;
    ASSERT_EQ(Sokrun({"fill", folder.Write("a.xml", kBefore), "-i"}).exit_code, 0);
    after_ = folder.Read("a.xml");
  }

  // Runs with a fault; false when the run ended before the fault's moment.
  static bool Run(const std::string& fault, bool killed = false) {
    SCOPED_TRACE(fault);
    const Folder folder;
    for (const char* const name : {"a.xml", "b.xml"}) {
      folder.Write(std::string("in/") + name, kBefore);
      folder.Write(std::string("out/") + name, kEarlier);
    }
    if (GetParam().linked) std::filesystem::create_hard_link(folder / "in/a.xml", folder / "in/c.xml");
    Surroundings surroundings;
    // A list of names with blanks between them, unlike the folders.
    surroundings.environment = {"LD_PRELOAD=" FAULT_INJECTOR, "LD_LIBRARY_PATH=" FAULT_INJECTOR_FOLDER,
                                "ASAN_OPTIONS=verify_asan_link_order=0", "FAULT=" + fault};
    surroundings.folder = folder.path();
    const Ended ended = Sokrun(GetParam().arguments, surroundings);
    for (const std::string below : {"in", "out"}) {
      for (const std::string& name : folder.Names(below)) {
        const std::string bytes = folder.Read(below + "/" + name);
        const bool is_new = below == GetParam().target && name.ends_with(".xml") && bytes == after_;
        const bool is_old = bytes == (below == "in" ? kBefore : kEarlier);
        // Nobody is there to remove it, or to put back what it keeps of the file that was being written over.
        const bool is_kept_beside = GetParam().linked && (name == "a.xml" || name == "c.xml") &&
                                    std::ranges::any_of(folder.Names("in"), [&folder](const std::string& beside) {
                                      return beside.starts_with('.') && folder.Read("in/" + beside) == kBefore;
                                    });
        const bool is_left = killed && (name.starts_with('.') || is_kept_beside);
        EXPECT_TRUE(is_new || is_old || is_left) << below << "/" << name << ":\n" << bytes;
        const bool is_wanted = ended.exit_code == 0 && below == GetParam().target && name == "a.xml";
        EXPECT_TRUE(is_new || !is_wanted) << ended.err;
        const bool has_backup =
            folder.Read("in/" + name + ".bak") == kBefore || GetParam().arguments.back() != "--backup";
        EXPECT_TRUE(has_backup || !is_new) << name;
      }
    }
    if (std::isdigit(fault[0]) == 0) {
      EXPECT_EQ(ended.signal, 0) << ended.err;
      EXPECT_TRUE(ended.exit_code == 0 || (ended.exit_code == 1 && ended.err.find("sokrun: ") != std::string::npos))
          << ended.exit_code << ended.err;
    }
    return ended.err.find("(fault)") != std::string::npos;
  }

  static void AtEveryMoment(const std::string& fault, bool killed = false) {
    constexpr int kMostCalls = 200;  // that change files
    int moment = 1;
    while (Run(fault + std::to_string(moment), killed)) ASSERT_LT(++moment, kMostCalls);
    EXPECT_GT(moment, 1) << "no fault at all";
  }

 private:
  static std::string after_;
};
std::string Faults::after_;

TEST_P(Faults, KilledAtAnyMoment) {
  for (const int signal : {SIGKILL, SIGTERM, SIGINT}) AtEveryMoment(std::to_string(signal) + " ", signal == SIGKILL);
}

TEST_P(Faults, DiskFullAtAnyMoment) { AtEveryMoment("full "); }

TEST_P(Faults, MemoryShortAtManyMoments) {
#ifdef SANITIZED
  GTEST_SKIP() << "a sanitizer has an allocator of its own";
#endif
  constexpr int kStep = 61;
  for (const char* const kind : {"memory ", "dry "}) {
    int moment = kind[0];
    while (Run(kind + std::to_string(moment))) moment += kStep;
    EXPECT_GT(moment, kind[0]) << "no fault at all";
  }
}

INSTANTIATE_TEST_SUITE_P(Sokrun, Faults, testing::ValuesIn(kWays), [](const auto& way) { return way.param.name; });

// A file system that is really full in the middle of the file.
TEST(SokrunOutput, IsWhatItWasOnASmallDisk) {
  const Folder folder;
  const std::string in = folder.Write("in.xml", ScoreText({{"Flute", std::string(200, '.')}}));
  folder.Write("disk/out.xml", "");
  if (mount("none", (folder / "disk").c_str(), "tmpfs", 0, "size=16k") != 0) GTEST_SKIP() << "no disk to be had";
  folder.Write("disk/out.xml", kEarlier);
  const Ended ended = Sokrun({"fill", in, "-o", folder / "disk/out.xml"});
  const std::string out = folder.Read("disk/out.xml");
  const Words names = folder.Names("disk");
  umount((folder / "disk").c_str());
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_NE(ended.err.find("No space left on device"), std::string::npos) << ended.err;
  EXPECT_EQ(out, kEarlier);
  EXPECT_EQ(names, Words{"out.xml"});
}

}  // namespace
