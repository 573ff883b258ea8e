#pragma once

#include "AreaMarking.h"
#include "ClippingCube.h"
#include "ClippingSphere.h"
#include "HostServices.h"
#include "InsideSet.h"
#include "PickTypes.h"
#include "PolyBoundary.h"
#include "ValueModifier.h"
#include "WritePath.h"

#include "qelvane/Types.h"
#include "qelvane/toolbox/Set.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {

/// The pick session of one data set: what the user has chosen, and the operations that pick and
/// write with it. Every operation takes the host's lock for its whole run.
class Selvane {
 public:
  explicit Selvane(QelUniqueID_t dataSetId);
  ~Selvane();
  Selvane(const Selvane&) = delete;
  Selvane& operator=(const Selvane&) = delete;

  QelUniqueID_t DataSetId() const { return m_dataSetId; }

  // Choices (Selvane.cpp) ------------------------------------------------------------------------

  /// Chooses what is picked with and sets the host's mouse mode for it; off goes back to None and
  /// the select mode. Shows the zone of the box or the sphere and removes the other's. Discards
  /// undo. False when the zone cannot be shown: the frame is no 3D Cartesian plot.
  bool SetPickKind(PickKind kind, bool on);

  /// The same for the kind that is chosen already, keeping undo: nothing about the pick changes.
  bool RenewPickKind();

  /// Chooses the variable that alterations change; a number out of range is clamped. Discards undo.
  void SetAlterVariable(LgIndex_t var);

  /// Whether contour group C1 follows the alter variable.
  void SetSyncContours(bool on);
  void SyncContours();

  void SetPickRule(bool outside, bool all);
  void SetPickRule(PickRule rule);

  /// Keeps the alter variable within the data set after variables were removed.
  void ClampAlterVariable();

  /// Takes a modifier as typed. False, changing nothing, when the text is refused.
  bool ParseModifier(const std::string& text);

  /// Alterations change the chosen variable again, not the blanking variable.
  void EnterAlterMode();

  /// Picks hide cells from now on: they write 1 into the blanking variable, which is made when the
  /// data set has none. False, staying in the mode, when it cannot be made. Discards undo.
  bool EnterBlankMode();

  /// Writes 0 into the whole target variable of every zone that a pick would change: the blanking
  /// variable in blank mode, else the alter variable. Nothing when there is no blanking variable.
  void ResetPickBlanks();

  /// Turns the 3D view; ThreeD puts back the view remembered by the first of the others.
  void SetView(StandardView view);

  /// Nothing can be undone any more; for changes of what is picked that are made elsewhere.
  void DropUndo();

  /// Whether an apply has something to work on: a geometry in the frame, or the zone of the box or
  /// the sphere. Single elements are picked, not applied.
  bool CanApply();

  /// The box or the sphere that is picked with; null for every other kind.
  CPickBoundary3d* Boundary3d();

  /// Called when another session becomes the current one: nothing of this one can be undone after.
  void LeaveAsCurrent();

  // Picking single elements (ElementPick.cpp) ----------------------------------------------------

  /// The user's click. nodeWanted: CTRL was held, so the nearest node was probed, not the cell.
  void PickElementByProbe(bool nodeWanted);

  /// The same from a macro. False when the zone or element does not exist or cannot be written.
  bool PickElement(LgIndex_t zone, LgIndex_t element);

  // Picking areas (AreaPick.cpp) -----------------------------------------------------------------

  /// Applies the pick to the geometry that the frame offers, or when undoing to the one that was
  /// used last. Shows what is wrong and returns false when there is none.
  bool ApplyArea(bool undo);

  /// Applies the pick to the boundary that a macro defined. False with the reason in the macro
  /// engine's error text.
  bool ApplyAreaFromMacro();

  // Asking before (PickQuery.cpp) ----------------------------------------------------------------

  /// Sets the bit of every value of the zone that ApplyArea, called now, would write: values that
  /// stay what they are count too. Changes nothing and shows nothing.
  ///
  /// bits      bitCount of them, all 0
  /// returns   false when there is nothing to apply, or more values in the zone than bits; true,
  ///           with no bit, for a zone that the pick leaves alone
  /// throws    std::runtime_error when what is picked cannot be read
  bool MarkWhatApplyWrites(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount);

  // Picking on a surface (SurfacePick.cpp) -------------------------------------------------------

  /// Asks the user to click on the seed. False, after showing what is wrong, when no geometry can
  /// define the pick area.
  bool StartSurfacePick();

  /// The user's click. isSeed: CTRL was held.
  void PickSurfaceByProbe(bool isSeed);

  /// Applies the pick to what can be reached from the seed over the surface within the geometry
  /// that the frame offers, or when undoing within the one that was used last. True without doing
  /// anything unless the pick kind is a 2D one or none.
  bool ApplySurface(bool undo);

  /// The same within the boundary that a macro defined. A seed off the surface changes nothing and
  /// succeeds. False with the reason in the macro engine's error text.
  bool ApplySurfaceFromMacro();

  /// The seed of a macro's surface pick.
  void SetSeedZone(LgIndex_t zone) { m_seed.zone = zone; }
  void SetSeedElement(LgIndex_t node) { m_seed.node = node; }

  // Following the user's work in the host (FollowHost.cpp) ---------------------------------------

  /// Takes the geometry that was drawn last as the pick area, with the pick kind that fits it;
  /// recorded as PICKGEOMETRY. One of another type is left alone, and so is the kind.
  void TakeNewestGeometry();

