#include "ClippingCube.h"

#include "EntryPoint.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "NumberAttributes.h"
#include "Utilities.h"

#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cmath>

/// A macro because its name is part of the text of internal errors.
#define CUBEZONENAME "PICKING_CUBE"

namespace qelvane::qelutiltools {

namespace {

/// One rewrite is queued at most, whichever cube it is for.
bool isCubePending = false;

Box3d BoxAround(const std::array<Point3d, 8>& points) {
  Box3d box{points[0], points[0]};
  for (const Point3d& point : points) {
    box.min = {std::min(box.min.x, point.x), std::min(box.min.y, point.y),
               std::min(box.min.z, point.z)};
    box.max = {std::max(box.max.x, point.x), std::max(box.max.y, point.y),
               std::max(box.max.z, point.z)};
  }
  return box;
}

bool IsBetween(double value, double low, double high) { return value >= low && value <= high; }

}  // namespace

void RotationTransform::Set(const Point3d& centre, double rxDeg, double ryDeg, double rzDeg) {
  constexpr double kRadiansPerDegree = 0.017453292519943295;
  const double c1 = std::cos(rxDeg * kRadiansPerDegree);
  const double s1 = std::sin(rxDeg * kRadiansPerDegree);
  const double c2 = std::cos(ryDeg * kRadiansPerDegree);
  const double s2 = std::sin(ryDeg * kRadiansPerDegree);
  const double c3 = std::cos(rzDeg * kRadiansPerDegree);
  const double s3 = std::sin(rzDeg * kRadiansPerDegree);
  m_matrix = {{{c2 * c3, -c2 * s3, s2, 0.0},
               {c1 * s3 + s1 * s2 * c3, c1 * c3 - s1 * s2 * s3, -s1 * c2, 0.0},
               {s1 * s3 - c1 * s2 * c3, s1 * c3 + c1 * s2 * s3, c1 * c2, 0.0},
               {0.0, 0.0, 0.0, 1.0}}};
  // T(centre) R T(-centre) moves by what the rotation moves the centre away.
  const Point3d turned = Apply(centre);
  m_matrix[0][3] = centre.x - turned.x;
  m_matrix[1][3] = centre.y - turned.y;
  m_matrix[2][3] = centre.z - turned.z;
}

Point3d RotationTransform::Apply(const Point3d& point) const {
  const auto row = [this, &point](std::size_t n) {
    const MatrixRow& m = m_matrix[n];
    return m[0] * point.x + m[1] * point.y + m[2] * point.z + m[3];
  };
  return {row(0), row(1), row(2)};
}

void CClippingCube::BuildTransforms() {
  const double rx = m_shape[3];
  const double ry = m_shape[4];
  const double rz = m_shape[5];
  m_isRotated = rx != 0.0 || ry != 0.0 || rz != 0.0;
  m_forward.Set(m_anchor, rx, ry, rz);
  m_inverse.Set(m_anchor, -rx, -ry, -rz);
}

void CClippingCube::ComputeCorners() {
  const auto [x0, y0, z0] = m_anchor;
  const double x1 = x0 + m_shape[0];
  const double y1 = y0 + m_shape[1];
  const double z1 = z0 + m_shape[2];
  m_corners = {{{x0, y0, z0},
                {x0, y1, z0},
                {x1, y1, z0},
                {x1, y0, z0},
                {x0, y0, z1},
                {x0, y1, z1},
                {x1, y1, z1},
                {x1, y0, z1}}};
  m_unrotatedBox = BoxAround(m_corners);
  if (m_isRotated) {
    for (Point3d& corner : m_corners) corner = m_forward.Apply(corner);
  }
  m_boundingBox = BoxAround(m_corners);
  m_isGeometryValid = true;
}

bool CClippingCube::IsInside(double x, double y, double z) const {
  if (!m_isRotated) return true;
  const Point3d point = m_inverse.Apply({x, y, z});
  const Box3d& box = m_unrotatedBox;
  return IsBetween(point.x, box.min.x, box.max.x) && IsBetween(point.y, box.min.y, box.max.y) &&
         IsBetween(point.z, box.min.z, box.max.z);
}

std::uint64_t CClippingCube::InsideOf(const PointBlock& points, std::uint64_t wanted) const {
  if (!m_isRotated) return wanted;
  const auto& [low, high] = m_unrotatedBox;
  return PointsInTurnedBox(points, m_inverse.Rows(),
                           {{{low.x, high.x}, {low.y, high.y}, {low.z, high.z}}});
}

LgIndex_t CClippingCube::GetZoneNum() const {
  const HostLock lock;
  return FindZoneByName(CUBEZONENAME);
}

bool CClippingCube::Create() {
  const HostLock lock;
  DeleteZone();
  if (!ReadExtents()) return false;
  ComputeCorners();
  if (!OverlapsExtents()) PlaceByDefault();
  AddZone();
  return true;
}

void CClippingCube::PlaceByDefault() {
  Point3d centre;
  const double halfSize = DefaultSize(centre);
  const double dx = m_extents.max.x - m_extents.min.x;
  const double dy = m_extents.max.y - m_extents.min.y;
  const double dz = m_extents.max.z - m_extents.min.z;
  const double longest = std::max({dx, dy, dz});
  const auto halfAlong = [longest, halfSize](double width) {
    return std::max(0.1 * longest, width / longest * halfSize);
  };
  const double hx = halfAlong(dx);
  const double hy = halfAlong(dy);
  const double hz = halfAlong(dz);
  m_anchor = {centre.x - hx, centre.y - hy, centre.z - hz};
  m_shape[0] = 2 * hx;
  m_shape[1] = 2 * hy;
  m_shape[2] = 2 * hz;
  m_shape[3] = m_shape[4] = m_shape[5] = 0.0;
  ComputeCorners();
}

void CClippingCube::AddZone() {
  const LgIndex_t zoneNum = NumberOfNextZone();
  const auto iMax = static_cast<LgIndex_t>(kCornerCount);
  HOST_CHECK(QelUtilDataSetAddZone(CUBEZONENAME, iMax, 1, 1, ZoneType_FEBrick, NULL));

  QelSet* zoneSet = nullptr;
  HOST_CHECK(zoneSet = QelUtilSetAlloc(FALSE));
  const HostSet owned(zoneSet);
  HOST_CHECK(QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE));
  QelUtilStateChanged(StateChange_ZonesAdded, reinterpret_cast<ArbParam_t>(zoneSet));
  m_frameId = QelUtilFrameGetUniqueID();
  SetNodeMap(zoneNum);
  QelUtilStateChanged(StateChange_NodeMapsAltered, reinterpret_cast<ArbParam_t>(zoneSet));

