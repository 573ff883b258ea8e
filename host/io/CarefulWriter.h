// VTK's writers, made to outlive a full disk and to tell of it.
#pragma once

#include <vtkDataWriter.h>
#include <vtkErrorCode.h>
#include <vtkSmartPointer.h>
#include <vtkXMLWriter.h>

#include <fstream>
#include <memory>
#include <utility>

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
  /// Closes the file, where some disks tell first that they did not take it; VTK would not look.
  int EndFile() override {
    const int ok = Writer::EndFile();
    auto* const file = dynamic_cast<std::ofstream*>(this->OutFile);
    if (ok == 0 || file == nullptr) return ok;
    file->close();
    if (*file) return ok;
    this->SetErrorCode(vtkErrorCode::OutOfDiskSpaceError);
    return 0;
  }

 private:
  bool m_hasArrays = false;
};

/// The same of legacy files: VTK looks after every section, and never at what closing finds.
template <class Writer>
class CarefulLegacyWriter : public Writer {
 public:
  static vtkSmartPointer<vtkDataWriter> Make() {
    auto* const writer = new CarefulLegacyWriter;
    writer->InitializeObjectBase();
    return vtkSmartPointer<vtkDataWriter>::Take(writer);
  }

  int Write() override {
    const int ok = Writer::Write();
    if (!*m_hasLost) return ok;
    this->SetErrorCode(vtkErrorCode::OutOfDiskSpaceError);
    return 0;
  }

 protected:
  ostream* OpenVTKFile() override {
    auto* const file = new WatchedFile(this->FileName, m_hasLost);
    if (*file) return file;
    delete file;
    this->SetErrorCode(vtkErrorCode::CannotOpenFileError);
    return nullptr;
  }

 private:
  /// Whoever closes it deletes it.
  class WatchedFile : public std::ofstream {
   public:
    WatchedFile(const char* path, std::shared_ptr<bool> hasLost)
        : std::ofstream(path, std::ios::binary), m_hasLost(std::move(hasLost)) {}
    ~WatchedFile() override {
      close();
      if (!*this) *m_hasLost = true;
    }

   private:
    std::shared_ptr<bool> m_hasLost;
  };

  std::shared_ptr<bool> m_hasLost = std::make_shared<bool>(false);
};

}  // namespace qelhost
