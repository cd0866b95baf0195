#include "host/musicxml/records/texts.h"

#include <algorithm>
#include <map>
#include <utility>

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/text/encoding.h"

namespace sok {

namespace {

// Characters that have a command of their own, or stand for the caret, which cannot be written.
struct Substitute {
  std::string_view character;
  std::string_view text;
};
constexpr Substitute kSubstitutes[] = {{"^", "\u02C6"}, {"\u266D", "^flat()"}, {"\u266F", "^sharp()"}};

std::string Substituted(std::string text) {
  for (const Substitute& substitute : kSubstitutes) {
    for (std::size_t at = 0; (at = text.find(substitute.character, at)) != std::string::npos;
         at += substitute.text.size()) {
      text.replace(at, substitute.character.size(), substitute.text);
    }
  }
  return text;
}

// A text put together from elements that each say how they look; what one leaves open is as in the one before.
class CaretText {
 public:
  void Add(pugi::xml_node element) { Add(element, element.text().get()); }

  void Add(pugi::xml_node element, const std::string& text) {
    if (text.empty()) return;
    Command("font", element.attribute("font-family"), font_);
    Command("size", element.attribute("font-size"), size_);
    const std::string styles = Styles();
    if (const auto weight = element.attribute("font-weight")) bold_ = weight.value() == std::string_view("bold");
    if (const auto style = element.attribute("font-style")) italic_ = style.value() == std::string_view("italic");
    if (const auto lines = element.attribute("underline")) underline_ = lines.as_int() > 0;
    if (Styles() != styles) text_ += "^efx(" + Styles() + ")";
    text_ += Substituted(text);
    blank_ = blank_ && text.find_first_not_of(" \t\r\n") == std::string::npos;
  }

  // Empty when nothing but white space was added.
  std::string Take() { return blank_ ? std::string() : std::move(text_); }

 private:
  void Command(const char* keyword, pugi::xml_attribute attribute, std::string& current) {
    std::string value = attribute.value();
    std::erase(value, ')');  // would end the command
    if (value.empty() || value == current) return;
    current = value;
    text_ += std::string("^") + keyword + "(" + value + ")";
  }

  std::string Styles() const {
    std::string styles;
    for (const auto& [on, name] : {std::pair(bold_, ",bold"), {italic_, ",italic"}, {underline_, ",underline"}}) {
      if (on) styles += name;
    }
    return styles.empty() ? "plain" : styles.substr(1);
  }

  std::string text_;
  std::string font_;
  std::string size_;
  bool bold_ = false;
  bool italic_ = false;
  bool underline_ = false;
  bool blank_ = true;
};

class TextWriter {
 public:
  explicit TextWriter(const ReaderContext& context) : context_(context), records_(context.document.records) {}

  void AddInstrumentNames() {
    std::map<int, std::pair<unsigned short, unsigned short>> names;  // by part: one pair of blocks for all its staves
    for (const Staff& staff : context_.staves) {
      if (!names.contains(staff.part)) {
        const pugi::xml_node part =
            context_.root.child("part-list").find_child_by_attribute("score-part", "id", staff.part_id.c_str());
        names[staff.part] = {AddBlock(NameOf(part, "part-name-display", "part-name")),
                             AddBlock(NameOf(part, "part-abbreviation-display", "part-abbreviation"))};
      }
      EDataID id{};
      id.other.cmper = static_cast<unsigned short>(staff.instrument);
      EDTInstDefinition record{};
      int size = sizeof record;
      records_.Load(record_tags::kInstrument, id, &record, &size);
      record.fullName = static_cast<short>(names[staff.part].first);
      record.abbreviatedName = static_cast<short>(names[staff.part].second);
      records_.Save(record_tags::kInstrument, id, &record, sizeof record);
    }
  }

  void AddPageTexts() {
    bool any = false;
    for (const pugi::xml_node credit : context_.root.children("credit")) {
      CaretText text;
      for (const pugi::xml_node words : credit.children("credit-words")) text.Add(words);
      any |= AddPageText(credit.attribute("page").as_uint(1), text.Take());
    }
    if (any) return;
    const pugi::xml_node identification = context_.root.child("identification");
    AddTitle(context_.root.child("work").child("work-title"));
    AddTitle(context_.root.child("movement-title"));
    for (const pugi::xml_node creator : identification.children("creator")) AddTitle(creator);
    for (const pugi::xml_node rights : identification.children("rights")) AddTitle(rights);
  }

