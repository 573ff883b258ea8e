// Thousands of a user's actions in random order. After each one the dialog, the sessions and the
// host have to agree. A failure is reported with the shortest list of actions found that shows it.
#include "User.h"

#include "ApiHandles.h"
#include "CommandText.h"
#include "Controls.h"
#include "DialogState.h"
#include "Player.h"
#include "PlotActions.h"
#include "Selvane.h"
#include "UserActions.h"

#include "qelvane/QelUtil.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

extern "C" void InitQelAddOn113(void);

namespace scenario {
namespace {

using namespace qelhost;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::Controls;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;

/// One action; what it does follows from its numbers alone, so a list of them can be replayed.
struct Step {
  std::size_t action = 0;
  unsigned a = 0;
  unsigned b = 0;
};

LgIndex_t Pick(unsigned number, LgIndex_t count) {
  return static_cast<LgIndex_t>(number % static_cast<unsigned>(count));
}

/// A host command that may be refused, as when it is about a geometry that there is not.
void Try(Host& host, const std::string& command) {
  try {
    Act(host, command);
  } catch (const CommandError&) {
  }
}

constexpr LgIndex_t ControlIds::*kTools[] = {&ControlIds::elementTool, &ControlIds::rectangleTool,
                                             &ControlIds::circleTool,  &ControlIds::polygonTool,
                                             &ControlIds::cubeTool,    &ControlIds::sphereTool};
constexpr LgIndex_t ControlIds::*kButtons[] = {
    &ControlIds::undoAlterButton, &ControlIds::undoBlanksButton, &ControlIds::viewXYButton,
    &ControlIds::viewXZButton,    &ControlIds::viewYZButton,     &ControlIds::view3DButton};
constexpr LgIndex_t ControlIds::*kToggles[] = {
    &ControlIds::syncContoursToggle, &ControlIds::includeBlankingToggle, &ControlIds::shadeToggle};
constexpr LgIndex_t ControlIds::*kFields[] = {
    &ControlIds::anchorXField, &ControlIds::anchorYField, &ControlIds::anchorZField,
    &ControlIds::sizeXField,   &ControlIds::sizeYField,   &ControlIds::sizeZField,
    &ControlIds::rotateXField, &ControlIds::rotateYField, &ControlIds::rotateZField,
    &ControlIds::centerXField, &ControlIds::centerYField, &ControlIds::centerZField,
    &ControlIds::radiusField};
constexpr const char* kModifiers[] = {"+1", "*2", "=5", "/4", "-0.5", "*0", "/0", "abc", ""};
constexpr const char* kNumbers[] = {"0", "1.5", "-2", "abc", "1e3", "", "0.25 x"};
constexpr const char* kCommands[] = {"$!PLOTTYPE CARTESIAN2D",
                                     "$!PLOTTYPE CARTESIAN3D",
                                     "$!PLOTTYPE POLAR",
                                     "$!VIEW PSI=40 ALPHA=10 THETA=5",
                                     "$!VIEW FIT",
                                     "$!ZONE 1 ACTIVE=NO",
                                     "$!ZONE 1 ACTIVE=YES",
                                     "$!BLANKING VALUE{INCLUDE = YES}",
                                     "$!BLANKING VALUE{INCLUDE = NO}",
                                     "$!LAYER SHOWMESH=YES",
                                     "$!LAYER SHOWEDGE=NO",
                                     "$!GEOMETRY SELECT 1",
                                     "$!GEOMETRY MOVE 1 X=1 Y=1",
                                     "$!GEOMETRY DELETE 1"};
constexpr const char* kLines[] = {
    "Marquell PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=2 SIZEY=2 SIZEZ=2 ROTATEX=10",
    "Marquell PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=1 RADIUS=1.5",
    "Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=3 SIZEY=3",
    "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"+2\" RULE=ANYINSIDE",
    "Marquell BLANKAREA RULE=ANYINSIDE",
    "Marquell ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"*2\" ZONE=1 ELEMENT=2",
    "Marquell ALTERSURFACE ZONE=1 SEEDPOINT=1 RULE=ANYINSIDE",
    "Marquell UNDOALTER",
    "Marquell UNDOBLANK",
    "Marquell PICKGEOMETRY",
    "Marquell VIEWXZ",
    "Marquell NONSENSE"};

std::vector<std::function<void(Host&, unsigned, unsigned)>> Actions() {
  using H = Host&;
  using U = unsigned;
  return {
      [](H h, U, U) { ChooseMenu(h, "Data", "Marquell ..."); },
      // Most users leave the dialog up; what drops it comes less often than what uses it.
      [](H h, U, U) {
        if (!h.dialogs.IsUp(Controls.dialog)) ChooseMenu(h, "Data", "Marquell ...");
      },
      [](H h, U a, U b) { h.dialogs.Toggle(Controls.*kTools[a % std::size(kTools)], b % 4 != 0); },
      [](H h, U a, U b) { h.dialogs.Toggle(Controls.*kTools[a % std::size(kTools)], b % 4 != 0); },
      [](H h, U, U) { h.dialogs.Press(Controls.applyButton); },
      [](H h, U, U) { h.dialogs.Press(Controls.applyButton); },
      [](H h, U a, U) { h.dialogs.Press(Controls.*kButtons[a % std::size(kButtons)]); },
      [](H h, U a, U b) { h.dialogs.Toggle(Controls.*kToggles[a % std::size(kToggles)], b % 2); },
      [](H h, U a, U) { h.dialogs.Choose(Controls.variableMenu, 1 + Pick(a, 6)); },
      [](H h, U a, U) {
        h.dialogs.Enter(Controls.modifierField, kModifiers[a % std::size(kModifiers)]);
      },
      [](H h, U a, U b) {
        h.dialogs.Choose(a % 2 ? Controls.anyAllMenu : Controls.insideOutsideMenu, 1 + Pick(b, 2));
      },
      [](H h, U a, U) { h.dialogs.Choose(Controls.surfaceRadioBox, 1 + Pick(a, 2)); },
      [](H h, U a, U) { h.dialogs.TurnToPage(Controls.tab, 1 + Pick(a, 2)); },
      [](H h, U a, U b) { h.dialogs.Spin(Controls.*kFields[a % std::size(kFields)], b % 2); },
      [](H h, U a, U b) {
        h.dialogs.Enter(Controls.*kFields[a % std::size(kFields)],
                        kNumbers[b % std::size(kNumbers)]);
      },
      [](H h, U a, U b) {
        const char* const shapes[] = {
            "RECTANGLE X={} Y={} WIDTH=2 HEIGHT=3", "CIRCLE X={} Y={} RADIUS=2",
            "POLYLINE X={} Y={} POINTS=\"0,0 3,0 2,3\"", "ELLIPSE X={} Y={} WIDTH=1 HEIGHT=2"};
        Try(h, "$!GEOMETRY " +
                   fmt::format(fmt::runtime(shapes[a % 4]), Pick(b, 4) - 2, Pick(b / 7, 4) - 2));
      },
      [](H h, U a, U) { Try(h, kCommands[a % std::size(kCommands)]); },
      [](H h, U a, U b) {
        if (b % 3 == 0) Try(h, fmt::format("$!FRAME {}", 1 + Pick(a, 3)));
      },
      [](H h, U a, U) { ChooseMouseMode(h, static_cast<QelMouseMode_e>(Pick(a, 11))); },
      [](H h, U a, U b) { ClickProbe(h, Pick(a, 2), Pick(b, 9), Pick(b / 3, 28), a % 3 == 0); },
      [](H h, U a, U) { h.messages.QueueAnswer(a % 2 == 0); },
      [](H h, U a, U b) {
        if (b % 3 == 0) Player(h).Play(kLines[a % std::size(kLines)]);
      },
      [](H h, U a, U) {
        if (a % 4 == 0) h.dialogs.CloseWindow(Controls.dialog);
      },
  };
}

/// The place among the actions of the one that plays a line.
constexpr std::size_t kPlayAction = 21;

std::vector<DataSetPtr> MakeData() { return {Cube(3), Cube(2), Plate(4)}; }

/// A host with fresh data, on which a list of steps is tried.
class World {
 public:
  World() {
    static const bool isLoaded = [] {
      InitQelAddOn113();
      return true;
    }();
    static_cast<void>(isLoaded);
    m_host.messages.isBatch = false;
    m_host.messages.SetSink(
        [this](const std::string& text, QelMessageBox_e) { m_said.push_back(text); });
    for (const DataSetPtr& data : MakeData()) m_host.ShowDataSet(data);
    m_host.idle.Run();
    {
      const HostAction lock(m_host.lock);
      ActivateFrame(m_host, m_host.frames.At(1)->Id());
    }
    m_host.idle.Run();
    m_host.recorder.Start(FirstStateOf(m_host.frames));
    m_handlesBefore = HandleCount();
  }
  ~World() {
    m_host.recorder.Stop();
    m_host.dialogs.Drop(Controls.dialog);
    m_host.CloseAll();
    m_host.idle.Run();
    m_host.messages.SetSink(nullptr);
  }

