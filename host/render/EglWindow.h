// A render window without a window system.
#pragma once

#include <vtkGenericOpenGLRenderWindow.h>

#include <EGL/egl.h>

namespace qelhost {

/// Draws into memory through a surfaceless EGL context.
class EglWindow : public vtkGenericOpenGLRenderWindow {
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
  EGLDisplay m_display = EGL_NO_DISPLAY;
  EGLContext m_context = EGL_NO_CONTEXT;
  EGLSurface m_surface = EGL_NO_SURFACE;
};

}  // namespace qelhost
