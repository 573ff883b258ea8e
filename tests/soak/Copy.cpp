#include "Copy.h"

#include <malloc.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>

namespace soak {

namespace {

bool IsSame(double a, double b) {
  // What operation made it shows in the sign and the digits of what is no number.
  if (std::isnan(a)) return std::isnan(b);
  return std::memcmp(&a, &b, sizeof a) == 0;
}

std::string Place(const Outcome& outcome, std::size_t zone, std::size_t var) {
  return "zone " + std::to_string(zone + 1) + ", \"" + outcome.variables[var] + "\"";
}

std::string DifferenceOf(const FieldCopy& a, const FieldCopy& b) {
  if (a.isPassive != b.isPassive) return a.isPassive ? "passive here" : "passive there";
  if (a.location != b.location) return "at other places";
  if (a.values.size() != b.values.size()) return "of other lengths";
  for (std::size_t n = 0; n < a.values.size(); ++n) {
    if (IsSame(a.values[n], b.values[n])) continue;
    std::ostringstream text;
    text.precision(17);
    text << "item " << n + 1 << " of " << a.values.size() << ": " << a.values[n] << ", "
         << b.values[n];
    return text.str();
  }
  return {};
}

std::string DifferenceOf(const std::vector<std::vector<bool>>& a,
                         const std::vector<std::vector<bool>>& b, const char* what) {
  if (a.size() != b.size()) return std::string(what) + " hidden in one host alone";
  for (std::size_t zone = 0; zone < a.size(); ++zone) {
    for (std::size_t n = 0; n < a[zone].size(); ++n) {
      if (n < b[zone].size() && a[zone][n] == b[zone][n]) continue;
      return std::string(what) + " " + std::to_string(n + 1) + " of zone " +
             std::to_string(zone + 1) + (a[zone][n] ? " hidden here" : " hidden there");
    }
  }
  return {};
}

}  // namespace

std::string DifferenceOf(const Outcome& a, const Outcome& b) {
  if (!a.misuse.empty() || !b.misuse.empty()) return a.misuse + b.misuse;
  if (a.isDone != b.isDone) return a.isDone ? "done here: " + b.error : "done there: " + a.error;
  if (a.error != b.error) return "errors \"" + a.error + "\", \"" + b.error + "\"";
  if (a.zones != b.zones) return "other zones";
  if (a.variables != b.variables) return "other variables";
  if (a.fields.size() != b.fields.size()) return "other zones with values";
  for (std::size_t zone = 0; zone < a.fields.size(); ++zone) {
    for (std::size_t var = 0; var < a.variables.size(); ++var) {
      const std::string difference = DifferenceOf(a.fields[zone][var], b.fields[zone][var]);
      if (!difference.empty()) return Place(a, zone, var) + ", " + difference;
    }
  }
  const std::string cells = DifferenceOf(a.hiddenCells, b.hiddenCells, "cell");
  return cells.empty() ? DifferenceOf(a.hiddenNodes, b.hiddenNodes, "node") : cells;
}

Memory MemoryInUse() {
  // Memory that nobody uses but the heap keeps would count as grown.
  malloc_trim(0);
  const struct mallinfo2 heap = mallinfo2();
  std::int64_t pages = 0;
  std::ifstream statm("/proc/self/statm");
  statm >> pages >> pages;
  return {static_cast<std::int64_t>(heap.uordblks + heap.hblkhd), pages * sysconf(_SC_PAGESIZE)};
}

}  // namespace soak
