#pragma once

#include "PickBoundary3d.h"
#include "ShapeKernels.h"

#include <array>

namespace qelvane::qelutiltools {

/// A rotation about a centre, as a matrix that takes points as columns.
class RotationTransform {
 public:
  /// Turns about Z, then Y, then X, all fixed axes, in degrees.
  void Set(const Point3d& centre, double rxDeg, double ryDeg, double rzDeg);
  Point3d Apply(const Point3d& point) const;

  /// What Apply makes of x, y and z, row by row.
  std::array<MatrixRow, 3> Rows() const { return {m_matrix[0], m_matrix[1], m_matrix[2]}; }

 private:
  std::array<MatrixRow, 4> m_matrix{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
};

/// A box given by its lowest corner and its size, turned about that corner by three angles; shown
/// as the zone PICKING_CUBE, one brick with the box's corners as nodes.
class CClippingCube : public CPickBoundary3d {
 public:
  using CPickBoundary3d::CPickBoundary3d;

  bool Create() override;
  void RecordAsMacro() const override;
  bool SetFromMacro(const MacroCommand& command) override;
  LgIndex_t GetZoneNum() const override;

  /// Turns the point back by the negated angles. That is the exact inverse for one angle alone;
  /// with two or three it is not, and journals rely on the answers that it gives.
  bool IsInside(double x, double y, double z) const override;
  bool FillsItsBox() const override { return !m_isRotated; }
  std::uint64_t InsideOf(const PointBlock& points, std::uint64_t wanted) const override;
  void Update() override;
  std::unique_ptr<const CPickBoundary3d> Updated() const override;

 private:
  CClippingCube(const CClippingCube& other) = default;
  void BuildTransforms();
  void ComputeCorners();
  void PlaceByDefault();
  void AddZone();
  void SetNodeMap(LgIndex_t zoneNum) const;
  void UpdateZone();
  static void OnIdleUpdateCube(ArbParam_t clientData);

  static constexpr std::size_t kCornerCount = 8;

  std::array<Point3d, kCornerCount> m_corners{};  ///< in node order, after rotation
  Box3d m_unrotatedBox;
  RotationTransform m_forward;
  RotationTransform m_inverse;
  bool m_isRotated = false;
};

}  // namespace qelvane::qelutiltools
