#include "PickBoundary3d.h"

#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "NodeColumn.h"
#include "NodeWords.h"
#include "PointColumns.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"
#include "qelvane/toolbox/Set.h"
#include "qelvane/toolbox/StyleValue.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

namespace qelvane::qelutiltools {

namespace {

/// The boundaries that exist. Idle callbacks are handed plain numbers, which may outlive them. The
/// list is never destroyed: the last boundaries go when the process ends.
std::vector<const CPickBoundary3d*>& LivingBoundaries() {
  static auto* const boundaries = new std::vector<const CPickBoundary3d*>;
  return *boundaries;
}

/// A flat axis is widened too, so that a boundary around it is never empty.
void Widen(double& min, double& max) {
  const double width = max - min;
  const double margin = width == 0.0 ? 0.1 : 0.1 * width;
  min -= margin;
  max += margin;
}

void ReadRange(LgIndex_t var, double& min, double& max) {
  QelUtilVarGetMinMax(var, &min, &max);
  Widen(min, max);
}

void SetFieldMapStyle(LgIndex_t zone, std::initializer_list<const char*> path, ArbParam_t value) {
  const toolbox::Set fieldMaps(static_cast<SetIndex_t>(QelUtilZoneGetFieldMap(zone)));
  toolbox::StyleValue style(path);
  style.setObjectSet(fieldMaps.getRef());
  style.set(value);
}

void DeleteZoneNumber(LgIndex_t zoneNum) {
  QelSet* zoneSet = nullptr;
  HOST_CHECK(zoneSet = QelUtilSetAlloc(FALSE));
  const HostSet owned(zoneSet);
  HOST_CHECK(QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE));
  HOST_CHECK(QelUtilDataSetDeleteZone(zoneSet));
}

}  // namespace

CPickBoundary3d::CPickBoundary3d(InUse isInUse) : m_isInUse(std::move(isInUse)) {
  LivingBoundaries().push_back(this);
}

CPickBoundary3d::CPickBoundary3d(const CPickBoundary3d& other)
    : CPickBoundary3d([] { return false; }) {
  m_isGeometryValid = other.m_isGeometryValid;
  m_boundingBox = other.m_boundingBox;
  m_anchor = other.m_anchor;
  m_shape = other.m_shape;
}

CPickBoundary3d::~CPickBoundary3d() {
  std::vector<const CPickBoundary3d*>& living = LivingBoundaries();
  living.erase(std::remove(living.begin(), living.end(), this), living.end());
}

bool CPickBoundary3d::IsAliveAndInUse(const CPickBoundary3d* boundary) {
  const std::vector<const CPickBoundary3d*>& living = LivingBoundaries();
  return std::find(living.begin(), living.end(), boundary) != living.end() && boundary->m_isInUse();
}

void CPickBoundary3d::DeleteZone() {
  const HostLock lock;
  const QelUniqueID_t currentFrameId = QelUtilFrameGetUniqueID();
  const bool isElsewhere = m_frameId >= 1 && m_frameId != currentFrameId;
  if (!isElsewhere || QelUtilFrameActivateByUniqueID(m_frameId)) {
    const LgIndex_t zoneNum = GetZoneNum();
    try {
      if (zoneNum != 0) DeleteZoneNumber(zoneNum);
    } catch (...) {
      // The user's frame stays the active one, whatever went wrong in the other.
      QelUtilFrameActivateByUniqueID(currentFrameId);
      throw;
    }
  }
  HOST_CHECK(QelUtilFrameActivateByUniqueID(currentFrameId));
  m_frameId = 0;
}

LgIndex_t CPickBoundary3d::NumberOfNextZone() {
  // Data that a boundary lies around has a zone. With none the number would be that of a zone of
  // the user, which would be written over.
  LgIndex_t numZones = 0;
  HOST_CHECK((numZones = QelUtilDataSetGetNumZones()) > 0);
  return numZones + 1;
}

