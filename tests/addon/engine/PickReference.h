#pragma once

#include "FakeHost.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// What picks do, written down from their definitions by brute force: for random tests, which set
/// up the one host, pick, and compare.
namespace reference {

class Random {
 public:
  explicit Random(unsigned seed) : m_engine(seed) {}
  int Below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }
  bool Flip() { return Below(2) == 0; }
  /// A multiple of 1/8, which a line carries whole.
  double Eighths(int from, int to) { return from + Below((to - from) * 8) / 8.0; }

 private:
  std::mt19937 m_engine;
};

enum class Shape { Rectangle, Circle, Polygon, Cube, Sphere };

/// A pick boundary by its definition.
struct Boundary {
  Shape shape = Shape::Rectangle;
  fakehost::Point anchor;  ///< of a circle and a sphere the centre
  fakehost::Point size;    ///< the radius in x
  fakehost::Point angles;  ///< of a cube, degrees
  std::vector<fakehost::Point> corners;

  bool Is3d() const { return shape == Shape::Cube || shape == Shape::Sphere; }
  /// Whether a node of the active frame is inside.
  bool Holds(const fakehost::Point& node) const;
  /// The line that picks with it.
  std::string Line() const;
  /// The same drawn in a frame; of a 2D shape.
  fakehost::Geometry Drawn() const;
};

/// One that lies with the nodes of all zones, so that it stays where it was put, and whose edge
/// keeps clear of them.
Boundary RandomBoundary(Random& random, bool allows3d);

/// A lattice of few cells and odd coordinates.
fakehost::Mesh RandomMesh(Random& random, QelZoneType_e type);

struct Modifier {
  const char* text;
  double (*apply)(double value);
};
const Modifier& RandomModifier(Random& random);

constexpr const char* kRules[] = {"ANYINSIDE", "ANYOUTSIDE", "ALLINSIDE", "ALLOUTSIDE"};

/// Whether a rule, by its place in kRules, takes what has the corners.
bool Takes(int rule, const std::vector<LgIndex_t>& corners, const std::vector<bool>& inside);

/// Up to three zones of one type and size in a frame, with a variable at the nodes, "n", and one at
/// the cells, "c", of one type of value; these may be shared or passive, zones may be inactive and
/// cells hidden.
struct Scene {
  bool is3d = false;
  bool isCellCentred = false;  ///< the variable that is picked
  LgIndex_t zoneCount = 0;
  LgIndex_t n = 0;
  LgIndex_t c = 0;

  LgIndex_t Variable() const { return isCellCentred ? c : n; }
  const char* VariableName() const { return isCellCentred ? "c" : "n"; }
};
Scene MakeScene(Random& random, QelZoneType_e type);

fakehost::Point NodeAt(LgIndex_t zone, LgIndex_t node);
std::vector<bool> NodesInside(const Boundary& boundary, LgIndex_t zone);

/// The bytes of a variable in a zone; none where it is passive.
using Bytes = std::vector<unsigned char>;
Bytes BytesOf(LgIndex_t zone, LgIndex_t var);

/// What an alteration of a zone's nodes or cells leaves of the variable; hidden ones stay.
Bytes Altered(LgIndex_t zone, LgIndex_t var, int rule, const std::vector<bool>& inside,
              const Modifier& modifier);

/// What hiding a zone's cells leaves of the blanking variable, a byte a cell, 0 where it was
/// passive or not there.
Bytes Blanked(LgIndex_t zone, LgIndex_t blankVar, int rule, const std::vector<bool>& inside);

}  // namespace reference
