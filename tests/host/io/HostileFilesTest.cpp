// Files that somebody made to do harm, or that no program ever wrote: each is refused in one line.
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "HostileFiles.h"
#include "ReadWatch.h"

namespace {

using namespace filetesting;
using qelhost::ReadDataSet;

// ---- what is no file ----

TEST_F(HostileFiles, WhatIsNoRegularFileIsRefusedInEveryFormat) {
  for (const auto& format : qelhost::KnownFormats()) {
    const std::string pipe = In("pipe" + format.extension);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(ReadError(pipe), pipe + ": is no regular file");
    const std::string device = In("device" + format.extension);
    fs::create_symlink("/dev/zero", device);
    EXPECT_EQ(ReadError(device), device + ": is no regular file");
    const std::string folder = In("folder" + format.extension);
    fs::create_directory(folder);
    EXPECT_EQ(ReadError(folder), folder + ": Is a directory");
    const std::string itself = In("itself" + format.extension);
    fs::create_symlink(itself, itself);
    EXPECT_EQ(ReadError(itself), itself + ": Too many levels of symbolic links");
  }
}

TEST_F(HostileFiles, SocketIsRefused) {
  const std::string path = In("socket.vtu");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof(address.sun_path));
  path.copy(address.sun_path, path.size());
  const int made = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  EXPECT_EQ(ReadError(path), path + ": is no regular file");
  close(made);
}

TEST_F(HostileFiles, WhatIsNoRegularFileIsRefusedAsAPiece) {
  for (const char* name : {"pipe.vtu", "pipe.dat", "pipe.vtm"}) {
    ASSERT_EQ(mkfifo(In(name).c_str(), 0600), 0);
    EXPECT_EQ(ReadError(Saved("a.vtm", Blocks(Entry(name)))), In(name) + ": is no regular file");
  }
  EXPECT_EQ(ReadError(Saved("a.pvd", Series(Entry("pipe.vtu")))),
            In("pipe.vtu") + ": is no regular file");
  EXPECT_EQ(ReadError(Saved("a.pvtu", Pieces("PUnstructuredGrid", "", Piece("pipe.vtu")))),
            In("pipe.vtu") + ": is no regular file");
}

/// Of whatever kind it is, and wherever it comes from.
TEST_F(HostileFiles, ErrorsThatNobodyExpectsNameTheFile) {
  const std::string path = SaveBricks("a.vtu", vtkXMLWriter::Appended);
  const auto errorOf = [&](const std::function<bool(double)>& thrower) {
    const qelhost::ReadWatch watch(thrower);
    return ReadError(path);
  };
  EXPECT_EQ(errorOf([](double) -> bool { throw std::length_error("vector"); }),
            path + ": damaged: it asks for more than any memory holds");
  EXPECT_EQ(errorOf([](double) -> bool { throw std::bad_alloc(); }),
            path + ": not enough memory to read it");
  EXPECT_EQ(errorOf([](double) -> bool { throw std::out_of_range("a place"); }),
            path + ": a place");
}

// ---- pieces of one mesh ----

TEST_F(HostileFiles, PiecesAreCheckedLikeFilesOfTheirOwn) {
  const std::string index =
      Saved("a.pvtu", Pieces("PUnstructuredGrid", "", Piece("good.vtu") + Piece("bad.vtu")));
  SaveBricks("good.vtu");
  const auto error = [&](const std::string& what, const std::string& by) {
    SaveBricks("bad.vtu");
    Replace("bad.vtu", what, by);
    return ReadError(index);
  };
  EXPECT_EQ(error("Name=\"note\"", "Name=\"note\""), "");
  const std::string bad = In("bad.vtu");
  EXPECT_EQ(error("NumberOfPoints=\"12\"", "NumberOfPoints=\"13\""),
            bad + ": damaged: array \"p\" is incomplete");
  EXPECT_EQ(error("NumberOfPoints=\"12\"", "NumberOfPoints=\"-1\""),
            bad + ": damaged: a piece counts what cannot be counted");
  EXPECT_EQ(error("0 1 4 3 6 7", "0 1 4711 3 6 7"),
            bad + ": damaged: its cells refer to nodes that do not exist");
  EXPECT_EQ(error("<Cells>", "<![CDATA[<Cells>]]><Cells>"),
            bad + ": damaged, or marked up as no VTK file is");
  EXPECT_EQ(error("type=\"UnstructuredGrid\"", "type=\"PolyData\""),
            bad + ": holds PolyData where UnstructuredGrid belongs");
  EXPECT_EQ(error("type=\"Float64\" Name=\"p\"", "type=\"Float32\" Name=\"p\""),
            bad + ": array \"p\" is another than its index says");
  EXPECT_EQ(error("Name=\"U\" NumberOfComponents=\"3\"", "Name=\"U\" NumberOfComponents=\"1\""),
            bad + ": array \"U\" is another than its index says");
  EXPECT_EQ(error("Name=\"U\"", "Name=\"V\""), bad + ": lacks array \"U\" that its index names");
}

