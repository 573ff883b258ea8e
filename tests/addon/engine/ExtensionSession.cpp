#include "ExtensionSession.h"

#include "ExtensionScene.h"
#include "FakeHostTest.h"
#include "HostLock.h"
#include "PickReference.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace extension {

using fakehost::FakeHost;
using fakehost::Host;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::Service;
using fakehost::StoredType;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using qelvane::qelutiltools::SessionRegistry;
using reference::Boundary;
using reference::Random;

namespace {

// Steps of a session ---------------------------------------------------------------------------

struct Step {
  std::string text;
  std::function<void()> run;  ///< null: the text is a line to be played
};

std::string Number(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

std::string RandomModifierText(Random& random) {
  constexpr const char* kOperands[] = {"2",      "0.1",    "0.5",   "7",   "-3",     "1e150",
                                       "1e300",  "1e-300", "0",     "-0",  "5e-324", "1e999",
                                       "-1e999", "1.5",    "127.5", "0.3", "3e38",   "1e-40"};
  constexpr const char kOperators[] = {'=', '+', '-', '*', '/'};
  return OneOf(random, kOperators) + std::string(OneOf(random, kOperands));
}

std::string RuleText(Random& random) {
  return std::string(" RULE=") + reference::kRules[random.Below(4)];
}

std::string VariableText(Random& random) {
  const LgIndex_t var = random.Below(4) == 0 ? RandomVariable(random) : 4 + random.Below(4);
  return " VARIABLE=\"" + Host().ActiveData()->varNames[static_cast<std::size_t>(var - 1)] +
         "\" MODIFIER=\"" + RandomModifierText(random) + "\"";
}

/// At times one that there is not.
std::string ItemText(Random& random, const char* word, LgIndex_t zone, LgIndex_t count) {
  const LgIndex_t item = random.Below(10) == 0 ? count + 1 : 1 + random.Below(count);
  return " ZONE=" + std::to_string(zone) + " " + word + "=" + std::to_string(item);
}

Selvane& Session() {
  const HostLock lock;
  Selvane* const session = SessionRegistry::Instance().GetOrCreate();
  if (session == nullptr) throw std::runtime_error("no session");
  return *session;
}

/// What the user does with a drawn geometry and the dialog's choices.
void ApplyDrawn(const Boundary& boundary, const std::string& variable,
                const std::string& modifier) {
  constexpr PickKind kKinds[] = {PickKind::Rectangle, PickKind::Circle, PickKind::Polygon};
  Host().ActiveFrame().geometries.clear();
  Host().AddGeometry(boundary.Drawn());
  Session().SetPickKind(kKinds[static_cast<std::size_t>(boundary.shape)], true);
  const auto& names = Host().ActiveData()->varNames;
  const auto at = std::find(names.begin(), names.end(), variable);
  Session().SetAlterVariable(static_cast<LgIndex_t>(at - names.begin()) + 1);
  Session().ParseModifier(modifier);
  Session().ApplyArea(false);
  Session().ApplyArea(true);
}

Step DrawnStep(Random& random, int reach) {
  Boundary boundary = AnyBoundary(random, reach);
  while (boundary.Is3d()) boundary = AnyBoundary(random, reach);
  constexpr const char* kNames[] = {"n1", "c1", "n2", "c2"};
  const std::string variable = OneOf(random, kNames);
  const std::string modifier = RandomModifierText(random);
  return {"drawn " + boundary.Line() + " " + variable + " " + modifier,
          [=] { ApplyDrawn(boundary, variable, modifier); }};
}

/// What the user changes in the host between two lines.
Step HostStep(Random& random) {
  switch (random.Below(4)) {
    case 0:
      return {"switch blanking", [] {
                bool& include = Host().ActiveFrame().blanking.include;
                include = !include;
                Host().Deliver(StateChange_Style, {"BLANKING", "VALUE", "INCLUDE"});
              }};
    case 1:
      return {"turn the view", [] { Host().RotateView(40, 20, 10); }};
    case 2:
      return {"switch zone 1", [] {
                bool& isActive = Host().ZoneAt(1)->isActive;
                isActive = !isActive;
              }};
    default: {
      // Of those that are called whatever is offered, and as often.
      constexpr const char* kFunctions[] = {
          "QelUtilDataValueGetReadableNLRef", "QelUtilDataValueGetWritableNativeRef",
          "QelUtilDataNodeGetReadableRef",    "QelUtilDataElemGetReadableRef",
          "QelUtilDataValueBranchShared",     "QelUtilDataValueAlloc"};
      const char* const function = OneOf(random, kFunctions);
      const int nth = 1 + random.Below(4);
      return {std::string("let fail ") + function, [=] { Host().FailCall(function, nth); }};
    }
  }
}

Step RandomStep(Random& random, int reach, LgIndex_t nodeCount, LgIndex_t cellCount) {
  const LgIndex_t zone = 1 + random.Below(2);
  switch (random.Below(16)) {
    case 0:
      return {"BLANKAREA" + RuleText(random), nullptr};
    case 1:
      return {"ALTERSURFACE" + VariableText(random) +
                  ItemText(random, "SEEDPOINT", zone, nodeCount) + RuleText(random),
              nullptr};
    case 2:
      return {"BLANKSURFACE" + ItemText(random, "SEEDPOINT", zone, nodeCount) + RuleText(random),
              nullptr};
    case 3:
      return {"ALTERELEMENT" + VariableText(random) + ItemText(random, "ELEMENT", zone, cellCount),
              nullptr};
    case 4:
      return {"BLANKELEMENT" + ItemText(random, "ELEMENT", zone, cellCount), nullptr};
    case 5:
    case 6:
      return {random.Below(4) == 0 ? "UNDOBLANK" : "UNDOALTER", nullptr};
    case 7:
      return DrawnStep(random, reach);
    case 8:
      return HostStep(random);
    case 9:
    case 10:
    case 11:
      return {AnyBoundary(random, reach).Line(), nullptr};
    default:
      return {"ALTERAREA" + VariableText(random) + RuleText(random), nullptr};
  }
}

std::vector<Step> RandomSteps(Random& random) {
  constexpr std::size_t kSteps = 10;
  const Mesh& mesh = Host().ZoneAt(1)->mesh;
  double reach = 1.0;
  for (const Point& point : mesh.points) {
    if (std::abs(point.x) < 1000.0) reach = std::max(reach, point.x);
  }
  const int longest = static_cast<int>(std::min(reach, 20.0)) + 1;
  std::vector<Step> steps{{AnyBoundary(random, longest).Line(), nullptr}};
  while (steps.size() < kSteps) {
    steps.push_back(RandomStep(random, longest, mesh.NodeCount(), mesh.CellCount()));
  }
  return steps;
}

// What comes of it -----------------------------------------------------------------------------

std::string TextOf(const fakehost::StateChangeNotice& notice) {
  std::ostringstream out;
  out << "notice " << notice.change;
  for (const SetIndex_t zone : notice.zones) out << " zone " << zone;
  for (const SetIndex_t var : notice.vars) out << " variable " << var;
  for (const std::string& param : notice.styleParams) out << " " << param;
  return out.str();
}

/// Moves what the host has heard since the last step to the outcome.
void TakeEvents(Outcome& outcome) {
  FakeHost& host = Host();
  const auto take = [&outcome](const std::string& kind, std::vector<std::string>& texts) {
    for (const std::string& text : texts) outcome.events.push_back(kind + text);
    texts.clear();
  };
  for (const auto& notice : host.notices) outcome.events.push_back(TextOf(notice));
  host.notices.clear();
  for (const auto& box : host.messageBoxes) {
    outcome.events.push_back("box " + std::to_string(box.kind) + " " + box.text);
  }
  host.messageBoxes.clear();
  take("error ", host.errorBoxes);
  take("recorded ", host.recordedLines);
  take("executed ", host.executedCommands);
  take("wait ", host.waitHistory);
  for (const fakehost::StyleCall& call : host.styleCalls) {
    outcome.events.push_back("style " + call.setting + " " + std::to_string(call.iValue));
  }
  host.styleCalls.clear();
  for (const fakehost::ProgressCall& call : host.progress) {
    outcome.progress.push_back(Number(call.fraction) + " zone " + std::to_string(call.zone) +
                               " variable " + std::to_string(call.var) + ": " +
                               std::to_string(call.count));
  }
  host.progress.clear();
}

void Take(const Step& step, Outcome& outcome) {
  outcome.steps += step.text + "\n";
  if (step.run == nullptr) {
    const fakehost::PlayResult result = Host().Play(step.text);
    outcome.events.push_back(step.text + (result.isDone ? ": done" : ": failed, " + result.error));
    outcome.events.push_back(std::to_string(result.macroErrorStrings) + " strings left");
  } else {
    try {
      step.run();
    } catch (const std::runtime_error& error) {
      outcome.events.push_back(std::string("thrown ") + error.what());
    }
  }
  Host().RunIdleQueue();
  TakeEvents(outcome);
}

}  // namespace

bool Offer::Has(Service service) const {
  return std::find(services.begin(), services.end(), service) != services.end();
}

std::string Offer::Name() const {
  std::string name = "with";
  if (Has(Service::Bulk)) name += " bulk";
  if (variant.isInterleaved) name += " interleaved";
  if (variant.hasPoints) name += " points";
  if (variant.isPartial) name += " partial";
  if (variant.isWide) name += " wide";
  if (variant.startsAtZero) name += " zero";
  if (variant.isBent) name += " bent";
  if (Has(Service::Parallel)) name += " parallel";
  if (Has(Service::Progress)) name += " progress";
  return name;
}

namespace {

void StartHost(const Offer& offer) {
  FakeHost& host = Host();
  host.Reset();
  host.keepsCalls = false;
  host.isRecording = true;
  host.OfferExtensions(offer.services, offer.variant);
}

}  // namespace

Outcome PlaySession(QelZoneType_e type, unsigned seed, const Offer& offer) {
  Random random(seed * 8 + static_cast<unsigned>(type));
  StartHost(offer);
  MakeRandomScene(random, type);
  const std::vector<Step> steps = RandomSteps(random);
  InitQelAddOn113();
  Outcome outcome;
  std::vector<std::vector<unsigned char>> before = AllValues();
  for (const Step& step : steps) {
    Take(step, outcome);
    outcome.values = AllValues();
    outcome.changingSteps += outcome.values != before ? 1 : 0;
    before = outcome.values;
  }
  outcome.spansShown = Host().spansShown;
  outcome.rangeRuns = Host().rangeRuns;
  return outcome;
}

Outcome PlayLines(const Mesh& mesh, StoredType coordinates, StoredType values,
                  const std::vector<std::string>& lines, bool hides, const Offer& offer) {
  StartHost(offer);
  Host().AddFrame(PlotType_Cartesian3D).view.psi = 20.0;
  // The second zone of a frame is one whose nodes a host may refuse.
  Host().AddZone(MakeLattice(mesh.type, 1, 1, 1), coordinates);
  Host().AddZone(mesh, coordinates);
  const auto value = [](LgIndex_t, LgIndex_t index) { return index / 8.0; };
  Host().AddVariable("n", ValueLocation_Nodal, values, value);
  Host().AddVariable("c", ValueLocation_CellCentered, values, value);
  fakehost::Blanking& blanking = Host().ActiveFrame().blanking;
  blanking.include = hides;
  blanking.constraints[1] = {true,  4, 0, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseConstant,
                             9000.0};
  InitQelAddOn113();
  Outcome outcome;
  const std::vector<std::vector<unsigned char>> before = AllValues();
  for (const std::string& line : lines) Take({line, nullptr}, outcome);
  outcome.values = AllValues();
  outcome.changingSteps = outcome.values != before ? 1 : 0;
  outcome.spansShown = Host().spansShown;
  outcome.rangeRuns = Host().rangeRuns;
  return outcome;
}

}  // namespace extension
