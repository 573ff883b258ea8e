#include "ApiTesting.h"

#include "Host.h"
#include "PlotActions.h"

#include "qelvane/QelUtil.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

#include <fstream>
#include <sstream>

namespace qelhost {

namespace {

Host& TheHost() { return Host::Instance(); }

vtkSmartPointer<vtkFloatArray> Numbers(const char* name, vtkIdType count, float first, float step) {
  auto array = vtkSmartPointer<vtkFloatArray>::New();
  array->SetName(name);
  for (vtkIdType i = 0; i < count; ++i) array->InsertNextValue(first + step * i);
  return array;
}

vtkSmartPointer<vtkPoints> GridPoints(int iMax, int jMax, int kMax) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (int k = 0; k < kMax; ++k) {
    for (int j = 0; j < jMax; ++j) {
      for (int i = 0; i < iMax; ++i) points->InsertNextPoint(i, j, k);
    }
  }
  return points;
}

vtkSmartPointer<vtkStructuredGrid> Ordered(int iMax, int jMax, int kMax) {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(iMax, jMax, kMax);
  grid->SetPoints(GridPoints(iMax, jMax, kMax));
  grid->GetPointData()->AddArray(Numbers("p", grid->GetNumberOfPoints(), 0, 1));
  return grid;
}

void Show(const std::vector<BlockEntry>& blocks) {
  TheHost().ShowDataSet(std::make_shared<DataSet>("test", blocks, nullptr));
}

QelGeomID_t Draw(QelGeomType_e type, double x, double y, double a, double b) {
  Geometry geometry;
  geometry.type = type;
  geometry.anchor = {x, y, 0.0};
  geometry.size = {a, b};
  const HostAction action(TheHost().lock);
  return AddGeometry(TheHost(), geometry);
}

std::string WithoutComments(std::string code) {
  for (std::size_t first = 0; (first = code.find("/*", first)) != std::string::npos;) {
    code.erase(first, code.find("*/", first) - first + 2);
  }
  return code;
}

void Listen(QelStateChange_t change) {
  std::string text = std::to_string(change);
  for (LgIndex_t n = 1; n <= 3; ++n) {
    char* parameter = nullptr;
    if (change == StateChange_Style && QelUtilStateChangeGetStyleParam(n, &parameter)) {
      text += ' ' + Taken(parameter);
    }
  }
  char* owner = nullptr;
  if (QelUtilLockGetCurrentOwnerName(&owner)) text += " by " + Taken(owner);
  Heard().push_back(text);
}

}  // namespace

void ShowOrdered(int iMax, int jMax, int kMax) { Show({{"block", Ordered(iMax, jMax, kMax)}}); }

void ShowBricks(int iMax, int jMax, int kMax) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(GridPoints(iMax, jMax, kMax));
  for (int k = 0; k + 1 < kMax; ++k) {
    for (int j = 0; j + 1 < jMax; ++j) {
      for (int i = 0; i + 1 < iMax; ++i) {
        const vtkIdType n = i + iMax * (j + jMax * k);
        const vtkIdType up = n + iMax * jMax;
        const vtkIdType nodes[8] = {n,  n + 1,  n + 1 + iMax,  n + iMax,
                                    up, up + 1, up + 1 + iMax, up + iMax};
        grid->InsertNextCell(VTK_HEXAHEDRON, 8, nodes);
      }
    }
  }
  grid->GetPointData()->AddArray(Numbers("p", grid->GetNumberOfPoints(), 0, 1));
  Show({{"block", grid}});
}

void ShowElements() {
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(0, 0, 0);
  points->InsertNextPoint(1, 0, 0);
  points->InsertNextPoint(1, 1, 0);
  points->InsertNextPoint(0, 1, 0);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  const vtkIdType first[3] = {0, 1, 2};
  const vtkIdType second[3] = {0, 2, 3};
  grid->InsertNextCell(VTK_TRIANGLE, 3, first);
  grid->InsertNextCell(VTK_TRIANGLE, 3, second);
  grid->GetCellData()->AddArray(Numbers("c", 2, 10, 10));
  Show({{"block", grid}});
}

