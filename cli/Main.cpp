// The command line: picks the subcommand, runs it, turns what went wrong into an exit code.
#include "DataSetFiles.h"
#include "Host.h"
#include "Interrupt.h"
#include "Journal.h"
#include "Memory.h"
#include "Subcommand.h"
#include "Terminal.h"

#include <fmt/format.h>

#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace marquell::cli {

namespace {

struct Subcommand {
  const char* name;
  const char* help;
  DefineSubcommand define;
};

constexpr Subcommand kSubcommands[] = {
    {"run", "Play a journal on data sets and write the result", DefineRun},
    {"info", "Show what data sets hold", DefineInfo},
    {"check", "Check journals without touching any data", DefineCheck},
};

std::string FormatsHelp() {
  std::string help = "\nFiles:\n";
  for (const qelhost::FormatHelp& format : qelhost::KnownFormats()) {
    const std::string written =
        format.writable ? "read and written" : fmt::format("read; written as {}", format.writtenAs);
    help += fmt::format("  {:<8} {} ({})\n", format.extension, format.help, written);
  }
  help +=
      "\nExit codes: 0 done; 1 a journal line failed; 2 the command line is wrong; "
      "3 a file cannot be read or written; 130 interrupted.";
  return help;
}

/// Every failure ends here, as one line and a code.
int RunReportingErrors(const std::function<int()>& subcommand) {
  try {
    return subcommand();
  } catch (const UsageError& error) {
    PrintError(error.what());
    return kWrongCommandLine;
  } catch (const std::bad_alloc&) {
    PrintNoMemory();
    return kFileFailed;
  } catch (const std::exception& error) {
    PrintError(error.what());
    return kFileFailed;
  }
}

int Main(int argc, char** argv) {
  CLI::App app{"Pick cells or nodes of simulation results and change their values or hide them.",
               "marquell"};
  app.set_version_flag("--version", "marquell " MARQUELL_VERSION);
  app.require_subcommand(1);
  app.footer(FormatsHelp);

  std::vector<std::pair<CLI::App*, std::function<int()>>> subcommands;
  for (const Subcommand& subcommand : kSubcommands) {
    CLI::App* added = app.add_subcommand(subcommand.name, subcommand.help);
    subcommands.emplace_back(added, subcommand.define(*added));
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {
    return app.exit(success);
  } catch (const CLI::ParseError& error) {
    PrintError(fmt::format("{} (marquell --help shows the options)", error.what()));
    return kWrongCommandLine;
  }

  KeepMemoryBack();
  EndOnInterrupt();
  // A write past a size limit is an error of that write, like one on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  for (const auto& [parsed, run] : subcommands) {
    if (parsed->parsed()) return RunReportingErrors(run);
  }
  return kWrongCommandLine;
}

}  // namespace

}  // namespace marquell::cli

int main(int argc, char** argv) { return marquell::cli::Main(argc, argv); }
