// records: the data records of a score's document, as a table.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>

#include "host/engine/document.h"
#include "host/engine/session.h"
#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/report/shown_text.h"

namespace sok {
namespace {

bool StartsWithAny(const std::string& tag, const std::vector<std::string>& beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(),
                     [&](const std::string& start) { return tag.starts_with(start); });
}

// One line a record; of the records whose tag begins with one of `tags` when there are any. Returns how many.
int PrintTable(std::ostream& out, const Document& document, const std::vector<std::string>& tags) {
  int printed = 0;
  out << "tag   key               size  bytes\n";
  document.records.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    const std::string name = ShownText(FourCharacters(tag));
    if (!tags.empty() && !StartsWithAny(name, tags)) return;
    char text[64];
    std::snprintf(text, sizeof text, "%-5s %-16s %5zu ", name.c_str(), KeyText(tag, id).c_str(), bytes.size());
    out << text;
    for (const unsigned char byte : bytes) {
      std::snprintf(text, sizeof text, " %02x", byte);
      out << text;
    }
    out << '\n';
    ++printed;
  });
  return printed;
}

}  // namespace

void PrintRecords(std::ostream& out, const Score& score) { PrintTable(out, score.document(), {}); }

void AddRecordsCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("records", "List the data records of a score");
  const auto input = std::make_shared<std::string>();
  const auto tags = std::make_shared<std::vector<std::string>>();
  command.add_option("IN", *input, "A score, or - for stdin")->required();
  command.add_option("--tag", *tags, "Only tags that begin so (ot21, ot, \"E\\x03\"); may be repeated")
      ->option_text("TAG");
  command.footer(
      "The key's fields are those that the tag's records use; bytes are in hexadecimal.\n"
      "Examples:\n  sokrun records song.mxl\n  sokrun records song.mxl --tag ot14 --tag pf");
  command.callback([input, tags] {
    const std::unique_ptr<Score> score = ReadScore(*input, {.document_data = true});
    if (PrintTable(std::cout, score->document(), *tags) == 0) {
      std::cerr << ShownText(*input) << ": no records of that tag\n";
    }
  });
}

}  // namespace sok
