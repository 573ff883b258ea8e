// A render window without a window system.
#pragma once

#include <vtkGenericOpenGLRenderWindow.h>

#include <EGL/egl.h>

#include <memory>

namespace qelhost {

/// Draws into memory through a surfaceless EGL context.
class EglWindow final : public vtkGenericOpenGLRenderWindow {
 public:
  static EglWindow* New();
  vtkTypeMacro(EglWindow, vtkGenericOpenGLRenderWindow)

      /// False when the machine offers no such context.
      bool Open(int width, int height);

  void MakeCurrent() override;
  bool IsCurrent() override;

  EglWindow(const EglWindow&) = delete;
  EglWindow& operator=(const EglWindow&) = delete;

 protected:
  EglWindow() = default;
  ~EglWindow() override;

 private:
  /// Shared by all windows: ending one ends the contexts of all.
  std::shared_ptr<void> m_display;
  EGLContext m_context = EGL_NO_CONTEXT;
  EGLSurface m_surface = EGL_NO_SURFACE;
};

}  // namespace qelhost
