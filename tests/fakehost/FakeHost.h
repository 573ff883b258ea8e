#pragma once

#include "FakeControls.h"
#include "FakeData.h"
#include "FakeExtensions.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace fakehost {

struct CallRecord {
  std::string function;
  std::string arguments;
  bool isFallible = false;  ///< it has an answer that says "failed"
};

struct MessageShown {
  std::string text;
  QelMessageBox_e kind = MessageBox_Information;
};

struct PlayResult {
  bool isDone = false;
  std::string error;
  int macroErrorStrings = 0;  ///< strings labelled "Macro Error." that nobody holds any more
};

struct MenuOption {
  std::string path;
  std::string label;
  char mnemonic = 0;
  QelMenuCallback_pf callback = nullptr;
  bool isSensitive = true;
};

struct StateChangeNotice {
  QelStateChange_t change = 0;
  std::vector<SetIndex_t> zones;
  std::vector<SetIndex_t> vars;
  std::vector<std::string> styleParams;
};

/// A style setting that somebody asked for, accepted or not.
struct StyleCall {
  std::string setting;              ///< "FIELDMAP SHADE SHOW", "EDGELAYER COLOR", "ACTIVE"
  std::vector<SetIndex_t> objects;  ///< zones or field maps
  LgIndex_t offset1 = 0;
  ArbParam_t iValue = 0;  ///< of ACTIVE the operation
  double dValue = 0.0;
  QelSetValueResult_e result = SetValueResult_Ok;
};

/// A host in memory. Tests set its state and read what an add-on made of it; the functions of the
/// interface work on the one instance, Host(). Everything but dialogs, which the host never takes
/// back, starts anew with Reset().
class FakeHost {
 public:
  void Reset();

  // Services beyond the interface (FakeExtensions.cpp)
  // ----------------------------------------------------------------
  /// These and no others. After a reset those that MARQUELL_FAKE_EXTENSIONS names,
  /// none when it is not set; see ServicesNamed.
  void OfferExtensions(const std::vector<Service>& services, const SpanVariant& variant = {});
  void OfferAlso(Service service);
  void Withhold(Service service);

  // What the host does with what was offered to it (FakeExtensionsOffered.cpp)
  // ----------------------------------------------------------------
  /// Asks what an apply would write; not answered when nobody offered to tell. What lies around the
  /// bits is watched, and so is which of them are defined.
  PickAnswer AskPick(LgIndex_t zone, std::int64_t bitCount);
  /// The user drags the shape; false when there is none in the plot.
  bool DragShape(const std::array<double, 3>& anchor, const std::array<double, 3>& size,
                 const std::array<double, 3>& rotationDeg);
  /// The host has taken values back by itself; false when nobody wants to know.
  bool TellOfRestoredValues();
  bool IsShapeShown() const { return !shapeCalls.empty() && shapeCalls.back().isShow; }

  // Frames and data (FakeWorld.cpp)
  // ----------------------------------------------------------------
  Frame& AddFrame(QelPlotType_e plotType);  ///< becomes the active one
  void ActivateFrame(std::size_t index);    ///< tells nobody
  bool HasFrame() const { return !frames.empty(); }
  Frame& ActiveFrame() { return frames.at(activeFrame); }
  DataSet* ActiveData();
  Zone* ZoneAt(LgIndex_t zone);
  Zone* ZoneWithId(QelUniqueID_t id);            ///< in any frame
  LgIndex_t ZoneNamed(const std::string& name);  ///< the first of that name; 0: none
  Values* ValuesAt(LgIndex_t zone, LgIndex_t var);
  /// Appends a zone, as if read from a file, with the frame's axis variables stored as said; the
  /// other variables are passive there. The frame's first zone makes its data set.
  LgIndex_t AddZone(Mesh mesh, StoredType coordinateType = StoredType::Double);
  LgIndex_t AddZone(Mesh mesh, const std::array<StoredType, 3>& coordinateTypes);
  /// Appends a variable to every zone; value(zone, index) with both counted from 1.
  LgIndex_t AddVariable(const std::string& name, QelValueLocation_e location, StoredType type,
                        const std::function<double(LgIndex_t, LgIndex_t)>& value);
  void MakePassive(LgIndex_t zone, LgIndex_t var);
  void Share(LgIndex_t owner, LgIndex_t sharer, LgIndex_t var);
  std::vector<double> ValuesOf(LgIndex_t zone, LgIndex_t var);
  QelGeomID_t AddGeometry(Geometry geometry);
  void DeleteGeometry(QelGeomID_t id);
  void SelectGeometry(QelGeomID_t id);

  // What the user does (FakeActions.cpp)
  // -----------------------------------------------------------
  PlayResult Play(const std::string& command);
  void ChooseMenu(const std::string& label);
  /// A click in the plot; does nothing unless an add-on's probe is installed.
  void Probe(bool withCtrl, LgIndex_t zone, LgIndex_t cell, LgIndex_t node);
  void RunIdleQueue();
  /// The host's own notice, with the host on top of the lock stack.
  void Deliver(QelStateChange_t change, const std::vector<std::string>& styleParams = {});
  /// A notice with the lock stack as it stands.
  void Notify(StateChangeNotice notice);
  /// Makes another frame the active one, with the notices of that.
  void SwitchFrame(std::size_t index);
  /// Closes everything: every frame and data set is gone, with the notices of that.
  void CloseAll();

