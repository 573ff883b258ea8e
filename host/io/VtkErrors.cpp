#include "VtkErrors.h"

#include <vtkObjectFactory.h>

namespace qelhost {
namespace {

class CapturingWindow : public vtkOutputWindow {
 public:
  static CapturingWindow* New();

  void DisplayText(const char*) override {}
  void DisplayErrorText(const char* text) override {
    if (m_first.empty()) m_first = text != nullptr && *text != '\0' ? text : "unknown error";
  }
  void DisplayWarningText(const char*) override {}
  void DisplayGenericWarningText(const char*) override {}
  void DisplayDebugText(const char*) override {}

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

VtkErrorCapture::VtkErrorCapture() : m_before(vtkOutputWindow::GetInstance()) {
  m_window = vtkSmartPointer<CapturingWindow>::New();
  vtkOutputWindow::SetInstance(m_window);
}

VtkErrorCapture::~VtkErrorCapture() { vtkOutputWindow::SetInstance(m_before); }

bool VtkErrorCapture::HasError() const {
  return !static_cast<CapturingWindow*>(m_window.Get())->m_first.empty();
}

std::string VtkErrorCapture::FirstError() const {
  return WithoutPlace(static_cast<CapturingWindow*>(m_window.Get())->m_first);
}

}  // namespace qelhost
