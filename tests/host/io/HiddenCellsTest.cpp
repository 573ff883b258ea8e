// How cells that an array hides are written: marked as ghosts, or left out.
#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkFieldData.h>
#include <vtkGenericDataObjectReader.h>
#include <vtkGenericDataObjectWriter.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkXMLDataSetWriter.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLMultiBlockDataWriter.h>

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <set>

#include "DataSetFiles.h"
#include "FileTesting.h"

namespace {

using namespace filetesting;
using qelhost::CheckWritable;
using qelhost::DataSetPtr;
using qelhost::FileError;
using qelhost::HiddenCells;
using qelhost::ReadDataSet;
using qelhost::WriteDataSet;
using qelhost::WriteOptions;
using Treatment = HiddenCells::Treatment;

constexpr char kHiding[] = "PICK_BLANK";

WriteOptions With(Treatment treatment) { return {true, {treatment, kHiding}}; }

// ---- meshes: boxes of unequal sizes at numbers that no float holds ----

constexpr int kNodes[3] = {5, 4, 4};

double At(int axis, int n) { return (axis + 1) / 3.0 + n * (axis + 7) / 10.0; }

/// Where a float holds the positions too.
double RoundAt(int axis, int n) { return axis + n * (axis + 7) / 8.0; }

vtkSmartPointer<vtkPoints> BoxPoints(int kMax) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataTypeToDouble();
  for (int k = 0; k < kMax; ++k) {
    for (int j = 0; j < kNodes[1]; ++j) {
      for (int i = 0; i < kNodes[0]; ++i) {
        points->InsertNextPoint(At(0, i), At(1, j), At(2, k));
      }
    }
  }
  return points;
}

vtkIdType Node(int i, int j, int k) { return i + kNodes[0] * (j + kNodes[1] * k); }

using Corners = std::array<vtkIdType, 8>;

void ForEachBox(const std::function<void(const Corners&)>& use) {
  for (int k = 0; k + 1 < kNodes[2]; ++k) {
    for (int j = 0; j + 1 < kNodes[1]; ++j) {
      for (int i = 0; i + 1 < kNodes[0]; ++i) {
        use({Node(i, j, k), Node(i + 1, j, k), Node(i + 1, j + 1, k), Node(i, j + 1, k),
             Node(i, j, k + 1), Node(i + 1, j, k + 1), Node(i + 1, j + 1, k + 1),
             Node(i, j + 1, k + 1)});
      }
    }
  }
}

vtkSmartPointer<vtkDataSet> Bricks() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  ForEachBox([&](const Corners& c) { grid->InsertNextCell(VTK_HEXAHEDRON, 8, c.data()); });
  return grid;
}

vtkSmartPointer<vtkDataSet> MixedCells() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  // A node that no cell has.
  grid->GetPoints()->InsertNextPoint(100, 0, 0);
  int box = 0;
  ForEachBox([&](const Corners& c) {
    if (box++ % 2 == 0) {
      grid->InsertNextCell(VTK_HEXAHEDRON, 8, c.data());
      grid->InsertNextCell(VTK_QUAD, 4, c.data());
      return;
    }
    const vtkIdType first[6] = {c[0], c[1], c[2], c[4], c[5], c[6]};
    const vtkIdType second[6] = {c[0], c[2], c[3], c[4], c[6], c[7]};
    grid->InsertNextCell(VTK_WEDGE, 6, first);
    grid->InsertNextCell(VTK_WEDGE, 6, second);
    grid->InsertNextCell(VTK_LINE, 2, c.data());
    grid->InsertNextCell(VTK_VERTEX, 1, c.data());
  });
  return grid;
}

