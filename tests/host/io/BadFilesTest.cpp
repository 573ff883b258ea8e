#include <sys/resource.h>

#include <gmock/gmock.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <csignal>

#include "DataSetFiles.h"
#include "FileTesting.h"

namespace {

using namespace filetesting;
using qelhost::FileError;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class BadFiles : public FolderTest {
 protected:
  std::string SaveBricks(const std::string& name, int dataMode = vtkXMLWriter::Appended) {
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetFileName(In(name).c_str());
    writer->SetInputData(TwoBricks());
    writer->SetDataMode(dataMode);
    writer->EncodeAppendedDataOff();
    writer->SetCompressorTypeToNone();
    EXPECT_EQ(writer->Write(), 1);
    return In(name);
  }
  /// One line, with the file's name first; nothing on the error stream.
  static std::string ReadError(const std::string& path) {
    ::testing::internal::CaptureStderr();
    std::string text;
    try {
      ReadDataSet(path);
    } catch (const FileError& error) {
      text = error.what();
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(text, Not(HasSubstr("\n")));
    return text;
  }
  static std::string WriteError(const qelhost::DataSet& data, const std::string& path,
                                const qelhost::WriteOptions& options = {}) {
    try {
      WriteDataSet(data, path, options);
    } catch (const FileError& error) {
      return error.what();
    }
    return {};
  }
};

TEST_F(BadFiles, MissingFileIsNamed) {
  for (const char* name : {"no.vtu", "no.vtm", "no.pvd", "no.vtk", "no.exo", "no.foam"}) {
    EXPECT_EQ(ReadError(In(name)), In(name) + ": No such file or directory");
  }
}

TEST_F(BadFiles, UnknownExtensionIsRefused) {
  Save(In("a.xyz"), "1 2 3");
  EXPECT_EQ(ReadError(In("a.xyz")), In("a.xyz") + ": unknown format \".xyz\"");
}

TEST_F(BadFiles, ForeignContentIsRefusedInEveryFormat) {
  for (const auto& format : qelhost::KnownFormats()) {
    const std::string path = In("foreign" + format.extension);
    Save(path, "This is a letter, not a mesh.\nIt goes on for a line.\nAnd another.\n");
    EXPECT_THAT(ReadError(path), StartsWith(path + ": ")) << format.extension;
    Save(path, "");
    EXPECT_THAT(ReadError(path), StartsWith(path + ": ")) << format.extension << ", empty";
  }
}

/// Wherever a file is cut, it is an error: never a smaller mesh, never a shorter array.
TEST_F(BadFiles, FileCutAnywhereIsAnError) {
  for (const int mode : {vtkXMLWriter::Ascii, vtkXMLWriter::Binary, vtkXMLWriter::Appended}) {
    const std::string whole = Contents(SaveBricks("whole.vtu", mode));
    const std::string path = In("cut.vtu");
    for (std::size_t size = 0; size + 12 < whole.size(); size += 97) {
      Save(path, whole.substr(0, size));
      EXPECT_THAT(ReadError(path), StartsWith(path + ": ")) << "mode " << mode << ", " << size;
    }
  }
}

TEST_F(BadFiles, BytesMissingInTheMiddleAreAnError) {
  const std::string whole = Contents(SaveBricks("whole.vtu"));
  const std::size_t data = whole.find("<AppendedData");
  const std::string path = In("holed.vtu");
  Save(path, whole.substr(0, data + 100) + whole.substr(data + 500));
  EXPECT_THAT(ReadError(path), StartsWith(path + ": "));
}

TEST_F(BadFiles, NodesThatDoNotExistAreAnError) {
  std::string text = Contents(SaveBricks("whole.vtu", vtkXMLWriter::Ascii));
  const std::size_t connectivity = text.find("0 1 4 3 6 7");
  ASSERT_NE(connectivity, std::string::npos);
  text.replace(connectivity, 5, "0 1 9999");
  Save(In("wild.vtu"), text);
  EXPECT_EQ(ReadError(In("wild.vtu")),
            In("wild.vtu") + ": damaged: its cells refer to nodes that do not exist");
}

TEST_F(BadFiles, NodesThatDoNotExistAreAnErrorInASurfaceOfText) {
  Save(In("a.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 1 2 4711\n");
  EXPECT_EQ(ReadError(In("a.obj")),
            In("a.obj") + ": damaged: its cells refer to nodes that do not exist");
}

TEST_F(BadFiles, CellsOfTooFewNodesAreAnErrorInASurface) {
  for (const char* cells :
       {"POLYGONS 2 6\n3 0 1 2\n1 0\n", "POLYGONS 2 5\n3 0 1 2\n0\n",
        "LINES 1 2\n1 0\nPOLYGONS 1 4\n3 0 1 2\n", "VERTICES 1 1\n0\nPOLYGONS 1 4\n3 0 1 2\n"}) {
    Save(In("a.vtk"),
         "# vtk DataFile Version 3.0\nfew\nASCII\nDATASET POLYDATA\n"
         "POINTS 3 float\n0 0 0 1 0 0 0 1 0\n" +
             std::string(cells));
    EXPECT_EQ(ReadError(In("a.vtk")),
              In("a.vtk") + ": damaged: its cells refer to nodes that do not exist")
        << cells;
  }
}

TEST_F(BadFiles, CellsThatDoNotBeginWithTheFirstNodeAreAnError) {
  Save(In("a.vtk"),
       "# vtk DataFile Version 5.1\nshifted\nASCII\nDATASET UNSTRUCTURED_GRID\n"
       "POINTS 5 float\n0 0 0 1 0 0 0 1 0 0 0 1 1 1 1\n"
       "CELLS 2 5\nOFFSETS vtktypeint64\n1 5\nCONNECTIVITY vtktypeint64\n4 0 1 2 3\n"
       "CELL_TYPES 1\n10\n");
  EXPECT_EQ(ReadError(In("a.vtk")),
            In("a.vtk") + ": damaged: its cells refer to nodes that do not exist");
}

TEST_F(BadFiles, KindMustFitTheExtension) {
  vtkNew<vtkXMLPolyDataWriter> writer;
  writer->SetFileName(In("surface.vtu").c_str());
  writer->SetInputData(TwoTriangles());
  ASSERT_EQ(writer->Write(), 1);
  EXPECT_EQ(ReadError(In("surface.vtu")),
            In("surface.vtu") + ": holds PolyData where UnstructuredGrid belongs");
}

TEST_F(BadFiles, MissingPieceIsNamed) {
  const std::string multi = In("case.vtm");
  Save(multi,
       "<VTKFile type=\"vtkMultiBlockDataSet\" version=\"1.0\"><vtkMultiBlockDataSet>"
       "<DataSet index=\"0\" file=\"gone.vtu\"/></vtkMultiBlockDataSet></VTKFile>");
  EXPECT_EQ(ReadError(multi), In("gone.vtu") + ": No such file or directory");
  Save(In("case.pvd"),
       "<VTKFile type=\"Collection\"><Collection><DataSet timestep=\"1\" file=\"case.vtm\"/>"
       "</Collection></VTKFile>");
  EXPECT_EQ(ReadError(In("case.pvd")), In("gone.vtu") + ": No such file or directory");
  Save(In("case.pvtu"),
       "<VTKFile type=\"PUnstructuredGrid\"><PUnstructuredGrid><PPoints>"
       "<PDataArray type=\"Float32\" NumberOfComponents=\"3\"/></PPoints>"
       "<Piece Source=\"gone.vtu\"/></PUnstructuredGrid></VTKFile>");
  EXPECT_EQ(ReadError(In("case.pvtu")), In("gone.vtu") + ": No such file or directory");
}

/// A legacy file has no end mark: cut between two sections it is a whole file with fewer arrays.
/// But what is read is what was written.
TEST_F(BadFiles, LegacyFileCutAnywhereIsAnErrorOrHasFewerWholeArrays) {
  for (const int fileType : {VTK_ASCII, VTK_BINARY}) {
    for (const int version : {vtkDataWriter::VTK_LEGACY_READER_VERSION_4_2,
                              vtkDataWriter::VTK_LEGACY_READER_VERSION_5_1}) {
      vtkNew<vtkGenericDataObjectWriter> writer;
      writer->SetFileName(In("whole.vtk").c_str());
      writer->SetInputData(TwoBricks());
      writer->SetFileType(fileType);
      writer->SetFileVersion(version);
      ASSERT_EQ(writer->Write(), 1);
      const auto whole = ReadDataSet(In("whole.vtk"));
      const std::string bytes = Contents(In("whole.vtk"));
      int errors = 0;
      for (std::size_t size = 0; size < bytes.size(); size += 7) {
        Save(In("cut.vtk"), bytes.substr(0, size));
        qelhost::DataSetPtr cut;
        try {
          cut = ReadDataSet(In("cut.vtk"));
        } catch (const FileError&) {
          ++errors;
          continue;
        }
        // Text may lose the last digits of its last number unnoticed, at the very end alone.
        if (fileType == VTK_ASCII && size + 32 > bytes.size()) continue;
        ASSERT_EQ(cut->FindZone(1)->CellCount(), 2) << size;
        for (LgIndex_t var = 1; var <= cut->VariableCount(); ++var) {
          const LgIndex_t wholeVar = whole->VariableNumber(cut->FindVariable(var)->name);
          if (wholeVar == 0) continue;  // "p (cell)" is "p" while the other p is not there
          const QelFieldData* a = cut->Readable(1, var);
          const QelFieldData* b = whole->Readable(1, wholeVar);
          if (a->count != b->count) continue;
          for (LgIndex_t i = 0; i < a->count; ++i) {
            ASSERT_EQ(a->get(a, i), b->get(b, i)) << cut->FindVariable(var)->name << " " << size;
          }
        }
      }
      EXPECT_GT(errors, static_cast<int>(bytes.size() / 7 / 2));
    }
  }
}

TEST_F(BadFiles, MeshWithoutNodesIsNoDataSet) {
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetFileName(In("empty.vtu").c_str());
  vtkNew<vtkUnstructuredGrid> nothing;
  writer->SetInputData(nothing);
  ASSERT_EQ(writer->Write(), 1);
  EXPECT_EQ(ReadError(In("empty.vtu")), In("empty.vtu") + ": it holds no mesh");
}

TEST_F(BadFiles, TargetThatCannotBeIsRefusedAndNothingIsLeft) {
  const auto data = ReadDataSet(SaveBricks("in.vtu"));
  EXPECT_EQ(WriteError(*data, In("no/out.vtu")), In("no/out.vtu") + ": its folder does not exist");
  EXPECT_EQ(WriteError(*data, In("out.vtp")),
            In("out.vtp") + ": cannot hold this kind of mesh; write a .vtu file");
  EXPECT_EQ(WriteError(*data, In("out.exo")),
            In("out.exo") + ": Exodus II cannot be written; write a .vtm file");
  EXPECT_EQ(WriteError(*data, In("out.xyz")), In("out.xyz") + ": unknown format \".xyz\"");
  fs::create_directory(In("folder.vtu"));
  EXPECT_EQ(WriteError(*data, In("folder.vtu")), In("folder.vtu") + ": Is a directory");
  qelhost::WriteOptions careful;
  careful.overwrite = false;
  EXPECT_EQ(WriteError(*data, In("in.vtu"), careful), In("in.vtu") + ": File exists");
  EXPECT_THAT(Files(), ElementsAre("folder.vtu", "in.vtu"));
}

/// A limit on the size of files stands in for a full disk.
TEST_F(BadFiles, FailingWriteLeavesTheOldTargetAndNothingElse) {
  const std::string source = SaveBricks("in.vtu");
  const auto data = ReadDataSet(source);
  for (const char* extension : {"vtu", "vtm", "pvd", "vtk"}) {
    const std::string path = In(std::string("out.") + extension);
    Save(path, "the old one");
    const auto filesBefore = Files();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const auto whole = static_cast<rlim_t>(fs::file_size(source));
    for (const rlim_t limit : {rlim_t{100}, whole / 2, whole - 200}) {
      rlimit tight = before;
      tight.rlim_cur = std::string(extension) == "vtk" ? std::min<rlim_t>(limit, 700) : limit;
      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
      const std::string error = WriteError(*data, path);
      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
      EXPECT_NE(error, "") << path << " at " << limit;
      EXPECT_EQ(Contents(path), "the old one");
      EXPECT_EQ(Files(), filesBefore);
    }
    std::signal(SIGXFSZ, handler);
  }
}

}  // namespace
