#include <vtkGenericDataObjectReader.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLMultiBlockDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLRectilinearGridWriter.h>
#include <vtkXMLStructuredGridWriter.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <gmock/gmock.h>

#include "DataSetFiles.h"
#include "FileTesting.h"

namespace {

using namespace filetesting;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct Mode {
  const char* name;
  void (*set)(vtkXMLWriter*);
};

const Mode kModes[] = {
    {"AppendedRaw64",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToAppended();
       writer->EncodeAppendedDataOff();
       writer->SetCompressorTypeToNone();
       writer->SetHeaderTypeToUInt64();
     }},
    {"AppendedZLib", [](vtkXMLWriter* writer) { writer->SetDataModeToAppended(); }},
    {"AppendedRawLz4",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToAppended();
       writer->EncodeAppendedDataOff();
       writer->SetCompressorTypeToLZ4();
     }},
    {"AppendedLzma64",
     [](vtkXMLWriter* writer) {
       writer->SetCompressorTypeToLZMA();
       writer->SetHeaderTypeToUInt64();
     }},
    {"Binary",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToBinary();
       writer->SetCompressorTypeToNone();
     }},
    {"BinaryZLibInt32Ids",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToBinary();
       writer->SetIdTypeToInt32();
     }},
    {"Ascii",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToAscii();
       writer->SetCompressorTypeToNone();
     }},
    {"BigEndian",
     [](vtkXMLWriter* writer) {
       writer->SetDataModeToAppended();
       writer->EncodeAppendedDataOff();
       writer->SetByteOrderToBigEndian();
     }},
};

struct TripKind {
  const char* extension;
  vtkSmartPointer<vtkDataSet> (*mesh)();
  vtkSmartPointer<vtkXMLWriter> (*writer)();
};

template <class Writer>
vtkSmartPointer<vtkXMLWriter> Make() {
  return vtkSmartPointer<Writer>::New();
}

const TripKind kTripKinds[] = {
    {"vtu", [] { return vtkSmartPointer<vtkDataSet>(TwoBricks()); },
     Make<vtkXMLUnstructuredGridWriter>},
    {"vtp", [] { return vtkSmartPointer<vtkDataSet>(TwoTriangles()); }, Make<vtkXMLPolyDataWriter>},
    {"vts", [] { return vtkSmartPointer<vtkDataSet>(CurvedGrid()); },
     Make<vtkXMLStructuredGridWriter>},
    {"vtr", [] { return vtkSmartPointer<vtkDataSet>(UnevenGrid()); },
     Make<vtkXMLRectilinearGridWriter>},
    {"vti", [] { return vtkSmartPointer<vtkDataSet>(Image()); }, Make<vtkXMLImageDataWriter>},
};

class XmlRoundTrip : public FolderTest,
                     public ::testing::WithParamInterface<std::tuple<TripKind, Mode>> {};

/// VTK wrote the file, so what the file stores, and how, is equal when the files are.
TEST_P(XmlRoundTrip, UntouchedFileComesBackByteForByte) {
  const auto& [kind, mode] = GetParam();
  const std::string first = In(std::string("first.") + kind.extension);
  const std::string second = In(std::string("second.") + kind.extension);
  const auto writer = kind.writer();
  mode.set(writer);
  writer->SetFileName(first.c_str());
  writer->SetInputDataObject(kind.mesh());
  ASSERT_EQ(writer->Write(), 1);

  WriteDataSet(*ReadDataSet(first), second);

  EXPECT_EQ(Contents(second), Contents(first));
}

INSTANTIATE_TEST_SUITE_P(KindsAndModes, XmlRoundTrip,
                         ::testing::Combine(::testing::ValuesIn(kTripKinds),
                                            ::testing::ValuesIn(kModes)),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).extension) +
                                  std::get<1>(row.param).name;
                         });