vtkSmartPointer<vtkDataSet> Polyhedra() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  static constexpr int kFaces[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                       {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
  ForEachBox([&](const Corners& c) {
    vtkNew<vtkIdList> stream;
    stream->InsertNextId(6);
    for (const auto& face : kFaces) {
      stream->InsertNextId(4);
      for (const int corner : face) stream->InsertNextId(c[static_cast<std::size_t>(corner)]);
    }
    grid->InsertNextCell(VTK_POLYHEDRON, stream);
  });
  return grid;
}

/// Cells in the plane of the lowest nodes: a quadrilateral, or two triangles, or a pentagon with a
/// repeatedly used row of nodes.
template <class Use>
void ForEachFlatCell(const Use& use) {
  for (int j = 0; j + 1 < kNodes[1]; ++j) {
    use({Node(0, j, 0), Node(1, j, 0), Node(1, j + 1, 0), Node(0, j + 1, 0)});
    use({Node(1, j, 0), Node(2, j, 0), Node(2, j + 1, 0)});
    use({Node(1, j, 0), Node(2, j + 1, 0), Node(1, j + 1, 0)});
    use({Node(2, j, 0), Node(3, j, 0), Node(4, j, 0), Node(4, j + 1, 0), Node(2, j + 1, 0)});
  }
}

using NodeList = std::vector<vtkIdType>;

vtkSmartPointer<vtkDataSet> Polygons() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(1));
  ForEachFlatCell([&](const NodeList& n) {
    grid->InsertNextCell(VTK_POLYGON, static_cast<vtkIdType>(n.size()), n.data());
  });
  return grid;
}

vtkSmartPointer<vtkDataSet> Surface() {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(BoxPoints(1));
  const auto cells = [](const std::vector<NodeList>& lists) {
    auto array = vtkSmartPointer<vtkCellArray>::New();
    for (const NodeList& list : lists) {
      array->InsertNextCell(static_cast<vtkIdType>(list.size()), list.data());
    }
    return array;
  };
  surface->SetVerts(cells({{0}, {19}}));
  surface->SetLines(cells({{0, 1}, {1, 2, 3}}));
  std::vector<NodeList> polygons;
  ForEachFlatCell([&](const NodeList& n) { polygons.push_back(n); });
  surface->SetPolys(cells(polygons));
  surface->SetStrips(cells({{15, 16, 10, 11}}));
  return surface;
}

vtkSmartPointer<vtkDataSet> Structured() {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  grid->SetPoints(BoxPoints(kNodes[2]));
  return grid;
}

vtkSmartPointer<vtkDataSet> Rectilinear() {
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  std::array<vtkSmartPointer<vtkDoubleArray>, 3> axes;
  for (int axis = 0; axis < 3; ++axis) {
    axes[axis] = vtkSmartPointer<vtkDoubleArray>::New();
    axes[axis]->SetName(axis == 0 ? "x" : axis == 1 ? "y" : "z");
    for (int n = 0; n < kNodes[axis]; ++n) axes[axis]->InsertNextValue(RoundAt(axis, n));
  }
  grid->SetXCoordinates(axes[0]);
  grid->SetYCoordinates(axes[1]);
  grid->SetZCoordinates(axes[2]);
  return grid;
}

vtkSmartPointer<vtkDataSet> ImageOfBoxes() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  image->SetSpacing(0.125, 0.25, 0.75);
  image->SetOrigin(1.5, 2, 3);
  return image;
}

/// 1 for some cells that are of the zone, never for the points and lines beside them.
void AddHiding(vtkDataSet* block, unsigned seed) {
  std::mt19937 random(seed);
  vtkNew<vtkUnsignedCharArray> hiding;
  hiding->SetName(kHiding);
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    const bool isPickable = block->GetCell(cell)->GetCellDimension() > 1 &&
                            block->GetCellType(cell) != VTK_TRIANGLE_STRIP;
    const bool isHidden = isPickable && random() % 3 == 0;
    hiding->InsertNextValue(isHidden ? 1 : 0);
  }
  block->GetCellData()->AddArray(hiding);
}

/// Marks that a reader or another program made: cells are another piece's, or of an unstructured
/// mesh also refined ones, and one is hidden.
void AddGhosts(vtkDataSet* block, bool isStructured) {
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    ghosts->InsertNextValue(cell % 5 == 0                    ? vtkDataSetAttributes::DUPLICATECELL
                            : !isStructured && cell % 5 == 1 ? vtkDataSetAttributes::REFINEDCELL
                            : !isStructured && cell == 2     ? vtkDataSetAttributes::HIDDENCELL
                                                             : 0);
  }
  block->GetCellData()->AddArray(ghosts);
}