  UpdateZone();
  QelUtilZoneSetStrandID(zoneNum, 0);
  StyleZone(zoneNum);
}

void CClippingCube::SetNodeMap(LgIndex_t zoneNum) const {
  QelNodeMap* nodeMap = nullptr;
  HOST_CHECK(nodeMap = QelUtilDataNodeGetWritableRef(zoneNum));
  for (LgIndex_t corner = 1; corner <= static_cast<LgIndex_t>(kCornerCount); ++corner) {
    QelUtilDataNodeSetByRef(nodeMap, 1, corner, corner);
  }
}

void CClippingCube::UpdateZone() {
  const HostLock lock;
  const LgIndex_t zoneNum = GetZoneNum();
  if (zoneNum == 0) return;
  ComputeCorners();

  QelFieldData* fieldPtrX = nullptr;
  QelFieldData* fieldPtrY = nullptr;
  QelFieldData* fieldPtrZ = nullptr;
  HOST_CHECK(fieldPtrX = QelUtilDataValueGetWritableNativeRef(zoneNum, m_xVar));
  HOST_CHECK(fieldPtrY = QelUtilDataValueGetWritableNativeRef(zoneNum, m_yVar));
  HOST_CHECK(fieldPtrZ = QelUtilDataValueGetWritableNativeRef(zoneNum, m_zVar));
  LgIndex_t node = 0;
  for (const Point3d& corner : m_corners) {
    ++node;
    QelUtilDataValueSetByRef(fieldPtrX, node, corner.x);
    QelUtilDataValueSetByRef(fieldPtrY, node, corner.y);
    QelUtilDataValueSetByRef(fieldPtrZ, node, corner.z);
  }

  QelSet* zoneSet = nullptr;
  HOST_CHECK(zoneSet = QelUtilSetAlloc(FALSE));
  const HostSet ownedZones(zoneSet);
  HOST_CHECK(QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE));
  QelSet* varSet = nullptr;
  HOST_CHECK(varSet = QelUtilSetAlloc(FALSE));
  const HostSet ownedVars(varSet);
  HOST_CHECK(QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_xVar), FALSE));
  HOST_CHECK(QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_yVar), FALSE));
  HOST_CHECK(QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_zVar), FALSE));
  SendVarsAlteredStateChange(zoneSet, varSet);
  RedrawIfRecording();
}

