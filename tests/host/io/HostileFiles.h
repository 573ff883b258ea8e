// Small files of every kind, and what reading damaged ones says.
#pragma once

#include <gmock/gmock.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include "DataSetFiles.h"
#include "FileTesting.h"

namespace filetesting {

class HostileFiles : public FolderTest {
 protected:
  std::string SaveMesh(const std::string& name, vtkDataSet* mesh, int mode = vtkXMLWriter::Ascii) {
    const std::string extension = fs::path(name).extension();
    vtkSmartPointer<vtkXMLWriter> writer;
    if (extension == ".vtp") writer = vtkSmartPointer<vtkXMLPolyDataWriter>::New();
    if (extension == ".vts") writer = vtkSmartPointer<vtkXMLStructuredGridWriter>::New();
    if (extension == ".vtu") writer = vtkSmartPointer<vtkXMLUnstructuredGridWriter>::New();
    writer->SetFileName(In(name).c_str());
    writer->SetInputDataObject(mesh);
    writer->SetDataMode(mode);
    EXPECT_EQ(writer->Write(), 1);
    return In(name);
  }
  std::string SaveBricks(const std::string& name, int mode = vtkXMLWriter::Ascii) {
    return SaveMesh(name, TwoBricks(), mode);
  }
  std::string Saved(const std::string& name, const std::string& text) {
    Save(In(name), text);
    return In(name);
  }
  void Replace(const std::string& name, const std::string& what, const std::string& by) {
    std::string text = Contents(In(name));
    const std::size_t at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what;
    Save(In(name), text.replace(at, what.size(), by));
  }

  /// One line, with a file's name first; nothing on the error stream. "" when it can be read.
  static std::string ReadError(const std::string& path) {
    ::testing::internal::CaptureStderr();
    std::string text;
    try {
      qelhost::ReadDataSet(path);
    } catch (const qelhost::FileError& error) {
      text = error.what();
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("\n")));
    return text;
  }

  static std::string Blocks(const std::string& entries) {
    return "<VTKFile type=\"vtkMultiBlockDataSet\" version=\"1.0\"><vtkMultiBlockDataSet>" +
           entries + "</vtkMultiBlockDataSet></VTKFile>";
  }
  static std::string Series(const std::string& entries) {
    return "<VTKFile type=\"Collection\"><Collection>" + entries + "</Collection></VTKFile>";
  }
  static std::string Entry(const std::string& file) {
    return "<DataSet timestep=\"1\" index=\"0\" file=\"" + file + "\"/>";
  }
  /// With the arrays of the small meshes.
  static std::string Pieces(const std::string& type, const std::string& attributes,
                            const std::string& pieces) {
    return "<VTKFile type=\"" + type + "\" version=\"1.0\" byte_order=\"LittleEndian\"><" + type +
           attributes +
           "><PPointData><PDataArray type=\"Float64\" Name=\"p\"/><PDataArray type=\"Float32\" "
           "Name=\"U\" NumberOfComponents=\"3\"/></PPointData><PCellData><PDataArray "
           "type=\"Float32\" Name=\"p\"/></PCellData><PPoints><PDataArray type=\"" +
           (type == "PUnstructuredGrid" ? "Float64" : "Float32") +
           "\" NumberOfComponents=\"3\"/></PPoints>" + pieces + "</" + type + "></VTKFile>";
  }
  static std::string Piece(const std::string& file) { return "<Piece Source=\"" + file + "\"/>"; }
};

}  // namespace filetesting
