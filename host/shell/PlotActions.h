#pragma once

#include "Frame.h"
#include "Geometry.h"

#include "qelvane/Types.h"

#include <array>
#include <string>
#include <vector>

namespace qelhost {

class Host;

/// Actions on the active frame, each with the notices that the contract promises for it. The caller
/// holds the lock in whoever's name it acts. None of them records.
///
/// All answer false, and change nothing, when there is no active frame or an argument is out of
/// range.

bool SetMouseMode(Host& host, QelMouseMode_e mode);
/// The mouse mode becomes Mouse_Probe.
bool InstallProbe(Host& host, QelProbeCallback_pf callback, const std::string& instruction);
/// A user's click in probe mode: reaches the callback installed last. The lock is not held.
bool ClickProbe(Host& host, LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld);

bool SetPlotType(Host& host, QelPlotType_e type);
bool SetViewAngles(Host& host, double psiDeg, double alphaDeg, double thetaDeg);
bool SetViewOrigin(Host& host, const std::array<double, 3>& origin);
bool SetView(Host& host, const View& view);
bool RotateView(Host& host, QelRotateAxis_e axis, double degrees);
/// Fits the data to the frame: magnification 1, no translation.
bool FitView(Host& host);

bool ActivateFrame(Host& host, QelUniqueID_t id);
bool SetSolutionTime(Host& host, double time);
bool SetZonesActive(Host& host, const std::vector<LgIndex_t>& zones, QelAssignOp_e op);
bool SetLayerActive(Host& host, Layer layer, bool active);
bool SetContourVariable(Host& host, LgIndex_t variable);

/// 0 when there is no frame.
QelGeomID_t AddGeometry(Host& host, const Geometry& geometry);
/// n counts the frame's geometries in creation order, from 1.
bool SelectGeometry(Host& host, LgIndex_t n);
bool MoveGeometry(Host& host, LgIndex_t n, double x, double y);
bool DeleteGeometry(Host& host, LgIndex_t n);

/// Refused when one of them came from a file.
bool DeleteZones(Host& host, const std::vector<LgIndex_t>& zones);

/// Appends a quadrilateral zone of iPoints x jPoints nodes on a sphere, the poles on its Z axis.
/// lowest: x and y of the centre, z of the lowest point. Sends nothing.
bool AddSphereZone(Host& host, LgIndex_t iPoints, LgIndex_t jPoints,
                   const std::array<double, 3>& lowest, double radius, QelFieldDataType_e type);

/// Sets a style and tells the add-ons of its path.
QelSetValueResult_e ApplyStyle(Host& host, const StyleAddress& address, ArbParam_t integer,
                               double value);

}  // namespace qelhost
