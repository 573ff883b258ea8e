#pragma once

#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>

#include <string>

namespace qelhost {

/// Takes what VTK would print while it lives. VTK's readers and writers print an error and go on,
/// so a file is good only when nothing was printed. Nests; one thread at a time. What the main
/// thread draws while another one reads is not the file's fault, and is not taken.
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
  int m_verbosityBefore;
  vtkSmartPointer<vtkOutputWindow> m_before;
  vtkSmartPointer<vtkOutputWindow> m_window;
};

/// Sends the process' standard error nowhere while it lives: for the C libraries under some
/// readers, which print there whatever they are told. Their callers learn of the failure all the
/// same. Throws std::runtime_error where the process has too many files open for that.
class StandardErrorSilence {
 public:
  StandardErrorSilence();
  ~StandardErrorSilence();
  StandardErrorSilence(const StandardErrorSilence&) = delete;
  StandardErrorSilence& operator=(const StandardErrorSilence&) = delete;

 private:
  int m_saved;
};

}  // namespace qelhost
