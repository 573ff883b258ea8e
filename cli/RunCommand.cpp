// marquell run: plays a journal on data sets and writes the result.
#include "ByProducts.h"
#include "DataSetFiles.h"
#include "Host.h"
#include "HostCommands.h"
#include "Interrupt.h"
#include "Journal.h"
#include "Pictures.h"
#include "Player.h"
#include "Progress.h"
#include "RunPlan.h"
#include "RunReport.h"
#include "Subcommand.h"
#include "Terminal.h"
#include "WriteCancel.h"

#include <fmt/format.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <optional>

namespace marquell::cli {

namespace {

using qelhost::Host;

class Stopwatch {
 public:
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Opens every input, and comes back to the first: that is where a journal starts.
std::vector<qelhost::DataSetPtr> OpenInputs(Host& host, const RunOptions& options) {
  std::vector<qelhost::DataSetPtr> data;
  for (const std::string& input : options.inputs) {
    data.push_back(host.OpenFile(input).Data());
    spdlog::info("{}: {} zones, {} variables", input, data.back()->ZoneCount(),
                 data.back()->VariableCount());
  }
  if (data.size() > 1) qelhost::Player(host).Play("$!FRAME 1");
  return data;
}

/// Texts that the add-on shows while a line is played belong to the line.
void CollectMessages(Host& host, std::vector<std::string>& messages) {
  host.messages.SetSink(
      [&messages](const std::string& text, QelMessageBox_e) { messages.push_back(OneLine(text)); });
}

PlayedLine PlayLine(Host& host, qelhost::Player& player, const qelhost::JournalLine& line) {
  PlayedLine played;
  played.line = line;
  CollectMessages(host, played.messages);
  const qelhost::LineResult result = player.Play(line.text);
  host.messages.SetSink(nullptr);
  played.failure = result.isDone ? "" : OneLine(result.message);
  played.alterations = result.alterations;
  played.seconds = result.seconds;
  return played;
}

void ReportFailure(const RunOptions& options, const PlayedLine& played) {
  std::string text = fmt::format("{}:{}: {}: {}", options.journal, played.line.number,
                                 played.line.text, played.failure);
  for (const std::string& message : played.messages) text += fmt::format(" ({})", message);
  PrintError(text);
}

/// The first line that cannot be understood ends the run before any data set is read. Nothing when
/// a run goes on after failed lines.
bool AllAreUnderstood(Host& host, const std::vector<qelhost::JournalLine>& lines,
                      const RunOptions& options, RunRecord& record) {
  if (options.keepGoing) return true;
  const qelhost::Player player(host);
  player.BeginChecks();
  for (const qelhost::JournalLine& line : lines) {
    const qelhost::LineCheck check = player.Check(line.text);
    if (!check.warning.empty()) {
      spdlog::warn("{}:{}: {}", options.journal, line.number, OneLine(check.warning));
    }
    PlayedLine checked;
    checked.failure = OneLine(check.fault);
    if (checked.failure.empty()) continue;
    checked.line = line;
    ReportFailure(options, checked);
    record.lines.push_back(std::move(checked));
    return false;
  }
  return true;
}

/// False when a line failed; without --keep-going nothing after it is played.
bool PlayAll(Host& host, const std::vector<qelhost::JournalLine>& lines, const RunOptions& options,
             RunRecord& record) {
  qelhost::Player player(host);
  player.ReportAlterations(options.summary || !options.report.empty() ||
                           (AsksForPictures(options) && options.imageVariable.empty()));
  Progress progress(!options.quiet);
  bool allDone = true;
  for (const qelhost::JournalLine& line : lines) {
    progress.Show(record.lines.size(), lines.size(), "lines played");
    record.lines.push_back(PlayLine(host, player, line));
    const PlayedLine& played = record.lines.back();
    spdlog::debug("line {} took {:.3f} s", line.number, played.seconds);
    if (played.failure.empty()) {
      for (const std::string& message : played.messages) {
        progress.Clear();
        spdlog::warn("{}:{}: {}", options.journal, line.number, message);
      }
      continue;
    }
    progress.Clear();
    ReportFailure(options, played);
    allDone = false;
    if (!options.keepGoing) return false;
  }
  return allDone;
}

qelhost::WriteOptions WriteOptionsOf(const RunOptions& options) {
  using Treatment = qelhost::HiddenCells::Treatment;
  const Treatment treatment = options.dropBlanked  ? Treatment::Drop
                              : options.ghostCells ? Treatment::Mark
                                                   : Treatment::Keep;
  return {options.force, {treatment, kBlankingVariable}};
}

void WriteResults(const std::vector<qelhost::DataSetPtr>& data,
                  const std::vector<std::string>& targets, const RunOptions& options,
                  RunRecord& record) {
  if (targets.empty()) return;
  const Stopwatch watch;
  const qelhost::WriteOptions writeOptions = WriteOptionsOf(options);
  std::optional<OutputFolder> folder;
  if (targets.size() > 1) folder.emplace(options);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    qelhost::WriteDataSet(*data[i], targets[i], writeOptions);
    record.written.push_back(targets[i]);
    spdlog::info("{}: written", targets[i]);
  }
  record.writeSeconds = watch.Seconds();
}

/// What a journal opens itself has no place to be written to.
void WarnOfUnwritten(const Host& host, const std::vector<qelhost::DataSetPtr>& inputs) {
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n) {
    const qelhost::Frame& frame = *host.frames.At(n);
    const bool isInput = std::find(inputs.begin(), inputs.end(), frame.Data()) != inputs.end();
    if (isInput || frame.Data() == nullptr || frame.Data()->Writes().changed == 0) continue;
    spdlog::warn("{}: was altered and is not written: only data sets given on the command line are",
                 frame.fileName);
  }
}

void Tell(const RunOptions& options, const RunRecord& record) {
  // First: nobody may be there any more to read what is printed.
  if (!options.report.empty()) WriteReport(options, record);
  if (options.summary) Print(SummaryText(record));
}

void StageRecording(const Host& host, const RunOptions& options, ByProducts& byProducts) {
  if (options.record.empty()) return;
  byProducts.Add(options.record, fmt::format("{}\n", fmt::join(host.recorder.Lines(), "\n")));
}

/// False when the user has stopped it; then nothing is left but what the message names.
bool WriteEverything(qelhost::Painter* painter, const std::vector<qelhost::DataSetPtr>& data,
                     const std::vector<std::string>& targets, const RunOptions& options,
                     RunRecord& record) {
  const Host& host = Host::Instance();
  ByProducts byProducts;
  qelhost::SetWriteCancel(IsInterrupted);
  try {
    // First: a picture that cannot be drawn must not leave a result behind that looks complete.
    if (painter != nullptr) {
      StagePictures(*painter, *host.frames.Active(), options, record, byProducts);
    }
    StageRecording(host, options, byProducts);
    WriteResults(data, targets, options, record);
    if (record.written.empty()) qelhost::StopIfCancelled();
  } catch (const qelhost::WriteCancelled&) {
    PrintError(record.written.empty()
                   ? "interrupted, nothing written"
                   : fmt::format("interrupted; written: {}", fmt::join(record.written, ", ")));
    return false;
  }
  // What is left takes no time and belongs to the result.
  qelhost::SetWriteCancel(nullptr);
  byProducts.Commit();
  return true;
}

int Run(const RunOptions& options) {
  // Whoever stops reading the messages must not take the result along.
  std::signal(SIGPIPE, SIG_IGN);
  StartLog(options.quiet     ? Verbosity::kQuiet
           : options.verbose ? Verbosity::kVerbose
                             : Verbosity::kNormal);
  const std::vector<std::string> targets = PlanTargets(options);
  const std::vector<qelhost::JournalLine> lines = qelhost::ReadJournal(options.journal);
  const std::unique_ptr<qelhost::Painter> painter = MakePainterFor(options);

  RunRecord record;
  Host& host = Host::Instance();
  host.LoadAddOns(options.addOns);
  if (!AllAreUnderstood(host, lines, options, record)) {
    Tell(options, record);
    return kLineFailed;
  }
  // A copy of every field that is altered is worth its memory only where somebody goes back to it.
  host.history.isKept = std::any_of(lines.begin(), lines.end(), [](const auto& line) {
    return qelhost::NeedsHistory(line.text);
  });
  const Stopwatch readWatch;
  const std::vector<qelhost::DataSetPtr> data = OpenInputs(host, options);
  record.readSeconds = readWatch.Seconds();
  if (targets.size() == 1) {
    qelhost::CheckWritable(*data[0], targets[0], WriteOptionsOf(options));
  } else {
    // Their folder may not be there yet.
    for (std::size_t i = 0; i < targets.size(); ++i) {
      qelhost::CheckFormat(*data[i], targets[i], WriteOptionsOf(options));
    }
  }

  if (!options.record.empty()) host.recorder.Start(qelhost::FirstStateOf(host.frames));
  const bool allDone = PlayAll(host, lines, options, record);
  HoldInterrupts();
  if (allDone || options.keepGoing) {
    if (!WriteEverything(painter.get(), data, targets, options, record)) return kInterrupted;
    WarnOfUnwritten(host, data);
  }
  Tell(options, record);
  host.Quit();
  return allDone ? kDone : kLineFailed;
}

}  // namespace