/// VTK makes room by the index, and copies by the piece.
TEST_F(HostileFiles, IndexOfPiecesIsCheckedItself) {
  SaveBricks("good.vtu");
  const auto error = [&](const std::string& what, const std::string& by) {
    Saved("a.pvtu", Pieces("PUnstructuredGrid", "", Piece("good.vtu")));
    Replace("a.pvtu", what, by);
    return ReadError(In("a.pvtu"));
  };
  EXPECT_EQ(error("a", "a"), "");
  EXPECT_EQ(error("NumberOfComponents=\"3\"", "NumberOfComponents=\"2147483647\""),
            In("a.pvtu") + ": damaged: an array counts what cannot be counted");
  EXPECT_EQ(error("type=\"Float64\" Name=\"p\"", "type=\"Int8\" Name=\"p\""),
            In("good.vtu") + ": array \"p\" is another than its index says");
  EXPECT_EQ(error(Piece("good.vtu"), "<Piece/>"), In("a.pvtu") + ": damaged: a piece has no file");
  EXPECT_EQ(error("<PPoints>", "<!DOCTYPE a><PPoints>"),
            In("a.pvtu") + ": damaged: it has declarations or marked text");
  EXPECT_EQ(error(Piece("good.vtu"), Piece("a.pvtu")),
            In("a.pvtu") + ": holds PUnstructuredGrid where UnstructuredGrid belongs");
}

/// The order of arrays is each file's own.
TEST_F(HostileFiles, PiecesMayHaveTheirArraysInAnotherOrder) {
  const auto mesh = TwoBricks();
  SaveMesh("a.vtu", mesh);
  const auto other = vtkSmartPointer<vtkUnstructuredGrid>::New();
  other->CopyStructure(mesh);
  other->GetPointData()->AddArray(mesh->GetPointData()->GetArray("U"));
  other->GetPointData()->AddArray(mesh->GetPointData()->GetArray("p"));
  other->GetCellData()->AddArray(mesh->GetCellData()->GetArray("p"));
  SaveMesh("b.vtu", other);
  const auto data = ReadDataSet(
      Saved("all.pvtu", Pieces("PUnstructuredGrid", "", Piece("a.vtu") + Piece("b.vtu"))));
  const QelFieldData* const p = data->Readable(1, data->VariableNumber("p"));
  ASSERT_NE(p, nullptr);
  ASSERT_EQ(p->count, 24);
  for (LgIndex_t i = 0; i < 12; ++i) EXPECT_EQ(p->get(p, i + 12), p->get(p, i)) << i;
}

TEST_F(HostileFiles, ExtentsOfPiecesAreChecked) {
  const auto mesh = CurvedGrid();
  SaveMesh("good.vts", mesh);
  const auto error = [&](const std::string& whole, const std::string& piece) {
    return ReadError(
        Saved("a.pvts", Pieces("PStructuredGrid", " WholeExtent=\"" + whole + "\"",
                               "<Piece Extent=\"" + piece + "\" Source=\"good.vts\"/>")));
  };
  const std::string index = In("a.pvts");
  EXPECT_EQ(error("0 2 0 1 0 1", "0 2 0 1 0 1"), "");
  EXPECT_EQ(error("0 4 0 1 0 1", "0 2 0 1 0 1"),
            index + ": damaged: its pieces do not fill its extent");
  EXPECT_EQ(error("0 2 0 1 1 1", "0 2 0 1 0 1"),
            index + ": damaged: a piece lies outside its extent");
  EXPECT_EQ(error("0 4 0 1 0 1", "0 4 0 1 0 1"),
            In("good.vts") + ": does not fill its piece's extent");
  EXPECT_EQ(error("0 2147483647 0 2147483647 0 9", "0 2 0 1 0 1"),
            index + ": damaged: it has an extent that cannot be");
  EXPECT_EQ(error("0 2 0 1 0 1", ""), index + ": damaged: it has an extent that cannot be");
}

