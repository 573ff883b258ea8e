#pragma once

#include <string>
#include <vector>

namespace marquell::bench {

/// How a row's ratio is made of two measurements and which way is better.
enum class RatioKind {
  Speedup,   ///< theirs / ours, a time each; at least the gate
  OfLimit,   ///< the same against what the memory allows, where 1 cannot be passed by much
  Share,     ///< ours / theirs, an amount of memory each; at most the gate
  BitsANode  ///< ours alone; at most the gate
};

/// A line of the table: what was measured, by the benchmark's name and its counters, and what is
/// wanted of it. A measurement of whole runs has the counters "ours" and "peer".
struct Row {
  std::string text;
  std::string against;
  RatioKind kind;
  std::string benchmark;
  std::string ours;
  std::string peer;
  double gate;  ///< has to be met
  double aim;   ///< worth trying for
};

std::vector<Row> Rows();

}  // namespace marquell::bench
