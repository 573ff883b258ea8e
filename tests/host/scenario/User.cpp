#include "User.h"

#include "Player.h"
#include "PlotActions.h"
#include "UserActions.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace scenario {

using namespace qelhost;

namespace {

constexpr LgIndex_t kNotThere = -2;

vtkSmartPointer<vtkUnstructuredGrid> MakeGrid(int n, int layers) {
  vtkNew<vtkPoints> points;
  for (int k = 0; k <= layers; ++k) {
    for (int j = 0; j <= n; ++j) {
      for (int i = 0; i <= n; ++i) points->InsertNextPoint(i, j, k);
    }
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  const vtkIdType row = n + 1;
  const vtkIdType layer = row * row;
  for (int k = 0; k < std::max(layers, 1); ++k) {
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < n; ++i) {
        const vtkIdType a = i + j * row + k * layer;
        const vtkIdType nodes[] = {a,         a + 1,         a + 1 + row,         a + row,
                                   a + layer, a + 1 + layer, a + 1 + row + layer, a + row + layer};
        grid->InsertNextCell(layers > 0 ? VTK_HEXAHEDRON : VTK_QUAD, layers > 0 ? 8 : 4, nodes);
      }
    }
  }
  return grid;
}

DataSetPtr WithValues(const vtkSmartPointer<vtkUnstructuredGrid>& grid, const std::string& title) {
  vtkNew<vtkDoubleArray> p;
  p->SetName("p");
  for (vtkIdType node = 0; node < grid->GetNumberOfPoints(); ++node)
    p->InsertNextValue(1 + 0.25 * node);
  grid->GetPointData()->AddArray(p);
  vtkNew<vtkFloatArray> c;
  c->SetName("c");
  for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
    c->InsertNextValue(static_cast<float>(2 + 0.5 * cell));
  }
  grid->GetCellData()->AddArray(c);
  return std::make_shared<DataSet>(title, std::vector<BlockEntry>{{title, grid}}, nullptr);
}

}  // namespace

DataSetPtr Cube(int n) { return WithValues(MakeGrid(n, n), "cube"); }
DataSetPtr Plate(int n) { return WithValues(MakeGrid(n, 0), "plate"); }

std::vector<std::vector<double>> ValuesOf(DataSet& data) {
  std::vector<std::vector<double>> values;
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    if (!data.FindZone(zone)->IsFromFile()) continue;
    for (LgIndex_t var = 1; var <= data.VariableCount(); ++var) {
      const QelFieldData* const field = data.Readable(zone, var);
      values.emplace_back();
      for (LgIndex_t item = 0; item < field->count; ++item) {
        values.back().push_back(field->get(field, item));
      }
    }
  }
  return values;
}

User::User(MakeData makeData) : host(Host::Instance()), m_makeData(std::move(makeData)) {
  host.LoadAddOns({MARQUELL_ADDON});
  host.messages.isBatch = false;
  host.history.isKept = true;
  host.messages.SetSink(
      [this](const std::string& text, QelMessageBox_e) { m_said.push_back(text); });
  ShowAll();
  host.recorder.Start(FirstStateOf(host.frames));
}

User::~User() {
  host.recorder.Stop();
  host.CloseAll();
  host.history.isKept = false;
  host.messages.SetSink(nullptr);
  EXPECT_EQ(host.lock.Depth(), 0U) << "a lock was left open";
}

void User::ShowAll() {
  host.CloseAll();
  for (const DataSetPtr& data : m_makeData()) host.ShowDataSet(data);
  host.idle.Run();
  const HostAction lock(host.lock);
  ActivateFrame(host, host.frames.At(1)->Id());
}

void User::OpenDialog() {
  EXPECT_TRUE(ChooseMenu(host, "Data", "Marquell ...")) << "the menu entry is greyed";
}

void User::Draw(const std::string& geometryCommand) { Act(host, "$!GEOMETRY " + geometryCommand); }
void User::Do(const std::string& hostCommand) { Act(host, hostCommand); }

void User::Click(LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool withCtrl) {
  EXPECT_TRUE(Probe(host, zone, cell, node, withCtrl)) << "no probe waits for a click";
}

void User::AnswerNext(bool yes) { host.messages.QueueAnswer(yes); }

