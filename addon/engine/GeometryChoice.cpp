#include "GeometryChoice.h"

#include "HostLock.h"

#include "qelvane/QelUtil.h"

#include <cstdint>

namespace qelvane::qelutiltools {

namespace {

bool isGeometryArmed = false;

bool IsSupported(QelGeomID_t geometry) {
  switch (QelUtilGeomGetType(geometry)) {
    case GeomType_LineSegs:
    case GeomType_Rectangle:
    case GeomType_Square:
    case GeomType_Circle:
      return true;
    default:
      return false;
  }
}

GeometryChoice ChooseIfSupported(QelGeomID_t geometry) {
  if (!IsSupported(geometry)) return {0, GeometryFault::UnsupportedType};
  return {geometry, GeometryFault::None};
}

GeometryChoice ChooseSelected() {
  const LgIndex_t selectedCount = QelUtilPickListGetCount();
  if (selectedCount < 1) return {0, GeometryFault::NothingSelected};
  if (selectedCount > 1) return {0, GeometryFault::SeveralSelected};
  if (QelUtilPickListGetType(1) != PickObject_Geom) {
    return {0, GeometryFault::SelectedIsNoGeometry};
  }
  const QelGeomID_t geometry = QelUtilPickListGetGeom(1);
  if (geometry == 0) return {0, GeometryFault::SelectedIsNoGeometry};
  return ChooseIfSupported(geometry);
}

/// Indexed by the fault.
constexpr const char* kFaultMessages[] = {
    "",
    "No geometries exist that can be used to define the pick area.",
    "Selected geometry is a type that is not supported for defining the pick area.",
    "When multiple geometries exist in a frame, you must\nselect a single geometry to be used to "
    "define the pick area.",
    "Only one geometry may be selected for defining the pick area.",
    "The selected pick object item is not a geometry.",
    "Unable to perform Undo because geometry has been changed or deleted.",
};

}  // namespace

GeometryChoice ChooseGeometry() {
  const HostLock lock;
  std::int64_t geometryCount = 0;
  QelGeomID_t last = 0;
  for (QelGeomID_t geometry = QelUtilGeomGetBase(); geometry != 0;
       geometry = QelUtilGeomGetNext(geometry)) {
    last = geometry;
    ++geometryCount;
  }
  if (geometryCount == 0) return {0, GeometryFault::NoGeometry};
  return geometryCount == 1 ? ChooseIfSupported(last) : ChooseSelected();
}

GeometryChoice ChooseUndoGeometry(QelGeomID_t undoGeometry) {
  const HostLock lock;
  if (!QelUtilGeomIsValid(undoGeometry)) return {0, GeometryFault::UndoGeometryGone};
  return {undoGeometry, GeometryFault::None};
}

QelGeomID_t NewestGeometry() {
  const HostLock lock;
  QelGeomID_t newest = 0;
  for (QelGeomID_t geometry = QelUtilGeomGetBase(); geometry != 0;
       geometry = QelUtilGeomGetNext(geometry)) {
    newest = geometry;
  }
  return newest;
}

void ShowGeometryFault(GeometryFault fault) {
  const HostLock lock;
  if (fault == GeometryFault::None || QelUtilMacroIsBatchModeActive()) return;
  QelUtilDialogMessageBox(kFaultMessages[static_cast<int>(fault)], MessageBox_Information);
}

bool IsGeometryArmed() { return isGeometryArmed; }

void SetGeometryArmed(bool armed) { isGeometryArmed = armed; }

}  // namespace qelvane::qelutiltools
