// What is seen of a zone as VTK draws it: points, faces and the colour of each.
#pragma once

#include <vtkFloatArray.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

#include "FaceList.h"
#include "PlotCamera.h"
#include "Zone.h"

namespace qelhost {

constexpr char kColours[] = "colours";

/// How values become places on the colour map.
struct ColourRange {
  double min = 0.0;
  double max = 1.0;

  float PlaceOf(double value) const { return static_cast<float>((value - min) / Width()); }
  double Width() const { return max > min ? max - min : 1.0; }
};

/// Points are stored in single precision, measured from the middle of the zone: far from the origin
/// nothing is lost.
class ZoneSurface {
 public:
  /// Takes faces by nodes of the zone.
  ZoneSurface(const Zone& zone, FaceList faces, const std::array<double, 3>& middle);
  ZoneSurface(const ZoneSurface&) = delete;
  ZoneSurface& operator=(const ZoneSurface&) = delete;

  /// Gives each point (or face) the place of its value. A null field takes the colours away.
  void Colour(const QelFieldData* field, QelValueLocation_e location, const ColourRange& range);

  /// The faces by points.
  const FaceList& Faces() const { return m_faces; }
  bool IsEmpty() const { return m_faces.cells.empty(); }
  bool HasFaces() const { return m_surface->GetNumberOfPolys() > 0; }
  std::int64_t PointCount() const { return static_cast<std::int64_t>(m_nodeOfPoint.size()); }
  std::int32_t NodeOf(std::int64_t point) const {
    return m_nodeOfPoint[static_cast<std::size_t>(point)];
  }
  const float* Coordinates() const { return m_coordinates->GetPointer(0); }
  const std::array<double, 3>& Middle() const { return m_middle; }
  std::array<double, 3> Position(std::int64_t point) const;

  vtkPoints* Points() const { return m_points; }
  vtkPolyData* Surface() const { return m_surface; }
  /// Some of the points as things to draw, without colours.
  vtkSmartPointer<vtkPolyData> PointCloud(const std::vector<std::int32_t>& points) const;
  /// Some of the faces, or lines between points, two ends each. The list of faces must outlive what
  /// is made.
  vtkSmartPointer<vtkPolyData> Part(const FaceList& faces) const;
  vtkSmartPointer<vtkPolyData> Lines(const std::vector<std::int32_t>& ends) const;

 private:
  void NumberPoints(LgIndex_t nodeCount);
  void CopyCoordinates(const Zone& zone);

  FaceList m_faces;
  std::vector<std::int32_t> m_nodeOfPoint;
  std::array<double, 3> m_middle;
  vtkSmartPointer<vtkFloatArray> m_coordinates;
  vtkSmartPointer<vtkPoints> m_points;
  vtkSmartPointer<vtkPolyData> m_surface;
};

/// The faces of two nodes as lines and the others as polygons, over the points. The list must
/// outlive what is made.
vtkSmartPointer<vtkPolyData> DrawnFaces(vtkPoints* points, const FaceList& faces);

}  // namespace qelhost