// ---- surfaces as text ----

TEST_F(HostileFiles, NumbersOfNodesInASurfaceOfTextAreChecked) {
  const std::string nodes = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
  const auto error = [&](const std::string& cells) {
    const bool isRich = cells.find('/') != std::string::npos;
    return ReadError(Saved("a.obj", nodes + (isRich ? "vt 0 0\nvn 0 0 1\n" : "") + cells));
  };
  const std::string damaged = In("a.obj") + ": damaged: its cells refer to nodes that do not exist";
  EXPECT_EQ(error("f 1 2 3\n"), "");
  EXPECT_EQ(error("f -3 -2 \\\n-1\n"), "");
  EXPECT_EQ(error("f 1/1/1 2/1/1 3/1/1\n"), "");
  EXPECT_EQ(error("f 1 2 4\n"), damaged);
  EXPECT_EQ(error("f 1 2 0\n"), damaged);
  EXPECT_EQ(error("f 1 2 -4\n"), damaged);
  EXPECT_EQ(error("f 1/1 2/2 3/1\n"), damaged);
  EXPECT_EQ(error("f 1//1 2//1 3//2\n"), damaged);
  EXPECT_EQ(error("l 1 2147483647\nf 1 2 3\n"), damaged);
  EXPECT_EQ(ReadError(Saved("a.obj", "f 1 2 3\nv 0 0 0\nv 1 0 0\nv 0 1 0\n")), "");
}

// ---- what a short file asks for ----

class HostileGrid : public HostileFiles {
 protected:
  static std::string Grid(const std::string& sections, const std::string& appended = {}) {
    return "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
           "header_type=\"UInt64\"><UnstructuredGrid>" +
           sections + "</UnstructuredGrid>" +
           (appended.empty() ? ""
                             : "<AppendedData encoding=\"raw\">_" + appended + "</AppendedData>") +
           "</VTKFile>";
  }
  static std::string Array(const std::string& type, const std::string& name,
                           const std::string& values, const std::string& more = {}) {
    return "<DataArray type=\"" + type + "\" Name=\"" + name + "\" " + more +
           (values.empty() ? "format=\"appended\" offset=\"0\"/>"
                           : "format=\"ascii\">" + values + "</DataArray>");
  }
  /// Of as many polyhedra as there are ends.
  static std::string Polyhedra(const std::string& faces, const std::string& ends,
                               const std::string& more = {}) {
    const bool isOne = ends.find(' ') == std::string::npos;
    return Grid("<Piece NumberOfPoints=\"4\" NumberOfCells=\"" + std::string(isOne ? "1" : "2") +
                "\"><Points>" +
                Array("Float32", "Points", "0 0 0 1 0 0 0 1 0 0 0 1", "NumberOfComponents=\"3\" ") +
                "</Points><Cells>" +
                Array("Int64", "connectivity", isOne ? "0 1 2 3" : "0 1 2 3 0 1 2 3") +
                Array("Int64", "offsets", isOne ? "4" : "4 8") +
                Array("UInt8", "types", isOne ? "42" : "42 42") + Array("Int64", "faces", faces) +
                Array("Int64", "faceoffsets", ends) + more + "</Cells></Piece>");
  }
  /// One node, and arrays of no values at no cells.
  static std::string Node(const std::string& arrays, const std::string& fields = {}) {
    return Grid(fields + "<Piece NumberOfPoints=\"1\" NumberOfCells=\"0\"><Points>" +
                    Array("Float32", "Points", "0 0 0", "NumberOfComponents=\"3\" ") +
                    "</Points><Cells>" + Array("Int64", "connectivity", "") +
                    Array("Int64", "offsets", "") + Array("UInt8", "types", "") + "</Cells>" +
                    "<CellData>" + arrays + "</CellData></Piece>",
                std::string(8, '\0'));
  }
};