class RoundTrip : public FolderTest {
 protected:
  std::string SaveBricks(const std::string& name) {
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetFileName(In(name).c_str());
    writer->SetInputData(TwoBricks());
    EXPECT_EQ(writer->Write(), 1);
    return In(name);
  }
  /// Two blocks and an empty one, one of them nested.
  std::string SaveBlocks(const std::string& name) {
    vtkNew<vtkMultiBlockDataSet> blocks, nested;
    nested->SetBlock(0, TwoTriangles());
    nested->GetMetaData(0u)->Set(vtkCompositeDataSet::NAME(), "wall");
    blocks->SetBlock(0, TwoBricks());
    blocks->GetMetaData(0u)->Set(vtkCompositeDataSet::NAME(), "inside & \"out\"");
    blocks->SetBlock(1, static_cast<vtkDataObject*>(nullptr));
    blocks->GetMetaData(1u)->Set(vtkCompositeDataSet::NAME(), "empty");
    blocks->SetBlock(2, nested);
    blocks->GetMetaData(2u)->Set(vtkCompositeDataSet::NAME(), "boundary");
    vtkNew<vtkDoubleArray> time;
    time->SetName("TimeValue");
    time->InsertNextValue(1.0 / 3);
    blocks->GetFieldData()->AddArray(time);
    vtkNew<vtkXMLMultiBlockDataWriter> writer;
    writer->SetFileName(In(name).c_str());
    writer->SetInputData(blocks);
    EXPECT_EQ(writer->Write(), 1);
    return In(name);
  }
  static vtkSmartPointer<vtkMultiBlockDataSet> LoadBlocks(const std::string& path) {
    vtkNew<vtkXMLMultiBlockDataReader> reader;
    reader->SetFileName(path.c_str());
    reader->Update();
    return vtkMultiBlockDataSet::SafeDownCast(reader->GetOutput());
  }
};

TEST_F(RoundTrip, WrittenValueReachesItsArrayAndNoOther) {
  const DataSetPtr data = ReadDataSet(SaveBricks("in.vtu"));
  QelFieldData* ref = data->Writable(1, data->VariableNumber("U_Y"));
  ASSERT_NE(ref, nullptr);
  ref->set(ref, 4, 42.5);
  WriteDataSet(*data, In("out.vtu"));

  vtkNew<vtkXMLUnstructuredGridReader> reader;
  reader->SetFileName(In("out.vtu").c_str());
  reader->Update();
  const auto before = TwoBricks();
  vtkPointData* points = reader->GetOutput()->GetPointData();
  for (vtkIdType node = 0; node < 12; ++node) {
    EXPECT_EQ(points->GetArray("p")->GetTuple1(node),
              before->GetPointData()->GetArray("p")->GetTuple1(node));
    for (int component = 0; component < 3; ++component) {
      const double expected =
          node == 4 && component == 1
              ? 42.5
              : before->GetPointData()->GetArray("U")->GetComponent(node, component);
      EXPECT_EQ(points->GetArray("U")->GetComponent(node, component), expected);
    }
  }
  EXPECT_STREQ(points->GetScalars()->GetName(), "p");
  EXPECT_EQ(reader->GetOutput()->GetFieldData()->GetNumberOfArrays(), 1);
}

TEST_F(RoundTrip, NewVariableIsWrittenAndNewZoneIsNot) {
  const DataSetPtr data = ReadDataSet(SaveBricks("in.vtu"));
  const LgIndex_t blank = data->AddVariable(
      "PICK_BLANK", {{FieldDataType_Byte, ValueLocation_CellCentered}}, /*deferred=*/true);
  ASSERT_TRUE(data->AllocateValues(1, blank));
  QelFieldData* ref = data->Writable(1, blank);
  ref->set(ref, 1, 1);
  ASSERT_EQ(data->AddZone("box", 8, 1, 0, ZoneType_FEBrick, nullptr), 2);
  WriteDataSet(*data, In("out.vtu"));

  const DataSetPtr again = ReadDataSet(In("out.vtu"));
  EXPECT_EQ(again->ZoneCount(), 1);
  const QelFieldData* back = again->Readable(1, again->VariableNumber("PICK_BLANK"));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->type, FieldDataType_Byte);
  EXPECT_EQ(back->get(back, 0), 0);
  EXPECT_EQ(back->get(back, 1), 1);
}

