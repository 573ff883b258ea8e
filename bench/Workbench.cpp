// What a user of the workbench waits for: how long the window with the plot takes to come up, how
// many pictures a second it draws while the view is dragged, and how long after a box was moved the
// window knows what applying it would change. Needs a display.
//
// usage: bench_workbench ADD-ON CUBE.vtu PLANE.vtu   files of bench_make_grid
#include <QVTKOpenGLNativeWidget.h>
#include <QApplication>
#include <QElapsedTimer>

#include <vtkGenericOpenGLRenderWindow.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <functional>
#include <vector>

#include "Host.h"
#include "MainWindow.h"
#include "PickPreview.h"
#include "PlotActions.h"
#include "PlotCanvas.h"
#include "UserActions.h"
#include "Workspace.h"

namespace {

using marquell::workbench::MainWindow;
using marquell::workbench::PlotCanvas;
using marquell::workbench::Workspace;

double Milliseconds(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double MiddleOf(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

/// Until the pixels are there.
void Paint(MainWindow& window, PlotCanvas& plot) {
  window.repaint();
  plot.grabFramebuffer();
  QCoreApplication::processEvents();
}

void MeasureDragging(const char* what, Workspace& workspace, MainWindow& window, PlotCanvas& plot,
                     bool isPanned) {
  qelhost::Host& host = workspace.TheHost();
  plot.Scene().SetInteracting(true);
  std::vector<double> times;
  constexpr int kSteps = 25;
  for (int step = 0; step < kSteps; ++step) {
    times.push_back(Milliseconds([&] {
      const qelhost::View view = host.frames.Active()->view;
      const qelhost::View next =
          isPanned ? plot.Scene().Panned(view, 4, 2) : plot.Scene().Rotated(view, 9, 4);
      workspace.Do([&](qelhost::Host& its) {
        const qelhost::HostAction lock(its.lock);
        qelhost::SetView(its, next);
      });
      Paint(window, plot);
    }));
  }
  plot.Scene().SetInteracting(false);
  const double last = Milliseconds([&] {
    plot.Follow();
    Paint(window, plot);
  });
  const double middle = MiddleOf(times);
  std::printf("%s: %.0f pictures a second while dragged (%.0f ms each), %.0f ms for the last one\n",
              what, 1000.0 / middle, middle, last);
}

/// The dialog up, a variable chosen and a box in hand, as its user leaves them.
void TakeBoxInHand(qelhost::Host& host) {
  qelhost::ChooseMenu(host, "Data", "Marquell ...");
  const auto act = [&host](qelhost::ControlKind kind, const char* tip, auto deed) {
    for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
      const qelhost::Control& control = *host.dialogs.Find(id);
      if (control.kind == kind && control.toolTip == tip) deed(id, control);
    }
  };
  act(qelhost::ControlKind::OptionMenu, "Choose variable to pick and alter",
      [&host](LgIndex_t id, const qelhost::Control& control) {
        qelhost::ChooseItem(host, id, static_cast<LgIndex_t>(control.items.size()));
      });
  act(qelhost::ControlKind::TextField, "Define modifier for picked notes/cells",
      [&host](LgIndex_t id, const qelhost::Control&) { qelhost::EnterText(host, id, "*2"); });
  act(qelhost::ControlKind::BitmapToggle, "Define pick area using a cube",
      [&host](LgIndex_t id, const qelhost::Control&) { qelhost::ToggleControl(host, id, true); });
}

void MeasurePreview(Workspace& workspace, MainWindow& window, PlotCanvas& plot) {
  qelhost::Host& host = workspace.TheHost();
  workspace.Do(TakeBoxInHand);
  workspace.Do([](qelhost::Host& its) {
    qelhost::UserDragsShape(its, {0.1, 0.1, 0.1}, {0.5, 0.5, 0.5}, {0.0, 0.0, 0.0});
  });
  std::vector<double> asked;
  std::vector<double> shown;
  qelhost::PickPreview preview;
  for (int step = 0; step < 15; ++step) {
    const qelhost::ShownShape shape = host.shape;
    const double moved = shape.anchor[0] + 0.01 * shape.size[0];
    workspace.Do([&](qelhost::Host& its) {
      qelhost::UserDragsShape(its, {moved, shape.anchor[1], shape.anchor[2]}, shape.size,
                              shape.rotationDeg);
    });
    asked.push_back(Milliseconds([&] { preview = qelhost::AskForPick(host); }));
    shown.push_back(Milliseconds([&] {
      plot.ShowPreview(preview);
      Paint(window, plot);
    }));
  }
  std::printf("preview of a dragged box: %.0f ms to know \"%s\", %.0f ms to show it\n",
              MiddleOf(asked), qelhost::Describe(preview).c_str(), MiddleOf(shown));
}

void Open(MainWindow& window, PlotCanvas& plot, const char* what, const char* file) {
  const double taken = Milliseconds([&] {
    if (!window.Files().Open(file)) std::fprintf(stderr, "%s: not opened\n", file);
    Paint(window, plot);
  });
  std::printf("%s: %.0f ms from opening the file to its picture\n", what, taken);
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: bench_workbench ADD-ON CUBE.vtu PLANE.vtu\n");
    return 2;
  }
  QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  qelhost::Host& host = qelhost::Host::Instance();
  host.history.isKept = true;
  Workspace workspace(host);
  MainWindow window(workspace, marquell::workbench::MakePlotCanvas);
  window.tellFailure = [](const QString& reason) {
    std::fprintf(stderr, "%s\n", reason.toStdString().c_str());
  };
  window.Files().questions.unsaved = [](QWidget*, const QString&) {
    return marquell::workbench::DocumentQuestions::Answer::Discard;
  };
  window.show();
  QCoreApplication::processEvents();
  workspace.Do([&](qelhost::Host& its) { its.LoadAddOns({argv[1]}); });
  auto& plot = dynamic_cast<PlotCanvas&>(window.Plot());
  std::printf("plot of %d x %d pixels\n", plot.width(), plot.height());

  Open(window, plot, "cube", argv[2]);
  workspace.Act("$!VIEW PSI=60 ALPHA=-30 THETA=0");
  MeasureDragging("cube", workspace, window, plot, false);
  MeasurePreview(workspace, window, plot);
  Open(window, plot, "plane", argv[3]);
  MeasureDragging("plane", workspace, window, plot, true);
  return 0;
}
