#pragma once

#include "qelvane/Types.h"

#include <set>
#include <string>
#include <vector>

namespace qelhost {

/// One zone "block" of iMax x jMax x kMax nodes at whole numbers; variable 4, "p", is a node's
/// number from 0.
void ShowOrdered(int iMax, int jMax, int kMax);

/// The same nodes as a zone of bricks.
void ShowBricks(int iMax, int jMax, int kMax);

/// Two triangles (0,0) (1,0) (1,1) and (0,0) (1,1) (0,1); variable 4, "c", is 10 and 20 in them.
void ShowElements();

/// A cube of side 1, as one polyhedron.
void ShowPolyhedron();

/// Two zones that share the array of "p", of strand 1 at the times 0.5 and 1.5.
void ShowTimeSteps();

/// An image of 2 x 2 x 2 nodes, whose coordinates are computed.
void ShowImage();

/// Draws on the active frame; answers the geometry's id.
QelGeomID_t DrawCircle(double x, double y, double radius);
QelGeomID_t DrawRectangle(double x, double y, double width, double height);
QelGeomID_t DrawPolyline(double x, double y, const std::vector<double>& pairs);

void SelectGeometryNumber(LgIndex_t n);
/// A user's click in probe mode.
bool Click(LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld);
/// Runs the idle queue, as the host does between two lines.
void RunIdle();
void StartRecording();
std::vector<std::string> RecordedLines();
void QueueAnswer(bool yes);

/// Frames and data sets are closed, the pointer selects, nothing is recorded.
void CloseEverything();

/// Every function that QelUtil.h and QelGUI.h declare.
std::set<std::string> DeclaredFunctions();

/// Every state change, with style parameters and the lock's owner: "7 THREEDVIEW by Name".
std::vector<std::string>& Heard();
void StartListening();

/// Takes a host-allocated string over.
std::string Taken(char* text);

}  // namespace qelhost
