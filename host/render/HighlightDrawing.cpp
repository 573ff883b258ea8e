#include "HighlightDrawing.h"

#include <vtkMapper.h>
#include <vtkProperty.h>

#include <utility>

#include "Actors.h"

namespace qelhost {
namespace {

constexpr double kOpacity = 0.45;
constexpr double kOutlineWidth = 2.0;
constexpr double kNodeSize = 7.0;

bool Holds(const ItemBits& items, std::int32_t item) {
  return item < items.count && items.Has(item);
}

/// The numbers of the faces of marked cells, and a mark at each of them.
void MarkFaces(const FaceList& faces, const ItemBits& cells, std::vector<std::int32_t>& marked,
               std::vector<char>& isMarked) {
  isMarked.assign(static_cast<std::size_t>(faces.Count()), 0);
  for (std::int32_t face = 0; face < faces.Count(); ++face) {
    if (!Holds(cells, faces.cells[static_cast<std::size_t>(face)])) continue;
    isMarked[static_cast<std::size_t>(face)] = 1;
    marked.push_back(face);
  }
}

FaceList FacesOf(const FaceList& faces, const ItemBits& cells) {
  return GatherFaces(faces.Count(), [&](std::int64_t begin, std::int64_t end, FaceList& list) {
    for (std::int64_t face = begin; face < end; ++face) {
      const std::int32_t cell = faces.cells[static_cast<std::size_t>(face)];
      if (!Holds(cells, cell)) continue;
      list.nodes.insert(list.nodes.end(), faces.Begin(face), faces.Begin(face) + faces.Size(face));
      list.Finish(cell);
    }
  });
}

void Accentuate(vtkActor* actor) {
  actor->GetProperty()->SetColor(kAccentColour[0], kAccentColour[1], kAccentColour[2]);
  actor->GetProperty()->SetLighting(false);
}

}  // namespace

HighlightDrawing::HighlightDrawing(vtkRenderer* renderer, ZoneHighlight highlight)
    : m_renderer(renderer), m_highlight(std::move(highlight)) {}

HighlightDrawing::~HighlightDrawing() { Clear(); }

void HighlightDrawing::Clear() {
  for (const auto& actor : m_actors) m_renderer->RemoveActor(actor);
  m_actors.clear();
  m_marked = {};
  m_version = -1;
}

void HighlightDrawing::Update(ZoneDrawing* zone, double scale) {
  if (zone == nullptr) {
    Clear();
  } else if (zone->SeenVersion() != m_version) {
    Clear();
    Show(*zone, scale);
    m_version = zone->SeenVersion();
  }
}

void HighlightDrawing::Show(ZoneDrawing& zone, double scale) {
  if (m_highlight.location == ValueLocation_CellCentered) {
    ShowCells(zone, scale);
  } else {
    ShowNodes(zone.SeenSurface(), scale);
  }
}

void HighlightDrawing::ShowCells(ZoneDrawing& zone, double scale) {
  const ZoneSurface& seen = zone.SeenSurface();
  m_marked = FacesOf(seen.Faces(), m_highlight.items);
  if (m_marked.Count() == 0) return;
  const bool isLines = m_marked.Size(0) == 2;
  vtkSmartPointer<vtkActor> cells =
      isLines ? MakeLinesActor(seen.Part(m_marked)) : MakeFacesActor(seen.Part(m_marked));
  Accentuate(cells);
  if (isLines) {
    cells->GetProperty()->SetLineWidth(static_cast<float>(2.0 * kOutlineWidth * scale));
    Add(cells, seen);
    return;
  }
  vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
  cells->GetMapper()->SetRelativeCoincidentTopologyPolygonOffsetParameters(0.0, -2.0);
  cells->GetProperty()->SetOpacity(kOpacity);
  Add(cells, seen);
  const ZoneSurface& surface = zone.Surface();
  std::vector<std::int32_t> marked;
  std::vector<char> isMarked;
  MarkFaces(surface.Faces(), m_highlight.items, marked, isMarked);
  const EdgeList ends = OutlineOf(surface.Faces(), zone.Edges(), marked, isMarked);
  vtkSmartPointer<vtkActor> outline = MakeLinesActor(surface.Lines(ends));
  Accentuate(outline);
  outline->GetProperty()->SetLineWidth(static_cast<float>(kOutlineWidth * scale));
  Add(outline, surface);
}

void HighlightDrawing::ShowNodes(const ZoneSurface& surface, double scale) {
  std::vector<std::int32_t> points;
  for (std::int32_t point = 0; point < surface.PointCount(); ++point) {
    if (Holds(m_highlight.items, surface.NodeOf(point))) points.push_back(point);
  }
  if (points.empty()) return;
  vtkSmartPointer<vtkActor> nodes = MakePointsActor(surface.PointCloud(points));
  Accentuate(nodes);
  nodes->GetProperty()->SetPointSize(static_cast<float>(kNodeSize * scale));
  Add(nodes, surface);
}

void HighlightDrawing::Add(vtkSmartPointer<vtkActor> actor, const ZoneSurface& surface) {
  const auto& [x, y, z] = surface.Middle();
  actor->SetPosition(x, y, z);
  actor->SetPickable(false);
  m_renderer->AddActor(actor);
  m_actors.push_back(std::move(actor));
}

}  // namespace qelhost
