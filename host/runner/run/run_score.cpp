#include "host/runner/run/run_score.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <set>

#include "SokExtShared/SokEDK/Source/host_types.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/engine/session.h"
#include "host/errors.h"
#include "host/musicxml/score.h"
#include "host/runner/exit_codes.h"
#include "host/runner/files/output_file.h"
#include "host/runner/files/outputs.h"
#include "host/runner/report/diff.h"
#include "host/runner/report/html_report.h"
#include "host/runner/report/report.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"
#include "host/runner/run/batch.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/trace.h"

namespace sok {
namespace {

constexpr unsigned char kHiddenCountsAsEmpty = 0x02;  // in the third of the record's four bytes

void SetLayerPreferences(Document& document, const RunOptions& options) {
  for (short layer = 0; layer < kLayers; ++layer) {
    if (!options.count_hidden[layer]) continue;
    EDataID id{};
    id.global.instance = layer;
    unsigned char bytes[4] = {};
    int size = sizeof bytes;
    document.records.Load(record_tags::kLayerPreferences, id, bytes, &size);
    bytes[2] |= kHiddenCountsAsEmpty;
    document.records.Save(record_tags::kLayerPreferences, id, bytes, sizeof bytes);
  }
}

// A hidden layer without the preference changes nothing: the user should hear of it.
void WarnOfHiddenLayers(const RunOptions& options, std::vector<std::string>& warnings) {
  if (options.purpose != Purpose::kFill) return;
  std::set<short> layers;
  for (const HiddenLayer& hidden : options.selection.hidden_layers) layers.insert(hidden.layer);
  for (const short layer : layers) {
    const std::string number = std::to_string(layer + 1);
    if (options.count_hidden[layer]) continue;
    warnings.push_back("layer " + number + " is hidden, but its music still counts; --allow-hidden " + number +
                       " lets it count as empty");
  }
}

// What a command has not given back to the host.
void WarnOfLeftOpen(const std::string& command, const Session& session, std::vector<std::string>& warnings) {
  const std::string subject = "the command \"" + command + "\" did not ";
  if (session.frames_held != 0) warnings.push_back(subject + "free " + Counted(session.frames_held, "frame"));
  for (const std::string& text : session.open_edits) warnings.push_back(subject + "end its edit \"" + text + "\"");
  if (session.mass_edits_open != 0) {
    warnings.push_back(subject + "end " + Counted(session.mass_edits_open, "mass edit"));
  }
}

// The extension, run over all invocations; the command's name.
std::string Invoke(const RunOptions& options, Score& score, const std::vector<Invocation>& invocations,
                   ScoreReport& report) {
  Session session;
  session.document = &score.document();
  Tracer tracer(options.trace, stderr);
  if (options.trace != TraceMode::kOff) session.observer = &tracer;

  BundleSession bundle(options.plugin, session);
  const auto count = static_cast<int>(bundle.Commands().size());
  if (options.command >= count) {
    throw UsageError(options.plugin + " has no command " + std::to_string(options.command) + "; it has " +
                     Counted(count, "command") + (count > 0 ? ", from 0" : ""));
  }
  for (const Invocation& invocation : invocations) {
    for (short layer = 0; layer < kLayers; ++layer) {
      session.document->SetLayerShown(layer, invocation.layer_shown[layer]);
    }
    EREGION region = invocation.Region(*session.document);
    bundle.Invoke(options.command, &region);
  }
  report.alerts = session.alerts;
  const std::string& command = bundle.Commands()[static_cast<std::size_t>(options.command)].texts[0];
  WarnOfLeftOpen(command, session, report.warnings);
  return command;
}

// Goes through the changes, which are by measure and staff, in step with the staff-measures.
class ChangesInOrder {
 public:
  explicit ChangesInOrder(ScoreReport& report) : report_(report) {}

  // Those of this staff-measure, which the ones before are not behind.
  std::vector<Change> At(short measure, short slot) {
    PassOver([&](const Change& change) { return std::pair(change.measure, change.slot) < std::pair(measure, slot); });
    std::vector<Change> changes;
    for (; Left() && Next().measure == measure && Next().slot == slot; ++next_) changes.push_back(Next());
    return changes;
  }

  void Finish() {
    PassOver([](const Change&) { return true; });
  }

 private:
  bool Left() const { return next_ < report_.changes.size(); }
  const Change& Next() const { return report_.changes[next_]; }

  // What an extension does to music that nobody selected is written like the rest, but nobody expects it.
  template <typename Outside>
  void PassOver(const Outside& outside) {
    for (; Left() && outside(Next()); ++next_) {
      report_.warnings.push_back("measure " + std::to_string(Next().measure) + ", staff " +
                                 std::to_string(Next().slot) + ", layer " + std::to_string(Next().layer + 1) +
                                 " changed, which was not selected");
    }
  }