std::function<int()> DefineRun(CLI::App& app) {
  auto options = std::make_shared<RunOptions>();
  app.add_option("JOURNAL", options->journal, "Commands to play, one a line")->required();
  app.add_option("FILE", options->inputs, "Data sets to play them on, a frame each")->required();
  app.add_option("-o,--output", options->output,
                 "File to write, in the format of its extension; a folder for several data sets");
  app.add_option("--report", options->report, "Write what each line did to this file, as JSON");
  app.add_option("--record", options->record, "Write the lines that were played as a journal");
  app.add_flag("--summary", options->summary, "Print what each line did");
  app.add_flag("--dry-run", options->dryRun, "Play, and write no data set");
  app.add_flag("--keep-going", options->keepGoing, "Go on, and write, after a line has failed");
  app.add_flag("--force", options->force, "Replace files that exist");
  app.add_option("--image", options->image, "Draw the result to this PNG file");
  app.add_option("--image-before", options->imageBefore, "Draw the data as they were");
  app.add_option("--image-pair", options->imagePair, "Draw both side by side");
  app.add_option("--image-variable", options->imageVariable,
                 "Variable that colours the pictures instead of the first one altered");
  app.add_option("--image-width", options->imageWidth, "Pixels of a picture")
      ->check(CLI::Range(64, 8192));
  app.add_option("--image-height", options->imageHeight, "Pixels of a picture")
      ->check(CLI::Range(64, 8192));
  CLI::Option* ghostCells = app.add_flag(
      "--ghost-cells", options->ghostCells,
      "Mark cells that picks have hidden in vtkGhostType as well, so that other programs "
      "hide them too");
  app.add_flag("--drop-blanked", options->dropBlanked, "Leave out cells that picks have hidden")
      ->excludes(ghostCells);
  app.add_option("--add-on", options->addOns, "Add-on to load instead of those found by themselves")
      ->allow_extra_args(false);
  CLI::Option* quiet = app.add_flag("--quiet", options->quiet, "Say nothing but errors");
  app.add_flag("--verbose", options->verbose, "Say what is done")->excludes(quiet);
  return [options] { return Run(*options); };
}

}  // namespace marquell::cli
