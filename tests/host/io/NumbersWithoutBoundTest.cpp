// Infinite numbers and such as are none, in scalars, vectors and places of nodes: what is written
// of them reads back, by every way to a file.
#include <vtkGenericDataObjectWriter.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include "DataSetFiles.h"
#include "FileTesting.h"
#include "FileTree.h"

namespace {

using namespace filetesting;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Route {
  const char* name;
  const char* from;  ///< the source's name
  const char* to;
  int xmlMode;  ///< of an XML source
};

void PrintTo(const Route& route, std::ostream* out) { *out << route.name; }

class NumbersWithoutBound : public FolderTest, public ::testing::WithParamInterface<Route> {
 protected:
  void SaveSource(vtkDataSet* block) const {
    const std::string path = In(GetParam().from);
    if (fs::path(path).extension() == ".vtk") {
      vtkNew<vtkGenericDataObjectWriter> writer;
      writer->SetInputData(block);
      writer->SetFileName(path.c_str());
      if (GetParam().xmlMode != vtkXMLWriter::Ascii) writer->SetFileTypeToBinary();
      ASSERT_EQ(writer->Write(), 1);
      return;
    }
    vtkNew<vtkXMLDataSetWriter> writer;
    writer->SetInputData(block);
    writer->SetFileName(path.c_str());
    writer->SetDataMode(GetParam().xmlMode);
    ASSERT_EQ(writer->Write(), 1);
  }

  qelhost::DataSetPtr Source() const {
    const bool isSurface = std::string(GetParam().to) == "out.vtp";
    SaveSource(isSurface ? vtkSmartPointer<vtkDataSet>(TwoTriangles())
                         : vtkSmartPointer<vtkDataSet>(TwoBricks()));
    return qelhost::ReadDataSet(In(GetParam().from));
  }

  /// Null while they are not loaded.
  static vtkDataArray* Vectors(const qelhost::DataSet& data) {
    const auto& source = static_cast<const qelhost::FileSource&>(*data.GetSource());
    return source.steps.at(0).root.block->GetPointData()->GetArray("U");
  }

  static void Set(qelhost::DataSet& data, const char* name, double value) {
    QelFieldData* const field = data.Writable(1, data.VariableNumber(name));
    ASSERT_NE(field, nullptr) << name;
    field->set(field, 0, value);
  }

  static double Value(qelhost::DataSet& data, const char* name, LgIndex_t at) {
    QelFieldData* const field = data.Readable(1, data.VariableNumber(name));
    return field == nullptr ? std::nan("") : field->get(field, at);
  }

  static double Square(qelhost::DataSet& data, const char* name) {
    return Value(data, name, 0) * Value(data, name, 0);
  }
};

TEST_P(NumbersWithoutBound, AreReadAgain) {
  const auto data = Source();
  Set(*data, "U_Y", -kInfinity);
  Set(*data, "p", std::nan(""));
  Set(*data, "X", kInfinity);
  // Whoever has asked for the lengths left them where writers find them.
  if (vtkDataArray* const vectors = Vectors(*data)) vectors->GetRange(-1);

  qelhost::WriteDataSet(*data, In(GetParam().to));

  const auto back = qelhost::ReadDataSet(In(GetParam().to));
  EXPECT_EQ(Value(*back, "U_Y", 0), -kInfinity);
  EXPECT_EQ(Value(*back, "X", 0), kInfinity);
  EXPECT_TRUE(std::isnan(Value(*back, "p", 0)));
  EXPECT_EQ(Value(*back, "p", 1), Value(*data, "p", 1));
  EXPECT_EQ(Value(*back, "U_Y", 1), Value(*data, "U_Y", 1));
}

using RangesOfLengths = NumbersWithoutBound;

TEST_P(RangesOfLengths, AreNotThoseOfValuesBefore) {
  const auto data = Source();
  const double before =
      std::sqrt(Square(*data, "U_X") + Square(*data, "U_Y") + Square(*data, "U_Z"));
  if (vtkDataArray* const vectors = Vectors(*data)) vectors->GetRange(-1);
  Set(*data, "U_Y", 4e6);

  qelhost::WriteDataSet(*data, In(GetParam().to));

  // The first vector is the shortest one.
  char least[32];
  std::snprintf(least, sizeof(least), "%.6g", before);
  EXPECT_EQ(Contents(In(GetParam().to)).find(least), std::string::npos) << least;
}

constexpr Route kRoutes[] = {{"TextGrid", "in.vtu", "out.vtu", vtkXMLWriter::Ascii},
                             {"BinaryGrid", "in.vtu", "out.vtu", vtkXMLWriter::Binary},
                             {"AppendedGrid", "in.vtu", "out.vtu", vtkXMLWriter::Appended},
                             {"TextSurface", "in.vtp", "out.vtp", vtkXMLWriter::Ascii},
                             {"BinarySurface", "in.vtp", "out.vtp", vtkXMLWriter::Binary},
                             {"XmlToLegacy", "in.vtu", "out.vtk", vtkXMLWriter::Binary},
                             {"LegacyToXml", "in.vtk", "out.vtu", vtkXMLWriter::Appended},
                             {"Legacy", "in.vtk", "out.vtk", vtkXMLWriter::Binary},
                             {"LegacyText", "in.vtk", "out.vtk", vtkXMLWriter::Ascii}};

std::string NameOfRoute(const ::testing::TestParamInfo<Route>& route) { return route.param.name; }

INSTANTIATE_TEST_SUITE_P(Routes, NumbersWithoutBound, ::testing::ValuesIn(kRoutes), NameOfRoute);
INSTANTIATE_TEST_SUITE_P(Routes, RangesOfLengths, ::testing::ValuesIn(kRoutes), NameOfRoute);

}  // namespace
