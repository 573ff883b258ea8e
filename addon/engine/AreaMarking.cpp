#include "AreaMarking.h"

#include "Bits.h"
#include "HostCheck.h"
#include "NodeColumn.h"
#include "NodeWords.h"
#include "PointColumns.h"
#include "ShapeKernels.h"

#include "qelvane/QelUtil.h"

#include <cstddef>
#include <optional>

namespace qelvane::qelutiltools {

namespace {

/// One coordinate of a zone's nodes; a passive one is 0 everywhere.
FieldColumn CoordinateOf(LgIndex_t zoneNum, LgIndex_t varNum, const HostServices& services,
                         std::int64_t nodeCount) {
  if (QelUtilDataValueIsPassive(zoneNum, varNum)) return FieldColumn();
  const QelFieldData* field = nullptr;
  QelFieldGet_pf get = nullptr;
  HOST_CHECK(field = QelUtilDataValueGetReadableNLRef(zoneNum, varNum));
  HOST_CHECK(get = QelUtilDataValueRefGetGetFunc(field));
  return NodeColumn(field, get, nodeCount, services.bulk);
}

/// Asks about the nodes one after the other, since each asks the host in turn:
/// isInside(points, point) is told a node by its place in a block.
template <class IsInside>
void MarkOneByOne(const PointColumns& columns, InsideSet& inside, IsInside isInside) {
  MarkWords(nullptr, inside, [&](std::int64_t word, PointBlock& scratch) {
    columns.Read(word, scratch);
    return WordOf(word, inside.NodeCount(), [&](std::int64_t node) {
      return isInside(scratch, static_cast<std::size_t>(node % kBitsPerWord));
    });
  });
}

/// The two rows of the host's projection that say where in the plane a point is seen.
struct PlaneRows {
  MatrixRow x;
  MatrixRow y;
};

std::optional<PlaneRows> ProjectionRows(const QelBulkAccess_s* bulk) {
  double m[16] = {};
  if (bulk == nullptr || !bulk->projection(m)) return std::nullopt;
  return PlaneRows{{m[0], m[1], m[2], m[3]}, {m[4], m[5], m[6], m[7]}};
}

/// Looks at the points of the plane that lie in the boundary's box.
std::uint64_t InsideOfPlane(const CPolyBoundary& boundary, const Ranges3<double>& box,
                            const PointBlock& plane, std::uint64_t wanted) {
  const RangeKernels& kernels = BestRangeKernels();
  std::uint64_t bits = wanted & kernels.doubles(plane[0].data(), box[0]);
  if (bits != 0) bits &= kernels.doubles(plane[1].data(), box[1]);
  return bits == 0 ? 0 : boundary.InsideOf(plane, bits) & bits;
}

void MarkByRows(const CPolyBoundary& boundary, const PlaneRows& rows, const PointColumns& columns,
                const QelParallel_s* parallel, InsideSet& inside) {
  boundary.ExpectPoints(inside.NodeCount());
  const Ranges3<double> box = boundary.BoundingBox();
  MarkWords(columns.CallsHost() ? nullptr : parallel, inside,
            [&](std::int64_t word, PointBlock& scratch) {
              columns.Read(word, scratch);
              MoveToPlane(scratch, rows.x, rows.y);
              const int count = ItemsInWord(word, inside.NodeCount());
              return InsideOfPlane(boundary, box, scratch, LowestBits(count));
            });
}

}  // namespace

void MarkPlanar(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                const HostServices& services, InsideSet& inside) {
  const std::int64_t nodeCount = inside.NodeCount();
  const FieldColumn xs = CoordinateOf(zone, xVar, services, nodeCount);
  const FieldColumn ys = CoordinateOf(zone, yVar, services, nodeCount);
  const PointColumns columns(xs, ys, nodeCount);
  if (boundary.IsCircle()) {
    MarkOneByOne(columns, inside, [&](const PointBlock& points, std::size_t point) {
      const double x = QelUtilConvertXPosition(CoordSys_Grid, CoordSys_Paper, points[0][point]);
      const double y = QelUtilConvertYPosition(CoordSys_Grid, CoordSys_Paper, points[1][point]);
      return boundary.IsInside(x, y);
    });
    return;
  }
  boundary.ExpectPoints(nodeCount);
  const PointBox box(boundary.BoundingBox());
  MarkWords(columns.CallsHost() ? nullptr : services.parallel, inside,
            [&](std::int64_t word, PointBlock& scratch) {
              if (boundary.IsRectangle()) return columns.InBox(word, box, scratch);
              return columns.InShape(word, box, scratch,
                                     [&](const PointBlock& points, std::uint64_t wanted) {
                                       return boundary.InsideOf(points, wanted);
                                     });
            });
}

void MarkProjected(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                   LgIndex_t zVar, const HostServices& services, InsideSet& inside) {
  const std::int64_t nodeCount = inside.NodeCount();
  const FieldColumn xs = CoordinateOf(zone, xVar, services, nodeCount);
  const FieldColumn ys = CoordinateOf(zone, yVar, services, nodeCount);
  const FieldColumn zs = CoordinateOf(zone, zVar, services, nodeCount);
  const PointColumns columns(xs, ys, zs, nodeCount);
  if (const std::optional<PlaneRows> rows = ProjectionRows(services.bulk)) {
    MarkByRows(boundary, *rows, columns, services.parallel, inside);
    return;
  }
  MarkOneByOne(columns, inside, [&](const PointBlock& points, std::size_t point) {
    double gridX = 0.0;
    double gridY = 0.0;
    double gridZ = 0.0;
    QelUtilConvert3DPositionToGrid(points[0][point], points[1][point], points[2][point], &gridX,
                                   &gridY, &gridZ);
    return boundary.IsInside(gridX, gridY);
  });
}

std::optional<InsideFiller> FillerOf(const CPolyBoundary& boundary, QelPlotType_e plotType) {
  const LgIndex_t xVar = QelUtilVarGetNumByAssignment('X');
  const LgIndex_t yVar = QelUtilVarGetNumByAssignment('Y');
  if (plotType == PlotType_Cartesian2D) {
    return [=, &boundary](LgIndex_t zone, const HostServices& services, InsideSet& inside) {
      MarkPlanar(boundary, zone, xVar, yVar, services, inside);
    };
  }
  if (plotType == PlotType_Cartesian3D) {
    const LgIndex_t zVar = QelUtilVarGetNumByAssignment('Z');
    HOST_CHECK(QelUtilSetupTransformations());
    return [=, &boundary](LgIndex_t zone, const HostServices& services, InsideSet& inside) {
      MarkProjected(boundary, zone, xVar, yVar, zVar, services, inside);
    };
  }
  return std::nullopt;
}

InsideFiller FillerOf(const CPickBoundary3d& boundary) {
  const LgIndex_t xVar = QelUtilVarGetNumByAssignment('X');
  const LgIndex_t yVar = QelUtilVarGetNumByAssignment('Y');
  const LgIndex_t zVar = QelUtilVarGetNumByAssignment('Z');
  return [=, &boundary](LgIndex_t zone, const HostServices& services, InsideSet& inside) {
    boundary.MarkInside(zone, xVar, yVar, zVar, inside, services);
  };
}

}  // namespace qelvane::qelutiltools