  ScoreReport& report_;
  std::size_t next_ = 0;
};

// Counts a staff-measure, and makes a cell of it when anybody wants to see it.
void AddCell(const RunOptions& options, const Score& score, const Invocation& invocation, short slot, short measure,
             const std::vector<Change>& changes, ScoreReport& report) {
  ++report.selected;
  if (!changes.empty()) ++report.changed;
  if (changes.empty() ? !options.WantsReasons() : !options.WantsReport()) return;
  Settings settings{options.purpose, {}, {}};
  std::ranges::copy(invocation.layer_shown, settings.layer_shown);
  std::ranges::copy(options.count_hidden, settings.count_hidden);
  ReportCell cell{slot, measure, Explain(score, slot, measure, changes, settings), {}};
  if (!changes.empty()) {
    cell.notes = Notes(score, changes, options.write.keep_fermatas);
  } else {
    ++report.kept[cell.verdict.reason];
    if (!options.WantsKept()) return;
  }
  report.cells.push_back(std::move(cell));
}

void FillCells(const RunOptions& options, const Score& score, const std::vector<Invocation>& invocations,
               ScoreReport& report) {
  ChangesInOrder changes(report);
  ForEachStaffMeasure(invocations, [&](const Invocation& invocation, short measure, short slot) {
    AddCell(options, score, invocation, slot, measure, changes.At(measure, slot), report);
  });
  changes.Finish();
}

// The bytes to write; none where nothing is to be written. With --dry-run the report gets the difference. Throws Error
// where the score cannot hold what the extension did.
std::string ResultBytes(const RunOptions& options, const Input& input, const std::string& output, const Score& score,
                        ScoreReport& report) {
  if (options.dry_run) {
    const std::string label(score.member().empty() ? "" : "/" + std::string(score.member()));
    const std::string name = ShownText(DisplayName(input.path) + label);
    report.diff = UnifiedDiff(score.Text(), score.WriteText(options.write), name, name);
    return {};
  }
  if (output.empty()) {
    if (report.changes.empty()) return {};
    score.WriteText(options.write);  // says what could not be written
    if (options.check) return {};
    throw Error(report.file + ": it changed; say where the result goes: -o, --in-place or --output-dir");
  }
  const bool over_itself = output != kStream && SameFile(output, input.path);
  if (over_itself && report.changes.empty()) return {};  // nothing to do to the file
  std::string bytes = score.Write(options.write);
  return over_itself ? std::move(bytes) : InFormOf(output, std::move(bytes));
}

void Deliver(const RunOptions& options, const std::string& output, const std::string& bytes,
             const std::optional<FileState>& before, ScoreReport& report) {
  if (options.backup) {
    report.warnings.push_back("the original is kept as " + WriteFileWithBackup(output, bytes, before));
  } else {
    WriteFile(output, bytes, before);
  }
  report.written = output;
}

// Alerts in lines as the extension broke them, those after the first behind blanks.
std::string AlertLines(const std::string& prefix, const std::vector<std::string>& alerts) {
  std::string lines;
  for (const std::string& alert : alerts) {
    lines += ShownText(prefix);
    for (const char unit : ShownLines(alert.substr(0, alert.find_last_not_of('\n') + 1))) {
      lines += unit;
      if (unit == '\n') lines += "    ";
    }
    lines += '\n';
  }
  return lines;
}

std::unique_ptr<Score> Read(const RunOptions& options, const Input& input, ScoreReport& report) {
  std::unique_ptr<Score> score = ReadScore(input.path, options.read);
  for (const Warning& warning : score->warnings()) {
    report.warnings.push_back(WarningText(warning));
  }
  WarnOfHiddenLayers(options, report.warnings);
  return score;
}

std::vector<Invocation> Plan(const RunOptions& options, const Score& score, ScoreReport& report) {
  try {
    return PlanInvocations(score, options.selection, report.warnings);
  } catch (const UsageError& error) {
    throw UsageError(report.file + ": " + error.what());
  } catch (const Error& error) {
    throw Error(report.file + ": " + error.what());
  }
}

Detail DetailOf(const RunOptions& options) {
  if (options.verbose) return Detail::kAll;
  return options.only_changed ? Detail::kChanged : Detail::kSummary;
}

// A score without changes is no news where only changes are.
bool IsTold(const RunOptions& options, const ScoreReport& report) {
  if (options.quiet) return false;
  return !(options.only_changed && options.batch) || !report.changes.empty() || !report.error.empty();
}

// Of several scores each table is below the name of its own.
std::string FramesText(const RunOptions& options, const ScoreReport& report) {
  const std::string table = report.frames ? FrameTable(*report.frames) : std::string();
  return options.batch && !table.empty() ? ShownText(report.file) + ": frames\n" + table : table;
}

// Where the score or the difference takes stdout, the report makes room.
void TellInWords(const RunOptions& options, const std::string& output, const Score& score, const ScoreReport& report,
                 FileResult& result) {
  const std::string text = IsTold(options, report) ? ReportText(score, report, DetailOf(options)) : std::string();
  const bool stdout_taken = options.dry_run || output == kStream;
  (stdout_taken ? result.err : result.out) += text + FramesText(options, report);
  result.out += report.diff;
}

FileResult Tell(const RunOptions& options, const std::string& output, const Score& score, const ScoreReport& report) {
  FileResult result;
  result.exit_code = report.error.empty() ? 0 : kExitBadInput;
  result.changed = !report.changes.empty();
  result.rests_in = report.RestsIn();
  result.rests_out = report.RestsOut();
  result.err = AlertLines(report.file + ": alert: ", report.alerts);
  if (!options.quiet) {
    result.err += PrefixedLines(report.file + ": ", options.verbose ? report.warnings : Folded(report.warnings));
  }
  if (!options.json) TellInWords(options, output, score, report, result);
  if (!report.error.empty()) result.err += "sokrun: " + ShownText(report.error) + "\n";
  if (options.json) result.report = ReportJson(score, report, DetailOf(options));
  if (!options.html.empty()) result.page = PageData(score, report, options);
  return result;
}

FileResult Run(const RunOptions& options, const Input& input, const std::string& output) {
  if (!input.error.empty()) throw Error(input.error);
  ScoreReport report;
  report.file = DisplayName(input.path);
  report.purpose = options.purpose;
  const std::optional<FileState> before = SameFile(output, input.path) ? StateOf(output) : std::nullopt;
  const std::unique_ptr<Score> score = Read(options, input, report);
  const std::vector<Invocation> invocations = Plan(options, *score, report);
  SetLayerPreferences(score->document(), options);
  const Document unchanged = score->document();
  report.title = Invoke(options, *score, invocations, report);
  EndCopies();
  report.changes = score->Changes();
  report.records = FindRecordChanges(unchanged, *score, report.changes);
  for (const RecordChanges& changes : report.records) report.warnings.push_back(RecordChangesText(changes));
  for (std::string& left : FindOrphans(unchanged, *score)) report.warnings.push_back(std::move(left));
  if (options.frames) report.frames = FindFrameChanges(unchanged, score->document(), report.changes);
  FillCells(options, *score, invocations, report);
  std::string bytes;
  try {
    bytes = ResultBytes(options, input, output, *score, report);
  } catch (const Error& error) {
    report.error = error.what();  // the report still says what the extension did
  }
  if (!bytes.empty()) Deliver(options, output, bytes, before, report);
  return Tell(options, output, *score, report);
}

}  // namespace

std::string FileResult::Serialize() const {
  std::string bytes;
  Json::to_msgpack({exit_code, changed, rests_in, rests_out, out, err, report, page}, bytes);
  return bytes;
}

FileResult FileResult::Deserialize(const std::string& bytes) try {
  Json all = Json::from_msgpack(bytes);
  if (all.size() != 8) throw Error(kSenselessAnswer);
  for (const std::size_t file : {6u, 7u}) {
    if (!all.at(file).is_null() && !all.at(file).at("status").is_string()) throw Error(kSenselessAnswer);
  }
  return FileResult{all.at(0),           all.at(1), all.at(2), all.at(3), all.at(4), all.at(5), std::move(all.at(6)),
                    std::move(all.at(7))};
} catch (const Json::exception&) {
  throw Error(kSenselessAnswer);
}

FileResult Failure(const Input& input, int exit_code, const std::string& message) {
  FileResult result;
  result.exit_code = exit_code;
  result.err = "sokrun: " + ShownText(message) + "\n";
  const std::string file = DisplayName(input.path);
  result.report = result.page = FailureJson(file, message);
  return result;
}

FileResult RunOnFile(const RunOptions& options, const Input& input, const std::string& output) {
  try {
    return Run(options, input, output);
  } catch (const UsageError& error) {
    return Failure(input, kExitUsage, error.what());
  } catch (const std::exception& error) {
    return Failure(input, kExitBadInput, error.what());
  } catch (...) {
    return Failure(input, kExitBadInput,
                   DisplayName(input.path) + ": the extension throws something that is no exception");
  }
}

}  // namespace sok