TEST_F(RoundTrip, BlocksBecomeZonesByTheirPathsAndComeBack) {
  const std::string path = SaveBlocks("case.vtm");
  const DataSetPtr data = ReadDataSet(path);
  ASSERT_EQ(data->ZoneCount(), 2);
  EXPECT_EQ(data->FindZone(1)->name, "inside & \"out\"");
  EXPECT_EQ(data->FindZone(2)->name, "boundary/wall");
  EXPECT_EQ(data->FindZone(1)->strand, 0);

  WriteDataSet(*data, In("copy.vtm"));

  const auto blocks = LoadBlocks(In("copy.vtm"));
  ASSERT_EQ(blocks->GetNumberOfBlocks(), 3u);
  EXPECT_EQ(blocks->GetBlock(1), nullptr);
  EXPECT_STREQ(blocks->GetMetaData(0u)->Get(vtkCompositeDataSet::NAME()), "inside & \"out\"");
  ASSERT_NE(blocks->GetFieldData()->GetArray("TimeValue"), nullptr);
  EXPECT_EQ(blocks->GetFieldData()->GetArray("TimeValue")->GetTuple1(0), 1.0 / 3);
  EXPECT_EQ(Contents(In("copy/copy_0.vtu")), Contents(In("case/case_0.vtu")));
}

TEST_F(RoundTrip, OverwritingAMultiBlockFileLeavesOneSetOfPieces) {
  const std::string path = SaveBlocks("case.vtm");
  const std::string piece = Contents(In("case/case_0.vtu"));
  WriteDataSet(*ReadDataSet(path), path);
  EXPECT_THAT(Files(), ElementsAre("case.vtm", "case_2"));
  EXPECT_EQ(Contents(In("case_2/case_0.vtu")), piece);
  WriteDataSet(*ReadDataSet(path), path);
  EXPECT_THAT(Files(), ElementsAre("case", "case.vtm"));
}

TEST_F(RoundTrip, FilesThatNobodyNamedStayInAnOldFolder) {
  const std::string path = SaveBlocks("case.vtm");
  Save(In("case/notes.txt"), "mine");
  WriteDataSet(*ReadDataSet(path), path);
  EXPECT_EQ(Contents(In("case/notes.txt")), "mine");
  EXPECT_FALSE(fs::exists(In("case/case_0.vtu")));
}

TEST_F(RoundTrip, TimeStepsShareAStrandAndKeepTheirTimes) {
  SaveBricks("a.vtu");
  SaveBricks("b.vtu");
  Save(In("series.pvd"),
       "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n"
       "<DataSet timestep=\"0.1\" group=\"\" part=\"0\" file=\"a.vtu\"/>\n"
       "<DataSet timestep=\"0.30000000000000004\" group=\"\" part=\"0\" file=\"b.vtu\"/>\n"
       "</Collection>\n</VTKFile>\n");
  WriteDataSet(*ReadDataSet(In("series.pvd")), In("copy.pvd"));
  const DataSetPtr data = ReadDataSet(In("copy.pvd"));
  ASSERT_EQ(data->ZoneCount(), 2);
  EXPECT_EQ(data->FindZone(1)->strand, data->FindZone(2)->strand);
  EXPECT_GT(data->FindZone(1)->strand, 0);
  EXPECT_THAT(data->SolutionTimes(), ElementsAre(0.1, 0.30000000000000004));
  EXPECT_THAT(Contents(In("copy.pvd")), HasSubstr("timestep=\"0.30000000000000004\""));
  EXPECT_EQ(Contents(In("copy/copy_1.vtu")), Contents(In("b.vtu")));
}

