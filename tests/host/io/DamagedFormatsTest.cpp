// Damaged files of every format are refused in one line or read: those that name other files, those
// that have a folder of files, and those that libraries under VTK read.
#include <vtkExodusIIWriter.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkMultiBlockDataSet.h>
#include <vtk_cgns.h>
// clang-format off
#include VTK_CGNS(cgnslib.h)
// clang-format on

#include <array>
#include <cstdint>
#include <cstdio>
#include <map>

#include "Damage.h"
#include "FileTree.h"
#include "HostileFiles.h"
#include "SmallCases.h"
#include "Trials.h"

namespace {

using namespace filetesting;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::ReadDataSet;
using qelhost::ValuesError;

/// A file with all that belongs to it, by name in their folder.
struct Original {
  std::string format;
  std::string main;
  std::map<std::string, std::string> files;
};

class DamagedFormats : public HostileFiles {
 protected:
  void MakeOriginals() {
    MakeLegacy();
    MakeIndexes();
    MakePieces();
    MakeSurfaces();
    MakeExodus();
    MakeCgns();
    SaveEnSightCase(Fresh());
    Take("case", "bar.case");
    SaveBinaryEnSightCase(Fresh());
    Take("case", "bar.case");
    SaveFoamCase(Fresh());
    Take("foam", "box.foam");
  }

  std::vector<Original> m_originals;

 private:
  std::string Fresh() {
    fs::remove_all(In("original"));
    fs::create_directory(In("original"));
    return In("original");
  }
  /// What lies in the folder now.
  void Take(const std::string& format, const std::string& main) {
    Original original{format, main, {}};
    for (const auto& entry : fs::recursive_directory_iterator(In("original"))) {
      if (!entry.is_regular_file()) continue;
      const std::string name = entry.path().lexically_relative(In("original"));
      original.files[name] = Contents(entry.path());
    }
    ASSERT_EQ(original.files.count(main), 1U) << main;
    EXPECT_EQ(ReadError(In("original/" + main)), "") << main;
    m_originals.push_back(std::move(original));
  }

  void MakeLegacy() {
    const auto blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
    blocks->SetBlock(0, TwoBricks());
    blocks->SetBlock(1, TwoTriangles());
    const vtkSmartPointer<vtkDataObject> meshes[] = {TwoBricks(),  TwoTriangles(), CurvedGrid(),
                                                     UnevenGrid(), Image(),        blocks};
    for (const auto& mesh : meshes) {
      for (const int type : {VTK_ASCII, VTK_BINARY}) {
        for (const int version : {vtkDataWriter::VTK_LEGACY_READER_VERSION_4_2,
                                  vtkDataWriter::VTK_LEGACY_READER_VERSION_5_1}) {
          vtkNew<vtkGenericDataObjectWriter> writer;
          writer->SetFileName((Fresh() + "/a.vtk").c_str());
          writer->SetInputData(mesh);
          writer->SetFileType(type);
          writer->SetFileVersion(version);
          ASSERT_EQ(writer->Write(), 1);
          Take(mesh == blocks ? "vtk (blocks)" : "vtk", "a.vtk");
        }
      }
    }
  }

  void MakeIndexes() {
    Fresh();
    SaveBricks("original/b.vtu", vtkXMLWriter::Appended);
    SaveMesh("original/c.vtp", TwoTriangles());
    Saved("original/a.vtm", Blocks("<Block index=\"0\" name=\"both\">" + Entry("b.vtu") +
                                   Entry("c.vtp") + "</Block>"));
    Take("vtm", "a.vtm");
    Saved("original/s.pvd", Series(Entry("a.vtm") + "<DataSet timestep=\"2\" file=\"b.vtu\"/>"));
    Take("pvd", "s.pvd");
  }

  void MakePieces() {
    Fresh();
    SaveBricks("original/b.vtu");
    SaveBricks("original/c.vtu", vtkXMLWriter::Appended);
    Saved("original/a.pvtu",
          Pieces("PUnstructuredGrid", " GhostLevel=\"0\"", Piece("b.vtu") + Piece("c.vtu")));
    Take("pvtu", "a.pvtu");
    Fresh();
    SaveMesh("original/b.vtp", TwoTriangles());
    SaveMesh("original/c.vtp", TwoTriangles(), vtkXMLWriter::Appended);
    Saved("original/a.pvtp", Pieces("PPolyData", "", Piece("b.vtp") + Piece("c.vtp")));
    Take("pvtp", "a.pvtp");
    Fresh();
    SaveMesh("original/b.vts", CurvedGrid());
    Saved("original/a.pvts", Pieces("PStructuredGrid", " WholeExtent=\"0 2 0 1 0 1\"",
                                    "<Piece Extent=\"0 2 0 1 0 1\" Source=\"b.vts\"/>"));
    Take("pvts", "a.pvts");
  }

  void MakeSurfaces() {
    Fresh();
    Saved("original/a.obj",
          "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
          "vn 0 0 1\nvn 0 0 2\nf 1/1/1 2/2/1 3/3/1\nf 1/1/2 3/3/2 4/4/2\nl 1 2\np 3\n");
    Take("obj", "a.obj");
    Fresh();
    const std::string facet =
        "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nendloop\n"
        "endfacet\n";
    Saved("original/a.stl", "solid plate\n" + facet + facet + "endsolid plate\n");
    Take("stl", "a.stl");
    Fresh();
    std::string bytes(80, ' ');
    const auto add = [&bytes](auto value) {
      bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
    };
    add(std::uint32_t{20});
    for (int n = 0; n < 20; ++n) {
      for (int i = 0; i < 12; ++i) add(static_cast<float>(n * 12 + i) / 3);
      add(std::uint16_t{0});
    }
    Saved("original/b.stl", bytes);
    Take("stl", "b.stl");
  }

