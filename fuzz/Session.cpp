// What a user may do in any order: lines, the dialog, the mouse, the view, frames and data.
#include "World.h"

#include "Controls.h"

#include "qelvane/Keywords.h"

namespace {

using namespace fakehost;

/// One of the dialog's controls of a kind that the user can act on.
LgIndex_t AnyControl(Input& input) {
  static std::vector<LgIndex_t> ids;
  if (ids.empty()) {
    for (const Control& control : Host().Controls()) ids.push_back(control.id);
  }
  return ids.empty() ? kNoControl
                     : ids[static_cast<std::size_t>(input.Take<std::uint8_t>()) % ids.size()];
}

void ActOn(LgIndex_t id, Input& input) {
  FakeHost& host = Host();
  const Control& control = host.At(id);
  switch (control.made.kind) {
    case ControlKind::Dialog:
      if (input.Flag())
        host.CloseWindow(id);
      else
        host.AskForHelp(id);
      break;
    case ControlKind::BitmapToggle:
    case ControlKind::Toggle:
      host.Switch(id, control.value == 0);
      break;
    case ControlKind::Tab:
      host.TurnTo(id, 1 + input.Below(2));
      break;
    case ControlKind::OptionMenu:
      host.Choose(id, 1 + input.Below(static_cast<int>(control.items.size())));
      break;
    case ControlKind::RadioBox:
      host.ChooseRadio(id, 1 + input.Below(3));
      break;
    case ControlKind::Button:
      host.Press(id);
      break;
    case ControlKind::SpinField:
      if (input.Flag())
        host.StepUp(id);
      else
        host.StepDown(id);
      break;
    default:
      break;
  }
}

void Type(Input& input) {
  const LgIndex_t id = AnyControl(input);
  const std::string text = input.Line();
  Host().EnterText(id, text.c_str());
}

void Draw(Input& input) {
  Geometry geometry;
  geometry.type = static_cast<QelGeomType_e>(input.Below(8));
  geometry.anchor = {input.Coordinate(), input.Coordinate(), 0.0};
  geometry.width = input.Coordinate();
  geometry.height = input.Coordinate();
  for (int n = input.Below(8); n > 0; --n) {
    geometry.points.push_back({input.Coordinate(), input.Coordinate(), 0.0});
  }
  const QelGeomID_t id = Host().DrawGeometry(geometry);
  const int next = input.Below(3);
  if (next == 1) Host().SelectGeometry(id);
  if (next == 2) Host().DeleteGeometry(id);
}

/// Mostly one that there may be.
LgIndex_t Number(Input& input, int end) {
  const int number = input.Take<std::uint8_t>();
  return number < 240 ? number % (end + 1) : number - 250;
}

void Click(Input& input) {
  const bool withCtrl = input.Flag();
  const LgIndex_t zone = Number(input, 3);
  const LgIndex_t cell = Number(input, 30);
  Host().Probe(withCtrl, zone, cell, Number(input, 60));
}

void Drag(Input& input) {
  std::array<double, 3> parts[3];
  for (auto& part : parts) {
    for (double& number : part) number = input.Coordinate();
  }
  Host().DragShape(parts[0], parts[1], parts[2]);
}

void Turn(Input& input) {
  const double psi = input.Coordinate();
  const double alpha = input.Coordinate();
  Host().RotateView(psi, alpha, input.Coordinate());
}

void ChangeData(Input& input) {
  FakeHost& host = Host();
  DataSet* const data = host.ActiveData();
  switch (input.Below(7)) {
    case 0:
      if (data != nullptr) host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
      host.Deliver(StateChange_ZonesAdded);
      break;
    case 1:
      if (data != nullptr && data->zones.size() > 1) {
        data->zones.pop_back();
        host.Deliver(StateChange_ZonesDeleted);
      }
      break;
    case 2:
      if (data != nullptr && host.HasFrame()) {
        host.AddVariable(input.Line(), ValueLocation_Nodal, StoredType::Int16,
                         [](LgIndex_t, LgIndex_t i) { return 1.0 * i; });
        host.Deliver(StateChange_VarsAdded);
      }
      break;
    case 3:
      if (host.ZoneAt(1) != nullptr) host.ZoneAt(1)->isActive = !host.ZoneAt(1)->isActive;
      host.Deliver(StateChange_SolutionTime);
      break;
    case 4:
      host.AddFrame(static_cast<QelPlotType_e>(input.Below(6)));
      host.Deliver(StateChange_NewActiveFrame);
      break;
    case 5:
      if (host.HasFrame()) host.SwitchFrame(input.Take<std::uint8_t>() % host.frames.size());
      break;
    default:
      if (host.HasFrame()) {
        host.ActiveFrame().plotType = static_cast<QelPlotType_e>(input.Below(6));
        host.Deliver(StateChange_Style, {SV_PLOTTYPE});
      }
      break;
  }
}

void Ask(Input& input) {
  const LgIndex_t zone = Number(input, 3);
  Host().AskPick(zone, input.Take<std::uint8_t>() * 8);
}

void Answer(Input& input) { Host().queuedAnswers.push_back(input.Flag()); }

void PlayLine(Input& input) { Host().Play(input.Line().c_str()); }

void Act(Input& input) { ActOn(AnyControl(input), input); }

void Notice(Input& input) { Host().Deliver(input.Take<std::uint8_t>() % 64); }

void ChooseTool(Input& input) {
  Host().ChooseMouseMode(static_cast<QelMouseMode_e>(input.Below(40)));
}

void OpenDialog(Input&) { Host().ChooseMenu("Marquell ..."); }
void BeIdle(Input&) { Host().RunIdleQueue(); }
void SwitchBlanking(Input& input) {
  if (Host().HasFrame()) Host().SwitchBlanking(input.Flag());
}
void Restore(Input&) { Host().TellOfRestoredValues(); }
void Close(Input&) { Host().CloseAll(); }

using Deed = void (*)(Input&);
constexpr Deed kDeeds[] = {PlayLine, Act,  Act,    Act,        Type,       Draw,   Click,
                           Drag,     Turn, Answer, ChangeData, OpenDialog, BeIdle, SwitchBlanking,
                           Restore,  Ask,  Notice, ChooseTool, Act,        Close};
constexpr int kDeedCount = sizeof kDeeds / sizeof *kDeeds;

/// Those that need a frame to be done in.
bool NeedsFrame(Deed deed) { return deed == Draw || deed == Turn; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  MakeWorld(input);
  OpenDialog(input);
  DemandOrder();
  for (int n = 0; n < 64 && !input.IsAtEnd(); ++n) {
    const Deed deed = kDeeds[input.Below(kDeedCount)];
    if (NeedsFrame(deed) && !Host().HasFrame()) continue;
    deed(input);
    DemandOrder();
  }
  EndWorld();
  return 0;
}
