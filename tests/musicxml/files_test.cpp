// Files as they come: encodings, archives, timewise scores, and what is no score.

#include <gtest/gtest.h>
#include <zip.h>

#include "host/errors.h"
#include "host/musicxml/text/archive.h"
#include "host/musicxml/text/encoding.h"
#include "tests/musicxml/score_text.h"

namespace sok {
namespace {

struct Member {
  std::string name;
  std::string bytes;
  zip_int32_t method = ZIP_CM_DEFLATE;
};

std::string Zip(const std::vector<Member>& members) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_source_keep(source);
  zip_t* archive = zip_open_from_source(source, ZIP_CREATE | ZIP_TRUNCATE, &error);
  for (const Member& member : members) {
    zip_source_t* data = zip_source_buffer(archive, member.bytes.data(), member.bytes.size(), 0);
    const zip_int64_t index = zip_file_add(archive, member.name.c_str(), data, 0);
    zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), member.method, 0);
  }
  EXPECT_EQ(zip_close(archive), 0);
  zip_stat_t stat;
  zip_source_stat(source, &stat);
  std::string bytes(stat.size, '\0');
  zip_source_open(source);
  zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  zip_source_free(source);
  return bytes;
}

Member Container(const std::string& path) {
  const std::string file = "<rootfile full-path=\"" + path + "\"/><rootfile full-path=\"x\"/>";
  return {"META-INF/container.xml", "<container><rootfiles>" + file + "</rootfiles></container>"};
}

std::string WithHead(const std::string& head, const char* shorthand = "n4v1 |") { return head + ScoreText(shorthand); }

std::string Filled(const std::string& bytes) {
  const auto score = Score::Read(bytes, "score");
  EXPECT_EQ(score->Write(), bytes);
  FillMeasures(*score);
  return score->Write();
}

TEST(Files, KeepTheirEncoding) {
  struct {
    const char* encoding;
    std::string head;
    bool mark;
  } const kCases[] = {
      {"UTF-8", "<!DOCTYPE score-partwise PUBLIC \"-//x//\" \"http://nowhere/partwise.dtd\">", true},
      {"UTF-8", "<!DOCTYPE score-partwise [<!ENTITY a '>]'><!ENTITY b '&a;&a;'>]>", false},
      {"UTF-16LE", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><!-- \xC3\xA9\xF0\x9D\x84\x9E -->", true},
      {"UTF-16BE", "<?xml version=\"1.0\" encoding=\"UTF-16\"?>", true},
      {"UTF-16LE", "<?xml version=\"1.0\"?>", false},
      {"ISO-8859-1", "<?xml version='1.0' encoding='iso-8859-1'?><!-- \xC3\xA9 -->", false},
      {"SHIFT_JIS", "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><!-- \xE9\x9F\xB3 -->", false},
  };
  for (const auto& c : kCases) {
    const std::string head = (c.mark ? "\xEF\xBB\xBF" : "") + c.head;
    const std::string bytes = EncodeText(WithHead(head), c.encoding);
    EXPECT_EQ(Filled(bytes), EncodeText(WithHead(head, "n4v1 | R4v1"), c.encoding)) << c.encoding;
    EXPECT_EQ(Score::Read(bytes, "score")->encoding(), c.encoding);
  }
  const std::string untrue = WithHead("<?xml version=\"1.0\" encoding=\"UTF-16\"?>");
  EXPECT_EQ(Filled(untrue), WithHead("<?xml version=\"1.0\" encoding=\"UTF-16\"?>", "n4v1 | R4v1"));
  EXPECT_NE(Score::Read(untrue, "score")->warnings().at(0).text.find("UTF-16"), std::string::npos);
}

TEST(Files, ArchivesKeepAllButTheScore) {
  const Member picture{"a/picture.bin", std::string(5000, '\1'), ZIP_CM_STORE};  // stays, and is most of the zip
  const Member extra{"z.xml", "<other/>"};
  for (const zip_int32_t method : {ZIP_CM_STORE, ZIP_CM_DEFLATE}) {
    const std::string bytes = Zip({picture, Container("a/s.xml"), {"a/s.xml", ScoreText("n4v1 |"), method}, extra});
    const PackedScore unpacked = UnpackScore(Filled(bytes));
    EXPECT_EQ(unpacked.member, "a/s.xml");
    EXPECT_EQ(unpacked.bytes, ScoreText("n4v1 | R4v1"));
    EXPECT_EQ(RepackScore(Filled(bytes), {"a/s.xml", ScoreText("n4v1 |")}).size(), bytes.size());
  }
  EXPECT_EQ(UnpackScore(Zip({extra, {"s.musicxml", "x"}})).member, "z.xml");  // no container
}

TEST(Files, TimewiseScoresStayTimewise) {
  const auto score = [](const std::string& second) {
    return "<score-timewise><measure number=\"1\"><part id=\"P1\">" + second + "</part><part id=\"P2\">" +
           "<note><rest/><duration>4</duration><voice>1</voice><type>half</type></note></part></measure></"
           "score-timewise>";
  };
  EXPECT_EQ(Filled(score("")), score("<note><rest measure=\"yes\"/><duration>4</duration><voice>1</voice></note>"));
  EXPECT_EQ(Score::Read(score(""), "s")->form(), "score-timewise");
}

// Every cut of a text is refused and never anything else; what stands behind the score may go.
TEST(Files, CutTextsAreRefused) {
  const std::string text = WithHead("<?xml version=\"1.0\"?>", "S2 R4v1s1y b4 n4v5s2 | f4 || n4v1 | d e");
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_THROW(Score::Read(text.substr(0, size), "cut"), Error) << size;
  }
  const std::string zip = Zip({Container("s.xml"), {"s.xml", text}});
  for (std::size_t size = 0; size < zip.size(); ++size) {
    EXPECT_THROW(Score::Read(zip.substr(0, size), "cut"), Error) << size;
  }
}

