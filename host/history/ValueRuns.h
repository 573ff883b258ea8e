// The values of a storage that an operation changed, as runs of neighbours.
#pragma once

#include <cstdint>
#include <vector>

#include "StoredValues.h"

namespace qelhost {

/// A copy of every value of a storage. Large ones are made by several threads.
RawBytes CopyOfValues(const StoredValues& values);

/// Values that are not in the storage now: the ones from before until they are put back, then the
/// ones from after. So a step that can be undone and redone needs one set of values, not two.
class ValueRuns {
 public:
  /// What differs from the copy, bit by bit; takes the copy over, and keeps it as it is where
  /// cutting it into runs would save nothing. Large ones are compared by several threads.
  static ValueRuns Differing(const StoredValues& now, RawBytes copy);

  bool IsEmpty() const { return m_runs.empty(); }
  /// Memory that it holds.
  std::int64_t ByteCount() const;

  /// Puts the values into the storage and keeps those that were there. How many differed.
  std::int64_t Swap(const StoredValues& storage);
  /// Puts them in and keeps them.
  std::int64_t Put(const StoredValues& storage) const;

  /// Whether it belongs to a storage of this type and length.
  bool Fits(const StoredValues& storage) const {
    return m_vtkType == storage.VtkType() && m_count == storage.Count();
  }

 private:
  struct Run {
    std::int64_t first;
    std::int64_t count;
  };
  using Runs = std::vector<Run>;
  /// A piece of a run that one thread handles: its values begin at `place` of m_values.
  struct Piece {
    std::int64_t first;
    std::int64_t count;
    std::int64_t place;
  };
  static void Add(Runs& runs, Run run, std::int64_t gap);
  static Runs DifferingIn(const StoredValues& now, const char* copy, std::int64_t from,
                          std::int64_t to, std::int64_t gap);
  std::vector<Piece> Pieces() const;
  template <class Body>
  std::int64_t ForPieces(const StoredValues& storage, const Body& body) const;

  Runs m_runs;
  RawBytes m_values;
  std::int64_t m_valueCount = 0;
  int m_valueSize = 0;
  int m_vtkType = 0;
  std::int64_t m_count = 0;  ///< of the storage
};

}  // namespace qelhost
