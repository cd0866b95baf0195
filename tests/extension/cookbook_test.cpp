// The recipes of the cookbook: each one does to its score what the page shows.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <iterator>
#include <sstream>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/musicxml/score.h"
#include "host/musicxml/shapes.h"
#include "host/runner/report/frame_table.h"
#include "host/runner/run/bundle_session.h"

namespace {

using record_tags::kArticulation;

std::string FileText(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The text between two marks, empty when there is none.
std::string Between(const std::string& text, const std::string& open, const std::string& close) {
  const auto at = text.find(open);
  if (at == std::string::npos) return "";
  const auto first = at + open.size();
  return text.substr(first, text.find(close, first) - first);
}

std::string EntryText(const EXENTRY& entry, const sok::Document& document) {
  EDataID id{};
  id.entryDetail.entryNum = entry.number;
  int size = 0;
  const bool marked = document.records.Load(kArticulation, id, nullptr, &size);
  return sok::EntryText(entry) + (marked ? "." : "");
}

// The frames of the document as the page shows them; after a recipe also whether its shapes are gone.
std::string Picture(sok::Document& document) {
  std::ostringstream picture;
  for (short measure = 1; measure <= document.MeasureCount(); ++measure) {
    for (short layer = 0; layer < sok::kLayers; ++layer) {
      const std::vector<EXENTRY> entries = document.Entries({1, measure, layer});
      if (entries.empty()) continue;
      picture << measure << ".1." << layer << ":";
      for (const EXENTRY& entry : entries) picture << ' ' << EntryText(entry, document);
      picture << '\n';
    }
  }
  bool shapes = false;
  for (const unsigned int kind : {sok::kSmartShapeTag, sok::kMeasureMarkTag, sok::kEntryMarkTag}) {
    document.records.ForEach([&](unsigned int tag, const EDataID&, auto) { shapes |= tag == kind; });
  }
  return picture.str() + (shapes ? "" : "no shapes\n");
}

class Cookbook : public testing::TestWithParam<const char*> {};

TEST_P(Cookbook, DoesWhatThePageShows) {
  const std::string page = FileText(COOKBOOK);
  const std::string recipe = Between(page + "\n## ", std::string("\n## ") + GetParam() + "\n", "\n## ");
  const std::string before = Between(page, "```before\n", "```");
  const std::string after = Between(recipe, "```after\n", "```");
  const std::string alert = Between(recipe, "```alert\n", "```");
  ASSERT_NE(after.empty(), alert.empty());

  std::string bundle = GetParam();
  std::erase(bundle, ' ');
  const auto score = sok::Score::Read(FileText(COOKBOOK_SCORE), "cookbook.musicxml", {.document_data = true});
  sok::Session session;
  session.document = &score->document();
  EREGION region{{0, 1, 1, 0}, {0, 1, 2, INT_MAX}};
  EXPECT_EQ(Picture(*session.document), before);
  sok::BundleSession extension(BUNDLES + bundle + ".bundle", session);
  EXPECT_EQ(extension.Invoke(0, &region), after.empty() ? 0 : 1);
  EXPECT_EQ(Picture(*session.document), after.empty() ? before : after);
  EXPECT_EQ(session.alerts, std::vector<std::string>(alert.empty() ? 0 : 1, alert));
  EXPECT_EQ(session.frames_held + std::ssize(session.open_edits), 0);
}
INSTANTIATE_TEST_SUITE_P(Recipes, Cookbook,
                         testing::Values("Swap layers", "Double values", "Transpose", "A report",
                                         "Texts with caret commands", "Articulations", "Smart shapes"));

}  // namespace
