// marquell check: whether journals are well formed; no data set is opened.
#include "Host.h"
#include "Journal.h"
#include "Player.h"
#include "Subcommand.h"
#include "Terminal.h"

#include <fmt/format.h>

#include <memory>
#include <string>
#include <vector>

namespace marquell::cli {

namespace {

struct CheckOptions {
  std::vector<std::string> journals;
  std::vector<std::string> addOns;
  bool quiet = false;
};

/// The number of bad lines; each is reported, and so are good ones that deserve a warning.
int CheckJournal(const qelhost::Player& player, const std::string& journal, bool isQuiet) {
  const std::vector<qelhost::JournalLine> lines = qelhost::ReadJournal(journal);
  int bad = 0;
  player.BeginChecks();
  for (const qelhost::JournalLine& line : lines) {
    const qelhost::LineCheck check = player.Check(line.text);
    const auto report = [&](const char* kind, const std::string& text) {
      PrintError(fmt::format("{}:{}: {}: {}{}", journal, line.number, line.text, kind, text));
    };
    if (!check.warning.empty()) report("warning: ", check.warning);
    if (check.fault.empty()) continue;
    report("", check.fault);
    ++bad;
  }
  if (bad == 0 && !isQuiet)
    Print(fmt::format("{}: {} commands, none bad\n", journal, lines.size()));
  return bad;
}

int Check(const CheckOptions& options) {
  qelhost::Host& host = qelhost::Host::Instance();
  host.LoadAddOns(options.addOns);
  const qelhost::Player player(host);
  int bad = 0;
  for (const std::string& journal : options.journals) {
    bad += CheckJournal(player, journal, options.quiet);
  }
  host.Quit();
  return bad == 0 ? kDone : kLineFailed;
}

}  // namespace

std::function<int()> DefineCheck(CLI::App& app) {
  auto options = std::make_shared<CheckOptions>();
  app.add_option("JOURNAL", options->journals, "Journals to check")->required();
  app.add_option("--add-on", options->addOns, "Add-on to load instead of those found by themselves")
      ->allow_extra_args(false);
  app.add_flag("--quiet", options->quiet, "Print nothing about journals without a fault");
  return [options] { return Check(*options); };
}

}  // namespace marquell::cli
