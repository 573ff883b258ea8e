// Names of arrays that XML must not show as they are, through every writer of an XML file.
#include <vtkGenericDataObjectWriter.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>

#include "DataSetFiles.h"
#include "FileTesting.h"
#include "FileTree.h"

namespace {

using namespace filetesting;
using qelhost::FileError;

/// Holds, of everything that has a name, one with it.
void AddNamed(vtkDataSet* block, const char* name) {
  const auto make = [name](vtkIdType tuples) {
    auto array = vtkSmartPointer<vtkFloatArray>::New();
    array->SetName(name);
    array->SetNumberOfComponents(2);
    array->SetNumberOfTuples(tuples);
    array->FillComponent(0, 0.25);
    array->FillComponent(1, -3);
    array->SetComponentName(0, name);
    array->SetComponentName(1, "plain");
    return array;
  };
  block->GetPointData()->AddArray(make(block->GetNumberOfPoints()));
  block->GetCellData()->AddArray(make(block->GetNumberOfCells()));
  block->GetFieldData()->AddArray(make(5));
  vtkNew<vtkStringArray> words;
  words->SetName((std::string(name) + " words").c_str());
  words->InsertNextValue("said & done");
  block->GetFieldData()->AddArray(words);
  block->GetCellData()->SetActiveScalars(name);
}

void Write(const std::string& path, vtkDataSet* block) {
  if (fs::path(path).extension() == ".vtk") {
    vtkNew<vtkGenericDataObjectWriter> writer;
    writer->SetInputData(block);
    writer->SetFileName(path.c_str());
    writer->SetFileTypeToBinary();
    ASSERT_EQ(writer->Write(), 1);
    return;
  }
  vtkNew<vtkXMLDataSetWriter> writer;
  writer->SetInputData(block);
  writer->SetFileName(path.c_str());
  ASSERT_EQ(writer->Write(), 1);
}

vtkSmartPointer<vtkDataSet> Read(const std::string& path) {
  vtkNew<vtkXMLGenericDataObjectReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  return vtkDataSet::SafeDownCast(reader->GetOutput());
}

void ExpectNamed(vtkDataSet* block, const std::string& name, bool hasComponentNames) {
  ASSERT_NE(block, nullptr);
  for (vtkFieldData* data :
       {static_cast<vtkFieldData*>(block->GetPointData()),
        static_cast<vtkFieldData*>(block->GetCellData()), block->GetFieldData()}) {
    vtkDataArray* const array = data->GetArray(name.c_str());
    ASSERT_NE(array, nullptr) << data->GetClassName();
    EXPECT_EQ(array->GetComponent(array->GetNumberOfTuples() - 1, 0), 0.25);
    EXPECT_EQ(array->GetComponent(array->GetNumberOfTuples() - 1, 1), -3);
    if (!hasComponentNames) continue;
    EXPECT_STREQ(array->GetComponentName(0), name.c_str());
    EXPECT_STREQ(array->GetComponentName(1), "plain");
  }
  EXPECT_NE(block->GetFieldData()->GetAbstractArray((name + " words").c_str()), nullptr);
}

struct Row {
  const char* name;
  const char* text;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class ArrayNames : public FolderTest, public ::testing::WithParamInterface<Row> {
 protected:
  void ExpectThroughLegacy(vtkDataSet* block, const std::string& extension) const {
    const std::string name = GetParam().text;
    AddNamed(block, name.c_str());
    Write(In("in.vtk"), block);
    const auto data = qelhost::ReadDataSet(In("in.vtk"));
    qelhost::WriteDataSet(*data, In("out" + extension), {});
    const vtkSmartPointer<vtkDataSet> back = Read(In("out" + extension));
    ExpectNamed(back, name, true);
    ASSERT_NE(back->GetCellData()->GetScalars(), nullptr);
    EXPECT_EQ(back->GetCellData()->GetScalars()->GetName(), name);
    // Its own reader takes it as well, and leaves what is in memory its name.
    EXPECT_EQ(qelhost::ReadDataSet(In("out" + extension))->VariableCount(), data->VariableCount());
    qelhost::WriteDataSet(*data, In("again" + extension), {});
    EXPECT_EQ(Contents(In("again" + extension)), Contents(In("out" + extension)));
  }
};

TEST_P(ArrayNames, OfALegacyGridReachTheXmlFile) { ExpectThroughLegacy(TwoBricks(), ".vtu"); }
TEST_P(ArrayNames, OfALegacySurfaceReachTheXmlFile) { ExpectThroughLegacy(TwoTriangles(), ".vtp"); }
TEST_P(ArrayNames, OfALegacySurfaceReachAGrid) { ExpectThroughLegacy(TwoTriangles(), ".vtu"); }
TEST_P(ArrayNames, OfLegacyUnevenGridsReachTheXmlFile) {
  ExpectThroughLegacy(UnevenGrid(), ".vtr");
}
TEST_P(ArrayNames, OfALegacyImageReachTheXmlFile) { ExpectThroughLegacy(Image(), ".vti"); }

INSTANTIATE_TEST_SUITE_P(Names, ArrayNames,
                         ::testing::Values(Row{"Less", "a<b"}, Row{"Greater", "a>b"},
                                           Row{"And", "a&b"}, Row{"Entity", "a&lt;b"},
                                           Row{"Quotes", "\"a\" 'b'"}, Row{"Tag", "/><Piece x=\""},
                                           Row{"Break", "a\nb\tc"},
                                           Row{"NotAscii", "\xC3\xA9\xE2\x82\xAC"}),
                         [](const auto& row) { return std::string(row.param.name); });

using FurtherNames = FolderTest;

TEST_F(FurtherNames, OfAnXmlFileReachOneOfAnotherKind) {
  const auto surface = TwoTriangles();
  Write(In("in.vtp"), surface);
  std::string text = Contents(In("in.vtp"));
  for (std::size_t at = 0; (at = text.find("\"flag\"", at)) != std::string::npos; at += 8) {
    text.replace(at, 6, "\"f&lt;&amp;\"");
  }
  Save(In("in.vtp"), text);
  const auto data = qelhost::ReadDataSet(In("in.vtp"));
  qelhost::WriteDataSet(*data, In("out.vtu"), {});
  const vtkSmartPointer<vtkDataSet> back = Read(In("out.vtu"));
  ASSERT_NE(back, nullptr);
  EXPECT_NE(back->GetCellData()->GetArray("f<&"), nullptr);
}

TEST_F(FurtherNames, WithBreaksOfLinesHaveBlanksForThem) {
  const auto grid = TwoBricks();
  grid->GetPointData()->GetArray("U")->SetComponentName(1, "north");
  Write(In("in.vtu"), grid);
  std::string text = Contents(In("in.vtu"));
  const auto replace = [&text](const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
      text.replace(at, from.size(), to);
    }
  };
  replace("\"flag\"", "\"f\r\n\tl\rag\"");
  replace("\"p\"", "\"a\np\"");
  replace("\"north\"", "\"no\nrth\"");
  Save(In("in.vtu"), text);

