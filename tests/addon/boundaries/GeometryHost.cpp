#include "GeometryHost.h"

namespace geometryhost {

GeometryHost& Host() {
  static GeometryHost host;
  return host;
}

void ResetHost() { Host() = GeometryHost(); }

namespace {

const Geometry& Read() {
  if (Host().lockDepth < 1) ++Host().callsWithoutLock;
  return Host().geometry;
}

double MapToPaper(QelCoordSys_e from, QelCoordSys_e to, double value, double offset) {
  const bool isGridToPaper = from == CoordSys_Grid && to == CoordSys_Paper;
  return isGridToPaper ? value * kPaperScale + offset : value;
}

}  // namespace
}  // namespace geometryhost

using geometryhost::Host;
using geometryhost::Read;

void QelUtilLockStart(QelAddOn*) { ++Host().lockDepth; }
void QelUtilLockFinish(QelAddOn*) { --Host().lockDepth; }

bool QelUtilGeomIsValid(QelGeomID_t geom) { return geom == geometryhost::GeometryHost::kGeometry; }
QelGeomType_e QelUtilGeomGetType(QelGeomID_t) { return Read().type; }
void QelUtilGeomSetPositionCoordSys(QelGeomID_t, QelCoordSys_e sys) {
  Host().isPositionedInGrid = sys == CoordSys_Grid;
}
void QelUtilGeomGetAnchorPos(QelGeomID_t, double* x, double* y, double* z) {
  *x = Read().anchorX;
  *y = Read().anchorY;
  *z = 0.0;
}
void QelUtilGeomRectangleGetSize(QelGeomID_t, double* width, double* height) {
  *width = Read().width;
  *height = Read().height;
}
double QelUtilGeomSquareGetSize(QelGeomID_t) { return Read().width; }
double QelUtilGeomCircleGetRadius(QelGeomID_t) { return Read().width; }
LgIndex_t QelUtilGeomPolyGetPointCount(QelGeomID_t) {
  return static_cast<LgIndex_t>(Read().xs.size());
}
void QelUtilGeom2DPolylineGetPoint(QelGeomID_t, LgIndex_t point, double* x, double* y) {
  *x = Read().xs.at(static_cast<std::size_t>(point - 1));
  *y = Read().ys.at(static_cast<std::size_t>(point - 1));
}

double QelUtilConvertXPosition(QelCoordSys_e from, QelCoordSys_e to, double x) {
  return geometryhost::MapToPaper(from, to, x, geometryhost::kPaperX);
}
double QelUtilConvertYPosition(QelCoordSys_e from, QelCoordSys_e to, double y) {
  return geometryhost::MapToPaper(from, to, y, geometryhost::kPaperY);
}
double QelUtilConvertXDimension(QelCoordSys_e from, QelCoordSys_e to, double dx) {
  return geometryhost::MapToPaper(from, to, dx, 0.0);
}

bool QelUtilMacroIsRecordingActive() { return Host().isRecording; }
bool QelUtilMacroRecordAddOnCommand(const char* addOnName, const char* command) {
  Host().recordedLines.push_back(std::string(addOnName) + " " + command);
  return true;
}
