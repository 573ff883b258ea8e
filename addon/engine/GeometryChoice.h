#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// Why no geometry can define the pick area. The numbers are those of the messages.
enum class GeometryFault {
  None = 0,
  NoGeometry = 1,
  UnsupportedType = 2,
  NothingSelected = 3,
  SeveralSelected = 4,
  SelectedIsNoGeometry = 5,
  UndoGeometryGone = 6
};

struct GeometryChoice {
  QelGeomID_t geometry = 0;
  GeometryFault fault = GeometryFault::None;
};

/// The one geometry of the frame, or the selected one when there are several.
GeometryChoice ChooseGeometry();

/// The geometry of the last alteration, if it still exists.
GeometryChoice ChooseUndoGeometry(QelGeomID_t undoGeometry);

/// The geometry that was drawn last in the frame; 0 when there is none.
QelGeomID_t NewestGeometry();

/// Tells the user; says nothing in batch mode.
void ShowGeometryFault(GeometryFault fault);

/// Whether the next geometry that is drawn is taken as the pick area although no dialog is up.
/// Armed by the command PICKGEOMETRY.
bool IsGeometryArmed();
void SetGeometryArmed(bool armed);

}  // namespace qelvane::qelutiltools
