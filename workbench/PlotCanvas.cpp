#include "PlotCanvas.h"

#include <QCursor>
#include <QKeyEvent>
#include <QSaveFile>

#include <vtkCamera.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkNew.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "OffscreenPicture.h"
#include "PendingArray.h"
#include "Picture.h"
#include "ToolStyle.h"

namespace marquell::workbench {

namespace {

Qt::CursorShape CursorOf(QelMouseMode_e mode) {
  static const std::map<QelMouseMode_e, Qt::CursorShape> cursors = {
      {Mouse_Zoom, Qt::SizeVerCursor},       {Mouse_Translate, Qt::SizeAllCursor},
      {Mouse_Rotate, Qt::OpenHandCursor},    {Mouse_Probe, Qt::WhatsThisCursor},
      {Mouse_GeomPolyline, Qt::CrossCursor}, {Mouse_GeomRectangle, Qt::CrossCursor},
      {Mouse_GeomSquare, Qt::CrossCursor},   {Mouse_GeomCircle, Qt::CrossCursor},
      {Mouse_GeomEllipse, Qt::CrossCursor}};
  const auto found = cursors.find(mode);
  return found == cursors.end() ? Qt::ArrowCursor : found->second;
}

}  // namespace

PlotCanvas::PlotCanvas(Workspace& workspace, LookSettings& look)
    : m_workspace(workspace), m_look(look), m_tools(workspace, m_scene) {
  setObjectName("plot");
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setMinimumSize(240, 180);
  setAccessibleName(tr("Plot"));
  vtkNew<vtkGenericOpenGLRenderWindow> window;
  window->SetMultiSamples(0);
  setRenderWindow(window.Get());
  // The margin lies under the plot.
  window->AddRenderer(m_scene.Margin());
  window->AddRenderer(m_scene.Plot());
  window->SetNumberOfLayers(2);
  m_handlesRenderer->SetLayer(1);
  window->AddRenderer(m_handlesRenderer);

  vtkNew<ToolStyle> style;
  style->onPress = [this](const MouseEvent& event) { m_tools.Press(event); };
  style->onRelease = [this](const MouseEvent& event) {
    m_tools.Release(event);
    Draw();
  };
  style->onMove = [this](const MouseEvent& event) {
    m_tools.Move(event);
    SayWhatIsUnder(event);
  };
  style->onWheel = [this](const MouseEvent& event, double notches) {
    m_tools.Wheel(event, notches);
  };
  interactor()->SetInteractorStyle(style);
  m_handles = std::make_unique<ShapeHandles>(workspace, interactor(), m_handlesRenderer);
  m_handles->onDragging = [this](bool isDragging) {
    m_scene.SetInteracting(isDragging);
    if (!isDragging) Follow();
  };
  m_tools.onRedraw = [this] { Draw(); };
  m_tools.onProbed = [this](const std::string& text) {
    if (onProbed) onProbed(text);
  };
}

PlotCanvas::~PlotCanvas() {
  m_handles.reset();
  renderWindow()->RemoveRenderer(m_handlesRenderer);
  renderWindow()->RemoveRenderer(m_scene.Plot());
  renderWindow()->RemoveRenderer(m_scene.Margin());
}

void PlotCanvas::Follow() {
  m_tools.Follow();
  UpdateScene();
  m_handles->Follow();
  ShowCursor();
  Draw();
}

void PlotCanvas::UpdateScene() {
  qelhost::Frame* const active = m_workspace.TheHost().frames.Active();
  qelhost::Frame& frame = active == nullptr ? m_nothing : *active;
  const double ratio = devicePixelRatioF();
  const int width = static_cast<int>(this->width() * ratio);
  const int height = static_cast<int>(this->height() * ratio);
  if (width < 1 || height < 1) return;
  // The scale is in the sizes already; the view's own would enlarge texts a second time.
  constexpr int kPlainDpi = 72;
  renderWindow()->SetDPI(kPlainDpi);
  m_scene.SetSelectedGeometry(frame.picked.empty() ? 0 : frame.picked.front().geometry);
  try {
    qelhost::PlotLook look = LookOf(frame, m_look);
    look.scale = ratio;
    m_scene.Update(frame, look, width, height);
    m_unreadable.clear();
  } catch (const qelhost::ValuesError& e) {
    // Told once: the plot is drawn at every motion of the mouse.
    if (m_unreadable != e.what()) m_workspace.TheHost().unreadableValues = e.what();
    m_unreadable = e.what();
  }
  m_handles->SetScale(ratio);
  m_tools.SetScale(ratio);
  m_handlesRenderer->SetViewport(m_scene.Plot()->GetViewport());
  m_handlesRenderer->GetActiveCamera()->DeepCopy(m_scene.Plot()->GetActiveCamera());
  // A shape may be larger than the data.
  m_handlesRenderer->ResetCameraClippingRange();
}

void PlotCanvas::Draw() {
  if (isValid()) renderWindow()->Render();
}

void PlotCanvas::ShowPreview(const qelhost::PickPreview& preview) {
  std::vector<qelhost::ZoneHighlight> highlights;
  for (const qelhost::PickedInZone& zone : preview.zones) {
    highlights.push_back({zone.zone, zone.location, zone.items});
  }
  m_scene.SetHighlight(std::move(highlights));
  UpdateScene();
  Draw();
}

void PlotCanvas::WritePicture(const std::string& path, int width, int height) {
  qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  if (frame == nullptr) throw qelhost::PictureError("there is no plot");
  qelhost::PlotLook look = LookOf(*frame, m_look);
  // Twice as large is twice as fine, not twice as much.
  look.scale = std::max(1.0, static_cast<double>(height) / std::max(1, this->height()));
  const QImage image = DrawOffscreen(*frame, look, width, height);
  makeCurrent();
  QSaveFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
    throw qelhost::PictureError(path + ": the picture cannot be written");
  }
}

