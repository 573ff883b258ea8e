// What stands out in one zone: cells by their faces and an outline, nodes as points.
#pragma once

#include <vtkActor.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include "ZoneDrawing.h"

namespace qelhost {

class HighlightDrawing {
 public:
  HighlightDrawing(vtkRenderer* renderer, ZoneHighlight highlight);
  ~HighlightDrawing();
  HighlightDrawing(const HighlightDrawing&) = delete;
  HighlightDrawing& operator=(const HighlightDrawing&) = delete;

  LgIndex_t ZoneNum() const { return m_highlight.zone; }
  /// Follows what is seen of the zone. Without a zone nothing is shown.
  void Update(ZoneDrawing* zone, double scale);
  void AppendActors(std::vector<vtkProp*>& actors) const {
    for (const auto& actor : m_actors) actors.push_back(actor);
  }

 private:
  void Show(ZoneDrawing& zone, double scale);
  void ShowCells(ZoneDrawing& zone, double scale);
  void ShowNodes(const ZoneSurface& surface, double scale);
  void Add(vtkSmartPointer<vtkActor> actor, const ZoneSurface& surface);
  void Clear();

  vtkRenderer* m_renderer;
  ZoneHighlight m_highlight;
  std::int64_t m_version = -1;  ///< of what is shown of the zone
  FaceList m_marked;
  std::vector<vtkSmartPointer<vtkActor>> m_actors;
};

}  // namespace qelhost
