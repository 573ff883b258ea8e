// Draws a cube of bricks and a sheet of quadrilaterals without a window and prints what plots cost:
// the first picture, pictures while the view moves, a change of what is hidden, highlights.
//
//   bench_render [million cells, 2]
#include "Grid.h"
#include "Stopwatch.h"

#include "EglWindow.h"
#include "PlotScene.h"
#include "ZoneFaces.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkFloatArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

namespace {

using namespace qelhost;
using marquell::bench::Timed;

struct Size {
  int width;
  int height;
};
constexpr Size kSizes[] = {{800, 600}, {1280, 800}};

/// n x n quadrilaterals, one unit wide; at nodes float p, at cells float k.
vtkSmartPointer<vtkUnstructuredGrid> MakeSheet(vtkIdType n) {
  const vtkIdType row = n + 1;
  vtkNew<vtkPoints> points;
  points->SetNumberOfPoints(row * row);
  vtkNew<vtkFloatArray> p, k;
  p->SetName("p");
  p->SetNumberOfValues(row * row);
  k->SetName("k");
  k->SetNumberOfValues(n * n);
  for (vtkIdType node = 0; node < row * row; ++node) {
    const double x = static_cast<double>(node % row) / static_cast<double>(n);
    const double y = static_cast<double>(node / row) / static_cast<double>(n);
    points->SetPoint(node, x, y, 0.0);
    p->SetValue(node, static_cast<float>(std::sin(9.0 * x) * std::cos(7.0 * y)));
  }
  vtkNew<vtkIdTypeArray> offsets, corners;
  offsets->SetNumberOfValues(n * n + 1);
  corners->SetNumberOfValues(4 * n * n);
  for (vtkIdType cell = 0; cell < n * n; ++cell) {
    const vtkIdType first = cell % n + cell / n * row;
    const vtkIdType nodes[4] = {first, first + 1, first + 1 + row, first + row};
    for (vtkIdType c = 0; c < 4; ++c) corners->SetValue(4 * cell + c, nodes[c]);
    offsets->SetValue(cell, 4 * cell);
    k->SetValue(cell, static_cast<float>(cell % 97));
  }
  offsets->SetValue(n * n, 4 * n * n);
  vtkNew<vtkCellArray> cells;
  cells->SetData(offsets, corners);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  grid->SetCells(VTK_QUAD, cells);
  grid->GetPointData()->AddArray(p);
  grid->GetCellData()->AddArray(k);
  return grid;
}

/// A frame, its scene and a window that shows it.
class Plot {
 public:
  Plot(const vtkSmartPointer<vtkUnstructuredGrid>& grid, const Size& size,
       const std::string& variable)
      : m_size(size) {
    m_frame.Show(std::make_shared<DataSet>(
        "bench", std::vector<BlockEntry>{{"grid", grid, 0, 0.0, nullptr}}, nullptr));
    if (!m_window->Open(size.width, size.height)) throw std::runtime_error("no EGL");
    m_window->AddRenderer(m_scene.Margin());
    m_window->AddRenderer(m_scene.Plot());
    m_look.variable = Data().VariableNumber(variable);
    const Range range = Data().VariableRange(m_look.variable);
    m_look.min = range.min;
    m_look.max = range.max;
  }
  ~Plot() {
    m_window->RemoveRenderer(m_scene.Plot());
    m_window->RemoveRenderer(m_scene.Margin());
  }

  DataSet& Data() { return *m_frame.Data(); }
  Frame& Shown() { return m_frame; }
  PlotScene& Scene() { return m_scene; }
  void Update() { m_scene.Update(m_frame, m_look, m_size.width, m_size.height); }
  void Render() {
    m_window->Render();
    m_window->WaitForCompletion();
  }
  void Draw() {
    Update();
    Render();
  }

