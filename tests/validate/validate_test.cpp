// `sokrun validate` on sound extensions and on extensions with one fault each.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "tests/support/shell.h"

namespace {

namespace fs = std::filesystem;

using Kinds = std::set<std::string>;

ShellResult Validate(const std::string& arguments, const std::string& fault = "") {
  return Shell("FAULT=" + fault + " " + Quoted(SOKRUN) + " validate " + arguments + " 2>/dev/null");
}

// A copy of the extension, beside it.
std::string CopyOfFaulty(const std::string& name) {
  const fs::path copy = fs::path(FAULTY).parent_path() / (name + ".bundle");
  fs::remove_all(copy);
  fs::copy(FAULTY, copy, fs::copy_options::recursive);
  return copy.string();
}

class SoundExtension : public testing::TestWithParam<const char*> {};

// A validator that finds faults where there are none is worth as little as one that finds none.
TEST_P(SoundExtension, PassesEveryCheck) {
  const ShellResult outcome = Validate(Quoted(GetParam()) + " --json --seed 3 --refusals 150");
  EXPECT_EQ(outcome.status, 0) << outcome.out;
  const auto report = nlohmann::json::parse(outcome.out);
  EXPECT_TRUE(report["passed"]);
  EXPECT_EQ(report["failed"], 0);
  Kinds kinds;
  for (const auto& check : report["checks"]) kinds.insert(check["check"]);
  EXPECT_EQ(kinds.size(), 22u);
  EXPECT_GT(report["run"], 60);
  EXPECT_TRUE(report["skipped"].empty());
}
INSTANTIATE_TEST_SUITE_P(Validate, SoundExtension, testing::Values(MEASURE_RESTS, MINIMAL, REPORT_AND_TIDY, FAULTY));

struct FaultCase {
  const char* fault;
  Kinds kinds;          // that fail, and no others
  const char* message;  // in what the first one says
  const char* options = "--check runs";
  const char* edit = "";  // a command for the shell that changes a copy of the bundle, in Contents
};

constexpr const char* kAll = "--rounds 0";
constexpr const char* kCrash = "the last host call was number ";

const FaultCase kFaultCases[] = {
    {"MISSING_ALIAS", {"symbols"}, "does not export Ext_invoke", kAll, "sed -i s/Ext_invoke/Ext_invokf/ MacOS/Faulty"},
    {"VISIBLE", {"hidden-names"}, "exports SX_", kAll, "cp \"" VISIBLE "\" MacOS/Faulty"},
    {"NO_IDENTIFIER", {"bundle"}, "Info.plist: has no CFBundleIdentifier", kAll, "sed -i s/Identifier/Id/ Info.plist"},
    {"NO_EXECUTABLE", {"bundle"}, "looked for Contents/MacOS/Faulty, which its", kAll, "rm MacOS/Faulty"},
    {"NO_LIBRARY",
     {"bundle"},
     "Contents/MacOS/Faulty: libSokPlatforn.so: cannot open",
     kAll,
     "sed -i s/libSokPlatform/libSokPlatforn/ MacOS/Faulty"},
    {"BROKEN_TABLE",
     {"languages"},
     "de.lproj/Localizable.strings: line 3 is wrong",
     "--check languages",
     "sed -i '3s/;//' Resources/de.lproj/*"},
    {"LANGUAGE",
     {"languages"},
     "de.lproj/Localizable.strings: lacks 20002, 20004, which en has",
     "--check languages",
     "sed -i '3d;5d' Resources/de.lproj/*"},
    {"LONG_TEXT",
     {"languages"},
     "Localizable.strings: 20001 has more than the 127 units",
     kAll,
     "sed -i \"2s/D/Do$(printf %0130d 0)/\" Resources/en.lproj/*"},
    {"VERSION", {"version"}, "Ext_getversion does not keep the host's version", kAll},
    {"START", {"start"}, "SonkelExtensionInit does not set the word to 0", kAll},
    {"SWAPPED_STATUS", {"start"}, "Ext_getmenustatus does not answer 1", kAll},
    {"TEXT", {"texts"}, "Ext_enumerate_UTF16, command 0: text 1 is not ended within its 128 units", kAll},
    {"SWAPPED_TEXTS", {"texts"}, "Ext_enumerate_UTF16, command 0: text 0 is another one", kAll},
    {"UNKNOWN", {"unknown-commands"}, "Ext_enumerate_UTF16, command 2: writes into the record", kAll},
    {"SILENT", {"no-selection"}, "does not show one alert", kAll},
    {"MISSING_TEXT", {"no-selection"}, "shows the alert \"29999\"", kAll},
    {"SWAPPED_COMMANDS", {"aliases"}, "Ext_invoke runs command 1", kAll},
    {"KEPT_FRAME", {"frames"}, "keeps 1 frame of the host, such as that of staff 1, measure 1, layer 0"},
    {"FREED_TWICE", {"frames"}, "hands the frame of staff 1, measure 1, layer 0, which it has freed, to SX_FreeTGF"},
    {"FREED_USED", {"runs"}, "uses the frame of staff 1, measure 1, layer 0, which it has freed"},
    {"OPEN_EDIT", {"edits"}, "opens 1 edit and closes 0"},
    {"ENDED_TWICE", {"edits"}, "ends 1 edit more than it starts", "--check edits"},
    {"PARTLY_EDITED", {"edits"}, "changes the score outside of it: SX_SaveTGF of staff 1, measure 1, layer 0;"},
    {"EDITED_LATE", {"edits"}, "changes the score outside of it: SX_SaveTGF of staff 1, measure 1, layer 0;"},
    {"CALL_VERSION", {"calls"}, "calls SX_GetMaxLayers with the interface version 0x0E000000 instead of 0x19300000"},
    {"THREAD", {"calls"}, "calls SX_GetMaxLayers from a thread of its own"},
    {"OUTSIDE", {"selection"}, "changes staff 2, measure 1, layer 0; selected are staff 2, measures 2 to 3"},
    {"OUTSIDE_AFTER", {"selection"}, "changes staff 2, measure 4, layer 0; selected are staff 2, measures 2 to 3"},
    {"ANSWER_0", {"answers"}, "answers 0 (nothing was changed) although it changed staff 1, measure 1, layer 0"},
    {"ANSWER_1", {"answers"}, "answers 1 (something was changed) although it changed nothing"},
    {"ANSWER_1_AT_END", {"answers"}, "answers 1 (something was changed) although it changed nothing"},
    {"ANSWER_5", {"answers"}, "answers 5"},
    {"NOTES_13", {"entries"}, "staff 1, measure 1, layer 0: entry 0 has 13 notes"},
    {"VALUE_0", {"entries"}, "entry 0 lasts 0"},
    {"PITCH", {"entries"}, "entry 0 has a pitch 42 steps from middle C"},
    {"NUMBER_0", {"entries"}, "entry 0 has the number 0"},
    {"NUMBERS_ALIKE", {"entries"}, "as has one before it"},
    {"INSTRUMENT", {"document"}, "deletes the record SOIS 1,0, the definition of an instrument"},
    {"PART", {"document"}, "leaves another part current, number 1, where 0 was"},
    {"ALERT_KEY", {"alerts"}, "shows the alert \"29999\""},
    {"ALERT_EMPTY", {"alerts"}, "shows an alert without a text"},
    {"EXCEPTION", {"runs"}, "threw an exception: no luck"},
    {"HANG", {"runs"}, "longer than it may", "--check runs --timeout 2"},
    {"SLOW_START", {"bundle"}, "longer than it may", "--timeout 1"},
    {"EXIT", {"runs"}, "ended the process"},
    {"MISSING", {"failing", "missing"}, kCrash, kAll},
    {"REFUSED", {"failing", "missing"}, "keeps 1 frame", kAll},
    {"RANDOM", {"random"}, kCrash, "--check random --rounds 100 --seed 5"},
};

void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.fault; }

