#pragma once

#include "DataSet.h"

#include <cstdint>
#include <random>

namespace soak {

class Random {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}
  int Below(int end) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(end)); }
  bool IsOneIn(int many) { return Below(many) == 0; }
  /// From 0 to 1, never the same number twice.
  double Part() { return static_cast<double>(m_engine() >> 11) / 9007199254740992.0; }
  double Between(double low, double high) { return low + Part() * (high - low); }
  template <class T, std::size_t count>
  const T& OneOf(const T (&items)[count]) {
    return items[static_cast<std::size_t>(Below(static_cast<int>(count)))];
  }

 private:
  std::mt19937_64 m_engine;
};

/// A data set of up to four zones of any types, with variables of any types of values that some
/// zones share and some do not have. Nodes are nowhere twice, and on no round numbers.
qelhost::DataSetPtr MakeRandomData(Random& random);

}  // namespace soak
