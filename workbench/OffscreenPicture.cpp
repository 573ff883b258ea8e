#include "OffscreenPicture.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <vtkCallbackCommand.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <cstring>

#include "Picture.h"

namespace marquell::workbench {

namespace {

/// An OpenGL context of its own, and what VTK asks about it.
class Context {
 public:
  Context() {
    m_surface.setFormat(QSurfaceFormat::defaultFormat());
    m_surface.create();
    m_context.setFormat(QSurfaceFormat::defaultFormat());
    if (!m_context.create() || !m_context.makeCurrent(&m_surface)) {
      throw qelhost::PictureError("pictures cannot be drawn: there is no OpenGL");
    }
  }
  ~Context() { m_context.doneCurrent(); }

  void Serve(vtkGenericOpenGLRenderWindow* window) {
    vtkNew<vtkCallbackCommand> answer;
    answer->SetClientData(this);
    answer->SetCallback([](vtkObject*, unsigned long event, void* self, void* asked) {
      auto& context = *static_cast<Context*>(self);
      if (event == vtkCommand::WindowMakeCurrentEvent) {
        context.m_context.makeCurrent(&context.m_surface);
      } else {
        *static_cast<bool*>(asked) = QOpenGLContext::currentContext() == &context.m_context;
      }
    });
    window->AddObserver(vtkCommand::WindowMakeCurrentEvent, answer);
    window->AddObserver(vtkCommand::WindowIsCurrentEvent, answer);
  }

 private:
  QOffscreenSurface m_surface;
  QOpenGLContext m_context;
};

}  // namespace

QImage DrawOffscreen(qelhost::Frame& frame, const qelhost::PlotLook& look, int width, int height) {
  Context context;
  qelhost::PlotScene scene;
  vtkNew<vtkGenericOpenGLRenderWindow> window;
  context.Serve(window);
  window->SetReadyForRendering(true);
  window->SetOwnContext(0);
  window->SetOffScreenRendering(1);
  window->SetMultiSamples(0);
  window->SetSize(width, height);
  window->OpenGLInit();
  window->AddRenderer(scene.Margin());
  window->AddRenderer(scene.Plot());
  scene.Update(frame, look, width, height);
  window->Render();

  vtkNew<vtkUnsignedCharArray> pixels;
  constexpr int kFrontBuffer = 0;
  window->GetPixelData(0, 0, width - 1, height - 1, kFrontBuffer, pixels.Get(), 0);
  QImage image(width, height, QImage::Format_RGB888);
  const std::size_t row = 3 * static_cast<std::size_t>(width);
  // VTK counts rows from the bottom.
  for (int y = 0; y < height; ++y) {
    std::memcpy(image.scanLine(height - 1 - y), pixels->GetPointer(static_cast<vtkIdType>(row) * y),
                row);
  }
  window->RemoveRenderer(scene.Plot());
  window->RemoveRenderer(scene.Margin());
  window->Finalize();
  return image;
}

}  // namespace marquell::workbench