bool IsHidden(vtkDataSet* block, vtkIdType cell) {
  vtkDataArray* const hiding = block->GetCellData()->GetArray(kHiding);
  return hiding != nullptr && hiding->GetComponent(cell, 0) == 1.0;
}

// ---- files, by VTK alone ----

template <class Writer>
void WriteWith(vtkDataObject* mesh, const std::string& path) {
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputDataObject(mesh);
  ASSERT_EQ(writer->Write(), 1);
}

void SaveMesh(vtkDataObject* mesh, const std::string& path) {
  if (fs::path(path).extension() == ".vtk") {
    vtkNew<vtkGenericDataObjectWriter> writer;
    writer->SetFileName(path.c_str());
    writer->SetInputData(mesh);
    writer->SetFileTypeToBinary();
    ASSERT_EQ(writer->Write(), 1);
  } else if (mesh->IsA("vtkMultiBlockDataSet") != 0) {
    WriteWith<vtkXMLMultiBlockDataWriter>(mesh, path);
  } else {
    WriteWith<vtkXMLDataSetWriter>(mesh, path);
  }
}

template <class Reader>
vtkSmartPointer<vtkDataObject> LoadWith(const std::string& path) {
  vtkNew<Reader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  return reader->GetOutput();
}

vtkSmartPointer<vtkDataSet> Load(const std::string& path) {
  if (!fs::exists(path)) throw std::runtime_error(path + " is missing");
  const vtkSmartPointer<vtkDataObject> mesh = fs::path(path).extension() == ".vtk"
                                                  ? LoadWith<vtkGenericDataObjectReader>(path)
                                                  : LoadWith<vtkXMLGenericDataObjectReader>(path);
  vtkSmartPointer<vtkDataSet> block = vtkDataSet::SafeDownCast(mesh);
  if (block == nullptr) throw std::runtime_error(path + " holds no mesh");
  return block;
}

struct HiddenKind {
  const char* name;
  const char* extension;
  vtkSmartPointer<vtkDataSet> (*make)();
  bool isStructured;
  /// VTK's surface filter leaves cells of the kind out when they are marked as hidden.
  bool hidesInSurface;
};

const HiddenKind kKinds[] = {
    {"Bricks", "vtu", Bricks, false, true},
    {"MixedCells", "vtu", MixedCells, false, true},
    {"Polyhedra", "vtu", Polyhedra, false, true},
    {"Polygons", "vtu", Polygons, false, true},
    {"Surface", "vtp", Surface, false, false},
    {"Structured", "vts", Structured, true, true},
    {"Rectilinear", "vtr", Rectilinear, true, true},
    {"Image", "vti", ImageOfBoxes, true, true},
    {"LegacyMixedCells", "vtk", MixedCells, false, true},
    {"LegacySurface", "vtk", Surface, false, false},
    {"LegacyStructured", "vtk", Structured, true, true},
    {"LegacyRectilinear", "vtk", Rectilinear, true, true},
    {"LegacyImage", "vtk", ImageOfBoxes, true, true},
};

class HiddenCellsOfKind : public FolderTest, public ::testing::WithParamInterface<HiddenKind> {
 protected:
  std::string File(const std::string& stem) const { return In(stem + '.' + GetParam().extension); }
  /// Of the format that the block has when cells have been left out.
  std::string DropTarget() const {
    const bool isXml = std::strcmp(GetParam().extension, "vtk") != 0;
    return isXml && GetParam().isStructured ? In("out.vtu") : File("out");
  }
  vtkSmartPointer<vtkDataSet> Make(unsigned seed, bool hasGhosts) const {
    vtkSmartPointer<vtkDataSet> block = GetParam().make();
    AddArrays(block);
    AddHiding(block, seed);
    if (hasGhosts) AddGhosts(block, GetParam().isStructured);
    return block;
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, HiddenCellsOfKind, ::testing::ValuesIn(kKinds),
                         [](const auto& row) { return std::string(row.param.name); });

std::string BytesOf(vtkAbstractArray* array, vtkIdType tuple) {
  if (array->GetDataType() == VTK_STRING) return array->GetVariantValue(tuple).ToString();
  const int components = array->GetNumberOfComponents();
  const auto size = static_cast<std::size_t>(components * array->GetDataTypeSize());
  std::string bytes(size, '\0');
  std::memcpy(bytes.data(), array->GetVoidPointer(tuple * components), size);
  return bytes;
}

/// Everything that a block holds, as bytes.
std::string AllOf(vtkDataSet* block) {
  std::string all = block->GetClassName();
  for (vtkFieldData* const data :
       {static_cast<vtkFieldData*>(block->GetPointData()),
        static_cast<vtkFieldData*>(block->GetCellData()), block->GetFieldData()}) {
    for (int n = 0; n < data->GetNumberOfArrays(); ++n) {
      vtkAbstractArray* const array = data->GetAbstractArray(n);
      all += std::string("\n") + array->GetName() + ' ' + array->GetDataTypeAsString() + ' ';
      for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i) all += BytesOf(array, i);
    }
  }
  all += "\npoints ";
  for (vtkIdType point = 0; point < block->GetNumberOfPoints(); ++point) {
    all.append(reinterpret_cast<const char*>(block->GetPoint(point)), 3 * sizeof(double));
  }
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    block->GetCellPoints(cell, ids);
    all += "\ncell " + std::to_string(block->GetCellType(cell));
    for (const vtkIdType point : *ids) all += ' ' + std::to_string(point);
  }
  return all;
}

