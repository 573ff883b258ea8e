#pragma once

#include "qelvane/Types.h"

#include <array>

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

/// The numbers behind the fields of a page, in their order; a sphere has four.
using BoundaryNumbers = std::array<double, 9>;

/// Those of the box or the sphere that is picked with, unrounded.
BoundaryNumbers BoundaryInFields();

/// What is left of numbers when fields have shown them: six digits.
BoundaryNumbers AsShown(const BoundaryNumbers& numbers);

/// Takes numbers as if each had been typed into its field.
void EnterBoundary(const BoundaryNumbers& numbers);

/// Writes the numbers of the box or the sphere that is picked with into its page's fields.
void ShowBoundary();

}  // namespace qelvane::qelutiltools