  void MakeExodus() {
    for (const char* name : {"a.exo", "a.e"}) {
      vtkNew<vtkExodusIIWriter> writer;
      writer->SetFileName((Fresh() + "/" + name).c_str());
      writer->SetInputData(TwoBricks());
      ASSERT_EQ(writer->Write(), 1);
      Take(fs::path(name).extension().string().substr(1), name);
    }
  }

  /// One brick with a pressure at its nodes.
  void MakeCgns() {
    const std::string path = Fresh() + "/a.cgns";
    int file = 0, base = 0, zone = 0, at = 0, solution = 0;
    ASSERT_EQ(cg_open(path.c_str(), CG_MODE_WRITE, &file), CG_OK);
    cgsize_t sizes[3] = {8, 1, 0};
    const double x[] = {0, 1, 1, 0, 0, 1, 1, 0};
    const double y[] = {0, 0, 1, 1, 0, 0, 1, 1};
    const double z[] = {0, 0, 0, 0, 1, 1, 1, 1};
    const cgsize_t corners[] = {1, 2, 3, 4, 5, 6, 7, 8};
    cg_base_write(file, "base", 3, 3, &base);
    cg_zone_write(file, base, "zone", sizes, CGNS_ENUMV(Unstructured), &zone);
    cg_coord_write(file, base, zone, CGNS_ENUMV(RealDouble), "CoordinateX", x, &at);
    cg_coord_write(file, base, zone, CGNS_ENUMV(RealDouble), "CoordinateY", y, &at);
    cg_coord_write(file, base, zone, CGNS_ENUMV(RealDouble), "CoordinateZ", z, &at);
    cg_section_write(file, base, zone, "bricks", CGNS_ENUMV(HEXA_8), 1, 1, 0, corners, &at);
    cg_sol_write(file, base, zone, "solution", CGNS_ENUMV(Vertex), &solution);
    cg_field_write(file, base, zone, solution, CGNS_ENUMV(RealDouble), "Pressure", x, &at);
    ASSERT_EQ(cg_close(file), CG_OK);
    Take("cgns", "a.cgns");
  }
};

/// The original that is damaged, which of its files, and how it is then.
struct DamagedFile {
  DamagedFile(unsigned number, const std::vector<Original>& originals) {
    Random random(number);
    original = static_cast<unsigned>(Below(random, originals.size()));
    const auto& files = originals[original].files;
    auto file = files.begin();
    std::advance(file, Below(random, files.size()));
    name = file->first;
    bytes = Damaged(random, file->second);
  }

  unsigned original;
  std::string name;
  std::string bytes;
};

void SaveDamaged(const std::string& folder, const Original& original, const DamagedFile& damaged) {
  for (const auto& [name, bytes] : original.files) {
    const fs::path path = fs::path(folder) / name;
    fs::create_directories(path.parent_path());
    Save(path, name == damaged.name ? damaged.bytes : bytes);
  }
}

void LookAtEverything(qelhost::DataSet& data) {
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    for (LgIndex_t var = 1; var <= data.VariableCount(); ++var) data.ZoneRange(zone, var);
  }
}

Outcome TryToRead(const std::string& path) {
  try {
    const DataSetPtr data = ReadDataSet(path);
    LookAtEverything(*data);
    return kRead;
  } catch (const FileError& error) {
    EXPECT_TRUE(IsOneLine(error.what())) << error.what();
    return kRefused;
  } catch (const ValuesError& error) {
    EXPECT_TRUE(IsOneLine(error.what())) << error.what();
    return kRefused;
  }
}

TEST_F(DamagedFormats, AreRefusedOrRead) {
  MakeOriginals();
  TrialPlan plan(600);
  plan.said = In("said");
  plan.trial = [&](unsigned number, TrialState& state) {
    const DamagedFile damaged(number, m_originals);
    const Original& original = m_originals[damaged.original];
    state.kind = damaged.original;
    fs::remove_all(In("trial"));
    SaveDamaged(In("trial"), original, damaged);
    const Outcome outcome = TryToRead(In("trial/" + original.main));
    EXPECT_EQ(Contents(In("said")), "") << "something was said on the error stream";
    return outcome;
  };
  plan.name = [&](unsigned number, const std::string& folder) {
    const DamagedFile damaged(number, m_originals);
    const Original& original = m_originals[damaged.original];
    if (!folder.empty()) SaveDamaged(folder, original, damaged);
    return original.main + " (" + original.format + "), damaged in " + damaged.name;
  };
  const TrialResult result = RunTrials(plan);
  std::map<std::string, std::array<unsigned, kOutcomes>> byFormat;
  for (std::size_t n = 0; n < m_originals.size(); ++n) {
    auto& sums = byFormat[m_originals[n].format];
    for (int outcome = 0; outcome < kOutcomes; ++outcome) {
      sums[outcome] += result.state.outcomes[n][outcome];
    }
  }
  for (const auto& [format, sums] : byFormat) {
    std::printf("  %s: %u mutated inputs, %u survived: %u read, %u refused\n", format.c_str(),
                sums[kRead] + sums[kRefused] + sums[kFailed], sums[kRead] + sums[kRefused],
                sums[kRead], sums[kRefused]);
  }
  std::printf("%u mutated inputs, %u survived\n", plan.count, plan.count - result.Failed());
  EXPECT_EQ(result.failures, "");
}

}  // namespace
