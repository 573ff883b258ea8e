#include "Isolines.h"

#include <vtkCellArray.h>
#include <vtkNew.h>

#include <algorithm>

namespace qelhost {
namespace {

/// Appends where the level crosses a triangle: two points, or none.
void CrossTriangle(const float* coordinates, const std::vector<float>& values,
                   const std::array<std::int32_t, 3>& corners, float level,
                   std::vector<float>& ends) {
  const std::size_t before = ends.size();
  for (std::size_t n = 0; n < 3; ++n) {
    const std::int32_t a = corners[n];
    const std::int32_t b = corners[(n + 1) % 3];
    const float low = values[static_cast<std::size_t>(a)];
    const float high = values[static_cast<std::size_t>(b)];
    // Each corner counts as below or not, so that a closed way around crosses twice or never.
    if ((low < level) == (high < level)) continue;
    const float part = (level - low) / (high - low);
    for (std::ptrdiff_t axis = 0; axis < 3; ++axis) {
      const float from = coordinates[3 * std::ptrdiff_t{a} + axis];
      ends.push_back(from + part * (coordinates[3 * std::ptrdiff_t{b} + axis] - from));
    }
  }
  if (ends.size() - before != 6) ends.resize(before);
}

void CrossFace(const ZoneSurface& surface, const std::vector<float>& values, std::int64_t face,
               const std::vector<float>& levels, std::vector<float>& ends) {
  const std::int32_t* const nodes = surface.Faces().Begin(face);
  const int size = surface.Faces().Size(face);
  if (size < 3) return;
  float low = values[static_cast<std::size_t>(nodes[0])];
  float high = low;
  for (int n = 1; n < size; ++n) {
    const float value = values[static_cast<std::size_t>(nodes[n])];
    if (!(value >= low)) low = value;
    if (!(value <= high)) high = value;
  }
  for (const float level : levels) {
    // False for what is no number, too.
    if (!(low < level && level <= high)) continue;
    for (int n = 1; n + 1 < size; ++n) {
      CrossTriangle(surface.Coordinates(), values, {nodes[0], nodes[n], nodes[n + 1]}, level, ends);
    }
  }
}

}  // namespace

vtkSmartPointer<vtkPolyData> IsolinesOf(const ZoneSurface& surface,
                                        const std::vector<float>& values,
                                        const std::vector<float>& levels) {
  std::vector<float> ends;
  for (std::int64_t face = 0; face < surface.Faces().Count(); ++face) {
    CrossFace(surface, values, face, levels, ends);
  }
  const auto count = static_cast<vtkIdType>(ends.size() / 3);
  vtkNew<vtkFloatArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  coordinates->SetNumberOfTuples(count);
  std::copy(ends.begin(), ends.end(), coordinates->GetPointer(0));
  vtkNew<vtkPoints> points;
  points->SetData(coordinates);
  vtkNew<vtkCellArray> lines;
  for (vtkIdType n = 0; n < count; n += 2) {
    const vtkIdType line[2] = {n, n + 1};
    lines->InsertNextCell(2, line);
  }
  auto drawn = vtkSmartPointer<vtkPolyData>::New();
  drawn->SetPoints(points);
  drawn->SetLines(lines);
  return drawn;
}

}  // namespace qelhost