  std::size_t StepsWithDialog() const { return m_stepsWithDialog; }

  /// What is wrong after the first step that leaves something wrong; empty when none does. done
  /// receives how many steps were taken.
  std::string Run(const std::vector<Step>& steps, std::size_t& done) {
    static const auto actions = Actions();
    for (done = 0; done < steps.size();) {
      const Step& step = steps[done++];
      actions[step.action](m_host, step.a, step.b);
      m_host.idle.Run();
      if (m_host.dialogs.IsUp(Controls.dialog)) ++m_stepsWithDialog;
      if (std::string wrong = WhatIsWrong(); !wrong.empty()) return wrong;
    }
    return {};
  }

 private:
  static std::size_t HandleCount() {
    return TheHandles().sets.Count() + TheHandles().lists.Count();
  }

  std::string WhatIsWrong() const {
    if (m_host.lock.IsOn()) return "a lock is open, owner " + m_host.lock.Owner();
    if (HandleCount() != m_handlesBefore) return "sets or lists were not given back";
    if (!m_host.messages.waitText.empty()) return "a wait message stands";
    for (const std::string& text : m_said) {
      if (text.find("An error occured") == 0 || text.find("Failed to select") == 0) {
        return "the add-on reported: " + text;
      }
    }
    if (const std::string wrong = WrongZones(); !wrong.empty()) return wrong;
    return WrongControls();
  }

