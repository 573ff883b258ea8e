#include "FaceEdges.h"

#include <array>
#include <cmath>
#include <limits>

namespace qelhost {
namespace {

using Vector = std::array<float, 3>;

/// The point at the other end of the edge that leaves from a corner.
std::int32_t EndOf(const FaceList& faces, std::int64_t face, std::int32_t corner) {
  const std::size_t next =
      corner + 1 == faces.offsets[static_cast<std::size_t>(face) + 1]
          ? static_cast<std::size_t>(faces.offsets[static_cast<std::size_t>(face)])
          : static_cast<std::size_t>(corner) + 1;
  return faces.nodes[next];
}

/// Of length 1, or 0 for a face without area.
Vector NormalOf(const FaceList& faces, std::int64_t face, const float* points) {
  std::array<double, 3> sum{};
  const std::int32_t* const nodes = faces.Begin(face);
  const int size = faces.Size(face);
  const float* const origin = points + 3 * static_cast<std::ptrdiff_t>(nodes[0]);
  for (int n = 1; n + 1 < size; ++n) {
    const float* const a = points + 3 * static_cast<std::ptrdiff_t>(nodes[n]);
    const float* const b = points + 3 * static_cast<std::ptrdiff_t>(nodes[n + 1]);
    const double u[3] = {double{a[0]} - origin[0], double{a[1]} - origin[1],
                         double{a[2]} - origin[2]};
    const double v[3] = {double{b[0]} - origin[0], double{b[1]} - origin[1],
                         double{b[2]} - origin[2]};
    sum[0] += u[1] * v[2] - u[2] * v[1];
    sum[1] += u[2] * v[0] - u[0] * v[2];
    sum[2] += u[0] * v[1] - u[1] * v[0];
  }
  const double length = std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
  if (!(length > 0.0)) return {};
  return {static_cast<float>(sum[0] / length), static_cast<float>(sum[1] / length),
          static_cast<float>(sum[2] / length)};
}

std::vector<Vector> NormalsOf(const FaceList& faces, const float* points) {
  std::vector<Vector> normals(static_cast<std::size_t>(faces.Count()));
  vtkSMPTools::For(0, faces.Count(), 1 << 14, [&](vtkIdType begin, vtkIdType end) {
    for (vtkIdType face = begin; face < end; ++face) {
      normals[static_cast<std::size_t>(face)] = NormalOf(faces, face, points);
    }
  });
  return normals;
}

/// Whether a face goes from one point straight to the other.
bool GoesAlong(const FaceList& faces, std::int64_t face, std::int32_t from, std::int32_t to) {
  const std::int32_t first = faces.offsets[static_cast<std::size_t>(face)];
  for (std::int32_t corner = first; corner < first + faces.Size(face); ++corner) {
    if (faces.nodes[static_cast<std::size_t>(corner)] == from && EndOf(faces, face, corner) == to) {
      return true;
    }
  }
  return false;
}

}  // namespace

FaceEdges::FaceEdges(const FaceList& faces, std::int64_t pointCount)
    : m_beyond(faces.nodes.size(), kAlone) {
  const std::int64_t threads = std::max(1, vtkSMPTools::GetEstimatedNumberOfThreads());
  const std::int64_t ranges = faces.Count() < 10000 ? 1 : threads;
  vtkSMPTools::For(0, ranges, 1, [&](std::int64_t begin, std::int64_t end) {
    for (std::int64_t n = begin; n < end; ++n) {
      FindFaces(faces, n * pointCount / ranges, (n + 1) * pointCount / ranges);
    }
  });
}

void FaceEdges::FindFaces(const FaceList& faces, std::int64_t firstPoint, std::int64_t lastPoint) {
  constexpr std::uint32_t kNobody = std::numeric_limits<std::uint32_t>::max();
  struct Entry {
    std::int32_t high;
    std::int32_t face;
    std::int32_t corner;
    std::int32_t otherCorner;
    std::uint32_t next;
  };
  std::vector<std::uint32_t> newest(static_cast<std::size_t>(lastPoint - firstPoint), kNobody);
  std::vector<Entry> entries;
  entries.reserve(newest.size() * 2 + 16);
  const auto meet = [&](std::int32_t low, std::int32_t high, std::int32_t face,
                        std::int32_t corner) {
    std::uint32_t& head = newest[static_cast<std::size_t>(low - firstPoint)];
    for (std::uint32_t n = head; n != kNobody; n = entries[n].next) {
      Entry& entry = entries[n];
      if (entry.high != high) continue;
      const auto here = static_cast<std::size_t>(corner);
      if (entry.otherCorner < 0) {
        entry.otherCorner = corner;
        m_beyond[here] = entry.face;
        m_beyond[static_cast<std::size_t>(entry.corner)] = face;
      } else {
        m_beyond[here] = kMany;
        m_beyond[static_cast<std::size_t>(entry.corner)] = kMany;
        m_beyond[static_cast<std::size_t>(entry.otherCorner)] = kMany;
      }
      return;
    }
    entries.push_back({high, face, corner, -1, head});
    head = static_cast<std::uint32_t>(entries.size() - 1);
  };
  for (std::int64_t face = 0; face < faces.Count(); ++face) {
    const std::int32_t first = faces.offsets[static_cast<std::size_t>(face)];
    const int size = faces.Size(face);
    if (size < 3) continue;
    for (std::int32_t corner = first; corner < first + size; ++corner) {
      const std::int32_t from = faces.nodes[static_cast<std::size_t>(corner)];
      const std::int32_t to = EndOf(faces, face, corner);
      const auto [low, high] = std::minmax(from, to);
      if (low < firstPoint || low >= lastPoint) continue;
      meet(low, high, static_cast<std::int32_t>(face), corner);
    }
  }
}

EdgeList SharpEdges(const FaceList& faces, const FaceEdges& edges, const float* points,
                    double cosine) {
  const std::vector<Vector> normals = NormalsOf(faces, points);
  const auto isSharp = [&](std::int64_t face, std::int32_t corner, std::int32_t other) {
    const Vector& a = normals[static_cast<std::size_t>(face)];
    const Vector& b = normals[static_cast<std::size_t>(other)];
    const double dot = double{a[0]} * b[0] + double{a[1]} * b[1] + double{a[2]} * b[2];
    // Most edges lie in a plane, whichever way their faces are listed.
    if (std::fabs(dot) > cosine && dot > 0.0) {
      return GoesAlong(faces, other, faces.nodes[static_cast<std::size_t>(corner)],
                       EndOf(faces, face, corner));
    }
    const bool isTurned = GoesAlong(faces, other, faces.nodes[static_cast<std::size_t>(corner)],
                                    EndOf(faces, face, corner));
    return (isTurned ? -dot : dot) <= cosine;
  };
  EdgeList sharp;
  for (std::int64_t face = 0; face < faces.Count(); ++face) {
    const std::int32_t first = faces.offsets[static_cast<std::size_t>(face)];
    for (std::int32_t corner = first; corner < first + faces.Size(face); ++corner) {
      const std::int32_t other = edges.Beyond(corner);
      if (faces.Size(face) < 3 || other == FaceEdges::kMany || (other >= 0 && other < face)) {
        continue;
      }
      if (other >= 0 && !isSharp(face, corner, other)) continue;
      sharp.push_back(faces.nodes[static_cast<std::size_t>(corner)]);
      sharp.push_back(EndOf(faces, face, corner));
    }
  }
  return sharp;
}

EdgeList OutlineOf(const FaceList& faces, const FaceEdges& edges,
                   const std::vector<std::int32_t>& marked, const std::vector<char>& isMarked) {
  EdgeList outline;
  for (const std::int32_t face : marked) {
    const std::int32_t first = faces.offsets[static_cast<std::size_t>(face)];
    for (std::int32_t corner = first; corner < first + faces.Size(face); ++corner) {
      const std::int32_t other = edges.Beyond(corner);
      if (other == FaceEdges::kMany || (other >= 0 && isMarked[static_cast<std::size_t>(other)])) {
        continue;
      }
      outline.push_back(faces.nodes[static_cast<std::size_t>(corner)]);
      outline.push_back(EndOf(faces, face, corner));
    }
  }
  return outline;
}

}  // namespace qelhost
