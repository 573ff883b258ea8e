// One zone in the plot: its layers, brought up to date piece by piece.
#pragma once

#include <vtkActor.h>
#include <vtkLookupTable.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <memory>
#include <optional>
#include <vector>

#include "FaceEdges.h"
#include "Frame.h"
#include "PlotScene.h"
#include "RoughFaces.h"
#include "ZoneFaces.h"
#include "ZoneSurface.h"

namespace qelhost {

/// What all zones of a plot are drawn with.
struct DrawingLook {
  LgIndex_t variable = 0;
  ColourRange range;
  vtkLookupTable* colours = nullptr;  ///< of places from 0 to 1
  bool isLit = false;
  int height = 1;  ///< of the window
  double scale = 1.0;
};

/// The values of a variable in a zone at a moment. Holds the storage, so that no other one can be
/// taken for it.
struct ValuesStamp {
  std::shared_ptr<Storage> storage;
  std::int64_t writes = -1;
  LgIndex_t variable = -1;

  static ValuesStamp Of(const DataSet& data, LgIndex_t zone, LgIndex_t variable);
  bool operator==(const ValuesStamp& other) const {
    return storage == other.storage && writes == other.writes && variable == other.variable;
  }
};

class ZoneDrawing {
 public:
  explicit ZoneDrawing(vtkRenderer* renderer) : m_renderer(renderer) {}
  ~ZoneDrawing();
  ZoneDrawing(const ZoneDrawing&) = delete;
  ZoneDrawing& operator=(const ZoneDrawing&) = delete;

  /// The zone's actors show it as it is; what did not change stays.
  void Update(Frame& frame, LgIndex_t zoneNum, const DrawingLook& look);
  /// Shows fewer faces that look alike from afar; all of them without a detail. Takes effect with
  /// the next update.
  void SetRough(const std::optional<RoughDetail>& detail);

  LgIndex_t ZoneNum() const { return m_zoneNum; }
  bool IsData() const { return m_isData; }
  /// Whether any layer shows the zone.
  bool IsSeen() const;
  const ZoneSurface& Surface() const { return *m_surface; }
  /// The surface that is drawn now, which may be the rough one; another number whenever it changes.
  const ZoneSurface& SeenSurface() const { return m_isRough ? *m_rough : *m_surface; }
  std::int64_t SeenVersion() const { return m_isRough ? m_roughVersion : m_surfaceVersion; }
  const FaceEdges& Edges();
  /// Its actors in the order in which they are to be drawn.
  void AppendActors(std::vector<vtkProp*>& actors) const;

 private:
  /// The layers in the order in which they are drawn.
  enum Part { kSurface, kMesh, kEdges, kIsolines, kScatter, kPartCount };
  /// Layers that are drawn roughly while the view moves.
  static constexpr Part kRoughParts[] = {kSurface, kMesh, kScatter};

  bool UpdateFaces(Frame& frame, Zone& zone);
  bool UpdateColours(bool isNewSurface);
  void UpdateLayers(const Frame& frame, const FieldMap& map);
  using MakeActor = vtkSmartPointer<vtkActor> (ZoneDrawing::*)(const ZoneSurface& surface);
  void ShowPart(Part part, bool isShown, MakeActor make);
  void Show(vtkSmartPointer<vtkActor>& actor, const ZoneSurface& surface, MakeActor make);
  void Drop(vtkSmartPointer<vtkActor>& actor);
  void DropPart(Part part);
  void DropRough();
  vtkSmartPointer<vtkActor> MakeSurface(const ZoneSurface& surface);
  vtkSmartPointer<vtkActor> MakeMesh(const ZoneSurface& surface);
  vtkSmartPointer<vtkActor> MakeEdges(const ZoneSurface& surface);
  vtkSmartPointer<vtkActor> MakeIsolines(const ZoneSurface& surface);
  vtkSmartPointer<vtkActor> MakeScatter(const ZoneSurface& surface);
  void SetStyles(const FieldMap& map);
  void SetLineStyle(vtkActor* actor, const LayerStyle& style, bool isInk) const;
  void ColourSurface(ZoneSurface& surface) const;
  /// The place on the colour map at each point; empty where nothing is coloured.
  std::vector<float> PlacesAtPoints(const ZoneSurface& surface) const;
  bool IsColoured() const {
    return m_isData && m_data->FindField(m_zoneNum, m_look.variable) != nullptr;
  }

  vtkRenderer* m_renderer;
  LgIndex_t m_zoneNum = 0;
  bool m_isData = true;

  std::int64_t m_version = -1;  ///< of the zone
  std::unique_ptr<ZoneFaces> m_faces;
  bool m_isMasked = false;
  ItemBits m_hidden;
  std::array<ValuesStamp, 3> m_coordinates;
  std::unique_ptr<ZoneSurface> m_surface;
  std::int64_t m_surfaceVersion = 0;
  std::unique_ptr<FaceEdges> m_edges;
  bool m_isRough = false;
  RoughDetail m_detail;
  std::int64_t m_roughVersion = 0;
  std::unique_ptr<ZoneSurface> m_rough;

  DataSet* m_data = nullptr;
  DrawingLook m_look;
  ValuesStamp m_values;
  ColourRange m_range;

  std::array<vtkSmartPointer<vtkActor>, kPartCount> m_parts;
  std::array<vtkSmartPointer<vtkActor>, kPartCount> m_roughParts;
};

}  // namespace qelhost
