#include "VtkErrors.h"

#include <fcntl.h>
#include <unistd.h>
#include <vtkLogger.h>
#include <vtkObjectFactory.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace qelhost {
namespace {

class CapturingWindow : public vtkOutputWindow {
 public:
  static CapturingWindow* New();

  void DisplayText(const char*) override {}
  void DisplayErrorText(const char* text) override {
    if (IsMainThread() && !m_isOfMainThread) return;
    if (m_first.empty()) m_first = text != nullptr && *text != '\0' ? text : "unknown error";
  }
  void DisplayWarningText(const char*) override {}
  void DisplayGenericWarningText(const char*) override {}
  void DisplayDebugText(const char*) override {}

  static bool IsMainThread() { return gettid() == getpid(); }

  const bool m_isOfMainThread = IsMainThread();
  std::string m_first;

 protected:
  CapturingWindow() = default;
};
vtkStandardNewMacro(CapturingWindow)

    /// VTK writes "ERROR: In FILE, line N\nvtkClass (0x...): the text\n\n".
    std::string WithoutPlace(const std::string& text) {
  std::size_t start = text.find("): ");
  start = start == std::string::npos ? 0 : start + 3;
  std::size_t end = text.find('\n', start);
  if (end == std::string::npos) end = text.size();
  return text.substr(start, end - start);
}

}  // namespace

// The logger prints each error too, beside the window.
VtkErrorCapture::VtkErrorCapture()
    : m_verbosityBefore(vtkLogger::GetCurrentVerbosityCutoff()),
      m_before(vtkOutputWindow::GetInstance()),
      m_window(vtkSmartPointer<CapturingWindow>::New()) {
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
  vtkOutputWindow::SetInstance(m_window);
}

VtkErrorCapture::~VtkErrorCapture() {
  vtkOutputWindow::SetInstance(m_before);
  vtkLogger::SetStderrVerbosity(static_cast<vtkLogger::Verbosity>(m_verbosityBefore));
}

StandardErrorSilence::StandardErrorSilence() : m_saved(-1) {
  std::fflush(stderr);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) throw std::runtime_error(std::strerror(errno));
  m_saved = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  const int reason = errno;
  if (m_saved >= 0) dup2(nowhere, STDERR_FILENO);
  close(nowhere);
  // Closed it is silent as well.
  if (m_saved < 0 && reason != EBADF) throw std::runtime_error(std::strerror(reason));
}

StandardErrorSilence::~StandardErrorSilence() {
  if (m_saved < 0) return;
  std::fflush(stderr);
  dup2(m_saved, STDERR_FILENO);
  close(m_saved);
}

bool VtkErrorCapture::HasError() const {
  return !static_cast<CapturingWindow*>(m_window.Get())->m_first.empty();
}

std::string VtkErrorCapture::FirstError() const {
  return WithoutPlace(static_cast<CapturingWindow*>(m_window.Get())->m_first);
}

}  // namespace qelhost