// ---- marks ----

/// The block with the hidden bit set as it should be, in addition to the bits that are there.
vtkSmartPointer<vtkDataSet> Marked(vtkDataSet* block) {
  auto marked = vtkSmartPointer<vtkDataSet>::Take(block->NewInstance());
  marked->DeepCopy(block);
  vtkCellData* const data = marked->GetCellData();
  const char* const name = vtkDataSetAttributes::GhostArrayName();
  if (data->GetArray(name) == nullptr) {
    vtkNew<vtkUnsignedCharArray> none;
    none->SetName(name);
    none->SetNumberOfTuples(block->GetNumberOfCells());
    none->Fill(0);
    data->AddArray(none);
  }
  auto* const ghosts = vtkUnsignedCharArray::SafeDownCast(data->GetArray(name));
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (IsHidden(block, cell)) ghosts->SetValue(cell, ghosts->GetValue(cell) | 32);
  }
  return marked;
}

TEST_P(HiddenCellsOfKind, AreMarkedAndNothingElseInTheFileDiffers) {
  for (const bool hasGhosts : {false, true}) {
    const auto block = Make(3, hasGhosts);
    SaveMesh(block, File("in"));
    SaveMesh(Marked(block), File("expected"));
    const DataSetPtr data = ReadDataSet(File("in"));
    WriteDataSet(*data, File("out"), With(Treatment::Mark));
    EXPECT_EQ(Contents(File("out")), Contents(File("expected"))) << "ghosts " << hasGhosts;
    EXPECT_EQ(AllOf(data->FindZone(1)->Block()), AllOf(Load(File("in")))) << "changed in memory";
  }
}

TEST_P(HiddenCellsOfKind, LeaveAFileAsItIsWhereThereAreNone) {
  auto block = Make(3, false);
  block->GetCellData()->GetArray(kHiding)->Fill(0);
  SaveMesh(block, File("in"));
  WriteDataSet(*ReadDataSet(File("in")), File("out"), With(Treatment::Mark));
  EXPECT_EQ(Contents(File("out")), Contents(File("in")));
  block = Make(3, false);
  block->GetCellData()->RemoveArray(kHiding);
  SaveMesh(block, File("bare"));
  WriteDataSet(*ReadDataSet(File("bare")), File("out"), With(Treatment::Mark));
  EXPECT_EQ(Contents(File("out")), Contents(File("bare")));
}

// ---- what is left ----

using Position = std::array<double, 3>;
using Faces = std::multiset<std::vector<Position>>;

Position PositionOf(vtkDataSet* mesh, vtkIdType point) {
  Position position;
  mesh->GetPoint(point, position.data());
  return position;
}

/// A polygon whatever its first corner and its sense are and whether that corner closes it; the
/// filter rounds positions.
std::vector<Position> Face(vtkDataSet* mesh, vtkIdList* points) {
  std::vector<Position> face;
  for (vtkIdType n = 0; n < points->GetNumberOfIds(); ++n) {
    Position position = PositionOf(mesh, points->GetId(n));
    for (double& x : position) x = std::round(x * 1e4) / 1e4;
    face.push_back(position);
  }
  std::sort(face.begin(), face.end());
  face.erase(std::unique(face.begin(), face.end()), face.end());
  return face;
}