class FaultyExtension : public testing::TestWithParam<FaultCase> {};

TEST_P(FaultyExtension, FailsAtItsCheckAlone) {
  const FaultCase& c = GetParam();
  const std::string bundle = CopyOfFaulty(c.fault);
  ASSERT_EQ(Shell("cd " + Quoted(bundle + "/Contents") + " && true " + (*c.edit != '\0' ? "&& " : "") + c.edit).status,
            0);
  const ShellResult outcome = Validate(Quoted(bundle) + " --json --only-failed " + c.options, c.fault);
  fs::remove_all(bundle);
  EXPECT_EQ(outcome.status, 1);
  const auto report = nlohmann::json::parse(outcome.out);
  Kinds kinds;
  for (const auto& check : report["checks"]) {
    EXPECT_FALSE(check["passed"]);
    kinds.insert(check["check"]);
  }
  EXPECT_EQ(kinds, c.kinds) << outcome.out;
  ASSERT_FALSE(report["checks"].empty());
  EXPECT_NE(report["checks"][0]["failure"].get<std::string>().find(c.message), std::string::npos) << outcome.out;
}
INSTANTIATE_TEST_SUITE_P(Validate, FaultyExtension, testing::ValuesIn(kFaultCases),
                         [](const auto& c) { return std::string(c.param.fault); });