void CClippingCube::Update() {
  BuildTransforms();
  const HostLock lock;
  if (isCubePending || QelUtilFrameGetPlotType() != PlotType_Cartesian3D) return;
  const auto clientData = reinterpret_cast<ArbParam_t>(this);
  HOST_CHECK(QelUtilOnIdleQueueAddCallback(OnIdleUpdateCube, clientData));
  isCubePending = true;
}

std::unique_ptr<const CPickBoundary3d> CClippingCube::Updated() const {
  std::unique_ptr<CClippingCube> copy(new CClippingCube(*this));
  copy->BuildTransforms();
  return copy;
}

void CClippingCube::OnIdleUpdateCube(ArbParam_t clientData) {
  EntryPoint(nullptr, [clientData] {
    isCubePending = false;
    auto* const cube = reinterpret_cast<CClippingCube*>(clientData);
    if (IsAliveAndInUse(cube)) cube->UpdateZone();
  });
}

void CClippingCube::RecordAsMacro() const {
  MacroCommand& command = MacroEngine.CurrentCommand;
  command.Command = Command_PickCube;
  command.Attributes.clear();
  MacroEngine.AddNumberAttribute(Attribute_AnchorX, m_anchor.x);
  MacroEngine.AddNumberAttribute(Attribute_AnchorY, m_anchor.y);
  MacroEngine.AddNumberAttribute(Attribute_AnchorZ, m_anchor.z);
  MacroEngine.AddNumberAttribute(Attribute_SizeX, m_shape[0]);
  MacroEngine.AddNumberAttribute(Attribute_SizeY, m_shape[1]);
  MacroEngine.AddNumberAttribute(Attribute_SizeZ, m_shape[2]);
  MacroEngine.AddNumberAttribute(Attribute_RotateX, m_shape[3]);
  MacroEngine.AddNumberAttribute(Attribute_RotateY, m_shape[4]);
  MacroEngine.AddNumberAttribute(Attribute_RotateZ, m_shape[5]);
  MacroEngine.CommitCommand();
}

bool CClippingCube::SetFromMacro(const MacroCommand& command) {
  constexpr bool kRequired = true;
  Point3d anchor;
  std::array<double, 6> shape{};
  if (!ReadNumberAttributes(command, {{Attribute_SizeX, &shape[0]},
                                      {Attribute_SizeY, &shape[1]},
                                      {Attribute_SizeZ, &shape[2]},
                                      {Attribute_AnchorX, &anchor.x},
                                      {Attribute_AnchorY, &anchor.y},
                                      {Attribute_AnchorZ, &anchor.z},
                                      {Attribute_RotateX, &shape[3], !kRequired, 0.0},
                                      {Attribute_RotateY, &shape[4], !kRequired, 0.0},
                                      {Attribute_RotateZ, &shape[5], !kRequired, 0.0}})) {
    return false;
  }
  m_anchor = anchor;
  m_shape = shape;
  BuildTransforms();
  ComputeCorners();
  return true;
}

}  // namespace qelvane::qelutiltools
