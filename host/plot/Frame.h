#pragma once

#include "DataSet.h"
#include "Geometry.h"
#include "Styles.h"
#include "View.h"

#include "qelvane/Types.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace qelhost {

/// Something selected in a frame.
struct PickedItem {
  QelPickObject_e type = PickObject_None;
  QelGeomID_t geometry = 0;
};

/// One plot: a data set and how it is looked at.
class Frame {
 public:
  Frame();
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  QelUniqueID_t Id() const { return m_id; }

  /// Shows the data set: 2D Cartesian when every zone is flat in Z, else 3D; the view's origin is
  /// the middle of the data, the solution time the first.
  void Show(DataSetPtr data);
  const DataSetPtr& Data() const { return m_data; }

  /// How the frame looked when it first showed the data, as it does again whenever they are opened.
  QelPlotType_e FirstPlotType() const { return m_firstPlotType; }
  const View& FirstView() const { return m_firstView; }
  double FirstSolutionTime() const { return m_firstSolutionTime; }

  QelPlotType_e plotType = PlotType_None;
  View view;
  double solutionTime = 0.0;
  GeometryList geometries;
  std::vector<PickedItem> picked;
  Styles styles;

  /// What value blanking hides in a zone; null when all of it is shown, and for a zone that there
  /// is not. Valid until values, blanking settings, connectivity or zones change.
  const BlankedItems* Blanked(LgIndex_t zoneNum);
  /// How many times the constraints were evaluated.
  std::int64_t BlankingEvaluations() const { return m_blankingCache.EvaluationCount(); }

  /// The zones that apply at a time, ascending: those without a strand, and of each strand the
  /// zones of its latest step that is not after the time (the first step's before that).
  std::vector<LgIndex_t> ZonesAt(double time, bool ignoreStrands) const;

  /// Fixes the projection into the plane in which geometries are drawn: the view plane of a 3D
  /// plot; of any other the data's own X and Y.
  void FixProjection() {
    m_projection = plotType == PlotType_Cartesian3D ? ProjectionOf(view) : Projection();
  }
  const Projection& FixedProjection() const { return m_projection; }

  std::string fileName;  ///< that the data came from; empty when it did not

 private:
  QelUniqueID_t m_id;
  DataSetPtr m_data;
  Projection m_projection;
  BlankingCache m_blankingCache;
  QelPlotType_e m_firstPlotType = PlotType_None;
  View m_firstView;
  double m_firstSolutionTime = 0.0;
};

/// The frames in creation order, one of them active.
class FrameList {
 public:
  /// Makes a frame and makes it the active one.
  Frame& Add();
  /// Null when there is none.
  Frame* Active() const { return m_active; }
  Frame* Find(QelUniqueID_t id) const;
  /// The n-th, from 1; null past the last.
  Frame* At(LgIndex_t n) const;
  /// False when there is none of that id.
  bool Activate(QelUniqueID_t id);
  void Clear();
  LgIndex_t Count() const { return static_cast<LgIndex_t>(m_frames.size()); }

 private:
  std::vector<std::unique_ptr<Frame>> m_frames;
  Frame* m_active = nullptr;
};

}  // namespace qelhost
