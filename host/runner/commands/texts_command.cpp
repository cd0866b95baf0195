// texts: the words of a score as an extension finds them.
#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>
#include <vector>

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/engine/document.h"
#include "host/engine/host_text.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/records/texts.h"
#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

constexpr std::size_t kPlaceWidth = 24;
constexpr std::size_t kTextWidth = 32;

unsigned short WordAt(std::span<const unsigned char> record, std::size_t offset) {
  unsigned short word = 0;
  if (record.size() >= offset + sizeof word) std::memcpy(&word, record.data() + offset, sizeof word);
  return word;
}

std::vector<unsigned char> Load(const RecordStore& records, unsigned int tag, unsigned short number) {
  EDataID id{};
  id.other.cmper = number;
  int size = 0;
  if (!records.Load(tag, id, nullptr, &size)) return {};
  std::vector<unsigned char> record(static_cast<std::size_t>(size));
  records.Load(tag, id, record.data(), &size);
  return record;
}

// The characters of a text block as UTF-8, line breaks written as \n.
std::string RawText(const RecordStore& records, unsigned short block) {
  const std::vector<unsigned char> raw =
      Load(records, record_tags::kRawText, WordAt(Load(records, record_tags::kTextBlock, block), 0));
  std::vector<unsigned short> units(raw.size() / 2);
  if (!units.empty()) std::memcpy(units.data(), raw.data(), units.size() * 2);
  return Utf8FromUtf16(units.data(), units.size());
}

void PrintText(std::ostream& out, const RecordStore& records, const std::string& place, unsigned short block) {
  const std::string raw = RawText(records, block);
  if (raw.empty()) return;
  out << Padded(place, kPlaceWidth) << ' ' << Padded(ShownText(WithoutCommands(raw)), kTextWidth) << ' '
      << ShownText(raw) << '\n';
}

}  // namespace

void PrintTexts(std::ostream& out, const Score& score) {
  out << Padded("place", kPlaceWidth) << ' ' << Padded("text", kTextWidth) << " as stored\n";
  const RecordStore& records = score.document().records;
  records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> record) {
    const std::string number = std::to_string(id.other.cmper);
    if (tag == record_tags::kInstrument) {
      PrintText(out, records, "staff " + number + ", name", WordAt(record, offsetof(EDTInstDefinition, fullName)));
      PrintText(out, records, "staff " + number + ", short name",
                WordAt(record, offsetof(EDTInstDefinition, abbreviatedName)));
    } else if (tag == record_tags::kPageText) {
      PrintText(out, records, "page " + number, WordAt(record, 0));
    } else if (tag == record_tags::kMeasureText) {
      const std::string measure = std::to_string(id.detail.secondCmper);
      PrintText(out, records, "staff " + number + ", measure " + measure, WordAt(record, 0));
    }
  });
}

void AddTextsCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("texts", "Print the words of a score, plain and with their caret commands");
  const auto input = std::make_shared<std::string>();
  command.add_option("IN", *input, "A score, or - for stdin")->required();
  command.footer("Examples:\n  sokrun texts song.mxl");
  command.callback([input] { PrintTexts(std::cout, *ReadScore(*input, {.document_data = true})); });
}

}  // namespace sok
