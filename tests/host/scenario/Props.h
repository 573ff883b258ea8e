// What the stories press, turn and load.
#pragma once

#include <vector>

#include "User.h"

namespace scenario {

inline std::vector<qelhost::DataSetPtr> OneCube() { return {Cube(4)}; }
inline std::vector<qelhost::DataSetPtr> OnePlate() { return {Plate(6)}; }
inline std::vector<qelhost::DataSetPtr> TwoCubes() { return {Cube(3), Cube(5)}; }
inline std::vector<qelhost::DataSetPtr> CubeAndPlate() { return {Cube(3), Plate(5)}; }

inline constexpr char kRectangleTool[] = "Define pick area using a rectangle";
inline constexpr char kCircleTool[] = "Define pick area using a circle";
inline constexpr char kPolygonTool[] = "Define pick area using a polygon";
inline constexpr char kCubeTool[] = "Define pick area using a cube";
inline constexpr char kSphereTool[] = "Define pick area using a sphere";
inline constexpr char kElementTool[] = "Pick individual cells/nodes";
// The dialog's spin fields in the order in which they are made.
inline constexpr int kSizeX = 3;
inline constexpr int kRotateZ = 4;
inline constexpr int kAnchorX = 6;
inline constexpr int kAnchorY = 7;
inline constexpr int kAnchorZ = 8;
inline constexpr int kSizeZ = 1;
inline constexpr int kSizeY = 2;
inline constexpr int kCenterZ = 9;
inline constexpr int kCenterY = 10;
inline constexpr int kCenterX = 11;
inline constexpr int kRadius = 12;

}  // namespace scenario
