#include "EglWindow.h"

#include <EGL/eglext.h>
#include <dlfcn.h>

#include <vtkObjectFactory.h>

/// The library that finds OpenGL's functions was built for another window system: it finds them all
/// and says all the same that it has no display. Defined here, this stands before its own.
extern "C" unsigned glewInit() {
  constexpr unsigned kNoDisplay = 4;
  using Init = unsigned (*)();
  auto init = reinterpret_cast<Init>(dlsym(RTLD_NEXT, "glewInit"));
  if (init == nullptr || init == glewInit) return 1;
  const unsigned answer = init();
  return answer == kNoDisplay ? 0 : answer;
}

namespace qelhost {
namespace {

/// The display of all windows, which the last of them ends; null when there is none.
std::shared_ptr<void> SharedDisplay() {
  static std::weak_ptr<void> shared;
  if (auto display = shared.lock()) return display;
  const auto getDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
      eglGetProcAddress("eglGetPlatformDisplayEXT"));
  if (getDisplay == nullptr) return nullptr;
  EGLDisplay display = getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
    return nullptr;
  }
  std::shared_ptr<void> owner(display, [](EGLDisplay last) { eglTerminate(last); });
  shared = owner;
  return owner;
}

}  // namespace

vtkStandardNewMacro(EglWindow);

EglWindow::~EglWindow() {
  if (m_context != EGL_NO_CONTEXT) {
    MakeCurrent();
    Finalize();
    eglMakeCurrent(m_display.get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display.get(), m_context);
  }
  if (m_surface != EGL_NO_SURFACE) eglDestroySurface(m_display.get(), m_surface);
}

bool EglWindow::Open(int width, int height) {
  m_display = SharedDisplay();
  if (m_display == nullptr) return false;
  eglBindAPI(EGL_OPENGL_API);
  const EGLint wanted[] = {EGL_SURFACE_TYPE,
                           EGL_PBUFFER_BIT,
                           EGL_RENDERABLE_TYPE,
                           EGL_OPENGL_BIT,
                           EGL_RED_SIZE,
                           8,
                           EGL_GREEN_SIZE,
                           8,
                           EGL_BLUE_SIZE,
                           8,
                           EGL_DEPTH_SIZE,
                           24,
                           EGL_NONE};
  EGLConfig config = nullptr;
  EGLint count = 0;
  if (eglChooseConfig(m_display.get(), wanted, &config, 1, &count) == EGL_FALSE || count < 1)
    return false;
  // VTK draws into buffers of its own; the context only wants some surface.
  const EGLint small[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
  m_surface = eglCreatePbufferSurface(m_display.get(), config, small);
  const EGLint version[] = {EGL_CONTEXT_MAJOR_VERSION,
                            3,
                            EGL_CONTEXT_MINOR_VERSION,
                            2,
                            EGL_CONTEXT_OPENGL_PROFILE_MASK,
                            EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                            EGL_NONE};
  m_context = eglCreateContext(m_display.get(), config, EGL_NO_CONTEXT, version);
  if (m_surface == EGL_NO_SURFACE || m_context == EGL_NO_CONTEXT) return false;

  SetSize(width, height);
  SetMultiSamples(0);
  SetOwnContext(0);
  SetReadyForRendering(true);
  SetSupportsOpenGL(1);
  SetIsDirect(1);
  SetOffScreenRendering(1);
  MakeCurrent();
  return true;
}

void EglWindow::MakeCurrent() { eglMakeCurrent(m_display.get(), m_surface, m_surface, m_context); }

bool EglWindow::IsCurrent() {
  return m_context != EGL_NO_CONTEXT && eglGetCurrentContext() == m_context;
}

}  // namespace qelhost
