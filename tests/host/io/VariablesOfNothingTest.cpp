// Short files whose arrays have no values, and a variable for each of their many components.
#include "HostileFiles.h"

namespace filetesting {
namespace {

class VariablesOfNothing : public HostileFiles {
 protected:
  /// One node, no cell, and arrays at the cells.
  static std::string Node(const std::string& arrays) {
    const auto array = [](const char* type, const char* name, const char* more,
                          const char* numbers) {
      return std::string("<DataArray type=\"") + type + "\" Name=\"" + name + "\" " + more +
             " format=\"ascii\">" + numbers + "</DataArray>";
    };
    return "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
           "header_type=\"UInt64\"><UnstructuredGrid><Piece NumberOfPoints=\"1\" "
           "NumberOfCells=\"0\"><CellData>" +
           arrays + "</CellData><Points>" +
           array("Float64", "Points", "NumberOfComponents=\"3\"", "0 0 0") + "</Points><Cells>" +
           array("Int64", "connectivity", "", "") + array("Int64", "offsets", "", "") +
           array("UInt8", "types", "", "") + "</Cells></Piece></UnstructuredGrid></VTKFile>";
  }
  static std::string Array(const std::string& name, int components) {
    return "<DataArray type=\"Float32\" Name=\"" + name + "\" NumberOfComponents=\"" +
           std::to_string(components) + "\" format=\"ascii\"/>";
  }
  static constexpr char kRefused[] = ": it has more variables than can be kept";
};

TEST_F(VariablesOfNothing, AreFewerWithoutValues) {
  EXPECT_EQ(ReadError(Saved("a.vtu", Node(Array("a", 1000)))), "");
  EXPECT_EQ(ReadError(Saved("b.vtu", Node(Array("b", 1 << 20)))),
            In("b.vtu") +
                ": damaged: its arrays have more attributes and components than its size allows");
}

TEST_F(VariablesOfNothing, OfManyFilesAreRefused) {
  std::string entries;
  for (int n = 0; n < 6; ++n) {
    const std::string name = "a" + std::to_string(n);
    Save(In(name + ".vtu"), Node(Array(name, 100000)));
    entries += Entry(name + ".vtu");
  }
  EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(entries))), In("a.vtm") + kRefused);
}

TEST_F(VariablesOfNothing, OfFilesWithinALegacyFileAreRefused) {
  const std::string head = "# vtk DataFile Version 3.0\nhostile\nASCII\nDATASET ";
  std::string text = head + "MULTIBLOCK\nCHILDREN 6\n";
  for (int n = 0; n < 6; ++n) {
    text += "CHILD 0 [b]\n" + head + "POLYDATA\nPOINTS 1 float\n0 0 0\nCELL_DATA 0\nFIELD f 1\na" +
            std::to_string(n) + " 100000 0 float\nENDCHILD\n";
  }
  EXPECT_EQ(ReadError(Saved("a.vtk", text)), In("a.vtk") + kRefused);
}

}  // namespace
}  // namespace filetesting