void User::CloseEverything() {
  host.CloseAll();
  host.idle.Run();
}

LgIndex_t User::Find(ControlKind kind, const std::string& textOrTip) const {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    const Control& control = *host.dialogs.Find(id);
    if (control.kind == kind && (control.text == textOrTip || control.toolTip == textOrTip)) {
      return id;
    }
  }
  ADD_FAILURE() << "there is no control \"" << textOrTip << '"';
  return kNotThere;
}

LgIndex_t User::SpinField(int n) const {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    if (host.dialogs.Find(id)->kind == ControlKind::SpinTextField && n-- == 0) return id;
  }
  ADD_FAILURE() << "there is no such field";
  return kNotThere;
}

void User::Press(const std::string& label) {
  EXPECT_TRUE(PressControl(host, Find(ControlKind::Button, label))) << label;
}

void User::Tool(const std::string& tip, bool on) {
  EXPECT_TRUE(ToggleControl(host, Find(ControlKind::BitmapToggle, tip), on)) << tip;
}

void User::Toggle(const std::string& label, bool on) {
  EXPECT_TRUE(ToggleControl(host, Find(ControlKind::Toggle, label), on)) << label;
}

void User::ChooseItem(const std::string& item) {
  for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
    const Control& control = *host.dialogs.Find(id);
    for (std::size_t i = 0; i < control.items.size(); ++i) {
      const bool isChoice =
          control.kind == ControlKind::OptionMenu || control.kind == ControlKind::RadioBox;
      if (!isChoice || control.items[i] != item) continue;
      EXPECT_TRUE(qelhost::ChooseItem(host, id, static_cast<LgIndex_t>(i) + 1)) << item;
      return;
    }
  }
  ADD_FAILURE() << "there is no item \"" << item << '"';
}

void User::ChooseVariable(const std::string& name) { ChooseItem(name); }

void User::EnterModifier(const std::string& text) {
  EXPECT_TRUE(EnterText(
      host, Find(ControlKind::TextField, "Define modifier for picked notes/cells"), text));
}

void User::Page(LgIndex_t page) { EXPECT_TRUE(TurnToPage(host, Find(ControlKind::Tab, ""), page)); }

void User::Spin(int n, bool up) { EXPECT_TRUE(qelhost::Spin(host, SpinField(n), up)) << n; }

void User::EnterNumber(int n, const std::string& text) {
  EXPECT_TRUE(EnterText(host, SpinField(n), text)) << n;
}

void User::CloseDialog() {
  EXPECT_TRUE(qelhost::CloseDialog(host, Find(ControlKind::Dialog, "Marquell")));
}

void User::AskForHelp() {
  EXPECT_TRUE(qelhost::AskForHelp(host, Find(ControlKind::Dialog, "Marquell")));
}

bool User::IsDialogUp() const { return host.dialogs.IsUp(Find(ControlKind::Dialog, "Marquell")); }

bool User::IsSensitive(const std::string& label) const {
  return host.dialogs.Find(Find(ControlKind::Button, label))->isSensitive;
}

std::string User::FieldText(int n) const { return host.dialogs.Find(SpinField(n))->text; }

std::vector<std::string> User::Journal() const { return host.recorder.Lines(); }

void User::ExpectReplayGivesTheSame() {
  const std::vector<std::string> journal = Journal();
  host.recorder.Stop();
  std::vector<std::vector<std::vector<double>>> done;
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n)
    done.push_back(ValuesOf(*host.frames.At(n)->Data()));

  ShowAll();
  host.recorder.Start(FirstStateOf(host.frames));
  Player player(host);
  for (const std::string& line : journal) {
    if (line.front() == '#') continue;
    const LineResult result = player.Play(line);
    EXPECT_TRUE(result.isDone) << line << ": " << result.message;
  }
  EXPECT_THAT(host.recorder.Lines(), testing::ElementsAreArray(journal));
  ASSERT_EQ(host.frames.Count(), static_cast<LgIndex_t>(done.size()));
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n) {
    EXPECT_EQ(ValuesOf(*host.frames.At(n)->Data()), done[static_cast<std::size_t>(n - 1)])
        << "frame " << n << testing::PrintToString(journal);
  }
}

}  // namespace scenario