  void AddMeasureTexts(pugi::xml_node node, int part, short measure) {
    for (const pugi::xml_node direction : node.children("direction")) {
      const short slot = context_.SlotOf(part, direction.child("staff").text().as_int(1));
      if (slot == 0) continue;
      for (const pugi::xml_node type : direction.children("direction-type")) {
        CaretText text;
        for (const pugi::xml_node words : type.children("words")) text.Add(words);
        AddMeasureText(context_.staves[static_cast<std::size_t>(slot - 1)].instrument, measure, text.Take());
      }
    }
  }

 private:
  // A name as it is displayed, or as it is spelt where the score does not say how.
  static std::string NameOf(pugi::xml_node part, const char* display, const char* plain) {
    CaretText text;
    for (const pugi::xml_node piece : part.child(display)) {
      const std::string_view kind = piece.name();
      const std::string_view value = piece.text().get();
      if (kind == "display-text") text.Add(piece);
      if (kind == "accidental-text" && value == "flat") text.Add(piece, "\u266D");
      if (kind == "accidental-text" && value == "sharp") text.Add(piece, "\u266F");
    }
    if (!part.child(display)) text.Add(part.child(plain));
    return text.Take();
  }

  // The number of a new text block, 0 for an empty text or when there is none left.
  unsigned short AddBlock(const std::string& text) {
    if (text.empty() || full_) return 0;
    std::string units = EncodeText(text, "UTF-16LE");
    units.append(2, '\0');
    const unsigned short number = Create(record_tags::kRawText, EDataID::kHostChooses, 0, units.data(), units.size());
    full_ = number == 0;
    if (full_) return 0;
    const EDTTextBlock2004 block = {static_cast<short>(number), {}, EDTTextBlock2004::kOrdinaryKind};
    const unsigned short made = Create(record_tags::kTextBlock, EDataID::kHostChooses, 0, &block, sizeof block);
    full_ = made == 0;
    return made;
  }

  void AddTitle(pugi::xml_node element) {
    CaretText text;
    text.Add(element);
    AddPageText(1, text.Take());
  }

  bool AddPageText(unsigned int page, const std::string& text) {
    const unsigned short block = AddBlock(text);
    const EDTPageText record = {static_cast<short>(block), {}};
    return block != 0 &&
           Create(record_tags::kPageText, static_cast<unsigned short>(page), -1, &record, sizeof record) != 0;
  }

  void AddMeasureText(short instrument, short measure, const std::string& text) {
    const std::pair place(instrument, measure);
    if (place == full_place_) return;
    const unsigned short block = AddBlock(text);
    if (block == 0) return;
    const EDTMeasureText record = {static_cast<short>(block), {}};
    EDataID id{};
    id.detail.cmper = static_cast<unsigned short>(instrument);
    id.detail.secondCmper = static_cast<unsigned short>(measure);
    id.detail.subIndex = -1;
    if (!records_.Create(record_tags::kMeasureText, id, &record, sizeof record)) full_place_ = place;
  }

  // The record's number, 0 when it could not be added.
  unsigned short Create(unsigned int tag, unsigned short number, short index, const void* record, std::size_t size) {
    EDataID id{};
    id.other.cmper = number;
    id.other.subIndex = index;
    return records_.Create(tag, id, record, static_cast<int>(size)) ? id.other.cmper : static_cast<unsigned short>(0);
  }

  const ReaderContext& context_;
  RecordStore& records_;
  bool full_ = false;                   // there is no number left for another text
  std::pair<short, short> full_place_;  // a staff and measure without an index left
};

}  // namespace

void AddTexts(const ReaderContext& context) {
  TextWriter writer(context);
  writer.AddInstrumentNames();
  writer.AddPageTexts();
}

void AddMeasureTexts(const ReaderContext& context, pugi::xml_node node, int part, short measure) {
  TextWriter(context).AddMeasureTexts(node, part, measure);
}

std::string WithoutCommands(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t end = text.front() == '^' ? std::min(text.find(')'), text.size() - 1) : 0;
    const std::string_view piece = text.substr(0, end + 1);
    const std::string_view keyword = piece.substr(0, piece.find('('));
    if (end == 0 && piece != "^") {
      plain += piece == "\n" || piece == "\r" ? ' ' : piece.front();
    } else if (keyword == "^flat" && keyword != piece) {
      plain += 'b';
    } else if (keyword == "^sharp" && keyword != piece) {
      plain += '#';
    }
    text.remove_prefix(piece.size());
  }
  return plain;
}

}  // namespace sok
