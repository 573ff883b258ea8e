#pragma once

#include "CMacroEngine.h"
#include "HostServices.h"
#include "InsideSet.h"
#include "PointBlock.h"
#include "RangeKernels.h"

#include "qelvane/Types.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

namespace qelvane::qelutiltools {

struct Point3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// An axis-aligned box, ends included.
struct Box3d {
  Point3d min;
  Point3d max;
};

/// A 3D area of an area pick, which the user sees as a zone of its own in the data set.
///
/// Zone and frame: there is at most one zone a boundary, found by its name wherever it stands in
/// the data set. It is made by Create in the frame that is active then.
class CPickBoundary3d {
 public:
  /// Answers whether the user picks with this boundary now. Deferred work does nothing when not.
  using InUse = std::function<bool()>;

  explicit CPickBoundary3d(InUse isInUse);
  virtual ~CPickBoundary3d();
  CPickBoundary3d& operator=(const CPickBoundary3d&) = delete;

  /// Makes the zone anew. The shape stays when it overlaps the data in x and y, else it is placed
  /// in the middle of the data. False, with no zone, unless the frame is a 3D Cartesian plot.
  virtual bool Create() = 0;

  /// Hands the boundary to the macro engine as the command that makes it again.
  virtual void RecordAsMacro() const = 0;

  /// Takes the shape of a command, without touching the zone. False, with the reason in the macro
  /// engine's error text and the shape as it was, when an attribute is wrong or missing.
  virtual bool SetFromMacro(const MacroCommand& command) = 0;

  /// The zone's number, 0 when there is none.
  virtual LgIndex_t GetZoneNum() const = 0;

  /// Whether a point of the bounding box is inside.
  virtual bool IsInside(double x, double y, double z) const = 0;

  /// Whether all points of the bounding box are.
  virtual bool FillsItsBox() const { return false; }

  /// IsInside for 64 points at once, the first in the lowest bit. Only the bits in `wanted` count,
  /// whose points lie in the bounding box.
  virtual std::uint64_t InsideOf(const PointBlock& points, std::uint64_t wanted) const;

  /// Follows a change of the shape; the zone follows when the host is idle.
  virtual void Update() = 0;

  /// The shape as it is once Update has followed it, to be asked which points are inside: a copy
  /// that has no zone and tells the host nothing.
  virtual std::unique_ptr<const CPickBoundary3d> Updated() const = 0;

  /// Removes the zone from the frame that it was made in and leaves the active frame active.
  void DeleteZone();

  /// Whether the zone's shade layer is shown, now and when it is made anew.
  void ShowShade(bool show);

  /// One number of the shape, counted as Nudge counts them; 0 for one that there is not.
  double Parameter(int parameter) const;

  /// Sets it and calls Update.
  void SetParameter(int parameter, double value);

  /// Changes one number of the shape by a step and calls Update. parameter: 0 to 2 the anchor, 3 to
  /// 5 the sizes (3 the radius), 6 to 8 the rotations, which step by 5 degrees; any other changes
  /// nothing. value receives the new number.
  void Nudge(int parameter, bool increase, double& value);

  /// Sets the bits of the zone's nodes that are inside; inside has one bit per node of the zone.
  /// The services make it faster and change nothing else.
  ///
  /// throws  std::runtime_error when a coordinate cannot be read
  void MarkInside(LgIndex_t zoneNum, LgIndex_t xVar, LgIndex_t yVar, LgIndex_t zVar,
                  InsideSet& inside, const HostServices& services = {}) const;

  /// Whether there is a shape to pick with: false until it has been placed or given.
  bool IsGeometryValid() const { return m_isGeometryValid; }
  bool IsShadeShown() const { return m_isShadeShown; }
  const Box3d& BoundingBox() const { return m_boundingBox; }

  /// The numbers that Nudge counts; equal ones make equal shapes.
  std::array<double, 9> Definition() const {
    return {m_anchor.x, m_anchor.y, m_anchor.z, m_shape[0], m_shape[1],
            m_shape[2], m_shape[3], m_shape[4], m_shape[5]};
  }

 protected:
  /// A copy of the shape that nobody picks with and that no idle callback works for.
  CPickBoundary3d(const CPickBoundary3d& other);

  /// Reads the data's extents and widens them. False, changing nothing, unless the frame is a 3D
  /// Cartesian plot.
  bool ReadExtents();

  /// The number that the zone of the boundary gets when it is added to the data.
  static LgIndex_t NumberOfNextZone();

  /// Whether the bounding box and the extents overlap in x and y; z does not count.
  bool OverlapsExtents() const;

  /// Half the size of a boundary placed by default, smaller in a magnified view; sets the step.
  double DefaultSize(Point3d& centre);

  /// Makes a new zone an active, orange, see-through shape that blanking never hides.
  void StyleZone(LgIndex_t zone) const;

  /// Whether an idle callback may still work for the boundary that it was queued for: it may have
  /// gone meanwhile.
  static bool IsAliveAndInUse(const CPickBoundary3d* boundary);

  /// Null for a parameter that there is not.
  double* FindParameter(int parameter);

  QelUniqueID_t m_frameId = 0;  ///< that the zone was made in; 0: there is no zone
  LgIndex_t m_xVar = 0;
  LgIndex_t m_yVar = 0;
  LgIndex_t m_zVar = 0;
  double m_step = 1.0;
  bool m_isGeometryValid = false;
  bool m_isShadeShown = false;
  Box3d m_extents;
  Box3d m_boundingBox;
  Point3d m_anchor{1e150, 1e150, 1e150};  ///< outside any data, so the first Create places it
  std::array<double, 6> m_shape{};        ///< sizes and rotations, or radius and its square

 private:
  InUse m_isInUse;
};

}  // namespace qelvane::qelutiltools
