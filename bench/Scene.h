#pragma once

#include "Peers.h"
#include "Stopwatch.h"

#include "Player.h"

#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <cstdint>
#include <string>

namespace marquell::bench {

/// The mesh that everything is measured on: shown in the open host with the add-on loaded, and as
/// VTK's filters get it. Both have the same points and cells. The host's also has the positions as
/// scalars at nodes, x y z as floats and xd yd zd as doubles; VTK's has nothing but k at cells, so
/// that a filter carries along no more than it must.
class Scene {
 public:
  /// throws  AddOnError
  Scene(const std::string& addOn, int edge);

  /// Carries out one line.
  ///
  /// throws  std::runtime_error when it fails
  void Play(const std::string& line);

  /// Places a shape and alters the cells in it, with the two lines that a journal has for that.
  Took PickAndAlter(const std::string& pick, const std::string& rule);

  /// How many cells the pick would alter. The values change.
  std::int64_t PickedBy(const std::string& pick, const std::string& rule);

  int Edge() const { return m_edge; }
  std::int64_t NodeCount() const;
  std::int64_t CellCount() const;
  vtkUnstructuredGrid* PeerGrid() const { return m_peerGrid; }

 private:
  std::string AlterLine(const std::string& rule);

  int m_edge;
  std::int64_t m_alterations = 0;
  vtkSmartPointer<vtkUnstructuredGrid> m_peerGrid;
  qelhost::Player m_player;
};

/// How many threads VTK's filters, and through the host the add-on, use from now on.
void UseThreads(int count);

/// A box of whole bricks that holds about this part of the cube, its faces between the nodes.
Bounds3 BoxOf(const Scene& scene, double part);

}  // namespace marquell::bench