  // What the user does with a dialog, the mouse and the view (FakeUser.cpp)
  // ----------------------------------------------------------------
  // Those with a dialog do nothing and answer false unless the control is of the kind, shown and
  // sensitive, with all that it stands on, and there is something to change.
  bool Press(LgIndex_t button);
  bool Switch(LgIndex_t toggle, bool on);
  bool Choose(LgIndex_t menu, LgIndex_t item);
  bool ChooseRadio(LgIndex_t box, LgIndex_t toggle);
  /// Types the text and ends the entry; the callback's answer.
  bool EnterText(LgIndex_t field, const std::string& text);
  bool StepUp(LgIndex_t field);
  bool StepDown(LgIndex_t field);
  /// Leaves the tab's page, then shows the other; pages count from 1.
  bool TurnTo(LgIndex_t tab, LgIndex_t page);
  bool CloseWindow(LgIndex_t dialog);
  bool AskForHelp(LgIndex_t dialog);
  /// The host's own tool bar, with the notice of that.
  void ChooseMouseMode(QelMouseMode_e mode);
  /// Draws with the mouse; the host holds the lock when it tells of the new geometry.
  QelGeomID_t DrawGeometry(const Geometry& geometry);
  void RotateView(double psi, double alpha, double theta);
  /// In the host's own menus, like the view.
  void SwitchBlanking(bool on);

  // What tests ask for
  // -----------------------------------------------------------------------------
  /// Makes the nth call, from now on and counted from 1, of a function fail.
  ///
  /// then    the call that fails besides, of any function, counted from 1 after that one; 0: none
  /// spared  but for this function
  void FailCall(const std::string& function, int nth, int then = 0, const std::string& spared = "");
  bool WasFaultHit() const { return faultHits > 0; }
  /// For tests that disturb calls by themselves.
  void NoteFault() { ++faultHits; }
  int CallCount(const std::string& function) const;
  int LockDepth() const { return static_cast<int>(lockOwners.size()); }
  const std::vector<std::string>& Misuse() const { return misuse; }
  /// Host-allocated things still held, described; strings by their label.
  std::vector<std::string> Leaks() const;
  bool IsBlankedCell(LgIndex_t zone, LgIndex_t cell);
  bool IsBlankedNode(LgIndex_t zone, LgIndex_t node);
  Point Project(const Point& point);
  /// The same as a matrix, row-major.
  std::array<double, 16> ProjectionMatrix();
  /// Whether something was written between the values that lie interleaved.
  bool HasDamagedGaps() const;
  bool IsDialogUp() const;
  /// One of no kind when there is no such control.
  const Control& At(LgIndex_t control) const;
  /// All dialogs and controls of the process, in the order in which they were made.
  std::vector<Control> Controls() const;
  std::string ChosenItem(LgIndex_t menu) const;
  /// Whether the user can act on it.
  bool IsReachable(LgIndex_t control) const;

  // State; tests may read and set it -----------------------------------------------------------
  std::vector<Frame> frames;
  std::size_t activeFrame = 0;
  double solutionTime = 0.0;
  QelMouseMode_e mouseMode = Mouse_Select;
  double paperScale = 1.0;
  double paperX = 0.0;
  double paperY = 0.0;
  bool isRecording = false;
  bool isPlaying = false;
  bool isBatch = false;
  std::vector<std::string> recordedLines;  ///< an add-on's after its name and a blank
  std::vector<std::string> executedCommands;
  std::vector<std::string> errorBoxes;
  std::vector<MessageShown> messageBoxes;
  std::vector<bool> queuedAnswers;
  std::vector<std::string> waitMessages;  ///< shown and not yet taken away
  int redrawCount = 0;
  int dataLoadDepth = 0;
  std::vector<std::string> waitHistory;                    ///< every wait message shown
  std::vector<StyleCall> styleCalls;                       ///< in their order
  std::function<bool(const std::string& line)> onExecute;  ///< what a host command does, if set
  std::map<std::string, const void*> extensions;
  SpanVariant spans;                   ///< see OfferExtensions
  std::vector<ProgressCall> progress;  ///< in their order
  QelPickQuery_pf pickQuery = nullptr;
  void (*valuesRestored)() = nullptr;
  QelShapeChanged_pf shapeChanged = nullptr;
  std::vector<ShapeCall> shapeCalls;  ///< in their order
  int spansShown = 0;                 ///< of values
  int rangeRuns = 0;                  ///< calls of forRange
  std::vector<MenuOption> menu;
  std::vector<std::string> menuSeparators;
  std::vector<StateChangeNotice> notices;
  std::string registeredName;
  std::string registeredVersion;
  std::string registeredAuthor;
  LgIndex_t registeredInterface = 0;
  std::map<std::string, QelMacroCommandCallback_pf> macroCallbacks;
  std::vector<QelStateChangeCallback_pf> stateCallbacks;
  std::vector<std::pair<QelOnIdleCallback_pf, ArbParam_t>> idleQueue;
  QelProbeCallback_pf probeCallback = nullptr;
  std::string probeInstruction;
  LgIndex_t probedZone = 0;
  LgIndex_t probedCell = 0;
  LgIndex_t probedNode = 0;
  std::vector<CallRecord> calls;
  bool keepsCalls = true;  ///< off in long runs: the log is not written

  // For the functions of the interface -----------------------------------------------------------
  bool Enter(const char* function, const std::string& arguments, bool needsLock, bool isFallible);
  void Report(const std::string& what) { misuse.push_back(what); }
  /// Makes the frame active and sends what follows, with the lock stack as it stands.
  void EnterFrame(std::size_t index);
  std::vector<std::string> lockOwners;
  std::vector<std::string> currentStyleParams;

 private:
  void OfferWhatTheEnvironmentSays();
  std::vector<std::string> misuse;
  std::string faultFunction;
  int faultCountdown = 0;
  int faultHits = 0;
  int nextFaultCountdown = 0;
  std::string sparedFunction;
};

/// The one host of the process.
FakeHost& Host();

/// An id that no earlier test of the process had.
std::int64_t NewUniqueId();

}  // namespace fakehost
