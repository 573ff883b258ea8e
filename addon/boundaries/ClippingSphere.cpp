#include "ClippingSphere.h"

#include "EntryPoint.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "NumberAttributes.h"
#include "ShapeKernels.h"
#include "Utilities.h"

#include "qelvane/QelUtil.h"

/// A macro because its name is part of the text of internal errors.
#define SPHEREZONENAME "PICKING_SPHERE"

namespace qelvane::qelutiltools {

namespace {

/// One renewal is queued at most, whichever sphere it is for.
bool isSpherePending = false;

}  // namespace

void CClippingSphere::ComputeGeometry() {
  const double radius = Radius();
  m_boundingBox.min = {m_anchor.x - radius, m_anchor.y - radius, m_anchor.z - radius};
  m_boundingBox.max = {m_anchor.x + radius, m_anchor.y + radius, m_anchor.z + radius};
  m_shape[1] = radius * radius;
  m_isGeometryValid = true;
}

bool CClippingSphere::IsInside(double x, double y, double z) const {
  const double dx = x - m_anchor.x;
  const double dy = y - m_anchor.y;
  const double dz = z - m_anchor.z;
  const double radiusSquared = m_shape[1];
  return !(dy * dy + dx * dx + dz * dz > radiusSquared);
}

std::uint64_t CClippingSphere::InsideOf(const PointBlock& points, std::uint64_t) const {
  return PointsInSphere(points, {m_anchor.x, m_anchor.y, m_anchor.z}, m_shape[1]);
}

LgIndex_t CClippingSphere::GetZoneNum() const {
  const HostLock lock;
  return FindZoneByName(SPHEREZONENAME);
}

bool CClippingSphere::Create() {
  const HostLock lock;
  if (!ReadExtents()) return false;
  ComputeGeometry();
  if (!OverlapsExtents()) {
    m_shape[0] = DefaultSize(m_anchor);
    ComputeGeometry();
  }
  CreateSphereZone();
  m_frameId = QelUtilFrameGetUniqueID();
  return true;
}

void CClippingSphere::CreateSphereZone() {
  const HostLock lock;
  DeleteZone();
  const LgIndex_t zoneNum = NumberOfNextZone();
  const double radius = Radius();
  HOST_CHECK(QelUtilCreateSphericalZone(12, 12, m_anchor.x, m_anchor.y, m_anchor.z - radius, radius, FieldDataType_Invalid));
  {
    QelSet* zoneSet = nullptr;
    HOST_CHECK(zoneSet = QelUtilSetAlloc(FALSE));
    const HostSet owned(zoneSet);
    HOST_CHECK(QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE));
    QelUtilStateChanged(StateChange_ZonesAdded, reinterpret_cast<ArbParam_t>(zoneSet));
  }
  HOST_CHECK(QelUtilZoneRename(zoneNum, SPHEREZONENAME));
  QelUtilZoneSetStrandID(zoneNum, 0);
  StyleZone(zoneNum);
  RedrawIfRecording();
}

void CClippingSphere::Update() {
  ComputeGeometry();
  const HostLock lock;
  if (isSpherePending || QelUtilFrameGetPlotType() != PlotType_Cartesian3D) return;
  const auto clientData = reinterpret_cast<ArbParam_t>(this);
  HOST_CHECK(QelUtilOnIdleQueueAddCallback(OnIdleUpdateSphere, clientData));
  isSpherePending = true;
}

std::unique_ptr<const CPickBoundary3d> CClippingSphere::Updated() const {
  std::unique_ptr<CClippingSphere> copy(new CClippingSphere(*this));
  copy->ComputeGeometry();
  return copy;
}

void CClippingSphere::OnIdleUpdateSphere(ArbParam_t clientData) {
  EntryPoint(nullptr, [clientData] {
    isSpherePending = false;
    auto* const sphere = reinterpret_cast<CClippingSphere*>(clientData);
    if (IsAliveAndInUse(sphere)) sphere->CreateSphereZone();
  });
}

void CClippingSphere::RecordAsMacro() const {
  MacroCommand& command = MacroEngine.CurrentCommand;
  command.Command = Command_PickSphere;
  command.Attributes.clear();
  MacroEngine.AddNumberAttribute(Attribute_AnchorX, m_anchor.x);
  MacroEngine.AddNumberAttribute(Attribute_AnchorY, m_anchor.y);
  MacroEngine.AddNumberAttribute(Attribute_AnchorZ, m_anchor.z);
  MacroEngine.AddNumberAttribute(Attribute_Radius, Radius());
  MacroEngine.CommitCommand();
}

bool CClippingSphere::SetFromMacro(const MacroCommand& command) {
  constexpr bool kRequired = true;
  Point3d centre;
  double radius = 0.0;
  if (!ReadNumberAttributes(command, {{Attribute_Radius, &radius},
                                      {Attribute_SizeX, &radius},
                                      {Attribute_AnchorX, &centre.x},
                                      {Attribute_AnchorY, &centre.y, !kRequired},
                                      {Attribute_AnchorZ, &centre.z, !kRequired}})) {
    return false;
  }
  m_anchor = centre;
  m_shape[0] = radius;
  ComputeGeometry();
  return true;
}

}  // namespace qelvane::qelutiltools