  /// Brings the pick kind in line with the mouse mode that the user chose. The mode and the zones
  /// of box and sphere stay as they are.
  void FollowMouseMode();

  // Undo (Undo.cpp) ------------------------------------------------------------------------------

  /// Takes back the last alteration by applying its inverse to the same points.
  bool UndoLastAlter(bool fromMacro);

  // Recording what was just done (Recording.cpp) -------------------------------------------------

  void RecordUndoAlter() const;
  void RecordUndoBlank() const;
  void RecordView(StandardView view) const;
  void RecordAlterElement() const;
  void RecordBlankElement() const;
  void RecordArea() const;
  void RecordSurface() const;
  void RecordPickGeometry() const;
  void RecordBlankingInclude(bool on) const;

  // State ----------------------------------------------------------------------------------------

  bool IsUndoAvailable() const { return m_isUndoAvailable; }
  bool IsBlankMode() const { return m_isBlankMode; }
  bool IsSyncingContours() const { return m_isSyncingContours; }
  PickKind Kind() const { return m_pickKind; }
  PickRule Rule() const { return m_pickRule; }
  LgIndex_t AlterVariable() const { return m_alterVar; }
  const ValueModifier& Modifier() const { return m_modifier; }
  const ValueModifier& LastApplied() const { return m_lastApplied; }
  LgIndex_t PickedElement() const { return m_pickedElement; }
  LgIndex_t PickedZone() const { return m_pickedZone; }
  QelGeomID_t UndoGeometry() const { return m_undoGeometry; }
  CClippingCube& Cube() { return m_cube; }
  CClippingSphere& Sphere() { return m_sphere; }
  CPolyBoundary& PolyBoundary() { return m_polyBoundary; }
  const CPolyBoundary& PolyBoundary() const { return m_polyBoundary; }

 private:
  /// Where a surface pick begins.
  struct Seed {
    LgIndex_t zone = 0;
    LgIndex_t node = 0;
  };

  // WritePath.cpp
  LgIndex_t TargetVariable() const { return m_isBlankMode ? m_blankVar : m_alterVar; }
  std::optional<FieldWriter> OpenForWriting(LgIndex_t zoneNum, OnNoReference onNoReference);
  bool UnshareTarget(LgIndex_t zoneNum) const;
  std::optional<FieldWriter> Unshared(const FieldWriter& writer, OnNoReference onNoReference);
  void FinishZone(const FieldWriter& writer, std::int64_t writtenCount);

  bool ShowPickKind();
  void SetMouseModeFor(PickKind kind);
  bool IsPickingWith(PickKind kind) const;
  void DiscardUndo();
  void ShowUndoAvailability() const;
  void RestoreView();

  // ElementPick.cpp
  void AlterElement(const FieldWriter& writer, LgIndex_t element);

  // PickBlanking.cpp
  void ResetZone(LgIndex_t zone, LgIndex_t blankVar, const HostServices& services);

  // AreaPick.cpp
  bool Apply3d(const CPickBoundary3d& boundary);
  bool ApplyInBoundary3d(CPickBoundary3d& boundary);
  bool ApplyForPlotType(QelPlotType_e plotType);
  bool ApplyToZones(const InsideFiller& fillInside);
  bool ApplyToZone(LgIndex_t zone, const InsideFiller& fillInside, const HostServices& services);
  bool DecideInZone(const ZoneTarget& target, const InsideFiller& fillInside,
                    const HostServices& services,
                    const std::function<void(const TakenItems& taken)>& use) const;
  static toolbox::Set RelevantZones();
  std::vector<LgIndex_t> ZonesToChange();
  void UnshareTargets(const std::vector<LgIndex_t>& zones) const;

  // PickQuery.cpp
  bool AskAbout(QelGeomID_t geometry);
  bool MarkInZone(LgIndex_t zone, const InsideFiller& fillInside, std::uint64_t* bits,
                  std::int64_t bitCount) const;
  std::optional<QelValueLocation_e> WhereApplyWrites(LgIndex_t zone) const;

  // SurfacePick.cpp
  bool ApplySurfaceInGeometry(QelGeomID_t geometry, bool undo);

  // Undo.cpp
  bool RepeatLastPick(bool fromMacro);
  bool RepeatLastSurface(bool fromMacro);

  // Recording.cpp
  void AddVariableAndModifier() const;
  void AddRule() const;

  bool m_isUndoAvailable = false;
  bool m_isBlankMode = false;
  bool m_isSyncingContours = false;
  bool m_isSurfaceOnly = false;   ///< true only while a surface pick runs
  bool m_wasSurfaceOnly = false;  ///< m_isSurfaceOnly when values were last written
  Seed m_seed;
  Seed m_writtenSeed;  ///< m_seed when values were last written
  QelUniqueID_t m_dataSetId;
  PickRule m_pickRule = PickRule::AllInside;
  PickKind m_pickKind = PickKind::None;
  QelView* m_rememberedView = nullptr;
  CClippingCube m_cube;
  CClippingSphere m_sphere;
  CPolyBoundary m_polyBoundary;
  CPolyBoundary m_askedBoundary;  ///< of the last question
  QelGeomID_t m_undoGeometry = 0;
  LgIndex_t m_pickedElement = 0;
  LgIndex_t m_pickedZone = 0;
  LgIndex_t m_alterVar = 0;
  LgIndex_t m_blankVar = 0;
  ValueModifier m_modifier;
  ValueModifier m_lastApplied{ValueModifier::kAssign, 0.0};
};

}  // namespace qelvane::qelutiltools
