// The host's own commands, carried out one after the other on a small data set.
#include "Input.h"

#include "Host.h"
#include "HostCommands.h"

#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkStructuredGrid.h>

#include <cmath>

namespace {

using namespace qelhost;

DataSetPtr MakeData() {
  vtkNew<vtkPoints> points;
  for (int n = 0; n < 27; ++n) points->InsertNextPoint(n % 3, n / 3 % 3, n / 9);
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(3, 3, 3);
  grid->SetPoints(points);
  vtkNew<vtkFloatArray> p;
  p->SetName("p");
  p->SetNumberOfTuples(27);
  for (int n = 0; n < 27; ++n) p->SetValue(n, static_cast<float>(n));
  grid->GetPointData()->AddArray(p);
  return std::make_shared<DataSet>("small", std::vector<BlockEntry>{{"a", grid}, {"b", grid}},
                                   nullptr);
}

/// Reading files is another target's work.
bool OpensFile(const std::string& line) {
  const std::size_t blank = line.find_first_of(" \t");
  return UpperCase(line.substr(0, blank)) == "$!OPEN";
}

void DemandSoundFrame() {
  Frame* const frame = Host::Instance().frames.Active();
  if (frame == nullptr || frame->Data() == nullptr) return;
  for (LgIndex_t zone = 1; zone <= frame->Data()->ZoneCount(); ++zone) {
    const BlankedItems hidden = EvaluateBlanking(*frame->Data(), zone, frame->styles.blanking);
    Demand(hidden.cells.count == frame->Data()->FindZone(zone)->CellCount(), "cells are counted");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Host& host = Host::Instance();
  host.history.isKept = true;
  host.ShowDataSet(MakeData());
  for (Input input(data, size); !input.IsAtEnd();) {
    const std::string line = input.Line();
    if (OpensFile(line)) continue;
    try {
      RunHostCommand(host, line);
    } catch (const CommandError& e) {
      const std::string reason = e.what();
      Demand(!reason.empty() && reason.find('\n') == std::string::npos, "the reason is one line");
    }
    DemandSoundFrame();
  }
  host.CloseAll();
  return 0;
}