  const auto data = qelhost::ReadDataSet(In("in.vtu"));
  EXPECT_NE(data->VariableNumber("f  l ag"), 0);
  qelhost::WriteDataSet(*data, In("out.vtk"));

  const vtkSmartPointer<vtkDataSet> expected = Read(In("in.vtu"));
  const auto back = qelhost::ReadDataSet(In("out.vtk"));
  const auto& source = static_cast<const qelhost::FileSource&>(*back->GetSource());
  vtkDataSet* const block = source.steps.at(0).root.block;
  ASSERT_NE(expected->GetPointData()->GetScalars(), nullptr);
  ASSERT_NE(block->GetPointData()->GetScalars(), nullptr);
  EXPECT_STREQ(block->GetPointData()->GetScalars()->GetName(),
               expected->GetPointData()->GetScalars()->GetName());
  EXPECT_STREQ(block->GetPointData()->GetArray("U")->GetComponentName(1),
               expected->GetPointData()->GetArray("U")->GetComponentName(1));
}

class ImpossibleNames : public FolderTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ImpossibleNames, AreRefusedAndLeaveNothing) {
  const auto grid = TwoBricks();
  grid->GetCellData()->GetArray("flag")->SetName(GetParam());
  Write(In("in.vtk"), grid);
  const auto data = qelhost::ReadDataSet(In("in.vtk"));
  EXPECT_THROW(qelhost::WriteDataSet(*data, In("out.vtu"), {}), FileError);
  EXPECT_EQ(Files(), std::vector<std::string>{"in.vtk"});
  qelhost::WriteDataSet(*data, In("out.vtk"), {});
  EXPECT_EQ(qelhost::ReadDataSet(In("out.vtk"))->VariableCount(), data->VariableCount());
}

INSTANTIATE_TEST_SUITE_P(Bytes, ImpossibleNames,
                         ::testing::Values("a\x01z", "Temp\xE9rature", "\xC0\x80", "\xED\xA0\x80",
                                           "\xEF\xBF\xBF", "\xF4\x90\x80\x80", "cut \xE2\x82"));

}  // namespace
