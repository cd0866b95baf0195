// The example extensions at work on a real score.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/engine/document.h"
#include "host/engine/session.h"
#include "host/musicxml/score.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/validate/validate_score.h"

namespace {

using record_tags::kArticulation;
using record_tags::kArticulationDefinition;

class Example : public testing::Test {
 protected:
  Example() {
    std::ifstream file(DEMO_SCORE, std::ios::binary);
    text_.assign(std::istreambuf_iterator<char>(file), {});
    score_ = sok::Score::Read(text_, "demo.musicxml", {.document_data = true});
    session_.document = &score_->document();
  }

  sok::Document& document() { return score_->document(); }
  EREGION All() { return {{0, 1, 1, 0}, {0, document().StaffCount(), document().MeasureCount(), INT_MAX}}; }

  int CountInText(const std::string& part) const {
    int count = 0;
    for (auto at = text_.find(part); at != std::string::npos; at = text_.find(part, at + 1)) ++count;
    return count;
  }

  // Calls `visit` for every layer's entries in a staff and measure, top layer first, until it answers true.
  template <typename Visit>
  void ForEachFrame(short inst, short measure, Visit visit) {
    for (short layer = 0; layer < sok::kLayers; ++layer) {
      if (visit(document().Entries({inst, measure, layer}))) return;
    }
  }

  std::string text_;
  std::unique_ptr<sok::Score> score_;
  sok::Session session_;
};

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

TEST_F(Example, MinimalCountsTheNotesInTheScore) {
  sok::BundleSession bundle(MINIMAL, session_);
  EREGION region = All();
  EXPECT_EQ(bundle.Invoke(0, &region), 0);
  ASSERT_GT(CountInText("<pitch>"), 50);
  EXPECT_EQ(session_.alerts, std::vector<std::string>{"Notes: " + std::to_string(CountInText("<pitch>"))});
}

TEST_F(Example, ReportNamesEveryStaff) {
  sok::BundleSession bundle(REPORT_AND_TIDY, session_);
  EREGION region = All();
  EXPECT_EQ(bundle.Invoke(0, &region), 0);
  ASSERT_EQ(session_.alerts.size(), 1u);
  const std::string& report = session_.alerts[0];
  EXPECT_EQ(report.rfind("Measures 1 to " + std::to_string(document().MeasureCount()) + "\n", 0), 0u) << report;
  for (const sok::Staff& staff : score_->staves()) {
    EXPECT_NE(report.find("Staff " + std::to_string(staff.instrument) + ": " + staff.part_name + "\n"),
              std::string::npos)
        << report;
  }
}

// A slur and a hairpin on the first staff: nobody who selected another one asks for them.
TEST_F(Example, ReportListsTheShapesOfTheSelectedStaves) {
  score_ = sok::Score::Read(sok::kValidationScore, "shapes.musicxml", {.document_data = true});
  session_.document = &score_->document();
  sok::BundleSession bundle(REPORT_AND_TIDY, session_);
  EREGION region = All();
  bundle.Invoke(0, &region);
  region.start.slot = 2;
  bundle.Invoke(0, &region);
  ASSERT_EQ(session_.alerts.size(), 2u);
  EXPECT_TRUE(
      session_.alerts[0].ends_with("Shapes:\n"
                                   "  1: on notes, as slurs are, measures 1 to 1\n"
                                   "  2: on measures, as hairpins are, measures 1 to 1\n"))
      << session_.alerts[0];
  EXPECT_EQ(session_.alerts[1].find("Shapes:"), std::string::npos);
}

// An accent on a rest, on a second note, twice on one, or none at all in some measure.
TEST_F(Example, AccentsStandOnTheFirstNotesAndOnlyOnce) {
  sok::BundleSession bundle(REPORT_AND_TIDY, session_);
  EREGION region = All();
  EXPECT_EQ(bundle.Invoke(1, &region), 1);
  EXPECT_TRUE(session_.open_edits.empty());

  std::map<int, int> accents;  // by entry number
  short definition = 0;
  document().records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    if (tag == kArticulationDefinition && bytes[0] == '>') definition = static_cast<short>(id.other.cmper);
    if (tag == kArticulation) ++accents[id.entryDetail.entryNum];
  });
  EXPECT_GT(definition, 0);
  std::size_t expected = 0;
  for (short inst = 1; inst <= document().StaffCount(); ++inst) {
    for (short measure = 1; measure <= document().MeasureCount(); ++measure) {
      ForEachFrame(inst, measure, [&](const std::vector<EXENTRY>& frame) {
        const auto first = std::find_if(frame.begin(), frame.end(), IsNote);
        if (first == frame.end()) return false;
        ++expected;
        const int number = first->number;
        EXPECT_EQ(accents[number], 1) << "staff " << inst << ", measure " << measure;
        EXPECT_NE(first->flags & kEntryHasArticulations, 0u) << "staff " << inst << ", measure " << measure;
        return true;
      });
    }
  }
  EXPECT_GT(expected, 10u);
  EXPECT_EQ(accents.size(), expected);

  const sok::RecordStore before = document().records;
  EXPECT_EQ(bundle.Invoke(1, &region), 0);
  EXPECT_TRUE(document().records == before);
}

}  // namespace
