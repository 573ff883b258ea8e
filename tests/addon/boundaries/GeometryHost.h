#pragma once

#include "qelvane/QelUtil.h"

#include <string>
#include <vector>

namespace geometryhost {

struct Geometry {
  QelGeomType_e type = GeomType_LineSegs;
  double anchorX = 0.0;
  double anchorY = 0.0;
  double width = 0.0;  ///< also a square's side and a circle's radius
  double height = 0.0;
  std::vector<double> xs;  ///< a polyline's points, relative to the anchor
  std::vector<double> ys;
};

/// As much of a host as a boundary asks for: one geometry, a linear map to paper, a recorder.
struct GeometryHost {
  static constexpr QelGeomID_t kGeometry = 7;

  Geometry geometry;
  bool isRecording = true;
  bool isPositionedInGrid = false;
  int lockDepth = 0;
  int callsWithoutLock = 0;
  std::vector<std::string> recordedLines;
};

/// The host that the functions below work on; a test starts with a fresh one.
GeometryHost& Host();
void ResetHost();

// Paper is grid, twice as large and moved.
constexpr double kPaperScale = 2.0;
constexpr double kPaperX = 100.0;
constexpr double kPaperY = -50.0;

}  // namespace geometryhost
