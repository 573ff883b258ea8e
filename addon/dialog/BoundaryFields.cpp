#include "BoundaryFields.h"

#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "Selvane.h"
#include "ShapeHandles.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <utility>

namespace qelvane::qelutiltools {

namespace {

/// A field, the boundary's number behind it and what a bad entry is called.
struct FieldRow {
  LgIndex_t ControlIds::*id;
  int parameter;
  const char* name;
};

/// In the order of FieldOf. The names stand in messages as they are, capitals included.
constexpr std::array<FieldRow, kBoundaryFieldCount> kFields = {{
    {&ControlIds::anchorXField, 0, "X anchor"},
    {&ControlIds::anchorYField, 1, "Y anchor"},
    {&ControlIds::anchorZField, 2, "Z anchor"},
    {&ControlIds::sizeXField, 3, "X size"},
    {&ControlIds::sizeYField, 4, "Y size"},
    {&ControlIds::sizeZField, 5, "Z size"},
    {&ControlIds::rotateXField, 6, "X rotation"},
    {&ControlIds::rotateYField, 7, "y rotation"},
    {&ControlIds::rotateZField, 8, "Z rotation"},
    {&ControlIds::centerXField, 0, "center X"},
    {&ControlIds::centerYField, 1, "center Y"},
    {&ControlIds::centerZField, 2, "center Z"},
    {&ControlIds::radiusField, 3, "radius"},
}};

constexpr std::size_t kFirstSphereField = static_cast<std::size_t>(FieldOf::CenterX);

CPickBoundary3d* ActiveBoundary() {
  Selvane* const session = DialogSession();
  return session == nullptr ? nullptr : session->Boundary3d();
}

/// The fields of the page that is shown for the boundary picked with.
struct FieldRange {
  const FieldRow* first;
  const FieldRow* last;
  const FieldRow* begin() const { return first; }
  const FieldRow* end() const { return last; }
};

FieldRange FieldsOfPage() {
  const FieldRow* const sphere = kFields.data() + kFirstSphereField;
  const bool isSphere = DialogSession()->Kind() == PickKind::Sphere;
  return isSphere ? FieldRange{sphere, kFields.data() + kFields.size()}
                  : FieldRange{kFields.data(), sphere};
}

void Enter(const FieldRow& row, const char* text) {
  const LgIndex_t field = Controls.*row.id;
  CPickBoundary3d* const boundary = ActiveBoundary();
  double value = 0.0;
  if (!QelGUITextFieldGetDouble(field, &value)) {
    const std::string typed = text == nullptr ? "" : text;
    const std::string message = "Illegal input ( " + typed + " ) for " + row.name;
    QelUtilDialogMessageBox(message.c_str(), MessageBox_Error);
    ShowNumber(field, boundary == nullptr ? 0.0 : boundary->Parameter(row.parameter));
    return;
  }
  if (boundary != nullptr) {
    boundary->SetParameter(row.parameter, value);
    DialogSession()->DropUndo();
  }
  ShowNumber(field, value);
}

void Step(const FieldRow& row, bool increase) {
  CPickBoundary3d* const boundary = ActiveBoundary();
  if (boundary == nullptr) return;
  double value = 0.0;
  boundary->Nudge(row.parameter, increase, value);
  DialogSession()->DropUndo();
  ShowNumber(Controls.*row.id, value);
}

// The toolkit's callbacks say nothing of who calls, so each field has its own three.

template <std::size_t field>
bool OnEntered(const char* text) {
  EntryPoint(nullptr, [text] { Enter(kFields[field], text); });
  FollowShapeEntered();
  return true;
}

template <std::size_t field, bool increase>
void OnStep() {
  EntryPoint(nullptr, [] { Step(kFields[field], increase); });
  FollowShapeEntered();
}

template <std::size_t... field>
constexpr std::array<BoundaryField, sizeof...(field)> CallbacksOf(std::index_sequence<field...>) {
  return {{{nullptr, OnEntered<field>, OnStep<field, true>, OnStep<field, false>}...}};
}

}  // namespace

BoundaryField GetBoundaryField(FieldOf field) {
  static constexpr auto kCallbacks = CallbacksOf(std::make_index_sequence<kBoundaryFieldCount>());
  const auto place = static_cast<std::size_t>(field);
  BoundaryField found = kCallbacks[place];
  found.id = &(Controls.*kFields[place].id);
  return found;
}

BoundaryNumbers BoundaryInFields() {
  BoundaryNumbers numbers{};
  const CPickBoundary3d* const boundary = ActiveBoundary();
  if (boundary == nullptr) return numbers;
  for (const FieldRow& row : FieldsOfPage()) {
    numbers[static_cast<std::size_t>(row.parameter)] = boundary->Parameter(row.parameter);
  }
  return numbers;
}

BoundaryNumbers AsShown(const BoundaryNumbers& numbers) {
  BoundaryNumbers shown{};
  std::transform(numbers.begin(), numbers.end(), shown.begin(),
                 [](double number) { return std::strtod(TextOfNumber(number).c_str(), nullptr); });
  return shown;
}

void EnterBoundary(const BoundaryNumbers& numbers) {
  CPickBoundary3d* const boundary = ActiveBoundary();
  if (boundary == nullptr) return;
  DialogSession()->DropUndo();
  for (const FieldRow& row : FieldsOfPage()) {
    const double value = numbers[static_cast<std::size_t>(row.parameter)];
    boundary->SetParameter(row.parameter, value);
    ShowNumber(Controls.*row.id, value);
  }
}

void ShowBoundary() {
  const CPickBoundary3d* const boundary = ActiveBoundary();
  if (boundary == nullptr) return;
  for (const FieldRow& row : FieldsOfPage()) {
    ShowNumber(Controls.*row.id, boundary->Parameter(row.parameter));
  }
}

}  // namespace qelvane::qelutiltools