  /// A box or sphere may stay behind in data that were left by way of a plot in which nothing can
  /// be picked, so the zones of each data set are counted by themselves.
  std::string WrongZones() const {
    for (LgIndex_t n = 1; n <= m_host.frames.Count(); ++n) {
      const DataSet& data = *m_host.frames.At(n)->Data();
      int drawn = 0;
      for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
        if (!data.FindZone(zone)->IsFromFile()) ++drawn;
      }
      if (drawn > 1) return fmt::format("frame {} has {} boundary zones", n, drawn);
    }
    return {};
  }

  bool IsOn(LgIndex_t toggle) const { return m_host.dialogs.Find(toggle)->selected != 0; }
  bool IsSensitive(LgIndex_t id) const { return m_host.dialogs.Find(id)->isSensitive; }

  std::string WrongControls() const {
    if (!m_host.dialogs.IsUp(Controls.dialog)) return {};
    Selvane* const session = DialogSession();
    if (session == nullptr) return "the dialog is up and edits nothing";
    if (session->DataSetId() != QelUtilDataSetGetUniqueID()) {
      return "the dialog edits another frame's data";
    }
    constexpr PickKind kKinds[] = {PickKind::Element, PickKind::Rectangle, PickKind::Circle,
                                   PickKind::Polygon, PickKind::Cube,      PickKind::Sphere};
    for (std::size_t tool = 0; tool < std::size(kTools); ++tool) {
      if (IsOn(Controls.*kTools[tool]) != (session->Kind() == kKinds[tool])) {
        return fmt::format("tool {} does not agree with kind {}", tool,
                           static_cast<int>(session->Kind()));
      }
    }
    if (IsSensitive(Controls.undoAlterButton) != session->IsUndoAvailable()) {
      return "the undo button does not agree with the session";
    }
    // Nothing is told of a geometry that was deleted, so the button may stay sensitive.
    if (session->CanApply() && !IsSensitive(Controls.applyButton)) {
      return "what can be applied is greyed";
    }
    return {};
  }