TEST_F(RoundTrip, LegacyFileKeepsTitleVersionAndNumbers) {
  vtkNew<vtkGenericDataObjectWriter> writer;
  writer->SetFileName(In("in.vtk").c_str());
  writer->SetInputData(TwoBricks());
  writer->SetHeader("two bricks");
  writer->SetFileTypeToBinary();
  writer->SetFileVersion(vtkDataWriter::VTK_LEGACY_READER_VERSION_4_2);
  ASSERT_EQ(writer->Write(), 1);
  WriteDataSet(*ReadDataSet(In("in.vtk")), In("out.vtk"));
  EXPECT_EQ(Contents(In("out.vtk")), Contents(In("in.vtk")));
}

TEST_F(RoundTrip, LegacyTextStaysTextOnlyWhenNoNumberIsRounded) {
  Save(In("in.vtk"),
       "# vtk DataFile Version 3.0\nshort\nASCII\nDATASET POLYDATA\nPOINTS 3 double\n"
       "0 0 0 1 0 0 0 1 0.5\nPOLYGONS 1 4\n3 0 1 2\nPOINT_DATA 3\nSCALARS p double 1\n"
       "LOOKUP_TABLE default\n1 2 0.25\n");
  const DataSetPtr data = ReadDataSet(In("in.vtk"));
  WriteDataSet(*data, In("text.vtk"));
  EXPECT_THAT(Contents(In("text.vtk")), HasSubstr("short\nASCII\n"));
  const LgIndex_t pressure = data->VariableNumber("p");
  QelFieldData* ref = data->Writable(1, pressure);
  ref->set(ref, 2, 1.0 / 3);
  WriteDataSet(*data, In("exact.vtk"));
  const DataSetPtr again = ReadDataSet(In("exact.vtk"));
  const QelFieldData* back = again->Readable(1, again->VariableNumber("p"));
  EXPECT_EQ(back->get(back, 2), 1.0 / 3);
}

TEST_F(RoundTrip, LegacyFileGivesAllItsArrays) {
  Save(In("in.vtk"),
       "# vtk DataFile Version 3.0\nmany\nASCII\nDATASET POLYDATA\nPOINTS 3 float\n"
       "0 0 0 1 0 0 0 1 0\nPOLYGONS 1 4\n3 0 1 2\nPOINT_DATA 3\n"
       "SCALARS a float 1\nLOOKUP_TABLE default\n1 2 3\n"
       "SCALARS b float 1\nLOOKUP_TABLE default\n4 5 6\nVECTORS v float\n1 2 3 4 5 6 7 8 9\n"
       "FIELD more 1\nc 1 3 int\n7 8 9\n");
  const DataSetPtr data = ReadDataSet(In("in.vtk"));
  for (const char* name : {"a", "b", "v_X", "v_Z", "c"}) {
    EXPECT_GT(data->VariableNumber(name), 0) << name;
  }
}

TEST_F(RoundTrip, SurfaceBecomesUnstructuredGridWhenAskedFor) {
  Save(In("plate.stl"),
       "solid plate\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
       "endloop\nendfacet\nendsolid plate\n");
  const DataSetPtr data = ReadDataSet(In("plate.stl"));
  WriteDataSet(*data, In("plate.vtu"));
  WriteDataSet(*data, In("plate.vtm"));
  const DataSetPtr again = ReadDataSet(In("plate.vtu"));
  EXPECT_EQ(again->FindZone(1)->Type(), ZoneType_FETriangle);
  EXPECT_EQ(again->FindZone(1)->NodeCount(), 3);
  EXPECT_EQ(ReadDataSet(In("plate.vtm"))->FindZone(1)->CellCount(), 1);
}

TEST_F(RoundTrip, WrittenThroughALinkTheLinkStays) {
  const std::string path = SaveBricks("in.vtu");
  SaveBricks("real.vtu");
  fs::create_symlink("real.vtu", In("link.vtu"));
  WriteDataSet(*ReadDataSet(path), In("link.vtu"));
  EXPECT_TRUE(fs::is_symlink(In("link.vtu")));
  EXPECT_EQ(Contents(In("real.vtu")), Contents(path));
}

}  // namespace
