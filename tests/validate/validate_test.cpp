// `sokrun validate` on sound extensions and on bundles with one fault each.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "tests/support/shell.h"

namespace {

ShellResult Validate(const std::string& bundle, const std::string& options) {
  return Shell(Quoted(SOKRUN) + " validate " + Quoted(bundle) + " " + options + " 2>/dev/null");
}

class SoundExtension : public testing::TestWithParam<const char*> {};

// A validator that finds faults where there are none is worth as little as one that finds none.
TEST_P(SoundExtension, PassesEveryCheck) {
  const ShellResult outcome = Validate(GetParam(), "--json --seed 3 --refusals 150");
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  const auto report = nlohmann::json::parse(outcome.out);
  EXPECT_TRUE(report["passed"]);
  EXPECT_EQ(report["failed"], 0);
  std::set<std::string> kinds;
  for (const auto& check : report["checks"]) kinds.insert(check["check"]);
  EXPECT_EQ(kinds.size(), 13u);
  EXPECT_GT(report["run"], 60);
}
INSTANTIATE_TEST_SUITE_P(Validate, SoundExtension, testing::Values(MEASURE_RESTS, MINIMAL, REPORT_AND_TIDY));

struct FaultCase {
  const char* bundle;
  std::set<std::string> kinds;  // that fail, and no others
  const char* message;          // what the first one says
  const char* options = "--rounds 0";
};

const FaultCase kFaultCases[] = {
    {"MISSING_ALIAS", {"symbols"}, "does not export Ext_invoke"},
    {"VISIBLE", {"hidden-names"}, "exports SX_"},
    {"VERSION", {"version"}, "Ext_getversion does not keep the host's version"},
    {"START", {"start"}, "SonkelExtensionInit does not set the word to 0"},
    {"TEXT", {"texts"}, "Ext_enumerate_UTF16, command 0: text 1 is not ended within its 128 units"},
    {"UNKNOWN", {"unknown-commands"}, "Ext_enumerate_UTF16, command 1: writes into the record"},
    {"SILENT", {"no-selection"}, "does not show one alert"},
    {"MISSING_TEXT", {"no-selection"}, "shows the alert \"29999\""},
    {"KEPT_FRAME", {"frames"}, "keeps 1 of the host's frames; one of them was loaded with (0 1 1 0 1)"},
    {"FREED_TWICE", {"frames"}, "frees a frame that it does not hold"},
    {"OPEN_EDIT", {"edits"}, "opens 1 edits and closes 0"},
    {"CALL_VERSION",
     {"call-versions"},
     "calls SX_GetMaxLayers with the interface version 0xE000000 instead of 0x19300000"},
    {"HANG", {"call-versions", "edits", "frames"}, "longer than it may", "--rounds 0 --timeout 3"},
    {"SLOW_START", {"symbols"}, "longer than it may", "--timeout 1"},
    {"EXIT", {"call-versions", "edits", "frames"}, "ended the process"},
    {"MISSING", {"failing", "missing"}, "the process that ran the extension"},
    {"REFUSED", {"failing", "missing"}, "keeps 1 of the host's frames"},
    {"RANDOM", {"random"}, "the process that ran the extension", "--rounds 100 --seed 5"},
};

void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.bundle; }

class FaultyExtension : public testing::TestWithParam<FaultCase> {};

TEST_P(FaultyExtension, FailsAtItsCheckAlone) {
  const FaultCase& c = GetParam();
  const std::string bundle = std::string(FAULTY_BUNDLES "/faulty_") + c.bundle + ".bundle";
  const ShellResult outcome = Validate(bundle, std::string("--json --only-failed ") + c.options);
  EXPECT_EQ(outcome.status, 1);
  const auto report = nlohmann::json::parse(outcome.out);
  std::set<std::string> kinds;
  for (const auto& check : report["checks"]) {
    EXPECT_FALSE(check["passed"]);
    kinds.insert(check["check"]);
  }
  EXPECT_EQ(kinds, c.kinds) << outcome.out;
  ASSERT_FALSE(report["checks"].empty());
  EXPECT_NE(report["checks"][0]["failure"].get<std::string>().find(c.message), std::string::npos) << outcome.out;
}
INSTANTIATE_TEST_SUITE_P(Validate, FaultyExtension, testing::ValuesIn(kFaultCases),
                         [](const auto& c) { return std::string(c.param.bundle); });

// Options that select nothing, and bundles that are not there, must not look like success.
TEST(Validate, NothingCheckedIsAFailure) {
  EXPECT_EQ(Validate(MEASURE_RESTS, "--check version").status, 0);
  EXPECT_EQ(Validate(MEASURE_RESTS, "--check no-such-check").status, 1);
  EXPECT_EQ(Validate(MEASURE_RESTS, "--check random --rounds 0").status, 1);
  EXPECT_EQ(Validate(FAULTY_BUNDLES "/absent.bundle", "").status, 1);
  EXPECT_EQ(Validate(FAULTY_BUNDLES, "").status, 1);
}

}  // namespace
