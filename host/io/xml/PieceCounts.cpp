#include "PieceCounts.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace qelhost {
std::optional<std::int64_t> NumberIn(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::nullopt;
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  std::int64_t number = 0;
  const char* const end = text.data() + last + 1;
  const auto read = std::from_chars(text.data() + first, end, number);
  if (read.ec != std::errc() || read.ptr != end || number < 0) return std::nullopt;
  return number;
}

PieceCounts PieceCounts::Of(const XmlTag& piece) {
  PieceCounts result;
  for (const XmlAttribute& attribute : piece.attributes) {
    if (attribute.name == "Extent" || attribute.name == "WholeExtent") {
      result.TakeExtent(attribute.value);
    }
    if (attribute.name.rfind("NumberOf", 0) != 0) continue;
    const std::optional<std::int64_t> count = NumberIn(attribute.value);
    result.areSound = result.areSound && count && *count <= kMost;
    result.counts[attribute.name] = count.value_or(0);
    if (attribute.name == "NumberOfPoints") result.nodes = count.value_or(0);
  }
  if (result.counts.empty()) return result;
  result.cells = result.Of("NumberOfCells");
  for (const char* part : {"Verts", "Lines", "Strips", "Polys"}) {
    result.cells += result.Of(std::string("NumberOf") + part);
  }
  return result;
}

std::int64_t PieceCounts::Of(const std::string& count) const {
  const auto found = counts.find(count);
  return found == counts.end() ? 0 : found->second;
}

bool PieceCounts::Contains(const PieceCounts& other) const {
  for (std::size_t n = 0; n < extent.size(); n += 2) {
    if (extent[n] > other.extent[n] || extent[n + 1] < other.extent[n + 1]) return false;
  }
  return true;
}

void PieceCounts::TakeExtent(const std::string& text) {
  std::istringstream in(text);
  hasExtent = true;
  nodes = cells = 1;
  for (std::size_t axis = 0; axis < ticks.size(); ++axis) {
    std::int32_t& low = extent[2 * axis];
    std::int32_t& high = extent[2 * axis + 1];
    areSound = areSound && (in >> low >> high);
    const std::int64_t count = std::max<std::int64_t>(std::int64_t{high} - low + 1, 0);
    areSound = areSound && (count == 0 || nodes <= kMost / count);
    if (!areSound) return;
    ticks[axis] = count;
    nodes *= count;
    cells *= count == 1 ? 1 : std::max<std::int64_t>(count - 1, 0);
  }
  if (nodes == 0) cells = 0;
}

}  // namespace qelhost