constexpr char kTetrahedron[] = "4 3 0 1 2 3 0 1 3 3 0 2 3 3 1 2 3";

TEST_F(HostileGrid, PolyhedraEndWhereTheirOffsetsSay) {
  const std::string one = kTetrahedron;
  EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(one, "17"))), "");
  EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(one + " " + one, "17 34"))), "");
  const std::string damaged =
      In("a.vtu") + ": damaged: array \"faces\" is not what its offsets say";
  for (const char* ends : {"18", "16", "1", "0", "999999999999"}) {
    EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(one, ends))), damaged) << ends;
  }
  for (const char* ends : {"0 17", "17 17", "17 16", "34 34"}) {
    EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(one + " " + one, ends))), damaged) << ends;
  }
  for (const char* first : {"5 3", "1000000000 3", "4 9", "4 -3", "4 9000000000000000000"}) {
    EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(first + one.substr(3), "17"))), damaged) << first;
  }
  EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra("4.5" + one.substr(1), "17"))),
            In("a.vtu") + ": damaged: array \"faces\" holds no whole numbers");
}

TEST_F(HostileGrid, StoredPolyhedraAreLookedIntoAsWell) {
  ReadDataSet(Saved("a.vtu", Polyhedra(kTetrahedron, "17")));
  for (const int mode : {vtkXMLWriter::Binary, vtkXMLWriter::Appended}) {
    const auto data = ReadDataSet(In("a.vtu"));
    SaveMesh("b.vtu", data->FindZone(1)->Block(), mode);
    EXPECT_EQ(ReadError(In("b.vtu")), "");
  }
  // Not compressed, so that the numbers can be found.
  const auto data = ReadDataSet(In("a.vtu"));
  vtkNew<vtkXMLUnstructuredGridWriter> writer;
  writer->SetFileName(In("b.vtu").c_str());
  writer->SetInputData(data->FindZone(1)->Block());
  writer->SetCompressorType(vtkXMLWriter::NONE);
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  ASSERT_EQ(writer->Write(), 1);
  const std::string three("\3\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16);
  Replace("b.vtu", three, "\x7f" + three.substr(1));
  EXPECT_EQ(ReadError(In("b.vtu")),
            In("b.vtu") + ": damaged: array \"faces\" is not what its offsets say");
}

TEST_F(HostileGrid, ArraysThatTheReaderWouldMissAreRefused) {
  EXPECT_EQ(ReadError(Saved("a.vtu", Polyhedra(kTetrahedron, "17", Array("Int64", "faces", "9")))),
            In("a.vtu") + ": damaged: two arrays have the name \"faces\"");
}

TEST_F(HostileGrid, ComponentsStayInProportionToTheFile) {
  const std::string refused =
      In("a.vtu") +
      ": damaged: its arrays have more attributes and components than its size allows";
  const std::string many = "NumberOfComponents=\"1048576\" ";
  std::string arrays;
  for (int n = 0; n < 20; ++n) arrays += Array("Float32", "a" + std::to_string(n), "", many);
  EXPECT_EQ(ReadError(Saved("a.vtu", Node(arrays))), refused);
  EXPECT_EQ(ReadError(Saved("a.vtu", Node("", "<FieldData>" + arrays + "</FieldData>"))), refused);
  std::string names;
  for (int n = 0; n < 3000; ++n) names += "c" + std::to_string(n) + "=\"\" ";
  EXPECT_EQ(ReadError(Saved("a.vtu", Node(Array("Float32", "a", "", many + names)))), refused);
  EXPECT_EQ(ReadError(Saved("a.vtu", Node(Array("Float32", "a", "", names)))), "");
}

TEST_F(HostileGrid, ArraysStayFewEnoughToBeLookedUp) {
  std::string arrays;
  for (int n = 0; n < 20000; ++n) arrays += Array("Float32", "a" + std::to_string(n), "");
  EXPECT_EQ(ReadError(Saved("a.vtu", Node(arrays))),
            In("a.vtu") + ": damaged: it has more arrays than any mesh");
}

/// VTK makes room for the numbers of each of them.
TEST_F(HostileGrid, NumbersAreNotSharedBeyondMeasure) {
  constexpr std::int64_t kBytes = 30 << 20;
  std::string numbers(8 + kBytes, '\0');
  for (int byte = 0; byte < 8; ++byte) numbers[byte] = static_cast<char>(kBytes >> (8 * byte));
  std::string arrays;
  for (int n = 0; n < 40; ++n) arrays += Array("Float32", "a" + std::to_string(n), "");
  const std::string head = "<Piece NumberOfPoints=\"1\" NumberOfCells=\"0\"><Points>" +
                           Array("Float32", "Points", "", "NumberOfComponents=\"3\" ") +
                           "</Points><PointData>";
  EXPECT_THAT(ReadError(Saved("a.vtu", Grid(head + arrays + "</PointData></Piece>", numbers))),
              ::testing::HasSubstr("shares its numbers with too many others"));
}

// ---- legacy files ----

class HostileLegacy : public HostileFiles {
 protected:
  std::string ErrorOf(const std::string& text) { return ReadError(Saved("a.vtk", text)); }
  static std::string Head(const std::string& version = "3.0") {
    return "# vtk DataFile Version " + version + "\nhostile\nASCII\n";
  }
  static std::string Triangle(const std::string& count = "3") {
    return "DATASET POLYDATA\nPOINTS " + count +
           " float\n0 0 0 1 0 0 0 1 0\nPOLYGONS 1 4\n3 0 1 2\n";
  }

  const std::string m_damaged = ": damaged: the file is cut off, or its counts are wrong";
};

TEST_F(HostileLegacy, CountsThatCannotBeAreRefused) {
  const std::string path = In("a.vtk");
  EXPECT_EQ(ErrorOf(Head() + Triangle()), "");
  for (const char* count : {"-1", "1e3", "3x", "99999999999999999999", "2147483648",
                            "9000000000000000000", "281474976710656"}) {
    EXPECT_EQ(ErrorOf(Head() + Triangle(count)), path + m_damaged) << count;
    EXPECT_EQ(ErrorOf(Head() + Triangle() + "POINT_DATA " + count + "\nVECTORS v double\n1 2 3\n"),
              path + m_damaged)
        << count;
  }
  // Products that no number holds.
  const std::string many = "281474976710655";
  EXPECT_EQ(ErrorOf(Head() + Triangle() + "FIELD f 1\na " + many + " " + many + " int\n1\n"),
            path + m_damaged);
  EXPECT_EQ(
      ErrorOf(Head() + Triangle() + "POINT_DATA " + many + "\nCOLOR_SCALARS c " + many + "\n1\n"),
      path + m_damaged);
}

TEST_F(HostileLegacy, VersionsThatVtkTakesForItsOwnAreRefused) {
  for (const char* version : {"5.U", "x", "", "99999999999999999999999.1", "-3.0"}) {
    EXPECT_EQ(ErrorOf(Head(version) + Triangle()), In("a.vtk") + ": not a legacy VTK file")
        << version;
  }
}

TEST_F(HostileLegacy, FilesWithinAFileAreChecked) {
  const auto blocks = [](const std::string& count, const std::string& block) {
    return Head() + "DATASET MULTIBLOCK\nCHILDREN " + count + "\nCHILD 0 [one]\n" + block +
           "ENDCHILD\nCHILD -1\nENDCHILD\n";
  };
  EXPECT_EQ(ErrorOf(blocks("2", Head() + Triangle())), "");
  EXPECT_EQ(ErrorOf(blocks("2147483647", Head() + Triangle())), In("a.vtk") + m_damaged);
  EXPECT_EQ(ErrorOf(blocks("2", Head() + Triangle("9999"))), In("a.vtk") + m_damaged);
  std::string wild = Triangle();
  wild.replace(wild.find("3 0 1 2"), 7, "3 0 1 7");
  EXPECT_EQ(ErrorOf(blocks("2", Head() + wild)),
            In("a.vtk") + ": damaged: its cells refer to nodes that do not exist");
}

TEST_F(HostileLegacy, FilesDeepWithinAFileAreRefused) {
  constexpr int kDeep = 20000;
  std::string text = Head();
  for (int n = 0; n < kDeep; ++n) {
    text += "DATASET MULTIBLOCK\nCHILDREN 1\nCHILD 13 [b]\n" + Head();
  }
  text += Triangle();
  for (int n = 0; n < kDeep; ++n) text += "ENDCHILD\n";
  EXPECT_NE(ErrorOf(text), "");
}

/// VTK's reader does not survive them.
TEST_F(HostileLegacy, TypesThatNobodyKnowsAreRefused) {
  EXPECT_EQ(ErrorOf(Head() + Triangle() + "FIELD f 1\na 1 1 other\n1\n"),
            In("a.vtk") + ": damaged: it has values of an unknown type");
}

/// The reader would follow their lists of faces out of the file.
TEST_F(HostileLegacy, PolyhedraThatEndNowhereAreRefused) {
  const auto grid = [](const std::string& cell, const std::string& type = "42") {
    return Head() + "DATASET UNSTRUCTURED_GRID\nPOINTS 4 float\n0 0 0 1 0 0 0 1 0 0 0 1\n" + cell +
           "\nCELL_TYPES 1\n" + type + "\n";
  };
  const std::string one = kTetrahedron;
  EXPECT_EQ(ErrorOf(grid("CELLS 1 18\n17 " + one)), "");
  // Whether the reader ends its process or says so depends on what lies behind in memory.
  const std::string damaged = In("a.vtk") + ": damaged";
  const auto isRefused = [&](const std::string& text) {
    return ErrorOf(text).compare(0, damaged.size(), damaged) == 0;
  };
  EXPECT_TRUE(isRefused(grid("CELLS 1 18\n17 1000000000" + one.substr(1))));
  EXPECT_TRUE(isRefused(grid("CELLS 1 18\n17 4 2000000000" + one.substr(3))));
  std::string binary =
      grid("CELLS 1 5\n" + std::string("\0\0\0\4\0\0\0\1\x7f\0\0\0\0\0\0\0\0\0\0\1", 20),
           std::string("\0\0\0\x2a", 4));
  binary.replace(binary.find("ASCII"), 5, "BINARY");
  const std::string places = "0 0 0 1 0 0 0 1 0 0 0 1";
  binary.replace(binary.find(places), places.size(), std::string(48, '\0'));
  EXPECT_TRUE(isRefused(binary));
}

TEST_F(HostileLegacy, ArraysStayInProportionToTheFile) {
  const std::string refused = In("a.vtk") + ": damaged: it has more arrays than its size allows";
  const std::string points =
      Head() + "DATASET POLYDATA\nPOINTS 1 float\n0 0 0\nCELL_DATA 0\nFIELD f ";
  EXPECT_EQ(ErrorOf(points + "1\na 100000000 0 float\n"), refused);
  EXPECT_EQ(ErrorOf(points + "1\na 1000 0 float\n"), "");
  std::string arrays;
  for (int n = 0; n < 20000; ++n) arrays += "a" + std::to_string(n) + " 1 0 float\n";
  EXPECT_EQ(ErrorOf(points + "20000\n" + arrays), refused);
}

TEST_F(HostileLegacy, GridsWithoutTheirCoordinatesAreRefused) {
  const std::string grid = Head() + "DATASET RECTILINEAR_GRID\nDIMENSIONS 2 2 1\n";
  const std::string x = "X_COORDINATES 2 float\n0 1\n", y = "Y_COORDINATES 2 float\n0 1\n";
  EXPECT_EQ(ErrorOf(grid + x + y + "Z_COORDINATES 1 float\n0\n"), "");
  EXPECT_EQ(ErrorOf(grid + x + y), In("a.vtk") + m_damaged);
  EXPECT_EQ(ErrorOf(grid + x + y + "Z_COORDINATES 2 float\n0 1\n"),
            In("a.vtk") + ": damaged: its cells refer to nodes that do not exist");
}

}  // namespace
