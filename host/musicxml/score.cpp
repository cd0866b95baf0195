#include "host/musicxml/score.h"

#include <algorithm>
#include <optional>

#include "host/errors.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/reading/reader.h"
#include "host/musicxml/records/document_data.h"
#include "host/musicxml/text/archive.h"
#include "host/musicxml/text/encoding.h"
#include "host/musicxml/text/markup.h"
#include "host/musicxml/writing/changes.h"
#include "host/musicxml/writing/writer.h"

namespace sok {

struct Score::Impl {
  std::string name;     // of the file, for messages
  std::string archive;  // the zip, when it is one
  std::string member;   // of the zip
  std::string text;     // UTF-8
  std::string encoding;
  std::string encoded;  // the text's own bytes, where they are not UTF-8
  Model model;
  std::optional<ModelFrames> frames;  // over `model`
  std::optional<LineTable> lines;     // over `text`
  Document document;                  // over `frames`

  std::string Source() const { return member.empty() ? name : name + "(" + member + ")"; }
  [[noreturn]] void Fail(const std::string& reason) const { throw Error(Source() + ": " + reason); }
  [[noreturn]] void FailAt(std::size_t offset, const std::string& reason) const {
    throw Error(Source() + ":" + std::to_string(lines->LineOf(offset)) + ": " + reason);
  }

  // Answers a warning or nothing.
  std::string TakeBytes(std::string bytes) {
    if (bytes.empty()) Fail("the file is empty");
    try {
      if (IsArchive(bytes)) {
        PackedScore packed = UnpackScore(bytes);
        archive = std::move(bytes);
        member = std::move(packed.member);
        bytes = std::move(packed.bytes);
      }
      DecodedText decoded = DecodeText(std::move(bytes));
      text = std::move(decoded.text);
      encoding = std::move(decoded.encoding);
      encoded = std::move(decoded.bytes);
      return std::move(decoded.warning);
    } catch (const Error& error) {
      Fail(error.what());
    }
  }

  void Read(const ReadOptions& options, const std::string& warning) {
    lines.emplace(text);
    try {
      model = ReadModel(text, options);
    } catch (const TextError& error) {
      FailAt(error.offset, error.what());
    }
    if (!warning.empty()) model.warnings.insert(model.warnings.begin(), {1, warning});
    frames.emplace(model);
    FillDocument(model, document);
    document.SetEntrySource(&*frames);
    if (options.document_data) ReadDocumentData(model, text, document);
    model.head = std::string();
  }

  std::string Patched(const std::vector<Change>& changes, const WriteOptions& options) const {
    try {
      return PatchText(model, document, text, changes, options);
    } catch (const TextError& error) {
      FailAt(error.offset, error.what());
    } catch (const Error& error) {
      Fail(error.what());
    }
  }

  // The patched text in the encoding of the score.
  std::string Encoded(std::string patched) const {
    if (encoding == "UTF-8") return patched;
    if (EncodeText(text, encoding) != encoded) throw Error("the text in " + encoding + " has more than one spelling");
    std::string bytes = EncodeText(patched, encoding);
    if (DecodeText(bytes).text != patched) throw Error("the text cannot be written in " + encoding);
    return bytes;
  }
};

Score::Score(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Score::~Score() = default;

std::unique_ptr<Score> Score::Read(std::string bytes, std::string name, const ReadOptions& options) {
  auto impl = std::make_unique<Impl>();
  impl->name = std::move(name);
  const std::string warning = impl->TakeBytes(std::move(bytes));
  impl->Read(options, warning);
  return std::unique_ptr<Score>(new Score(std::move(impl)));
}

Document& Score::document() { return impl_->document; }
const Document& Score::document() const { return impl_->document; }
const std::vector<Staff>& Score::staves() const { return impl_->model.staves; }
const std::vector<Measure>& Score::measures() const { return impl_->model.measures; }
const std::vector<Warning>& Score::warnings() const { return impl_->model.warnings; }
std::string_view Score::form() const { return impl_->model.form; }
std::string_view Score::encoding() const { return impl_->encoding; }
std::string_view Score::member() const { return impl_->member; }
const std::string& Score::Text() const { return impl_->text; }

LayerFacts Score::Facts(short slot, short measure, short layer) const {
  return FactsOf(impl_->model, slot, measure, layer);
}

Surroundings Score::Around(short slot, short measure) const { return AroundOf(impl_->model, slot, measure); }
bool Score::Exists(short slot, short measure) const { return impl_->model.PartMeasureOf(slot, measure) != nullptr; }

bool Score::LayerWhollyHidden(short slot, short layer) const {
  bool any = false;
  bool hidden = true;
  for (std::size_t measure = 1; measure <= impl_->model.measures.size(); ++measure) {
    impl_->model.ForEachVoice(slot, static_cast<short>(measure), layer, [&](const Voice&, const VoiceMeasure& voice) {
      any = true;
      hidden = hidden && voice.all_hidden;
    });
  }
  return any && hidden;
}

std::vector<Change> Score::Changes() const { return FindChanges(impl_->model, impl_->document); }

std::string Score::Edits(const Change& change) const { return EditsOf(impl_->model, impl_->document, change); }

std::vector<std::string> Score::Lost(const Change& change) const {
  if (change.kind == ChangeKind::kFilled) return {};
  return AttachedTo(impl_->model, impl_->document, impl_->text, change);
}

std::string Score::WriteText(const WriteOptions& options) const {
  const std::vector<Change> changes = FindChanges(impl_->model, impl_->document);
  return changes.empty() ? impl_->text : impl_->Patched(changes, options);
}

std::string Score::Write(const WriteOptions& options) const {
  const std::vector<Change> changes = FindChanges(impl_->model, impl_->document);
  if (changes.empty()) {
    if (!impl_->archive.empty()) return impl_->archive;
    return impl_->encoded.empty() ? impl_->text : impl_->encoded;
  }
  std::string patched = impl_->Patched(changes, options);
  try {
    std::string bytes = impl_->Encoded(std::move(patched));
    if (impl_->archive.empty()) return bytes;
    return RepackScore(impl_->archive, {impl_->member, std::move(bytes)});
  } catch (const Error& error) {
    impl_->Fail(error.what());
  }
}

}  // namespace sok
