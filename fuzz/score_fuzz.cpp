// Any bytes as a score: read, both commands of the real bundle and edits of any kind, written, and read back.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "host/errors.h"
#include "host/musicxml/score.h"
#include "tests/extension/extension_bundle.h"
#include "tests/musicxml/score_text.h"
#include "tests/support/test_host.h"

namespace {

// What was written before must be readable; other bytes need not be.
std::unique_ptr<sok::Score> Read(const std::string& bytes, bool written) try {
  return sok::Score::Read(bytes, "fuzz");
} catch (const sok::Error&) {
  if (written) std::abort();
  throw;
}

std::string After(const std::string& bytes, int command, TestHost& host, const ExtensionBundle& extension,
                  bool was_written = false) {
  const auto score = Read(bytes, was_written);
  if (score->staves().size() * score->measures().size() > 4096) return bytes;
  if (score->Write() != bytes) std::abort();  // nothing changed
  host.session.document = &score->document();
  host.calls.clear();
  EREGION region = Region(1, static_cast<int>(score->staves().size()), 1, static_cast<int>(score->measures().size()));
  extension.Invoke(command, &region);
  const std::string written = score->Write();
  host.session.document = &host.document;
  return written;
}

std::string TextOf(const std::string& bytes) { return sok::Short(Read(bytes, true)->Text()); }

// What is written has been compared with the saved frames; it must read again.
void Edit(const std::string& bytes) {
  const auto score = Read(bytes, false);
  if (score->staves().empty() || score->measures().empty()) return;
  std::mt19937 random(static_cast<std::uint32_t>(bytes.size()));
  for (int edits = 0; edits < 8; ++edits) sok::RandomEdit(score->document(), random);
  Read(score->Write(), true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static TestHost host;
  static const ExtensionBundle extension;
  static const int opened = extension.Main();
  (void)opened;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  try {
    const std::string filled = After(bytes, 1, host, extension);
    const std::string cleared = After(filled, 0, host, extension, true);
    const std::string only_cleared = After(bytes, 0, host, extension);
    if (TextOf(only_cleared) != TextOf(cleared)) std::abort();  // fill, then clear, is clear
    Edit(bytes);
  } catch (const sok::Error&) {
    host.session.document = &host.document;
  }
  return 0;
}
