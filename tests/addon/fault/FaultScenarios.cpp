#include "FaultScenarios.h"

#include "Controls.h"

#include "qelvane/Keywords.h"

#include <array>

extern "C" void InitQelAddOn113(void);

namespace fault {

using fakehost::FakeHost;
using fakehost::Geometry;
using fakehost::Host;
using fakehost::Service;
using qelvane::qelutiltools::Controls;

namespace {

Deed Line(const std::string& line, Change change = nullptr) {
  return {line, nullptr, line, change};
}

/// Something a user or the host does, and what the host does when it is idle again.
Deed Act(const std::string& name, std::function<void()> act, Change change = nullptr) {
  return {name,
          [act] {
            act();
            Host().RunIdleQueue();
          },
          "", change};
}

// What the deeds below do to values; all of it is exact.
double Plus1(double value) { return value + 1.0; }
double Minus1(double value) { return value - 1.0; }
double Twice(double value) { return value * 2.0; }
double Half(double value) { return value / 2.0; }
double Zero(double) { return 0.0; }

constexpr char kCellBox[] = "Failed to select a cell. Please try again.";
constexpr char kSeedBox[] = "Failed to select a seed point. Please try again.";
constexpr char kLoadBox[] = "Marquell add-on failed to load.";

Deed WithBox(Deed deed, const char* box) {
  deed.box = box;
  return deed;
}

Geometry Rectangle(double end) {
  Geometry geometry;
  geometry.anchor = {-1.0, -1.0, 0.0};
  geometry.width = end + 1.0;
  geometry.height = 9.0;
  return geometry;
}

Geometry Triangle() {
  Geometry geometry;
  geometry.type = GeomType_LineSegs;
  geometry.anchor = {-1.0, -1.0, 0.0};
  geometry.points = {{0.0, 0.0, 0.0}, {6.0, 0.0, 0.0}, {0.0, 6.0, 0.0}};
  return geometry;
}

Geometry Circle() {
  Geometry geometry;
  geometry.type = GeomType_Circle;
  geometry.width = 1.5;
  return geometry;
}

bool IsFlat(QelZoneType_e type) {
  return type == ZoneType_FETriangle || type == ZoneType_FEQuad || type == ZoneType_FEPolygon;
}

}  // namespace

// Journals ---------------------------------------------------------------------------------------

std::vector<Session> PlayedSessions(QelZoneType_e type) {
  const QelPlotType_e plotType = IsFlat(type) ? PlotType_Cartesian2D : PlotType_Cartesian3D;
  const auto prepare = [=] { PrepareZones(type, plotType); };
  const auto prepareSolid = [=] { PrepareZones(type, PlotType_Cartesian3D); };
  const auto prepareFlat = [=] { PrepareZones(type, PlotType_Cartesian2D); };
  const auto prepareShown = [=] {
    PrepareZones(type, plotType);
    Host().OfferExtensions({Service::Bulk, Service::Parallel, Service::Progress});
  };
  const std::vector<Deed> areas = {
      Line("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9"),
      Line("ALTERAREA VARIABLE=\"c\" MODIFIER=\"*2\" RULE=ANYINSIDE", Twice),
      Line("UNDOALTER", Half),
      Line("ALTERAREA VARIABLE=\"n\" MODIFIER=\"/2\" RULE=ANYOUTSIDE", Half),
      Line("UNDOALTER", Twice),
  };
  return {
      {"Areas", prepare, areas},
      {"AreasFlat", prepareFlat, areas},
      {"AreasInSpans", prepareShown, areas},
      {"Shapes",
       prepare,
       {Line("PICKPOLYGON CORNERS=\"-1,-1,3.5,-1,3.5,9,-1,9\""),
        Line("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ALLINSIDE", Plus1),
        Line("PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=2"),
        Line("ALTERAREA VARIABLE=\"n\" MODIFIER=\"-1\" RULE=ALLOUTSIDE", Minus1),
        Line("UNDOALTER", Plus1)}},
      {"BlankedAreas",
       prepare,
       {Line("PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1.5"), Line("BLANKAREA RULE=ANYINSIDE"),
        Line("UNDOBLANK", Zero), Line("BLANKAREA"),
        Line("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ANYINSIDE", Plus1),
        Line("UNDOBLANK", Zero)}},
      {"Surfaces",
       prepare,
       {Line("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9"),
        Line("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"*2\" ZONE=1 SEEDPOINT=1 RULE=ANYINSIDE",
             Twice),
        Line("UNDOALTER", Half),
        Line("ALTERSURFACE VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=2 SEEDPOINT=2", Plus1),
        Line("BLANKSURFACE ZONE=2 SEEDPOINT=1 RULE=ANYINSIDE"), Line("UNDOBLANK", Zero)}},
      {"Elements",
       prepare,
       {Line("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=2 ELEMENT=2", Plus1),
        Line("UNDOALTER", Minus1),
        Line("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"*2\" RULE=ALLINSIDE ZONE=1 ELEMENT=3", Twice),
        Line("BLANKELEMENT ZONE=1 ELEMENT=1"), Line("UNDOBLANK", Zero)}},
      {"Boxes",
       prepareSolid,
       {Line("PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=2.5 SIZEY=9 SIZEZ=9"),
        Line("ALTERAREA VARIABLE=\"c\" MODIFIER=\"*2\" RULE=ANYINSIDE", Twice),
        Line("UNDOALTER", Half),
        Line("PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=-1 SIZEX=2 SIZEY=2 SIZEZ=2 ROTATEZ=30"),
        Line("ALTERAREA VARIABLE=\"n\" MODIFIER=\"+1\" RULE=ANYINSIDE", Plus1)}},
      {"Spheres",
       prepareSolid,
       {Line("PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=1.5"),
        Line("ALTERAREA VARIABLE=\"n\" MODIFIER=\"*2\" RULE=ANYINSIDE", Twice),
        Line("UNDOALTER", Half), Line("BLANKAREA RULE=ANYINSIDE"), Line("UNDOBLANK", Zero),
        Line("PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=-1 SIZEX=2 SIZEY=2 SIZEZ=2")}},
      {"Views",
       prepareSolid,
       {Line("VIEWXZ"), Line("VIEWYZ"), Line("VIEW3D"), Line("VIEWXY"), Line("PICKGEOMETRY"),
        Act("draw", [] { Host().DrawGeometry(Rectangle(1.5)); }),
        Line("ALTERAREA VARIABLE=\"n\" MODIFIER=\"+1\"", Plus1)}},
      {"BadLines",
       prepare,
       {Line("NONSENSE"), Line("ALTERELEMENT ZONE=99 ELEMENT=1"), Line("ALTERELEMENT ZONE=1"),
        Line("ALTERAREA VARIABLE=\"none\""), Line("ALTERAREA MODIFIER=\"/0\""),
        Line("PICKPOLYGON CORNERS=\"1,2,3\""), Line("PICKCIRCLE RADIUS=2"),
        Line("ALTERSURFACE ZONE=7 SEEDPOINT=1"), Line("BLANKAREA RULE=NEVER")}},
  };
}

// The dialog -------------------------------------------------------------------------------------

namespace {

/// Wants the dialog open; a deed before may have had its trouble with it.
void Reopen() {
  if (!Host().IsDialogUp()) Host().ChooseMenu("Marquell ...");
}

Deed Tool(const std::string& name, LgIndex_t qelvane::qelutiltools::ControlIds::*tool) {
  return Act("tool " + name, [tool] {
    Reopen();
    Host().Switch(Controls.*tool, true);
  });
}

Deed ChooseVariable(const char* name, const char* modifier) {
  return Act(std::string("variable ") + name, [=] {
    Host().TurnTo(Controls.tab, 1);
    const std::vector<std::string> items = Host().At(Controls.variableMenu).items;
    for (std::size_t item = 0; item < items.size(); ++item) {
      if (items[item] == name) {
        Host().Choose(Controls.variableMenu, static_cast<LgIndex_t>(item) + 1);
      }
    }
    Host().EnterText(Controls.modifierField, modifier);
  });
}

Deed Apply(Change change) {
  return Act(
      "apply", [] { Host().Press(Controls.applyButton); }, change);
}

Deed UndoAlter(Change change) {
  return Act(
      "undo alter", [] { Host().Press(Controls.undoAlterButton); }, change);
}

/// When the data could not be got ready for blanking, the mode is still the other one, and what is
/// set to 0 is its target.
Deed UndoBlanks() {
  return Act(
      "undo blanks", [] { Host().Press(Controls.undoBlanksButton); }, Zero);
}

Deed Draw(const char* name, Geometry (*geometry)()) {
  return Act(name, [geometry] { Host().DrawGeometry(geometry()); });
}

Deed TurnTo(LgIndex_t page) {
  return Act("page " + std::to_string(page), [page] { Host().TurnTo(Controls.tab, page); });
}

using Field = LgIndex_t qelvane::qelutiltools::ControlIds::*;

/// Up, down, a number and no number in fields.
std::vector<Deed> FieldDeeds(std::initializer_list<Field> fields) {
  std::vector<Deed> deeds;
  int number = 0;
  for (const Field field : fields) {
    const std::string name = "field " + std::to_string(++number);
    deeds.push_back(Act(name + " up", [=] { Host().StepUp(Controls.*field); }));
    deeds.push_back(Act(name + " down", [=] { Host().StepDown(Controls.*field); }));
    deeds.push_back(Act(name + " entry", [=] { Host().EnterText(Controls.*field, "0.5"); }));
    deeds.push_back(Act(name + " bad entry", [=] { Host().EnterText(Controls.*field, "x"); }));
  }
  return deeds;
}

void Append(std::vector<Deed>& deeds, const std::vector<Deed>& more) {
  deeds.insert(deeds.end(), more.begin(), more.end());
}

using Ids = qelvane::qelutiltools::ControlIds;

std::vector<Deed> BoxDeeds() {
  std::vector<Deed> deeds = {Tool("cube", &Ids::cubeTool)};
  Append(deeds, FieldDeeds({&Ids::anchorXField, &Ids::sizeYField, &Ids::rotateZField}));
  Append(deeds, {Act("shade", [] { Host().Switch(Controls.shadeToggle, true); }),
                 ChooseVariable("c", "*2"), Apply(Twice), UndoAlter(Half), TurnTo(2), Apply(Twice),
                 UndoBlanks(), Act("cube off", [] { Host().Switch(Controls.cubeTool, false); })});
  return deeds;
}

std::vector<Deed> SphereDeeds() {
  std::vector<Deed> deeds = {Tool("sphere", &Ids::sphereTool)};
  Append(deeds, FieldDeeds({&Ids::centerXField, &Ids::radiusField}));
  Append(deeds, {ChooseVariable("n", "+1"), Apply(Plus1), UndoAlter(Minus1),
                 Tool("cube", &Ids::cubeTool), Tool("rectangle", &Ids::rectangleTool)});
  return deeds;
}

}  // namespace

std::vector<Session> DialogSessions(QelPlotType_e plotType) {
  const auto prepare = [plotType] {
    PrepareZones(plotType == PlotType_Cartesian3D ? ZoneType_FEBrick : ZoneType_FEQuad, plotType);
  };
  const auto prepareBare = [prepare] {
    prepare();
    // The user is asked about layers and blanking.
    Host().ActiveFrame().layers.clear();
    Host().ActiveFrame().blanking.include = false;
  };
  const auto press = [](const char* name, Field button) {
    return Act(name, [button] { Host().Press(Controls.*button); });
  };
  return {
      {"Opening",
       prepare,
       {Act("menu", [] { Host().ChooseMenu("Marquell ..."); }),
        Act("menu again", [] { Host().ChooseMenu("Marquell ..."); }), TurnTo(2), TurnTo(1),
        Act("help", [] { Host().AskForHelp(Controls.dialog); }),
        Act("close", [] { Host().CloseWindow(Controls.dialog); }),
        Act("menu once more", [] { Host().ChooseMenu("Marquell ..."); })}},
      {"Areas",
       prepare,
       {Tool("rectangle", &Ids::rectangleTool),
        Draw("draw rectangle", [] { return Rectangle(1.5); }), ChooseVariable("c", "*2"),
        Apply(Twice), UndoAlter(Half), ChooseVariable("n", "+1"), Apply(Plus1), UndoAlter(Minus1),
        TurnTo(2), Apply(Plus1), UndoBlanks()},
       true},
      {"Polygon",
       prepare,
       {Tool("polygon", &Ids::polygonTool), Draw("draw polygon", Triangle),
        ChooseVariable("c", "*2"), Apply(Twice), Tool("circle", &Ids::circleTool),
        // Two geometries: the user has to select one.
        Draw("draw circle", Circle), Apply(Twice),
        Act("select", [] { Host().SelectGeometry(Host().ActiveFrame().geometries.back().id); }),
        Apply(Twice), UndoAlter(Half)},
       true},
      {"Elements",
       prepare,
       {Tool("element", &Ids::elementTool), ChooseVariable("c", "*2"),
        WithBox(Act(
                    "click a cell", [] { Host().Probe(false, 1, 2, 1); }, Twice),
                kCellBox),
        UndoAlter(Half),
        WithBox(Act("click a node", [] { Host().Probe(true, 1, 2, 1); }), kCellBox),
        ChooseVariable("n", "+1"),
        WithBox(Act(
                    "click a node", [] { Host().Probe(true, 2, 2, 1); }, Plus1),
                kCellBox),
        TurnTo(2), WithBox(Act("click a cell", [] { Host().Probe(false, 1, 1, 1); }), kCellBox)},
       true},
      {"Surface",
       prepare,
       {Tool("rectangle", &Ids::rectangleTool), Draw("draw rectangle", [] { return Rectangle(9); }),
        ChooseVariable("n", "+1"),
        Act("surface only", [] { Host().ChooseRadio(Controls.surfaceRadioBox, 2); }),
        Apply(nullptr), WithBox(Act("seed beside", [] { Host().Probe(true, 0, 0, 0); }), kSeedBox),
        WithBox(Act("no seed", [] { Host().Probe(false, 1, 0, 1); }), kSeedBox),
        WithBox(Act(
                    "seed", [] { Host().Probe(true, 1, 0, 1); }, Plus1),
                kSeedBox),
        UndoAlter(Minus1), TurnTo(2), Apply(nullptr),
        WithBox(Act(
                    "seed", [] { Host().Probe(true, 2, 0, 1); }, Plus1),
                kSeedBox),
        Apply(nullptr), Act("tunnel", [] { Host().ChooseRadio(Controls.surfaceRadioBox, 1); })},
       true},
      {"Box", prepare, BoxDeeds(), true},
      {"Sphere", prepare, SphereDeeds(), true},
      {"Choices",
       prepare,
       {ChooseVariable("n", "*2"), ChooseVariable("c", "/0"),
        Act("sync off", [] { Host().Switch(Controls.syncContoursToggle, false); }),
        Act("sync on", [] { Host().Switch(Controls.syncContoursToggle, true); }),
        Act("any", [] { Host().Choose(Controls.anyAllMenu, 1); }),
        Act("outside", [] { Host().Choose(Controls.insideOutsideMenu, 2); }),
        Act("all", [] { Host().Choose(Controls.anyAllMenu, 2); }),
        Act("inside", [] { Host().Choose(Controls.insideOutsideMenu, 1); }), TurnTo(2),
        Act("blanking off", [] { Host().Switch(Controls.includeBlankingToggle, false); }),
        Act("blanking on", [] { Host().Switch(Controls.includeBlankingToggle, true); }),
        press("view XY", &Ids::viewXYButton), press("view XZ", &Ids::viewXZButton),
        press("view YZ", &Ids::viewYZButton), press("view 3D", &Ids::view3DButton)},
       true},
      {"Questions",
       prepareBare,
       {Tool("cube", &Ids::cubeTool),
        Act("shade", [] { Host().Switch(Controls.shadeToggle, true); }),
        Tool("sphere", &Ids::sphereTool), TurnTo(2), Apply(nullptr)},
       true},
  };
}

// Notices ----------------------------------------------------------------------------------------

namespace {

constexpr QelStateChange_t kLastCode = 52;

std::vector<Deed> EveryNotice() {
  std::vector<Deed> deeds;
  for (QelStateChange_t code = 0; code <= kLastCode; ++code) {
    // Quitting lasts for the process, and after a new layout there is nothing to notice.
    if (code == StateChange_QuitHost || code == StateChange_NewLayout) continue;
    deeds.push_back(Act("notice " + std::to_string(code), [code] { Host().Deliver(code); }));
    if (code == StateChange_DropDialogs || code == StateChange_FrameDeleted) {
      deeds.push_back(Act("reopen", Reopen));
    }
  }
  for (const std::vector<std::string>& params :
       {std::vector<std::string>{"PLOTTYPE"}, {"THREEDVIEW"}, {"BLANKING", "VALUE", "INCLUDE"}}) {
    deeds.push_back(
        Act("style " + params[0], [params] { Host().Deliver(StateChange_Style, params); }));
  }
  for (const QelMouseMode_e mode : {Mouse_GeomRectangle, Mouse_GeomPolyline, Mouse_GeomCircle,
                                    Mouse_Probe, Mouse_Zoom, Mouse_Select}) {
    deeds.push_back(Act("mouse " + std::to_string(mode), [mode] { Host().ChooseMouseMode(mode); }));
  }
  return deeds;
}

std::vector<Deed> FrameDeeds() {
  return {Act("other frame", [] { Host().SwitchFrame(1); }),
          Act("frame without a plot", [] { Host().SwitchFrame(2); }),
          Act("first frame", [] { Host().SwitchFrame(0); }),
          Act("reopen", Reopen),
          Tool("cube", &Ids::cubeTool),
          Act("other frame with a box", [] { Host().SwitchFrame(1); }),
          Act("first frame", [] { Host().SwitchFrame(0); }),
          Act("reopen", Reopen),
          Tool("sphere", &Ids::sphereTool),
          Act("radius", [] { Host().StepUp(Controls.radiusField); }),
          Act("other frame with a sphere", [] { Host().SwitchFrame(1); })};
}

}  // namespace

std::vector<Session> NoticeSessions() {
  const auto prepare = [] { PrepareZones(ZoneType_FEBrick, PlotType_Cartesian3D); };
  const auto prepareFrames = [prepare] {
    prepare();
    Host().AddFrame(PlotType_Cartesian3D);
    Host().AddZone(fakehost::MakeLattice(ZoneType_FEBrick, 1, 1, 1));
    Host().AddFrame(PlotType_Line);
    Host().ActivateFrame(0);
  };
  std::vector<Deed> played = {Line("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9")};
  Append(played, EveryNotice());
  std::vector<Deed> withBox = {Tool("cube", &Ids::cubeTool)};
  Append(withBox, EveryNotice());
  return {
      {"WithDialog", prepare, EveryNotice(), true},
      {"WithBox", prepare, withBox, true},
      {"WithoutDialog", prepare, played},
      {"Frames", prepareFrames, FrameDeeds(), true},
      {"NewLayout",
       prepare,
       {Tool("sphere", &Ids::sphereTool),
        Act("new layout", [] { Host().Deliver(StateChange_NewLayout); })},
       true},
  };
}

// Services ---------------------------------------------------------------------------------------

namespace {

Deed Preview(const char* name) {
  const auto ask = [] {
    for (const LgIndex_t zone : {1, 2, 3}) Host().AskPick(zone, 64);
  };
  return WithBox(Act(name, ask), nullptr);
}

Deed Drag(const char* name, double at) {
  return Act(name, [at] { Host().DragShape({at, 0, 0}, {1, 1, 1}, {0, 0, 30}); });
}

}  // namespace

std::vector<Session> ServiceSessions() {
  std::vector<Session> sessions;
  for (const bool hasSpans : {false, true}) {
    const auto prepare = [hasSpans] {
      PrepareZones(ZoneType_FEBrick, PlotType_Cartesian3D);
      std::vector<Service> services = {Service::PickQuery, Service::ShapeHandles, Service::History};
      if (hasSpans) services.insert(services.end(), {Service::Bulk, Service::Progress});
      Host().OfferExtensions(services);
    };
    const std::string suffix = hasSpans ? "InSpans" : "";
    sessions.push_back(
        {"Previews" + suffix,
         prepare,
         {Preview("preview of nothing"), ChooseVariable("c", "*2"),
          Tool("rectangle", &Ids::rectangleTool),
          Draw("draw rectangle", [] { return Rectangle(1.5); }), Preview("preview of cells"),
          ChooseVariable("n", "+1"), Preview("preview of nodes"), Apply(Plus1),
          Act("restored", [] { Host().TellOfRestoredValues(); }), Tool("sphere", &Ids::sphereTool),
          Preview("preview in a sphere"), TurnTo(2), Preview("preview of blanks")},
         true});
    sessions.push_back({"Drags" + suffix,
                        prepare,
                        {Tool("cube", &Ids::cubeTool), Drag("drag", 0.25), Drag("drag on", 0.5),
                         Preview("preview in a box"), ChooseVariable("c", "*2"), Apply(Twice),
                         UndoAlter(Half), Tool("sphere", &Ids::sphereTool), Drag("drag", 0.25),
                         Act("close", [] { Host().CloseWindow(Controls.dialog); })},
                        true});
  }
  return sessions;
}

// Loading ----------------------------------------------------------------------------------------

Session LoadingSession() {
  return {"Loading",
          [] {
            PrepareZones(ZoneType_FEQuad, PlotType_Cartesian2D);
            Host().OfferExtensions({Service::PickQuery, Service::ShapeHandles, Service::History});
          },
          {WithBox(Act("load", [] { InitQelAddOn113(); }), kLoadBox)},
          false,
          true};
}

}  // namespace fault