/// The faces that VTK's surface filter shows of a mesh; not the points and lines.
Faces SurfaceOf(vtkDataSet* mesh) {
  vtkNew<vtkDataSetSurfaceFilter> filter;
  filter->SetInputData(mesh);
  filter->Update();
  vtkPolyData* const surface = filter->GetOutput();
  Faces faces;
  for (vtkIdType cell = 0; cell < surface->GetNumberOfCells(); ++cell) {
    vtkCell* const face = surface->GetCell(cell);
    if (face->GetCellDimension() == 2) faces.insert(Face(surface, face->GetPointIds()));
  }
  return faces;
}

/// An unstructured grid of the cells that are not hidden, on all points, without arrays.
vtkSmartPointer<vtkDataSet> ShownCells(vtkDataSet* block) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (vtkIdType point = 0; point < block->GetNumberOfPoints(); ++point) {
    points->InsertNextPoint(block->GetPoint(point));
  }
  grid->SetPoints(points);
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    if (IsHidden(block, cell)) continue;
    auto* const unstructured = vtkUnstructuredGrid::SafeDownCast(block);
    if (unstructured != nullptr && block->GetCellType(cell) == VTK_POLYHEDRON) {
      unstructured->GetFaceStream(cell, ids);
    } else {
      block->GetCellPoints(cell, ids);
    }
    grid->InsertNextCell(block->GetCellType(cell), ids);
  }
  return grid;
}

TEST_P(HiddenCellsOfKind, MarkedAreLeftOutOfSurfaces) {
  for (const unsigned seed : {3u, 4u, 5u}) {
    const auto block = Make(seed, false);
    SaveMesh(block, File("in"));
    WriteDataSet(*ReadDataSet(File("in")), File("out"), With(Treatment::Mark));
    const Faces all = SurfaceOf(Load(File("in")));
    const Faces shown = SurfaceOf(Load(File("out")));
    EXPECT_NE(SurfaceOf(ShownCells(block)), all);
    EXPECT_TRUE(shown == (GetParam().hidesInSurface ? SurfaceOf(ShownCells(block)) : all))
        << shown.size() << " faces of " << all.size() << ", should be "
        << SurfaceOf(ShownCells(block)).size();
  }
}

/// How two sets of arrays differ at one tuple each.
std::string TupleDifference(vtkFieldData* before, vtkIdType from, vtkFieldData* after,
                            vtkIdType to) {
  for (int n = 0; n < before->GetNumberOfArrays(); ++n) {
    if (BytesOf(before->GetAbstractArray(n), from) != BytesOf(after->GetAbstractArray(n), to)) {
      return std::string(before->GetArrayName(n)) + " differs; ";
    }
  }
  return {};
}

/// How the arrays as such differ.
std::string ArraysDifference(vtkFieldData* before, vtkFieldData* after) {
  if (before->GetNumberOfArrays() != after->GetNumberOfArrays()) return "other arrays; ";
  for (int n = 0; n < before->GetNumberOfArrays(); ++n) {
    vtkAbstractArray* const a = before->GetAbstractArray(n);
    vtkAbstractArray* const b = after->GetAbstractArray(n);
    if (std::strcmp(a->GetName(), b->GetName()) != 0 || a->GetDataType() != b->GetDataType() ||
        a->GetNumberOfComponents() != b->GetNumberOfComponents()) {
      return std::string(a->GetName()) + " is another array; ";
    }
  }
  return {};
}

/// The faces of a polyhedron, whose corners have no order of their own; the corners of any other
/// cell.
std::vector<NodeList> FacesOf(vtkDataSet* mesh, vtkIdType cell) {
  vtkNew<vtkIdList> ids;
  std::vector<NodeList> faces;
  if (mesh->GetCellType(cell) != VTK_POLYHEDRON) {
    mesh->GetCellPoints(cell, ids);
    return {NodeList(ids->begin(), ids->end())};
  }
  vtkUnstructuredGrid::SafeDownCast(mesh)->GetFaceStream(cell, ids);
  vtkIdType at = 1;
  for (vtkIdType n = 0; n < ids->GetId(0); ++n) {
    faces.emplace_back();
    for (vtkIdType left = ids->GetId(at++); left > 0; --left)
      faces.back().push_back(ids->GetId(at++));
  }
  return faces;
}

