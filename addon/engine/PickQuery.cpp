// What an apply would write, told before anything is written. Nothing here changes the session, the
// host or the data.
#include "AreaMarking.h"
#include "GeometryChoice.h"
#include "HostLock.h"
#include "Parallel.h"
#include "Selvane.h"
#include "TakenWords.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

/// The bits must be 0.
void SetBits(const TakenItems& taken, const QelParallel_s* parallel, std::uint64_t* bits) {
  ForWords(taken.callsHost ? nullptr : parallel, WordsFor(taken.count),
           [&](std::int64_t first, std::int64_t last) {
             VisitTakenWords(
                 taken, taken.count, first, last,
                 [bits](std::int64_t word, std::int64_t wordCount, const std::uint64_t* words) {
                   for (std::int64_t n = 0; n < wordCount; ++n) {
                     bits[word + n] |= words[n];
                   }
                 });
           });
}

}  // namespace

bool Selvane::MarkWhatApplyWrites(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  const HostLock lock;
  if (zone < 1 || zone > QelUtilDataSetGetNumZones() || TargetVariable() < 1) return false;
  if (const CPickBoundary3d* const boundary = Boundary3d()) {
    const LgIndex_t boundaryZone = boundary->GetZoneNum();
    const std::unique_ptr<const CPickBoundary3d> asApplied = boundary->Updated();
    if (boundaryZone < 1 || !asApplied->IsGeometryValid() ||
        QelUtilFrameGetPlotType() != PlotType_Cartesian3D) {
      return false;
    }
    return zone == boundaryZone || MarkInZone(zone, FillerOf(*asApplied), bits, bitCount);
  }
  if (m_pickKind == PickKind::Element) return false;
  const GeometryChoice choice = ChooseGeometry();
  if (choice.fault != GeometryFault::None || !AskAbout(choice.geometry)) return false;
  const auto fillInside = FillerOf(m_askedBoundary, QelUtilFrameGetPlotType());
  return fillInside && MarkInZone(zone, *fillInside, bits, bitCount);
}

/// Questions come zone by zone: a polygon that is the same keeps what was made to answer fast.
bool Selvane::AskAbout(QelGeomID_t geometry) {
  const bool usePaperCoords = QelUtilFrameGetPlotType() == PlotType_Cartesian2D;
  CPolyBoundary boundary;
  if (!boundary.ReadFromGeometry(geometry, usePaperCoords)) return false;
  if (boundary.IsCircle() || !(boundary.Definition() == m_askedBoundary.Definition())) {
    m_askedBoundary = boundary;
  }
  return true;
}

bool Selvane::MarkInZone(LgIndex_t zone, const InsideFiller& fillInside, std::uint64_t* bits,
                         std::int64_t bitCount) const {
  if (!QelUtilZoneIsActive(zone) || !RelevantZones().contains(zone)) return true;
  const ZoneSize size = SizeOfZone(zone);
  if (size.nodeCount < 1 || size.cellCount < 1) return true;
  const std::optional<QelValueLocation_e> location = WhereApplyWrites(zone);
  if (!location) return true;
  const bool isCellCentred = *location == ValueLocation_CellCentered;
  if (bitCount < (isCellCentred ? size.cellCount : size.nodeCount)) return false;
  const HostServices services = AskHostServices();
  return DecideInZone({zone, isCellCentred, size.nodeCount}, fillInside, services,
                      [&](const TakenItems& taken) { SetBits(taken, services.parallel, bits); });
}

/// Nothing for a zone in which the target stays passive. Whether the host would let its values be
/// written is not asked: for that it would have to get ready for writing.
std::optional<QelValueLocation_e> Selvane::WhereApplyWrites(LgIndex_t zone) const {
  const LgIndex_t varNum = TargetVariable();
  // A blanking variable that is not there is made with values at the cells.
  if (varNum > QelUtilDataSetGetNumVars()) {
    if (!m_isBlankMode) return std::nullopt;
    return ValueLocation_CellCentered;
  }
  if (!m_isBlankMode && QelUtilDataValueIsPassive(zone, varNum)) return std::nullopt;
  return QelUtilDataValueGetLocation(zone, varNum);
}

}  // namespace qelvane::qelutiltools