void ShowPolyhedron() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(GridPoints(2, 2, 2));
  vtkNew<vtkIdList> stream;
  const std::vector<std::vector<vtkIdType>> faces = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                                     {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}};
  stream->InsertNextId(static_cast<vtkIdType>(faces.size()));
  for (const std::vector<vtkIdType>& face : faces) {
    stream->InsertNextId(4);
    for (const vtkIdType node : face) stream->InsertNextId(node);
  }
  grid->InsertNextCell(VTK_POLYHEDRON, stream);
  Show({{"block", grid}});
}

void ShowTimeSteps() {
  const vtkSmartPointer<vtkStructuredGrid> first = Ordered(2, 2, 2);
  const vtkSmartPointer<vtkStructuredGrid> second = Ordered(2, 2, 2);
  second->GetPointData()->AddArray(first->GetPointData()->GetArray("p"));
  Show({{"block", first, 1, 0.5}, {"block", second, 1, 1.5}});
}

void ShowImage() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(2, 2, 2);
  image->GetPointData()->AddArray(Numbers("p", 8, 0, 1));
  Show({{"block", image}});
}

QelGeomID_t DrawCircle(double x, double y, double radius) {
  return Draw(GeomType_Circle, x, y, radius, 0);
}

QelGeomID_t DrawRectangle(double x, double y, double width, double height) {
  return Draw(GeomType_Rectangle, x, y, width, height);
}

QelGeomID_t DrawPolyline(double x, double y, const std::vector<double>& pairs) {
  Geometry geometry;
  geometry.anchor = {x, y, 0.0};
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    geometry.points.push_back({pairs[i], pairs[i + 1]});
  }
  return AddGeometry(TheHost(), geometry);
}

void SelectGeometryNumber(LgIndex_t n) { SelectGeometry(TheHost(), n); }

bool Click(LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld) {
  return ClickProbe(TheHost(), zone, cell, node, isCtrlHeld);
}

void RunIdle() { TheHost().idle.Run(); }

void StartRecording() { TheHost().recorder.Start(StateOf(TheHost().frames)); }

std::vector<std::string> RecordedLines() { return TheHost().recorder.Lines(); }

void QueueAnswer(bool yes) { TheHost().messages.QueueAnswer(yes); }

void CloseEverything() {
  TheHost().CloseAll();
  TheHost().recorder.Stop();
  QelUtilMouseSetMode(Mouse_Select);
  Heard().clear();
}

std::set<std::string> DeclaredFunctions() {
  std::set<std::string> functions;
  for (const char* const header : {"QelUtil.h", "QelGUI.h"}) {
    std::ostringstream text;
    text << std::ifstream(std::string(SDK_HEADERS) + '/' + header).rdbuf();
    const std::string code = WithoutComments(text.str());
    for (std::size_t at = 0; (at = code.find("Qel", at)) != std::string::npos;) {
      const std::size_t end = code.find_first_of(" \n*&(),;", at);
      if (end == std::string::npos) break;
      const std::string name = code.substr(at, end - at);
      const bool isFunction = name.rfind("QelUtil", 0) == 0 || name.rfind("QelGUI", 0) == 0;
      if (isFunction && code[end] == '(') functions.insert(name);
      at = end;
    }
  }
  return functions;
}

std::vector<std::string>& Heard() {
  static std::vector<std::string> heard;
  return heard;
}

void StartListening() {
  static bool isListening = false;
  if (!isListening) TheHost().notices.AddCallback(Listen);
  isListening = true;
  Heard().clear();
}

std::string Taken(char* text) {
  if (text == nullptr) return {};
  const std::string taken = text;
  QelUtilStringDealloc(&text);
  return taken;
}

}  // namespace qelhost
