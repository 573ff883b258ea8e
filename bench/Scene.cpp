#include "Scene.h"

#include "Grid.h"

#include "DataSet.h"
#include "Host.h"

#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkSMPTools.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

namespace marquell::bench {

namespace {

template <class Array>
void AddPositions(vtkUnstructuredGrid* grid, const std::array<const char*, 3>& names) {
  for (int axis = 0; axis < 3; ++axis) {
    vtkNew<Array> values;
    values->SetName(names[static_cast<std::size_t>(axis)]);
    values->SetNumberOfTuples(grid->GetNumberOfPoints());
    vtkDataArray* const points = grid->GetPoints()->GetData();
    for (vtkIdType node = 0; node < grid->GetNumberOfPoints(); ++node) {
      values->SetComponent(node, 0, points->GetComponent(node, axis));
    }
    grid->GetPointData()->AddArray(values);
  }
}

/// The same mesh with arrays of its own: the host's change.
vtkSmartPointer<vtkUnstructuredGrid> CopyForPeers(vtkUnstructuredGrid* grid) {
  auto copy = vtkSmartPointer<vtkUnstructuredGrid>::New();
  copy->SetPoints(grid->GetPoints());
  copy->SetCells(VTK_HEXAHEDRON, grid->GetCells());
  vtkNew<vtkFloatArray> atNodes;
  atNodes->DeepCopy(grid->GetPointData()->GetArray("p"));
  copy->GetPointData()->AddArray(atNodes);
  vtkNew<vtkFloatArray> atCells;
  atCells->DeepCopy(grid->GetCellData()->GetArray("k"));
  copy->GetCellData()->AddArray(atCells);
  return copy;
}

}  // namespace

Scene::Scene(const std::string& addOn, int edge)
    : m_edge(edge), m_player(qelhost::Host::Instance()) {
  const vtkSmartPointer<vtkUnstructuredGrid> grid = MakeGrid(edge);
  for (const char* name : {"T", "U"}) grid->GetPointData()->RemoveArray(name);
  m_peerGrid = CopyForPeers(grid);
  AddPositions<vtkFloatArray>(grid, {"x", "y", "z"});
  AddPositions<vtkDoubleArray>(grid, {"xd", "yd", "zd"});

  qelhost::Host& host = qelhost::Host::Instance();
  host.LoadAddOns({addOn});
  const qelhost::BlockEntry block{"cube", grid, 0, 0.0};
  host.ShowDataSet(
      std::make_shared<qelhost::DataSet>("cube", std::vector<qelhost::BlockEntry>{block}, nullptr));
}

void Scene::Play(const std::string& line) {
  const qelhost::LineResult result = m_player.Play(line);
  if (!result.isDone) throw std::runtime_error(line.substr(0, 60) + ": " + result.message);
}

/// By turns up and down, so that the values stay numbers of an ordinary size.
std::string Scene::AlterLine(const std::string& rule) {
  const char* const modifier = ++m_alterations % 2 == 0 ? "*0.7" : "*1.4";
  return std::string("Marquell ALTERAREA VARIABLE=\"k\" MODIFIER=\"") + modifier +
         "\" RULE=" + rule;
}

Took Scene::PickAndAlter(const std::string& pick, const std::string& rule) {
  const std::string alter = AlterLine(rule);
  return Timed([&] {
    Play(pick);
    Play(alter);
  });
}

std::int64_t Scene::PickedBy(const std::string& pick, const std::string& rule) {
  Play(pick);
  m_player.ReportAlterations(true);
  const qelhost::LineResult result = m_player.Play(AlterLine(rule));
  m_player.ReportAlterations(false);
  if (!result.isDone) throw std::runtime_error(pick + ": " + result.message);
  std::int64_t picked = 0;
  for (const qelhost::Alteration& alteration : result.alterations) {
    picked += alteration.pickedCount;
  }
  return picked;
}

std::int64_t Scene::NodeCount() const { return m_peerGrid->GetNumberOfPoints(); }

std::int64_t Scene::CellCount() const { return m_peerGrid->GetNumberOfCells(); }

void UseThreads(int count) { vtkSMPTools::Initialize(count); }

Bounds3 BoxOf(const Scene& scene, double part) {
  const int edge = scene.Edge();
  const auto bricks = static_cast<int>(std::lround(std::cbrt(part) * edge));
  const int first = (edge - bricks) / 2;
  const double low = (first - 0.5) / edge;
  const double high = (first + bricks + 0.5) / edge;
  return {{low, low, low}, {high, high, high}};
}

}  // namespace marquell::bench
