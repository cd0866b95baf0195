#include "host/runner/files/outputs.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "host/errors.h"
#include "host/musicxml/text/archive.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

// Links and dots resolved as far as there are files.
fs::path Resolved(const std::string& path) {
  std::error_code error;
  fs::path resolved = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? fs::path(path) : resolved;
}

bool IsStream(const Input& input) { return input.path == kStream; }

void CheckStreams(const RunOptions& options, const std::vector<Input>& inputs) {
  if (std::ranges::none_of(inputs, IsStream)) return;
  if (inputs.size() > 1) throw UsageError("stdin cannot be one of several inputs");
  if (options.in_place) throw UsageError("--in-place: stdin is no file");
  if (!options.output_folder.empty()) throw UsageError("--output-dir: stdin has no name; use -o");
}

std::string OutputInFolder(const RunOptions& options, const Input& input) {
  std::string output = (fs::path(options.output_folder) / input.relative).string();
  if (SameFile(output, input.path)) {
    throw UsageError("--output-dir: " + input.path + " would be written over itself; --in-place does that");
  }
  return output;
}

// A page goes where no score is, nor a copy of one.
void CheckPage(const RunOptions& options, const std::vector<Input>& inputs, const std::vector<std::string>& outputs) {
  if (options.html.empty()) return;
  if (options.html == kStream) throw UsageError("--html: the page needs a file; stdout is for the report");
  const auto is_page = [&](const std::string& path) {
    return !path.empty() && path != kStream && SameFile(options.html, path);
  };
  const auto is_backup = [page = Resolved(options.html).string()](const Input& input) {
    return page.starts_with(Resolved(input.path).string() + ".bak");
  };
  const bool taken = std::ranges::any_of(inputs, is_page, &Input::path) || std::ranges::any_of(outputs, is_page) ||
                     (options.backup && std::ranges::any_of(inputs, is_backup));
  if (taken) throw UsageError("--html: " + options.html + " is one of the scores");
}

void CheckNames(const std::vector<Input>& inputs, const std::vector<std::string>& outputs) {
  std::map<fs::path, std::string> taken;  // inputs by output
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (outputs[i].empty() || outputs[i] == kStream) continue;
    const auto [other, is_new] = taken.emplace(Resolved(outputs[i]), inputs[i].path);
    if (!is_new) throw UsageError(inputs[i].path + " and " + other->second + " would both be written to " + outputs[i]);
  }
}

std::string OutputOf(const RunOptions& options, const Input& input) {
  if (!input.error.empty() || options.dry_run || options.check) return {};
  if (!options.output.empty()) return options.output;
  if (options.in_place) return input.path;
  if (!options.output_folder.empty()) return OutputInFolder(options, input);
  if (IsStream(input)) return kStream;
  if (options.purpose == Purpose::kOther) return {};  // it may be a report, which changes nothing
  throw UsageError(
      "say where the result goes: -o, --in-place or --output-dir; or look first with --dry-run or --check");
}

}  // namespace

std::vector<std::string> PlanOutputs(const RunOptions& options, const std::vector<Input>& inputs) {
  CheckStreams(options, inputs);
  if (!options.output.empty() && inputs.size() > 1) {
    throw UsageError("-o is for one score; use --output-dir or --in-place for several");
  }
  std::vector<std::string> outputs;
  outputs.reserve(inputs.size());
  for (const Input& input : inputs) outputs.push_back(OutputOf(options, input));
  CheckNames(inputs, outputs);
  CheckPage(options, inputs, outputs);
  return outputs;
}

void MakeOutputFolders(const RunOptions& options, const std::vector<std::string>& outputs) {
  if (options.output_folder.empty()) return;
  for (const std::string& output : outputs) {
    if (output.empty()) continue;
    std::error_code error;
    const fs::path folder = fs::path(output).parent_path();
    fs::create_directories(folder, error);
    if (error) throw Error(folder.string() + ": cannot be made: " + error.message());
  }
}

bool SameFile(const std::string& left, const std::string& right) {
  std::error_code absent;
  return fs::equivalent(left, right, absent) || Resolved(left) == Resolved(right);
}

std::string InFormOf(const std::string& output, std::string bytes) try {
  const bool packed = IsArchive(bytes);
  if (EndsWithIgnoringCase(output, ".mxl") && !packed) {
    return PackScore({fs::path(output).stem().string() + ".musicxml", std::move(bytes)});
  }
  const bool plain = EndsWithIgnoringCase(output, ".musicxml") || EndsWithIgnoringCase(output, ".xml");
  if (plain && packed) return UnpackScore(bytes).bytes;
  return bytes;  // moved: a conditional expression would copy it
} catch (const Error& error) {
  throw Error(output + ": " + error.what());
}

}  // namespace sok