/// How the cells and what belongs to them differ from the cells of a block that are not hidden.
class DropComparison {
 public:
  DropComparison(vtkDataSet* before, vtkDataSet* after) : m_before(before), m_after(after) {}

  std::string Difference() {
    std::string difference = ArraysDifference(m_before->GetPointData(), m_after->GetPointData()) +
                             ArraysDifference(m_before->GetCellData(), m_after->GetCellData()) +
                             ArraysDifference(m_before->GetFieldData(), m_after->GetFieldData());
    if (!difference.empty()) return difference;
    for (vtkIdType cell = 0; cell < m_before->GetNumberOfCells(); ++cell) {
      if (!IsHidden(m_before, cell)) difference += CellDifference(cell);
    }
    if (m_cell != m_after->GetNumberOfCells()) difference += "other number of cells; ";
    const auto used = static_cast<vtkIdType>(m_pointOf.size());
    if (m_after->GetNumberOfPoints() != used) {
      difference += std::to_string(m_after->GetNumberOfPoints()) + " points instead of " +
                    std::to_string(used) + "; ";
    }
    return difference.substr(0, 300);
  }

 private:
  std::string CellDifference(vtkIdType cell) {
    const vtkIdType other = m_cell++;
    if (other >= m_after->GetNumberOfCells()) return "a cell is missing; ";
    const std::string name = "cell " + std::to_string(cell) + ": ";
    if (m_before->GetCellType(cell) != m_after->GetCellType(other)) return name + "other type; ";
    std::string difference =
        TupleDifference(m_before->GetCellData(), cell, m_after->GetCellData(), other);
    const std::vector<NodeList> from = FacesOf(m_before, cell);
    const std::vector<NodeList> to = FacesOf(m_after, other);
    if (from.size() != to.size()) return name + "other faces; ";
    for (std::size_t face = 0; face < from.size(); ++face) {
      if (from[face].size() != to[face].size()) return name + "other corners; ";
      for (std::size_t n = 0; n < from[face].size(); ++n) {
        difference += PointDifference(from[face][n], to[face][n]);
      }
    }
    return difference.empty() ? difference : name + difference;
  }

  std::string PointDifference(vtkIdType from, vtkIdType to) {
    if (!m_pointOf.emplace(from, to).second) {
      return m_pointOf.at(from) == to ? "" : "a point is there twice; ";
    }
    std::string difference;
    if (PositionOf(m_before, from) != PositionOf(m_after, to)) {
      difference = "point " + std::to_string(from) + " moved; ";
    }
    return difference +
           TupleDifference(m_before->GetPointData(), from, m_after->GetPointData(), to);
  }

  vtkDataSet* m_before;
  vtkDataSet* m_after;
  vtkIdType m_cell = 0;
  std::map<vtkIdType, vtkIdType> m_pointOf;
};

std::string DropDifference(vtkDataSet* before, vtkDataSet* after) {
  return DropComparison(before, after).Difference();
}

TEST_P(HiddenCellsOfKind, AreLeftOutWithThePointsThatOnlyTheyHad) {
  const std::string out = DropTarget();
  for (const bool hasGhosts : {false, true}) {
    const auto block = Make(6, hasGhosts);
    SaveMesh(block, File("in"));
    const DataSetPtr data = ReadDataSet(File("in"));
    WriteDataSet(*data, out, With(Treatment::Drop));
    const auto before = Load(File("in"));
    const auto after = Load(out);
    EXPECT_EQ(DropDifference(before, after), "") << "ghosts " << hasGhosts;
    EXPECT_LT(after->GetNumberOfCells(), before->GetNumberOfCells());
    EXPECT_EQ(after->IsA("vtkPolyData"), before->IsA("vtkPolyData"));
    ASSERT_EQ(after->GetFieldData()->GetNumberOfArrays(), 1);
    EXPECT_EQ(after->GetFieldData()->GetAbstractArray("note")->GetVariantValue(0).ToString(),
              "kept as it is");
    ASSERT_NE(after->GetPointData()->GetScalars(), nullptr);
    EXPECT_STREQ(after->GetPointData()->GetScalars()->GetName(), "p");
    EXPECT_EQ(AllOf(data->FindZone(1)->Block()), AllOf(Load(File("in")))) << "changed in memory";
  }
}