struct TextCase {
  const char* arguments;
  int status;
  const char* out;  // is in the report; empty: need not be
  const char* fault = "";
};

const TextCase kTextCases[] = {
    // What selects nothing, and bundles that are not there, must not look like success.
    {"\"" FAULTY "\" --check nosuch", 2, ""},
    {"\"" FAULTY "\" --only \"failing x\"", 2, ""},
    {"\"" FAULTY "\" --check random --rounds 0", 1, "skipped       random: no rounds are asked for"},
    {"\"" FAULTY "\" --only \"failing 5000\"", 1, "0 checks"},
    {"\"" FAULTY "x\"", 1, ""},
    {"\"" FAULTY "/Contents\"", 1, "failing, random: the bundle cannot be loaded"},
    {"\"" FAULTY "\" --check version", 0, "1 check, 0 failed"},
    // Equal faults stand once, what did not run is said, and a case can be run again.
    {"\"" FAULTY "\" --check random --rounds 100 --seed 5", 1, "the same in ", "RANDOM"},
    {"\"" FAULTY "\" --check edits", 0, "command 0, while other edits are open: no exception can be thrown",
     "OPAQUE_EDIT"},
    {"\"" FAULTY "\" --rounds 0", 1, "skipped       aliases, missing, failing, random: command 0 fails on a sound host",
     "KEPT_FRAME"},
    {"\"" FAULTY "\" --in-process --only \"failing 2\"", 1, "failing 2, command 0, call 2 (SX_SaveTGF)", "REFUSED"},
    {"\"" FAULTY "\" --in-process --only \"runs 0\"", 1, "--in-process --only \"runs 0\"", "EXCEPTION"},
};

class ValidateReport : public testing::TestWithParam<TextCase> {};

TEST_P(ValidateReport, SaysWhatWasDone) {
  const TextCase& c = GetParam();
  const ShellResult outcome = Validate(c.arguments, c.fault);
  EXPECT_EQ(outcome.status, c.status) << c.arguments << '\n' << outcome.out;
  EXPECT_NE(outcome.out.find(c.out), std::string::npos) << c.arguments << '\n' << outcome.out;
}
INSTANTIATE_TEST_SUITE_P(Validate, ValidateReport, testing::ValuesIn(kTextCases));

TEST(Validate, SanitizersNameTheFault) {
  if (!fs::exists(SANITIZED)) GTEST_SKIP() << "everything is built with sanitizers";
  EXPECT_EQ(Validate(Quoted(FAULTY) + " --sanitize").status, 2);  // it is built without them
  const std::string bundle = CopyOfFaulty("SANITIZED");
  fs::copy_file(SANITIZED, bundle + "/Contents/MacOS/Faulty", fs::copy_options::overwrite_existing);
  EXPECT_EQ(Validate(Quoted(bundle) + " --sanitize --check runs").status, 0);
  const ShellResult outcome = Validate(Quoted(bundle) + " --sanitize --check runs", "OVERFLOW");
  fs::remove_all(bundle);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("heap-buffer-overflow"), std::string::npos) << outcome.out;
}

}  // namespace
