#pragma once

#include "PickBoundary3d.h"

namespace qelvane::qelutiltools {

/// A sphere around the anchor, shown as the zone PICKING_SPHERE, which the host makes and which is
/// made anew for every change. A negative radius holds no point.
class CClippingSphere : public CPickBoundary3d {
 public:
  using CPickBoundary3d::CPickBoundary3d;

  bool Create() override;
  void RecordAsMacro() const override;
  bool SetFromMacro(const MacroCommand& command) override;
  LgIndex_t GetZoneNum() const override;
  bool IsInside(double x, double y, double z) const override;
  std::uint64_t InsideOf(const PointBlock& points, std::uint64_t wanted) const override;
  void Update() override;
  std::unique_ptr<const CPickBoundary3d> Updated() const override;

 private:
  CClippingSphere(const CClippingSphere& other) = default;
  double Radius() const { return m_shape[0]; }
  void ComputeGeometry();
  void CreateSphereZone();
  static void OnIdleUpdateSphere(ArbParam_t clientData);
};

}  // namespace qelvane::qelutiltools
