// shapes: the lines of a score and its staff lists as an extension finds them.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <vector>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/engine/document.h"
#include "host/musicxml/records/shapes.h"
#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

constexpr std::size_t kNumberWidth = 6;
constexpr std::size_t kKindWidth = 12;
constexpr std::size_t kStaffWidth = 7;
constexpr std::size_t kShapePlaceWidth = 24;

std::string KindName(const ShapeRecord& shape) {
  switch (shape.kind) {
    case ShapeKind::kSlur:
      return "slur";
    case ShapeKind::kCrescendo:
      return "crescendo";
    case ShapeKind::kDiminuendo:
      return "diminuendo";
    case ShapeKind::kOctaveLine: {
      constexpr const char* kNames[] = {"22mb", "15mb", "8vb", "octave line", "8va", "15ma", "22ma"};
      const std::size_t name = static_cast<std::size_t>(shape.octaves + 3);
      return kNames[name < std::size(kNames) ? name : 3];
    }
    case ShapeKind::kBracket:
      return "bracket";
    case ShapeKind::kPedal:
      return "pedal";
  }
  return "kind " + std::to_string(static_cast<short>(shape.kind));
}

std::string ShapePlaceText(int measure, int position, int entry) {
  std::string text = "measure " + std::to_string(measure) + " +" + std::to_string(position);
  return entry == 0 ? text : text + " #" + std::to_string(entry);
}

void PrintShape(std::ostream& out, unsigned short number, const ShapeRecord& shape) {
  out << Padded(std::to_string(number), kNumberWidth) << ' ' << Padded(KindName(shape), kKindWidth) << ' '
      << Padded(RangeText(shape.start_instrument, shape.end_instrument), kStaffWidth) << ' '
      << Padded(ShapePlaceText(shape.start_measure, shape.start_position, shape.start_entry), kShapePlaceWidth) << ' '
      << ShapePlaceText(shape.end_measure, shape.end_position, shape.end_entry) << '\n';
}

// The instruments of the staff lists, each once, in the order of the records.
std::map<unsigned short, std::vector<short>> StaffLists(const RecordStore& records) {
  std::map<unsigned short, std::vector<short>> lists;
  records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    if (std::ranges::find(record_tags::kInstrumentList, tag) == std::end(record_tags::kInstrumentList)) return;
    std::vector<short>& list = lists[id.other.cmper];
    for (std::size_t at = 0; at + sizeof(short) <= bytes.size(); at += sizeof(short)) {
      short instrument;
      std::memcpy(&instrument, bytes.data() + at, sizeof instrument);
      if (instrument != 0 && std::ranges::find(list, instrument) == list.end()) list.push_back(instrument);
    }
  });
  return lists;
}

}  // namespace

void PrintShapes(std::ostream& out, const Score& score) {
  const RecordStore& records = score.document().records;
  out << Padded("shape", kNumberWidth) << ' ' << Padded("kind", kKindWidth) << ' ' << Padded("staff", kStaffWidth)
      << ' ' << Padded("from, in units #entry", kShapePlaceWidth) << " to\n";
  records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    if (tag != record_tags::kSmartShape) return;
    ShapeRecord shape{};
    std::memcpy(&shape, bytes.data(), std::min(bytes.size(), sizeof shape));
    PrintShape(out, id.other.cmper, shape);
  });
  out << '\n' << Padded("list", kNumberWidth) << " staves\n";
  for (const auto& [number, instruments] : StaffLists(records)) {
    out << Padded(std::to_string(number), kNumberWidth);
    for (const short instrument : instruments) out << ' ' << instrument;
    out << '\n';
  }
}

void AddShapesCommand(CLI::App& app, int&) {
  CLI::App& command =
      *app.add_subcommand("shapes", "Print the lines of a score (slurs, hairpins …) and its staff lists");
  const auto input = std::make_shared<std::string>();
  command.add_option("IN", *input, "A score, or - for stdin")->required();
  command.footer("Examples:\n  sokrun shapes song.mxl");
  command.callback([input] { PrintShapes(std::cout, *ReadScore(*input, {.document_data = true})); });
}

}  // namespace sok
