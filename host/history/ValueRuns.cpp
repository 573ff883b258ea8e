#include "ValueRuns.h"

#include <vtkSMPTools.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

namespace qelhost {

namespace {

/// Values that one thread handles at a time; also the size of the buffers on its stack.
constexpr std::int64_t kPiece = 4096;
constexpr int kLargestValue = 8;
using Buffer = std::array<char, kPiece * kLargestValue>;

/// Runs the body for [0, count), on several threads where the values allow it and it pays.
template <class Body>
void ForRange(bool mayShare, std::int64_t count, const Body& body) {
  constexpr std::int64_t kWorthThreads = 16;
  if (mayShare && count >= kWorthThreads) {
    vtkSMPTools::For(0, count, 1, body);
  } else {
    body(0, count);
  }
}

template <int kSize, class Found>
void FindDifferencesOf(const char* a, const char* b, std::int64_t count, const Found& found) {
  constexpr std::int64_t kBlock = 64;
  for (std::int64_t from = 0; from < count; from += kBlock) {
    const std::int64_t to = std::min(from + kBlock, count);
    const auto bytes = static_cast<std::size_t>((to - from) * kSize);
    if (std::memcmp(a + from * kSize, b + from * kSize, bytes) == 0) continue;
    for (std::int64_t i = from; i < to; ++i) {
      if (std::memcmp(a + i * kSize, b + i * kSize, kSize) != 0) found(i);
    }
  }
}

/// Calls found(i) for every i at which the two differ.
template <class Found>
void FindDifferences(const char* a, const char* b, int size, std::int64_t count,
                     const Found& found) {
  switch (size) {
    case 1:
      return FindDifferencesOf<1>(a, b, count, found);
    case 2:
      return FindDifferencesOf<2>(a, b, count, found);
    case 4:
      return FindDifferencesOf<4>(a, b, count, found);
    default:
      return FindDifferencesOf<8>(a, b, count, found);
  }
}

}  // namespace

RawBytes CopyOfValues(const StoredValues& values) {
  RawBytes copy = MakeRawBytes(values.Count() * values.ValueSize());
  const std::int64_t pieces = (values.Count() + kPiece - 1) / kPiece;
  ForRange(values.IsPlainMemory(), pieces, [&](std::int64_t from, std::int64_t to) {
    const std::int64_t first = from * kPiece;
    const std::int64_t last = std::min(to * kPiece, values.Count());
    values.CopyTo(first, last - first, copy.get() + first * values.ValueSize());
  });
  return copy;
}

void ValueRuns::Add(Runs& runs, Run run, std::int64_t gap) {
  if (!runs.empty() && run.first - (runs.back().first + runs.back().count) <= gap) {
    runs.back().count = run.first + run.count - runs.back().first;
  } else {
    runs.push_back(run);
  }
}

ValueRuns::Runs ValueRuns::DifferingIn(const StoredValues& now, const char* copy, std::int64_t from,
                                       std::int64_t to, std::int64_t gap) {
  Runs runs;
  Buffer buffer;
  const char* const present = now.Packed(from, to - from, buffer.data());
  FindDifferences(present, copy + from * now.ValueSize(), now.ValueSize(), to - from,
                  [&](std::int64_t i) {
                    Add(runs, {from + i, 1}, gap);
                  });
  return runs;
}

ValueRuns ValueRuns::Differing(const StoredValues& now, RawBytes copy) {
  ValueRuns result;
  result.m_valueSize = now.ValueSize();
  result.m_vtkType = now.VtkType();
  result.m_count = now.Count();
  // Neighbours that did not change cost less than another run while they are few.
  const std::int64_t gap = static_cast<std::int64_t>(sizeof(Run)) / now.ValueSize();
  const std::int64_t pieces = (now.Count() + kPiece - 1) / kPiece;
  std::vector<Runs> found(static_cast<std::size_t>(pieces));
  ForRange(now.IsPlainMemory(), pieces, [&](std::int64_t from, std::int64_t to) {
    for (std::int64_t piece = from; piece < to; ++piece) {
      found[static_cast<std::size_t>(piece)] = DifferingIn(
          now, copy.get(), piece * kPiece, std::min((piece + 1) * kPiece, now.Count()), gap);
    }
  });
  for (const Runs& runs : found) {
    for (const Run& run : runs) Add(result.m_runs, run, gap);
  }
  if (result.m_runs.empty()) return result;
  for (const Run& run : result.m_runs) result.m_valueCount += run.count;
  const auto runBytes = static_cast<std::int64_t>(result.m_runs.size() * sizeof(Run));
  if (result.m_valueCount * now.ValueSize() + runBytes >= now.Count() * now.ValueSize()) {
    result.m_runs = {{0, now.Count()}};
    result.m_valueCount = now.Count();
    result.m_values = std::move(copy);
    return result;
  }
  result.m_runs.shrink_to_fit();
  result.m_values = MakeRawBytes(result.m_valueCount * now.ValueSize());
  char* target = result.m_values.get();
  for (const Run& run : result.m_runs) {
    const auto bytes = static_cast<std::size_t>(run.count * now.ValueSize());
    std::memcpy(target, copy.get() + run.first * now.ValueSize(), bytes);
    target += bytes;
  }
  return result;
}

std::int64_t ValueRuns::ByteCount() const {
  return m_valueCount * m_valueSize + static_cast<std::int64_t>(m_runs.capacity() * sizeof(Run));
}

std::vector<ValueRuns::Piece> ValueRuns::Pieces() const {
  std::vector<Piece> pieces;
  std::int64_t place = 0;
  for (const Run& run : m_runs) {
    for (std::int64_t done = 0; done < run.count; done += kPiece) {
      const std::int64_t count = std::min(kPiece, run.count - done);
      pieces.push_back({run.first + done, count, place * m_valueSize});
      place += count;
    }
  }
  return pieces;
}

/// The body answers how many values of a piece differed from those that the storage had.
template <class Body>
std::int64_t ValueRuns::ForPieces(const StoredValues& storage, const Body& body) const {
  const std::vector<Piece> pieces = Pieces();
  std::atomic<std::int64_t> changed{0};
  ForRange(storage.IsPlainMemory(), static_cast<std::int64_t>(pieces.size()),
           [&](std::int64_t from, std::int64_t to) {
             Buffer before;
             std::int64_t count = 0;
             for (std::int64_t n = from; n < to; ++n) {
               const Piece& piece = pieces[static_cast<std::size_t>(n)];
               storage.CopyTo(piece.first, piece.count, before.data());
               FindDifferences(before.data(), m_values.get() + piece.place, m_valueSize,
                               piece.count, [&count](std::int64_t) { ++count; });
               body(piece, before.data());
             }
             changed += count;
           });
  return changed;
}

std::int64_t ValueRuns::Put(const StoredValues& storage) const {
  return ForPieces(storage, [&](const Piece& piece, const char*) {
    storage.CopyFrom(piece.first, piece.count, m_values.get() + piece.place);
  });
}

std::int64_t ValueRuns::Swap(const StoredValues& storage) {
  return ForPieces(storage, [&](const Piece& piece, const char* before) {
    char* const kept = m_values.get() + piece.place;
    storage.CopyFrom(piece.first, piece.count, kept);
    std::memcpy(kept, before, static_cast<std::size_t>(piece.count * m_valueSize));
  });
}

}  // namespace qelhost