bool CPickBoundary3d::ReadExtents() {
  const HostLock lock;
  if (QelUtilFrameGetPlotType() != PlotType_Cartesian3D) return false;
  // A boundary without its variables could be made, but not moved any more.
  HOST_CHECK(m_xVar = QelUtilVarGetNumByAssignment('X'));
  HOST_CHECK(m_yVar = QelUtilVarGetNumByAssignment('Y'));
  HOST_CHECK(m_zVar = QelUtilVarGetNumByAssignment('Z'));
  ReadRange(m_xVar, m_extents.min.x, m_extents.max.x);
  ReadRange(m_yVar, m_extents.min.y, m_extents.max.y);
  ReadRange(m_zVar, m_extents.min.z, m_extents.max.z);
  return true;
}

bool CPickBoundary3d::OverlapsExtents() const {
  return !(m_boundingBox.min.x > m_extents.max.x || m_extents.min.x > m_boundingBox.max.x ||
           m_boundingBox.min.y > m_extents.max.y || m_extents.min.y > m_boundingBox.max.y);
}

double CPickBoundary3d::DefaultSize(Point3d& centre) {
  const HostLock lock;
  const Point3d& low = m_extents.min;
  const Point3d& high = m_extents.max;
  centre = {0.5 * (low.x + high.x), 0.5 * (low.y + high.y), 0.5 * (low.z + high.z)};
  const double dx = high.x - low.x;
  const double dy = high.y - low.y;
  const double dz = high.z - low.z;
  double magnify = 1.0;
  HOST_CHECK(QelUtilViewGetMagnification(&magnify));
  const double halfSize = 0.5 * std::sqrt(dx * dx + dy * dy + dz * dz) / std::max(magnify, 1.0);
  m_step = 0.04 * halfSize;
  return halfSize;
}

void CPickBoundary3d::ShowShade(bool show) {
  const HostLock lock;
  const LgIndex_t zone = GetZoneNum();
  if (zone < 1) return;
  m_isShadeShown = show;
  SetFieldMapStyle(zone, {SV_FIELDMAP, SV_SHADE, SV_SHOW}, show);
}

void CPickBoundary3d::StyleZone(LgIndex_t zone) const {
  constexpr double kLineThickness = 0.4;
  constexpr ArbParam_t kOn = 1;
  constexpr ArbParam_t kOff = 0;
  const HostLock lock;
  const toolbox::Set ownedZones(static_cast<SetIndex_t>(zone));
  const QelSet* const zones = ownedZones.getRef();
  QelUtilZoneSetActive(zones, AssignOp_PlusEquals);
  QelUtilZoneSetEdgeLayer(SV_SHOW, zones, 0.0, kOn);
  QelUtilZoneSetEdgeLayer(SV_COLOR, zones, 0.0, ColorIndex_Orange);
  QelUtilZoneSetEdgeLayer(SV_LINETHICKNESS, zones, kLineThickness, 0);
  QelUtilZoneSetMesh(SV_SHOW, zones, 0.0, kOn);
  QelUtilZoneSetMesh(SV_COLOR, zones, 0.0, ColorIndex_Orange);
  QelUtilZoneSetShade(SV_SHOW, zones, 0.0, m_isShadeShown ? kOn : kOff);
  QelUtilZoneSetShade(SV_COLOR, zones, 0.0, ColorIndex_Orange);
  QelUtilZoneSetScatter(SV_SHOW, zones, 0.0, kOff);
  QelUtilZoneSetContour(SV_SHOW, zones, 0.0, kOff);
  QelUtilZoneSetVector(SV_SHOW, zones, 0.0, kOff);

  SetFieldMapStyle(zone, {SV_FIELDMAP, SV_SURFACES, SV_SURFACESTOPLOT}, 0);
  // Pick blanking must never hide the boundary itself.
  SetFieldMapStyle(zone, {SV_FIELDMAP, SV_EFFECTS, SV_USEVALUEBLANKING}, kOff);
  for (const char* const object : {SV_SHOWSLICES, SV_SHOWISOSURFACES, SV_SHOWSTREAMTRACES}) {
    SetFieldMapStyle(zone, {SV_FIELDMAP, SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, object}, kOff);
  }
}