 private:
  Size m_size;
  vtkNew<qelhost::EglWindow> m_window;
  Frame m_frame;
  PlotScene m_scene;
  PlotLook m_look;
};

/// Pictures a second while the view moves by what step makes of it.
template <class Step>
double FramesPerSecond(Plot& plot, Step step) {
  constexpr int kFrames = 12;
  plot.Draw();
  const double took = Timed([&] {
                        for (int n = 0; n < kFrames; ++n) {
                          plot.Shown().view = step(plot.Shown().view);
                          plot.Draw();
                        }
                      }).wall;
  return 1e3 * kFrames / took;
}

void HideFrom(Plot& plot, double place) {
  ValueBlanking& blanking = plot.Shown().styles.blanking;
  blanking.include = true;
  blanking.blankEntireCell = true;
  blanking.constraints[0] = {true,
                             plot.Data().CoordinateVariable('X'),
                             0,
                             BlankRelOp_GreaterThan,
                             ConstraintOp2Mode_UseConstant,
                             place,
                             false};
}

void MeasureMoves(Plot& plot, bool isFlat) {
  const auto move = [&](const View& view) {
    return isFlat ? plot.Scene().Panned(view, 3.0, 2.0) : plot.Scene().Rotated(view, 4.0, 2.0);
  };
  const double whole = FramesPerSecond(plot, move);
  plot.Scene().SetInteracting(true);
  const double start = Timed([&] { plot.Draw(); }).wall;
  const double moving = FramesPerSecond(plot, move);
  plot.Scene().SetInteracting(false);
  const double end = Timed([&] { plot.Draw(); }).wall;
  std::printf(
      "  moving: %.1f pictures/s with all faces, %.1f as shown; first %.0f ms, last %.0f ms\n",
      whole, moving, start, end);
}

void MeasureMasks(Plot& plot) {
  plot.Shown().view = plot.Shown().FirstView();
  for (const double place : {0.5, 0.7}) {
    HideFrom(plot, place);
    const double evaluation = Timed([&] { plot.Shown().Blanked(1); }).wall;
    const double update = Timed([&] { plot.Update(); }).wall;
    const double render = Timed([&] { plot.Render(); }).wall;
    std::printf("  hiding X > %.1f: %.0f ms to find the cells, %.0f ms update, %.0f ms picture\n",
                place, evaluation, update, render);
  }
  plot.Shown().styles.blanking.include = false;
  plot.Draw();
}

void MeasureHighlight(Plot& plot) {
  const LgIndex_t cells = plot.Data().FindZone(1)->CellCount();
  ZoneHighlight highlight{1, ValueLocation_CellCentered, ItemBits(cells)};
  for (LgIndex_t cell = 0; cell < cells; ++cell) highlight.items.Add(cell);
  for (int round = 0; round < 2; ++round) {
    const double set = Timed([&] { plot.Scene().SetHighlight({highlight}); }).wall;
    const double render = Timed([&] { plot.Draw(); }).wall;
    std::printf("  highlight of all cells: %.0f ms, %.0f ms picture\n", set, render);
  }
  plot.Scene().SetHighlight({});
}

void Measure(const char* name, const vtkSmartPointer<vtkUnstructuredGrid>& grid, bool isFlat) {
  for (const std::string variable : {"p", "k"}) {
    for (const Size& size : kSizes) {
      std::printf("%s, %lld cells, coloured by %s, %d x %d\n", name,
                  static_cast<long long>(grid->GetNumberOfCells()),
                  variable == "p" ? "nodes" : "cells", size.width, size.height);
      Plot plot(grid, size, variable);
      const double update = Timed([&] { plot.Update(); }).wall;
      const double render = Timed([&] { plot.Render(); }).wall;
      plot.Update();
      const double idle = Timed([&] { plot.Update(); }).wall;
      std::printf("  first picture: %.0f ms update, %.0f ms picture; nothing changed: %.2f ms\n",
                  update, render, idle);
      MeasureMoves(plot, isFlat);
      MeasureMasks(plot);
      MeasureHighlight(plot);
      const double probe =
          Timed([&] { plot.Scene().HitAt(0.4 * size.width, 0.45 * size.height); }).wall;
      std::printf("  probe: %.1f ms\n", probe);
    }
  }
}

/// The table of faces alone.
void MeasureTable(vtkIdType n) {
  Zone zone("cube", marquell::bench::MakeGrid(n), true);
  std::unique_ptr<ZoneFaces> faces;
  const double build = Timed([&] { faces = MakeZoneFaces(zone); }).wall;
  ItemBits hidden(zone.CellCount());
  for (std::int64_t cell = 0; cell < hidden.count; ++cell) {
    if (cell % n >= n / 2) hidden.Add(cell);
  }
  const double mask = Timed([&] { faces->Shown(&hidden); }).wall;
  std::printf("table of %d bricks: %.0f ms to build, %.1f MB; mask of half of them %.1f ms\n",
              zone.CellCount(), build, static_cast<double>(faces->Bytes()) / 1e6, mask);
}

}  // namespace

int main(int argc, char** argv) {
  const double millions = argc > 1 ? std::atof(argv[1]) : 2.0;
  if (!(millions > 0.0 && millions < 100.0)) {
    std::fprintf(stderr, "usage: bench_render [million cells]\n");
    return 2;
  }
  try {
    MeasureTable(100);
    MeasureTable(200);
    const auto edge = static_cast<vtkIdType>(std::lround(std::cbrt(1e6 * millions)));
    Measure("bricks", marquell::bench::MakeGrid(edge), false);
    Measure("sheet", MakeSheet(static_cast<vtkIdType>(std::lround(std::sqrt(1e6 * millions)))),
            true);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_render: %s\n", error.what());
    return 1;
  }
  return 0;
}
