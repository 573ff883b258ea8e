// VTK's XML writers, made to outlive a full disk.
#pragma once

#include <vtkSmartPointer.h>
#include <vtkXMLWriter.h>

namespace qelhost {

/// When the disk is full, VTK's writers of inline data free position arrays that they never made,
/// which ends the process. Here they are freed only when they were made.
template <class Writer>
class CarefulWriter : public Writer {
 public:
  static vtkSmartPointer<vtkXMLWriter> Make() {
    auto* const writer = new CarefulWriter;
    writer->InitializeObjectBase();
    return vtkSmartPointer<vtkXMLWriter>::Take(writer);
  }

 protected:
  void AllocatePositionArrays() override {
    Writer::AllocatePositionArrays();
    m_hasArrays = true;
  }
  void DeletePositionArrays() override {
    if (m_hasArrays) Writer::DeletePositionArrays();
    m_hasArrays = false;
  }

 private:
  bool m_hasArrays = false;
};

}  // namespace qelhost