void PlotCanvas::CancelDrawing() { m_tools.Cancel(); }

void PlotCanvas::resizeGL(int width, int height) {
  QVTKOpenGLNativeWidget::resizeGL(width, height);
  UpdateScene();
}

void PlotCanvas::keyPressEvent(QKeyEvent* event) {
  const bool isTaken = (event->key() == Qt::Key_Escape && m_tools.Cancel()) ||
                       ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
                        m_tools.FinishPolygon());
  if (!isTaken) QVTKOpenGLNativeWidget::keyPressEvent(event);
}

void PlotCanvas::leaveEvent(QEvent* event) {
  if (onPointed) onPointed({});
  QVTKOpenGLNativeWidget::leaveEvent(event);
}

bool PlotCanvas::event(QEvent* event) {
  // A right click zooms; the menu that some platforms make of it would come in between.
  if (event->type() == QEvent::ContextMenu) return true;
  return QVTKOpenGLNativeWidget::event(event);
}

void PlotCanvas::SayWhatIsUnder(const MouseEvent& event) {
  const qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  if (!onPointed || frame == nullptr || frame->Data() == nullptr) return;
  const auto at = m_scene.GridAt(event.x, event.y);
  const bool isFlat = frame->plotType != PlotType_Cartesian3D;
  onPointed(fmt::format("{} {:.5g}, {:.5g}", isFlat ? "X, Y:" : "On the screen:", at[0], at[1]));
}

void PlotCanvas::ShowCursor() {
  const Qt::CursorShape wanted = CursorOf(m_workspace.TheHost().interaction.mouseMode);
  if (cursor().shape() != wanted) setCursor(wanted);
}

PlotArea* MakePlotCanvas(Workspace& workspace, LookSettings& look) {
  return new PlotCanvas(workspace, look);
}

}  // namespace marquell::workbench