TEST_P(HiddenCellsOfKind, AreLeftOutDownToTheLastOne) {
  const auto block = Make(6, false);
  block->GetCellData()->GetArray(kHiding)->Fill(1);
  SaveMesh(block, File("in"));
  const std::string out = DropTarget();
  WriteDataSet(*ReadDataSet(File("in")), out, With(Treatment::Drop));
  const auto after = Load(out);
  EXPECT_EQ(after->GetNumberOfCells(), 0);
  EXPECT_EQ(after->GetNumberOfPoints(), 0);
}

TEST_P(HiddenCellsOfKind, GoByOneAlone) {
  auto block = Make(6, false);
  vtkNew<vtkDoubleArray> hiding;
  hiding->SetName(kHiding);
  const double kinds[] = {0, 1, 2, -1, 0.999, std::numeric_limits<double>::quiet_NaN()};
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    hiding->InsertNextValue(kinds[cell % 6]);
  }
  block->GetCellData()->AddArray(hiding);
  SaveMesh(block, File("in"));
  const std::string out = DropTarget();
  WriteDataSet(*ReadDataSet(File("in")), out, With(Treatment::Drop));
  EXPECT_EQ(Load(out)->GetNumberOfCells(),
            block->GetNumberOfCells() - (block->GetNumberOfCells() + 4) / 6);
}

// ---- files of several blocks ----

