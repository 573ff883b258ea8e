#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// The fields of the box's and the sphere's page: one for each number that can be changed.
constexpr int kBoundaryFieldCount = 13;

/// What the layout needs of a field, counted from 0 in the order below.
struct BoundaryField {
  LgIndex_t* id;
  QelGUITextCallback_pf entered;
  QelGUIVoidCallback_pf up;
  QelGUIVoidCallback_pf down;
};

enum class FieldOf {
  AnchorX,
  AnchorY,
  AnchorZ,
  SizeX,
  SizeY,
  SizeZ,
  RotateX,
  RotateY,
  RotateZ,
  CenterX,
  CenterY,
  CenterZ,
  Radius
};

BoundaryField GetBoundaryField(FieldOf field);

/// Writes the numbers of the box or the sphere that is picked with into its page's fields.
void ShowBoundary();

}  // namespace qelvane::qelutiltools