double* CPickBoundary3d::FindParameter(int parameter) {
  double* const numbers[] = {&m_anchor.x, &m_anchor.y, &m_anchor.z, &m_shape[0], &m_shape[1],
                             &m_shape[2], &m_shape[3], &m_shape[4], &m_shape[5]};
  if (parameter < 0 || parameter >= static_cast<int>(std::size(numbers))) return nullptr;
  return numbers[parameter];
}

double CPickBoundary3d::Parameter(int parameter) const {
  const std::array<double, 9> numbers = Definition();
  if (parameter < 0 || parameter >= static_cast<int>(numbers.size())) return 0.0;
  return numbers[static_cast<std::size_t>(parameter)];
}

void CPickBoundary3d::SetParameter(int parameter, double value) {
  if (double* const number = FindParameter(parameter)) *number = value;
  Update();
}

void CPickBoundary3d::Nudge(int parameter, bool increase, double& value) {
  constexpr double kAngleStepDeg = 5.0;
  constexpr double kFullTurnDeg = 360.0;
  constexpr int kFirstRotation = 6;
  if (double* const number = FindParameter(parameter)) {
    if (parameter < kFirstRotation) {
      *number += increase ? m_step : -m_step;
    } else {
      *number = std::fmod(*number + (increase ? kAngleStepDeg : -kAngleStepDeg), kFullTurnDeg);
    }
    value = *number;
  }
  Update();
}

std::uint64_t CPickBoundary3d::InsideOf(const PointBlock& points, std::uint64_t wanted) const {
  return BitsWhere(wanted, [&](int bit) {
    const auto point = static_cast<std::size_t>(bit);
    return IsInside(points[0][point], points[1][point], points[2][point]);
  });
}

void CPickBoundary3d::MarkInside(LgIndex_t zoneNum, LgIndex_t xVar, LgIndex_t yVar, LgIndex_t zVar,
                                 InsideSet& inside, const HostServices& services) const {
  const HostLock lock;
  const QelFieldData* fieldX = nullptr;
  const QelFieldData* fieldY = nullptr;
  const QelFieldData* fieldZ = nullptr;
  HOST_CHECK(fieldX = QelUtilDataValueGetReadableNLRef(zoneNum, xVar));
  HOST_CHECK(fieldY = QelUtilDataValueGetReadableNLRef(zoneNum, yVar));
  HOST_CHECK(fieldZ = QelUtilDataValueGetReadableNLRef(zoneNum, zVar));
  QelFieldGet_pf getXFunction = nullptr;
  QelFieldGet_pf getYFunction = nullptr;
  QelFieldGet_pf getZFunction = nullptr;
  HOST_CHECK(getXFunction = QelUtilDataValueRefGetGetFunc(fieldX));
  HOST_CHECK(getYFunction = QelUtilDataValueRefGetGetFunc(fieldY));
  HOST_CHECK(getZFunction = QelUtilDataValueRefGetGetFunc(fieldZ));

  const std::int64_t nodeCount = inside.NodeCount();
  const PointColumns columns(NodeColumn(fieldX, getXFunction, nodeCount, services.bulk),
                             NodeColumn(fieldY, getYFunction, nodeCount, services.bulk),
                             NodeColumn(fieldZ, getZFunction, nodeCount, services.bulk), nodeCount);
  const Point3d& low = m_boundingBox.min;
  const Point3d& high = m_boundingBox.max;
  const PointBox box({{{low.x, high.x}, {low.y, high.y}, {low.z, high.z}}});
  const bool isItsBox = FillsItsBox();
  MarkWords(columns.CallsHost() ? nullptr : services.parallel, inside,
            [&](std::int64_t word, PointBlock& scratch) {
              if (isItsBox) return columns.InBox(word, box, scratch);
              return columns.InShape(word, box, scratch,
                                     [this](const PointBlock& points, std::uint64_t wanted) {
                                       return InsideOf(points, wanted);
                                     });
            });
}

}  // namespace qelvane::qelutiltools
