#ifndef QELHOST_IO_VTKERRORS_H
#define QELHOST_IO_VTKERRORS_H

#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>

#include <string>

namespace qelhost {

/// Takes what VTK would print while it lives. VTK's readers and writers print an error and go on,
/// so a file is good only when nothing was printed. Nests; user-interface thread.
class VtkErrorCapture {
 public:
  VtkErrorCapture();
  ~VtkErrorCapture();
  VtkErrorCapture(const VtkErrorCapture&) = delete;
  VtkErrorCapture& operator=(const VtkErrorCapture&) = delete;

  bool HasError() const;
  /// The first error, without the place in VTK's sources; one line.
  std::string FirstError() const;

 private:
  vtkSmartPointer<vtkOutputWindow> m_before;
  vtkSmartPointer<vtkOutputWindow> m_window;
};

}  // namespace qelhost

#endif  // QELHOST_IO_VTKERRORS_H
