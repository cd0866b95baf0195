// The lines of a score, as the kit's smart shapes find them.
#include "host/musicxml/records/shapes.h"

#include <gtest/gtest.h>

#include <cstring>

#include "SokExtShared/LIB/notation/instrument_lists.h"
#include "SokExtShared/LIB/smartshapes/smart_shape.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "host/musicxml/score.h"
#include "tests/support/test_host.h"

namespace {

// A measure of one quarter a note; `lines` stand in the notes' notations.
std::string Note(const std::string& lines, int staff = 1, int voice = 1) {
  return "<note><pitch><step>C</step><octave>4</octave></pitch><duration>4</duration><voice>" + std::to_string(voice) +
         "</voice><type>quarter</type><staff>" + std::to_string(staff) + "</staff><notations>" + lines +
         "</notations></note>";
}

std::string Slur(const std::string& type, int number = 1) {
  return "<slur type=\"" + type + "\" number=\"" + std::to_string(number) + "\"/>";
}

std::string Direction(const std::string& line, int staff = 1) {
  return "<direction><direction-type>" + line + "</direction-type><staff>" + std::to_string(staff) +
         "</staff></direction>";
}

const std::string kBackup = "<backup><duration>4</duration></backup>";

std::unique_ptr<sok::Score> ScoreOf(const std::vector<std::string>& measures) {
  std::string text =
      "<score-partwise><part-list><score-part id=\"P1\"><part-name>Flute</part-name></score-part><score-part id=\"P2\">"
      "<part-name>Piano</part-name></score-part></part-list><part id=\"P1\">";
  for (std::size_t i = 0; i < measures.size(); ++i) text += "<measure number=\"1\"/>";
  text += "</part><part id=\"P2\">";
  for (const std::string& measure : measures) {
    text += "<measure number=\"1\"><attributes><divisions>4</divisions><staves>2</staves></attributes>" + measure +
            "</measure>";
  }
  sok::ReadOptions options;
  options.document_data = true;
  return sok::Score::Read(text + "</part></score-partwise>", "test", options);
}

// "kind staff-staff measure+position>measure+position"; slurs on entries with a # in front.
std::vector<std::string> Shapes(const sok::Score& score) {
  std::vector<std::string> found;
  score.document().records.ForEach([&](unsigned int tag, const EDataID&, std::span<const unsigned char> bytes) {
    if (tag != record_tags::kSmartShape) return;
    sok::ShapeRecord shape;
    std::memcpy(&shape, bytes.data(), sizeof shape);
    constexpr const char* kKinds[] = {"slur", "cresc", "dim", "octave", "bracket", "pedal"};
    std::string text = (shape.flags & sok::kShapeOnEntries) != 0 ? "#" : "";
    text += kKinds[static_cast<int>(shape.kind)] + (shape.octaves != 0 ? std::to_string(shape.octaves + 0) : "");
    text += " " + std::to_string(shape.start_instrument + 0) + "-" + std::to_string(shape.end_instrument + 0);
    text += " " + std::to_string(shape.start_measure + 0) + "+" + std::to_string(shape.start_position + 0);
    text += ">" + std::to_string(shape.end_measure + 0) + "+" + std::to_string(shape.end_position + 0);
    found.push_back(text);
  });
  return found;
}

// Numbers tell lines apart only while they are open, and the end of a line may come first in the text.
TEST(ScoreShapes, StartsAndEndsFindEachOther) {
  struct Case {
    const char* what;
    std::vector<std::string> measures;
    std::vector<std::string> shapes;
  };
  const Case kCases[] = {
      {"chained on one note, start written first",
       {Note(Slur("start")) + Note(Slur("start") + Slur("stop")) + Note(Slur("stop"))},
       {"#slur 2-2 1+0>1+1024", "#slur 2-2 1+1024>1+2048"}},
      {"one number reused by a later voice of the measure",
       {Note(Slur("start")) + Note(Slur("stop")) + kBackup + kBackup + Note(Slur("start"), 2, 5) +
        Note(Slur("stop"), 2, 5)},
       {"#slur 2-2 1+0>1+1024", "#slur 3-3 1+0>1+1024"}},
      {"across staves, its end first in the text",
       {Note("") + Note(Slur("stop")) + kBackup + kBackup + Note(Slur("start"), 2, 5)},
       {"#slur 3-2 1+0>1+1024"}},
      {"two staves at once without numbers, ends in the other order",
       {Direction("<wedge type=\"crescendo\"/>") + Direction("<wedge type=\"diminuendo\"/>", 2) + Note("") +
        Direction("<wedge type=\"stop\"/>") + Note("") + Direction("<wedge type=\"stop\"/>", 2)},
       {"cresc 2-2 1+0>1+1024", "dim 3-3 1+0>1+2048"}},
      {"octaves, brackets, a pedal that changes",
       {Direction("<octave-shift type=\"down\"/>") + Direction("<octave-shift type=\"up\" size=\"15\" number=\"2\"/>") +
        Direction("<bracket type=\"start\"/>") + Direction("<pedal type=\"start\"/>") + Note("") +
        Direction("<octave-shift type=\"stop\"/><pedal type=\"change\"/>") +
        "<direction><direction-type><octave-shift type=\"stop\" "
        "number=\"2\"/></direction-type><offset>2</offset></direction>" +
        Note("") + Direction("<bracket type=\"stop\"/>") + Direction("<pedal type=\"stop\"/>")},
       {"octave1 2-2 1+0>1+1024", "pedal 2-2 1+0>1+1024", "octave-2 2-2 1+0>1+1536", "bracket 2-2 1+0>1+2048",
        "pedal 2-2 1+1024>1+2048"}},
  };
  for (const Case& c : kCases) EXPECT_EQ(Shapes(*ScoreOf(c.measures)), c.shapes) << c.what;
}

// What the kit would have created: erasing every shape with the kit leaves no mark behind, and the lists hold the
// staves.
TEST(ScoreShapes, AreWhatTheKitExpects) {
  const auto score = ScoreOf({Note(Slur("start")) + Direction("<wedge type=\"crescendo\"/>"), "", "",
                              Note(Slur("stop")) + Note("") + Direction("<wedge type=\"stop\"/>")});
  TestHost host;
  host.session.document = &score->document();
  SokVersion = 0x0B000000;
  EXPECT_EQ(InstInLists(1, 1, true, true), 15);
  EXPECT_EQ(InstInLists(2, 1, true, true), 0);
  EXPECT_EQ(InstInLists(3, 2, true, true), 15);
  EXPECT_EQ(score->document().SlotToInst(2, 2), 3);
  EDTSmartShape shape{};
  for (unsigned short number = 0; shape.Next(number);) EXPECT_TRUE(shape.FullErase(number));
  score->document().records.ForEach([](unsigned int tag, const EDataID&, auto) {
    for (const unsigned int left :
         {record_tags::kCenterShape, record_tags::kSmartShapeMeasureMark, record_tags::kSmartShapeEntryMark})
      EXPECT_NE(tag, left);
  });
  EXPECT_EQ(host.CallsWith("SX_DeleteEData").size(), 2u + 2 * 6 + 2);  // two shapes over four measures, one on entries
}

}  // namespace