  Host& m_host = Host::Instance();
  std::vector<std::string> m_said;
  std::size_t m_handlesBefore = 0;
  std::size_t m_stepsWithDialog = 0;
};

std::string TryAll(const std::vector<Step>& steps, std::size_t& done,
                   std::size_t* stepsWithDialog = nullptr) {
  World world;
  std::string wrong = world.Run(steps, done);
  if (stepsWithDialog != nullptr) *stepsWithDialog = world.StepsWithDialog();
  return wrong;
}

/// Leaves out, one after the other, the steps without which it still goes wrong.
std::vector<Step> Shrink(std::vector<Step> steps) {
  for (std::size_t i = steps.size(); i-- > 0;) {
    std::vector<Step> fewer = steps;
    fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
    std::size_t done = 0;
    if (TryAll(fewer, done).empty()) continue;
    fewer.resize(done);
    steps = fewer;
    i = std::min(i, steps.size());
  }
  return steps;
}

std::string Described(const std::vector<Step>& steps) {
  std::string text;
  for (const Step& step : steps)
    text += fmt::format("\n  {{{}, {}u, {}u}},", step.action, step.a, step.b);
  return text;
}

class RandomSteps : public testing::TestWithParam<unsigned> {};

TEST_P(RandomSteps, LeaveEverythingInAgreement) {
  constexpr std::size_t kStepCount = 20000;
  std::mt19937 random(GetParam());
  const std::size_t actionCount = Actions().size();
  std::vector<Step> steps(kStepCount);
  std::uniform_int_distribution<unsigned> number(0, 999);
  for (Step& step : steps) step = {number(random) % actionCount, number(random), number(random)};
  std::size_t done = 0;
  std::size_t stepsWithDialog = 0;
  const std::string wrong = TryAll(steps, done, &stepsWithDialog);
  if (wrong.empty()) {
    EXPECT_GT(stepsWithDialog, kStepCount / 4) << "the dialog was hardly ever up";
    return;
  }
  steps.resize(done);
  const std::vector<Step> shortest = Shrink(steps);
  FAIL() << wrong << " after" << Described(shortest) << "\n" << TryAll(shortest, done);
}

/// Whether a box or sphere lies over the smallest cube in X and Y. One that does not is placed anew
/// when it is played.
bool IsOverTheData(const std::string& line) {
  const auto numberOf = [&line](const std::string& name) {
    const std::size_t at = line.find(" " + name + "=");
    return at == std::string::npos ? 0.0
                                   : std::strtod(line.c_str() + at + name.size() + 2, nullptr);
  };
  const double radius = numberOf("RADIUS");
  for (const char* const axis : {"X", "Y"}) {
    const double anchor = numberOf(std::string("ANCHOR") + axis);
    const double end = anchor + numberOf(std::string("SIZE") + axis) + radius;
    if (std::min(anchor, end) - radius > 2.0 || std::max(anchor, end) < 0.0 || radius < 0.0) {
      return false;
    }
  }
  return true;
}

bool IsOfBoundary3d(const std::string& line) {
  return line.rfind("Marquell PICKCUBE", 0) == 0 || line.rfind("Marquell PICKSPHERE", 0) == 0;
}

/// What a journal cannot carry: blanks undone after an alteration; a boundary that was moved off
/// the data; and changes of the blanking variable itself, which turning to a page made in the
/// window.
bool CanBeReplayed(const std::vector<std::string>& journal) {
  bool hasAltered = false;
  for (const std::string& line : journal) {
    hasAltered = hasAltered || line.rfind("Marquell ALTER", 0) == 0;
    if (hasAltered && line == "Marquell UNDOBLANK") return false;
    if (line.find("VARIABLE=\"PICK_BLANK\"") != std::string::npos) return false;
    if (IsOfBoundary3d(line) && !IsOverTheData(line)) return false;
  }
  return true;
}

/// The values of every data set, without variables that only the window's pages made.
std::vector<std::vector<std::vector<double>>> AllValues(const Host& host) {
  std::vector<std::vector<std::vector<double>>> values;
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n) {
    DataSet& data = *host.frames.At(n)->Data();
    values.push_back(ValuesOf(data));
    const LgIndex_t blanks = data.VariableNumber("PICK_BLANK");
    if (blanks == 0) continue;
    std::vector<double>& hidden = values.back()[static_cast<std::size_t>(blanks - 1)];
    const bool hidesNone =
        std::all_of(hidden.begin(), hidden.end(), [](double v) { return v == 0; });
    if (hidesNone) values.back().erase(values.back().begin() + (blanks - 1));
  }
  return values;
}

class Sessions : public testing::TestWithParam<unsigned> {};

TEST_P(Sessions, PlayBackToTheSameValues) {
  constexpr int kSessionCount = 100;
  constexpr std::size_t kStepCount = 60;
  std::mt19937 random(1000 + GetParam());
  std::uniform_int_distribution<unsigned> number(0, 999);
  const std::size_t actionCount = Actions().size();
  Host& host = Host::Instance();
  int replayed = 0;
  for (int session = 0; session < kSessionCount; ++session) {
    std::vector<Step> steps(kStepCount);
    for (Step& step : steps) {
      do {
        step = {number(random) % actionCount, number(random), number(random)};
      } while (step.action == kPlayAction);  // a played line may rest on what no line says
    }
    std::vector<std::string> journal;
    std::vector<std::vector<std::vector<double>>> values;
    {
      World world;
      std::size_t done = 0;
      ASSERT_EQ(world.Run(steps, done), "");
      journal = host.recorder.Lines();
      values = AllValues(host);
    }
    if (!CanBeReplayed(journal)) continue;
    ++replayed;
    const World world;
    Player player(host);
    for (const std::string& line : journal) {
      if (line.front() == '#') continue;
      const LineResult result = player.Play(line);
      ASSERT_TRUE(result.isDone) << line << ": " << result.message << Described(steps);
    }
    ASSERT_EQ(AllValues(host), values) << testing::PrintToString(journal) << Described(steps);
    ASSERT_EQ(host.recorder.Lines(), journal);
  }
  EXPECT_GT(replayed, kSessionCount / 2);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Sessions, testing::Range(1u, 9u));

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSteps, testing::Range(1u, 9u));

}  // namespace
}  // namespace scenario
