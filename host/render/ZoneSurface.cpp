#include "ZoneSurface.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkSMPTools.h>
#include <vtkTypeInt32Array.h>

#include <utility>

namespace qelhost {
namespace {

/// An array that shows numbers which lie elsewhere.
vtkSmartPointer<vtkTypeInt32Array> Shown(const std::vector<std::int32_t>& numbers) {
  auto array = vtkSmartPointer<vtkTypeInt32Array>::New();
  constexpr int kNotOurs = 1;
  array->SetArray(const_cast<std::int32_t*>(numbers.data()), static_cast<vtkIdType>(numbers.size()),
                  kNotOurs);
  return array;
}

/// Calls at(item) for each; on several threads where the values lie in memory.
template <class At>
void ForEachValue(const QelFieldData& field, std::int64_t count, const At& at) {
  if (field.first == nullptr) {
    for (std::int64_t n = 0; n < count; ++n) at(n);
    return;
  }
  vtkSMPTools::For(0, count, 1 << 15, [&at](std::int64_t begin, std::int64_t end) {
    for (std::int64_t n = begin; n < end; ++n) at(n);
  });
}

}  // namespace

vtkSmartPointer<vtkPolyData> DrawnFaces(vtkPoints* points, const FaceList& faces) {
  auto drawn = vtkSmartPointer<vtkPolyData>::New();
  drawn->SetPoints(points);
  if (faces.Count() == 0) return drawn;
  vtkNew<vtkCellArray> cells;
  cells->SetData(Shown(faces.offsets), Shown(faces.nodes));
  // A zone has faces or lines, never both.
  if (faces.Size(0) == 2) {
    drawn->SetLines(cells);
  } else {
    drawn->SetPolys(cells);
  }
  return drawn;
}

ZoneSurface::ZoneSurface(const Zone& zone, FaceList faces, const std::array<double, 3>& middle)
    : m_faces(std::move(faces)), m_middle(middle) {
  NumberPoints(zone.NodeCount());
  CopyCoordinates(zone);
  m_points = vtkSmartPointer<vtkPoints>::New();
  m_points->SetData(m_coordinates);
  m_surface = DrawnFaces(m_points, m_faces);
}

void ZoneSurface::NumberPoints(LgIndex_t nodeCount) {
  std::vector<std::int32_t> pointOfNode(static_cast<std::size_t>(nodeCount), -1);
  for (std::int32_t& node : m_faces.nodes) {
    std::int32_t& point = pointOfNode[static_cast<std::size_t>(node)];
    if (point < 0) {
      point = static_cast<std::int32_t>(m_nodeOfPoint.size());
      m_nodeOfPoint.push_back(node);
    }
    node = point;
  }
}

void ZoneSurface::CopyCoordinates(const Zone& zone) {
  m_coordinates = vtkSmartPointer<vtkFloatArray>::New();
  m_coordinates->SetNumberOfComponents(3);
  m_coordinates->SetNumberOfTuples(PointCount());
  float* const first = m_coordinates->GetPointer(0);
  vtkSMPTools::For(0, PointCount(), 1 << 15, [&](vtkIdType begin, vtkIdType end) {
    for (vtkIdType point = begin; point < end; ++point) {
      const std::array<double, 3> at = zone.Position(NodeOf(point));
      for (std::size_t axis = 0; axis < at.size(); ++axis) {
        first[3 * point + static_cast<vtkIdType>(axis)] =
            static_cast<float>(at[axis] - m_middle[axis]);
      }
    }
  });
}

std::array<double, 3> ZoneSurface::Position(std::int64_t point) const {
  const float* const at = Coordinates() + 3 * point;
  return {at[0] + m_middle[0], at[1] + m_middle[1], at[2] + m_middle[2]};
}

void ZoneSurface::Colour(const QelFieldData* field, QelValueLocation_e location,
                         const ColourRange& range) {
  m_surface->GetPointData()->Initialize();
  m_surface->GetCellData()->Initialize();
  if (field == nullptr || IsEmpty()) return;
  const bool isAtCells = location == ValueLocation_CellCentered;
  const std::int64_t count = isAtCells ? m_faces.Count() : PointCount();
  const std::int32_t* const items = isAtCells ? m_faces.cells.data() : m_nodeOfPoint.data();
  vtkNew<vtkFloatArray> places;
  places->SetName(kColours);
  places->SetNumberOfValues(count);
  float* const first = places->GetPointer(0);
  ForEachValue(*field, count,
               [=](std::int64_t n) { first[n] = range.PlaceOf(field->get(field, items[n])); });
  if (isAtCells) {
    m_surface->GetCellData()->SetScalars(places);
  } else {
    m_surface->GetPointData()->SetScalars(places);
  }
}

vtkSmartPointer<vtkPolyData> ZoneSurface::PointCloud(
    const std::vector<std::int32_t>& points) const {
  vtkNew<vtkCellArray> one;
  one->InsertNextCell(static_cast<int>(points.size()));
  for (const std::int32_t point : points) one->InsertCellPoint(point);
  auto cloud = vtkSmartPointer<vtkPolyData>::New();
  cloud->SetPoints(m_points);
  cloud->SetVerts(one);
  return cloud;
}

vtkSmartPointer<vtkPolyData> ZoneSurface::Part(const FaceList& faces) const {
  return DrawnFaces(m_points, faces);
}

vtkSmartPointer<vtkPolyData> ZoneSurface::Lines(const std::vector<std::int32_t>& ends) const {
  vtkNew<vtkTypeInt32Array> nodes;
  nodes->SetNumberOfValues(static_cast<vtkIdType>(ends.size()));
  std::copy(ends.begin(), ends.end(), nodes->GetPointer(0));
  vtkNew<vtkTypeInt32Array> offsets;
  offsets->SetNumberOfValues(static_cast<vtkIdType>(ends.size() / 2) + 1);
  for (vtkIdType n = 0; n < offsets->GetNumberOfValues(); ++n) {
    offsets->SetValue(n, static_cast<std::int32_t>(2 * n));
  }
  vtkNew<vtkCellArray> lines;
  lines->SetData(offsets, nodes);
  auto drawn = vtkSmartPointer<vtkPolyData>::New();
  drawn->SetPoints(m_points);
  drawn->SetLines(lines);
  return drawn;
}

}  // namespace qelhost
