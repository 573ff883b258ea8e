// The plot drawn by VTK in a Qt widget.
#pragma once

#include <QVTKOpenGLNativeWidget.h>

#include <vtkNew.h>
#include <vtkRenderer.h>

#include <memory>

#include "LookSettings.h"
#include "MouseTools.h"
#include "PlotArea.h"
#include "PlotScene.h"
#include "ShapeHandles.h"
#include "Workspace.h"

namespace marquell::workbench {

/// Shows the active frame. The mouse goes to the handles of a shape first, then to the tools.
class PlotCanvas : public QVTKOpenGLNativeWidget, public PlotArea {
  Q_OBJECT

 public:
  PlotCanvas(Workspace& workspace, LookSettings& look);
  ~PlotCanvas() override;

  QWidget* Widget() override { return this; }
  void Follow() override;
  void ShowPreview(const qelhost::PickPreview& preview) override;
  void WritePicture(const std::string& path, int width, int height) override;
  void CancelDrawing() override;

  qelhost::PlotScene& Scene() { return m_scene; }

 protected:
  void resizeGL(int width, int height) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void Draw();
  void UpdateScene();
  void SayWhatIsUnder(const MouseEvent& event);
  void ShowCursor();

  Workspace& m_workspace;
  LookSettings& m_look;
  qelhost::PlotScene m_scene;
  vtkNew<vtkRenderer> m_handlesRenderer;  ///< over the plot, so that solids hide no handles
  qelhost::Frame m_nothing;               ///< what is shown where there is no frame
  MouseTools m_tools;
  std::unique_ptr<ShapeHandles> m_handles;
  std::string m_unreadable;  ///< why the plot could not be brought up to date; empty: it could
};

/// Makes the plot area of the real window, which will own it.
PlotArea* MakePlotCanvas(Workspace& workspace, LookSettings& look);

}  // namespace marquell::workbench