class HiddenCellsInFile : public FolderTest {
 protected:
  static vtkSmartPointer<vtkDataSet> Block(vtkSmartPointer<vtkDataSet> (*make)(), bool hides) {
    vtkSmartPointer<vtkDataSet> block = make();
    AddArrays(block);
    if (hides) AddHiding(block, 8);
    return block;
  }
  static std::vector<vtkSmartPointer<vtkDataSet>> Blocks() {
    return {Block(Structured, true), Block(MixedCells, true), Block(Rectilinear, false),
            Block(Surface, true), Block(ImageOfBoxes, true)};
  }
  static vtkSmartPointer<vtkMultiBlockDataSet> Together(
      const std::vector<vtkSmartPointer<vtkDataSet>>& blocks) {
    auto together = vtkSmartPointer<vtkMultiBlockDataSet>::New();
    for (unsigned n = 0; n < blocks.size(); ++n) {
      together->SetBlock(n, blocks[n]);
      together->GetMetaData(n)->Set(vtkCompositeDataSet::NAME(),
                                    ("block " + std::to_string(n)).c_str());
    }
    return together;
  }
  std::vector<std::string> Pieces(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(In(folder))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(HiddenCellsInFile, AreMarkedInEachBlock) {
  std::vector<vtkSmartPointer<vtkDataSet>> blocks = Blocks();
  SaveMesh(Together(blocks), In("in.vtm"));
  // Made anew: what was written once carries the ranges that were found then.
  blocks = Blocks();
  for (auto& block : blocks) {
    if (block->GetCellData()->HasArray(kHiding) != 0) block = Marked(block);
  }
  SaveMesh(Together(blocks), In("expected.vtm"));
  WriteDataSet(*ReadDataSet(In("in.vtm")), In("out.vtm"), With(Treatment::Mark));
  const std::vector<std::string> extensions = {"vts", "vtu", "vtr", "vtp", "vti"};
  for (std::size_t n = 0; n < extensions.size(); ++n) {
    const std::string piece = '_' + std::to_string(n) + '.' + extensions[n];
    ASSERT_TRUE(fs::exists(In("out/out" + piece))) << piece;
    EXPECT_EQ(Contents(In("out/out" + piece)), Contents(In("expected/expected" + piece))) << piece;
  }
}

TEST_F(HiddenCellsInFile, MakeUnstructuredPiecesWhenTheyAreLeftOut) {
  const std::vector<vtkSmartPointer<vtkDataSet>> blocks = Blocks();
  SaveMesh(Together(blocks), In("in.vtm"));
  WriteDataSet(*ReadDataSet(In("in.vtm")), In("out.vtm"), With(Treatment::Drop));
  EXPECT_THAT(Pieces("out"), ::testing::ElementsAre("out_0.vtu", "out_1.vtu", "out_2.vtr",
                                                    "out_3.vtp", "out_4.vtu"));
  const std::vector<std::string> extensions = {"vtu", "vtu", "vtr", "vtp", "vtu"};
  for (std::size_t n = 0; n < blocks.size(); ++n) {
    const auto after = Load(In("out/out_" + std::to_string(n) + '.' + extensions[n]));
    EXPECT_EQ(DropDifference(blocks[n], after), "") << n;
  }
  EXPECT_EQ(Contents(In("out/out_2.vtr")), Contents(In("in/in_2.vtr"))) << "it hides nothing";
  const DataSetPtr again = ReadDataSet(In("out.vtm"));
  ASSERT_EQ(again->ZoneCount(), 5);
  EXPECT_EQ(again->FindZone(1)->name, "block 0");
  EXPECT_EQ(again->FindZone(5)->name, "block 4");
}

TEST_F(HiddenCellsInFile, AreLeftOutOfEachTimeStep) {
  const auto first = Block(ImageOfBoxes, false);
  const auto second = Block(ImageOfBoxes, true);
  SaveMesh(first, In("a.vti"));
  SaveMesh(second, In("b.vti"));
  Save(In("in.pvd"),
       "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n"
       "<DataSet timestep=\"0.1\" group=\"\" part=\"0\" file=\"a.vti\"/>\n"
       "<DataSet timestep=\"0.2\" group=\"\" part=\"0\" file=\"b.vti\"/>\n"
       "</Collection>\n</VTKFile>\n");
  WriteDataSet(*ReadDataSet(In("in.pvd")), In("marked.pvd"), With(Treatment::Mark));
  SaveMesh(Marked(second), In("expected.vti"));
  EXPECT_EQ(Contents(In("marked/marked_0.vti")), Contents(In("a.vti")));
  EXPECT_EQ(Contents(In("marked/marked_1.vti")), Contents(In("expected.vti")));
  WriteDataSet(*ReadDataSet(In("in.pvd")), In("out.pvd"), With(Treatment::Drop));
  EXPECT_THAT(Pieces("out"), ::testing::ElementsAre("out_0.vti", "out_1.vtu"));
  EXPECT_EQ(Contents(In("out/out_0.vti")), Contents(In("a.vti")));
  EXPECT_EQ(DropDifference(second, Load(In("out/out_1.vtu"))), "");
  const DataSetPtr again = ReadDataSet(In("out.pvd"));
  EXPECT_THAT(again->SolutionTimes(), ::testing::ElementsAre(0.1, 0.2));
}

TEST_F(HiddenCellsInFile, AreNotLeftOutOfFilesForStructuredMeshes) {
  const std::pair<const char*, vtkSmartPointer<vtkDataSet> (*)()> kinds[] = {
      {"vti", ImageOfBoxes}, {"vtr", Rectilinear}, {"vts", Structured}};
  for (const auto& [extension, make] : kinds) {
    // Also where none is hidden yet: that is not known before the journal is played.
    SaveMesh(Block(make, false), In(std::string("in.") + extension));
    const DataSetPtr data = ReadDataSet(In(std::string("in.") + extension));
    const std::string out = In(std::string("out.") + extension);
    for (const auto& attempt : {CheckWritable, WriteDataSet}) {
      try {
        attempt(*data, out, With(Treatment::Drop));
        ADD_FAILURE() << extension;
      } catch (const FileError& error) {
        EXPECT_EQ(error.Reason(), "cannot hold a mesh with cells left out; write a .vtu file");
      }
    }
    EXPECT_FALSE(fs::exists(out));
    EXPECT_NO_THROW(CheckWritable(*data, In("out.vtu"), With(Treatment::Drop)));
    EXPECT_NO_THROW(CheckWritable(*data, In("out.vtk"), With(Treatment::Drop)));
    EXPECT_NO_THROW(CheckWritable(*data, out, With(Treatment::Mark)));
  }
}

}  // namespace
