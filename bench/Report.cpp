// Makes the table of what was measured, what it is compared with and what is wanted.
//
// usage: bench_report RATIOS.json RUNS [PAGE.md]
//
// RATIOS.json  what bench_ratios wrote
// RUNS         lines "NAME OURS PEER", medians of whole runs: seconds, or megabytes
// PAGE.md      a page to write the table into, between its two markers
//
// Exit code 1 when a gate is missed, 2 for wrong usage, 3 for files that cannot be read or written.
#include "Rows.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace marquell::bench;

constexpr const char* kBegin = "<!-- measured by scripts/bench.sh: begin -->\n";
constexpr const char* kEnd = "<!-- measured by scripts/bench.sh: end -->\n";

/// The counters of each benchmark, a value for each repetition.
using Measurements = std::map<std::string, std::map<std::string, std::vector<double>>>;

/// "box/1/iterations:1/repeats:5/manual_time" is box/1.
std::string PlainName(const std::string& name) { return name.substr(0, name.find("/iterations:")); }

void ReadRatios(const nlohmann::json& results, Measurements& measurements) {
  for (const nlohmann::json& run : results.at("benchmarks")) {
    if (run.at("run_type") != "iteration") continue;
    const std::string name = PlainName(run.at("name"));
    if (run.value("error_occurred", false)) {
      throw std::runtime_error(name + ": " + run.value("error_message", "failed"));
    }
    for (const auto& [key, value] : run.items()) {
      if (value.is_number()) measurements[name][key].push_back(value);
    }
  }
}

void ReadRuns(const std::string& path, Measurements& measurements) {
  std::ifstream file(path);
  std::string name;
  double ours = 0.0;
  double peer = 0.0;
  if (!file) throw std::runtime_error("cannot read " + path);
  while (file >> name >> ours >> peer) {
    measurements[name]["ours"].push_back(ours);
    measurements[name]["peer"].push_back(peer);
  }
  if (!file.eof()) throw std::runtime_error(path + " has a line that is not NAME OURS PEER");
}

double MedianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

double Median(const Measurements& measurements, const std::string& benchmark,
              const std::string& counter) {
  const auto found = measurements.find(benchmark);
  if (found == measurements.end() || found->second.count(counter) == 0) {
    throw std::runtime_error("nothing measured for " + benchmark + " " + counter);
  }
  return MedianOf(found->second.at(counter));
}

struct Figures {
  std::string ours;
  std::string peer;
  double ratio = 0.0;
  bool isLessBetter = false;
};

/// Two digits that count: more would change with every run.
std::string Short(double value) {
  const int decimals = value >= 10.0 ? 0 : value >= 1.0 ? 1 : 2;
  return fmt::format("{:.{}f}", value, decimals);
}

Figures FiguresOf(const Row& row, const Measurements& measurements) {
  const double ours = Median(measurements, row.benchmark, row.ours);
  if (row.kind == RatioKind::BitsANode) return {"", "", ours, true};
  const double peer = Median(measurements, row.benchmark, row.peer);
  if (row.kind == RatioKind::Share) {
    return {Short(ours) + " MB", Short(peer) + " MB", ours / peer, true};
  }
  const bool isSeconds = row.benchmark.rfind("run/", 0) == 0;
  const char* const unit = isSeconds ? " s" : " ms";
  return {Short(ours) + unit, Short(peer) + unit, peer / ours, false};
}

std::string AsRatio(RatioKind kind, double ratio) {
  return Short(ratio) + (kind == RatioKind::Speedup ? " x" : "");
}

bool IsMet(const Figures& figures, double wanted) {
  return figures.isLessBetter ? figures.ratio <= wanted : figures.ratio >= wanted;
}

std::string Verdict(const Row& row, const Figures& figures) {
  if (!IsMet(figures, row.gate)) return "**missed**";
  return IsMet(figures, row.aim) ? "aim" : "gate";
}

/// A row without a gate only informs.
bool HasGate(const Row& row) { return row.gate > 0.0; }

struct Table {
  std::string text;
  std::vector<std::string> missed;
};

Table MakeTable(const Measurements& measurements) {
  Table table;
  table.text =
      "| what | ours | against | | ratio | gate | aim | met |\n"
      "|---|---:|---|---:|---:|---:|---:|---|\n";
  for (const Row& row : Rows()) {
    const Figures figures = FiguresOf(row, measurements);
    const bool hasGate = HasGate(row);
    table.text += fmt::format(
        "| {} | {} | {} | {} | {} | {} | {} | {} |\n", row.text, figures.ours, row.against,
        figures.peer, AsRatio(row.kind, figures.ratio), hasGate ? AsRatio(row.kind, row.gate) : "",
        hasGate ? AsRatio(row.kind, row.aim) : "", hasGate ? Verdict(row, figures) : "");
    if (hasGate && !IsMet(figures, row.gate)) {
      table.missed.push_back(fmt::format("{}, against {}: {}, not {}", row.text, row.against,
                                         AsRatio(row.kind, figures.ratio),
                                         AsRatio(row.kind, row.gate)));
    }
  }
  return table;
}

std::string CpuModel() {
  std::ifstream file("/proc/cpuinfo");
  std::string line;
  while (std::getline(file, line)) {
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  }
  return "unknown processor";
}

std::string Machine(const nlohmann::json& results) {
  const nlohmann::json& context = results.at("context");
  const double edge = std::stod(context.at("cells_on_an_edge").get<std::string>());
  return fmt::format("{:.3g} million bricks; {} cores, {}.\n\n", 1e-6 * edge * edge * edge,
                     context.at("num_cpus").get<int>(), CpuModel());
}

std::string WholeFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBetweenMarkers(const std::string& path, const std::string& text) {
  std::string page = WholeFile(path);
  const std::size_t begin = page.find(kBegin);
  const std::size_t end = page.find(kEnd);
  if (begin == std::string::npos || end == std::string::npos || end < begin) {
    throw std::runtime_error(path + " has no place for the table, between two markers");
  }
  const std::size_t from = begin + std::string(kBegin).size();
  page.replace(from, end - from, "\n" + text + "\n");
  std::ofstream file(path, std::ios::binary);
  file << page;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3 && argc != 4) {
    std::fprintf(stderr, "usage: bench_report RATIOS.json RUNS [PAGE.md]\n");
    return 2;
  }
  try {
    const nlohmann::json results = nlohmann::json::parse(WholeFile(argv[1]));
    Measurements measurements;
    ReadRatios(results, measurements);
    ReadRuns(argv[2], measurements);
    const Table table = MakeTable(measurements);
    const std::string text = Machine(results) + table.text;
    std::fputs(text.c_str(), stdout);
    for (const std::string& row : table.missed) std::printf("missed: %s\n", row.c_str());
    if (argc == 4) WriteBetweenMarkers(argv[3], text);
    return table.missed.empty() ? 0 : 1;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "bench_report: %s\n", e.what());
    return 3;
  }
}