TEST(Files, WhatIsNoScoreIsRefusedWithItsPlace) {
  std::string deep = "<score-partwise>";
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  const std::string bomb(std::size_t{40} << 20, ' ');
  const std::pair<std::string, const char*> kCases[] = {
      {"", "x: the file is empty"},
      {"hello", "x:1: not MusicXML: there is no XML element"},
      {"<html></html>", "x:1: not a MusicXML score: the root element is <html>"},
      {"<score-partwise>\n<part>\n<measure></part>", "x:3: "},
      {"<score-partwise>\n<part>\n<measure><note a=b></note></measure></part></score-partwise>",
       "x:3: not well-formed XML"},
      {std::string("<score-partwise>\0</score-partwise>", 34), "x: not a text"},
      {"\xFF\xFE<\0\x00\xD8", "x: the text is not UTF-16LE in line 1"},
      {"<?xml encoding='none-such'?><a/>", "x: the encoding NONE-SUCH is not known"},
      {"PK\3\4 no zip", "x: the zip cannot be read"},
      {deep, "x:1: "},
      {ScoreText("@7919 n1 @7927 n1 @7933 n1 @7937 n1 @7949 n1 @7951 n1"), "x:1: a duration is too large"},
      {Zip({{"a.txt", "x"}}), "x: the zip holds no score"},
      {Zip({Container("b.xml"), {"a.xml", "x"}}), "x: the zip holds no member b.xml"},
      {Zip({Container("b.xml"), {"b.xml", bomb}}), "x: the member b.xml is too large"},
      {Zip({Container("b.xml"), {"b.xml", "<score-partwise>\n<a>"}}), "x(b.xml):2: "},
  };
  for (const auto& [bytes, message] : kCases) {
    try {
      Score::Read(bytes, "x");
      ADD_FAILURE() << message;
    } catch (const Error& error) {
      EXPECT_TRUE(std::string_view(error.what()).starts_with(message)) << error.what();
    }
  }
}

}  // namespace
}  // namespace sok
