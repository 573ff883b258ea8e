#include "Zone.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataSetAttributes.h>
#include <vtkImageData.h>
#include <vtkMatrix4x4.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

#include "DataSet.h"

namespace qelhost {
namespace {

/// What a block's cells of the highest dimension are.
struct CellFamily {
  int dimension = 0;
  std::array<std::int64_t, 14> cellsOfShape{};
  std::int64_t Count(Shape shape) const { return cellsOfShape[static_cast<std::size_t>(shape)]; }
  void Add(Shape shape) {
    ++cellsOfShape[static_cast<std::size_t>(shape)];
    dimension = std::max(dimension, DimensionOf(shape));
  }
};

QelZoneType_e TypeOf(const CellFamily& family) {
  if (family.dimension <= 1) return ZoneType_FELineSeg;
  if (family.dimension == 2) {
    if (family.Count(Shape::Polygon) > 0) return ZoneType_FEPolygon;
    const bool quads = family.Count(Shape::Quad) > 0 || family.Count(Shape::Pixel) > 0;
    return quads ? ZoneType_FEQuad : ZoneType_FETriangle;
  }
  // Prisms with more than four sides have no place among a brick's eight corners.
  if (family.Count(Shape::Polyhedron) > 0 || family.Count(Shape::PentaPrism) > 0 ||
      family.Count(Shape::HexaPrism) > 0) {
    return ZoneType_FEPolyhedron;
  }
  for (const Shape shape : {Shape::Pyramid, Shape::Wedge, Shape::Brick, Shape::Voxel}) {
    if (family.Count(shape) > 0) return ZoneType_FEBrick;
  }
  return ZoneType_FETetra;
}

void CountCarried(CarriedCounts& counts, int vtkCellType) {
  switch (vtkCellType) {
    case VTK_VERTEX:
    case VTK_POLY_VERTEX:
      ++counts.vertices;
      break;
    case VTK_POLY_LINE:
      ++counts.polylines;
      break;
    case VTK_TRIANGLE_STRIP:
      ++counts.strips;
      break;
    default:
      ++(ShapeOfVtkCell(vtkCellType) == Shape::Carried ? counts.otherCells
                                                       : counts.lowerDimensionCells);
  }
}

}  // namespace

vtkDataSetAttributes* AttributesAt(vtkDataSet* block, QelValueLocation_e location) {
  if (location == ValueLocation_Nodal) return block->GetPointData();
  return block->GetCellData();
}

std::int64_t NextZoneVersion() {
  static std::atomic<std::int64_t> last{0};
  return ++last;
}

Zone::Zone(std::string zoneName, vtkDataSet* block, bool fromFile)
    : name(std::move(zoneName)),
      m_block(block),
      m_version(NextZoneVersion()),
      m_fromFile(fromFile) {
  CheckSizes();
  m_nodeCount = static_cast<LgIndex_t>(block->GetNumberOfPoints());
  if (!ViewStructured() && !ViewPolyData() && !ViewUnstructured()) {
    throw DataError("block \"" + name + "\" is a " + block->GetClassName() +
                    ", which is no mesh of a known kind");
  }
  CountMarkedCells();
}

Zone::~Zone() = default;

void Zone::CheckSizes() const {
  constexpr vtkIdType kMost = std::numeric_limits<LgIndex_t>::max();
  if (m_block->GetNumberOfPoints() > kMost || m_block->GetNumberOfCells() > kMost) {
    throw DataError("zone \"" + name + "\" has more than 2147483647 nodes or cells");
  }
}

void Zone::CheckDimensions(const int (&dimensions)[3]) const {
  // Not by the block's own counts: those are products that may have wrapped around.
  std::int64_t nodes = 1;
  for (const int count : dimensions) {
    if (count < 1) throw DataError("zone \"" + name + "\" has a direction without nodes");
    if (nodes > std::numeric_limits<LgIndex_t>::max() / count) {
      throw DataError("zone \"" + name + "\" has more than 2147483647 nodes or cells");
    }
    nodes *= count;
  }
  if (nodes != m_nodeCount) {
    throw DataError("zone \"" + name + "\" has " + std::to_string(m_nodeCount) + " nodes where " +
                    std::to_string(nodes) + " belong");
  }
}

bool Zone::ViewStructured() {
  int dimensions[3] = {1, 1, 1};
  if (auto* image = vtkImageData::SafeDownCast(m_block)) {
    image->GetDimensions(dimensions);
    m_computedKind = "image";
  } else if (auto* rectilinear = vtkRectilinearGrid::SafeDownCast(m_block)) {
    rectilinear->GetDimensions(dimensions);
    m_computedKind = "rectilinear grid";
  } else if (auto* structured = vtkStructuredGrid::SafeDownCast(m_block)) {
    structured->GetDimensions(dimensions);
  } else {
    return false;
  }
  CheckDimensions(dimensions);
  m_type = ZoneType_Ordered;
  std::copy(std::begin(dimensions), std::end(dimensions), m_dimensions.begin());
  m_cellCount = 1;
  for (const std::int64_t nodes : m_dimensions) {
    m_cellCount *= static_cast<LgIndex_t>(std::max<std::int64_t>(nodes - 1, 1));
  }
  return true;
}

void Zone::ViewLines(vtkCellArray* lines, std::int64_t vertexCount) {
  m_type = ZoneType_FELineSeg;
  const vtkIdType lineCount = lines->GetNumberOfCells();
  for (vtkIdType i = 0; i < lineCount; ++i) {
    if (lines->GetCellSize(i) == 2) m_cellMap.push_back(vertexCount + i);
  }
  m_carried.polylines = lineCount - static_cast<std::int64_t>(m_cellMap.size());
  m_cellCount = static_cast<LgIndex_t>(m_cellMap.size());
  m_firstCell = vertexCount;
  if (m_carried.polylines == 0) m_cellMap.clear();
  SetNodeMap(lines, vertexCount);
}

bool Zone::ViewPolyData() {
  auto* surface = vtkPolyData::SafeDownCast(m_block);
  if (surface == nullptr) return false;
  m_carried.vertices = surface->GetNumberOfVerts();
  m_carried.strips = surface->GetNumberOfStrips();
  vtkCellArray* polygons = surface->GetPolys();
  if (polygons->GetNumberOfCells() == 0) {
    ViewLines(surface->GetLines(), m_carried.vertices);
    return true;
  }
  CellFamily family;
  for (vtkIdType i = 0; i < polygons->GetNumberOfCells(); ++i) {
    const vtkIdType size = polygons->GetCellSize(i);
    family.Add(size == 3 ? Shape::Triangle : size == 4 ? Shape::Quad : Shape::Polygon);
  }
  vtkCellArray* lines = surface->GetLines();
  for (vtkIdType i = 0; i < lines->GetNumberOfCells(); ++i) {
    ++(lines->GetCellSize(i) == 2 ? m_carried.lowerDimensionCells : m_carried.polylines);
  }
  m_type = TypeOf(family);
  m_cellCount = static_cast<LgIndex_t>(polygons->GetNumberOfCells());
  m_firstCell = m_carried.vertices + lines->GetNumberOfCells();
  SetNodeMap(polygons, m_firstCell);
  return true;
}

bool Zone::ViewUnstructured() {
  auto* grid = vtkUnstructuredGrid::SafeDownCast(m_block);
  if (grid == nullptr) return false;
  if (grid->GetNumberOfCells() == 0) {
    // Nodes alone still have values.
    m_type = ZoneType_FELineSeg;
    SetNodeMap(vtkSmartPointer<vtkCellArray>::New(), 0);
    return true;
  }
  ChooseCells(grid->GetCellTypesArray()->GetPointer(0), grid->GetNumberOfCells());
  SetNodeMap(grid->GetCells(), 0);
  return true;
}

void Zone::ChooseCells(const unsigned char* types, std::int64_t blockCells) {
  std::array<bool, 256> present{};
  for (std::int64_t i = 0; i < blockCells; ++i) present[types[i]] = true;
  CellFamily family;
  for (int type = 0; type < 256; ++type) {
    if (present[type]) family.Add(ShapeOfVtkCell(type));
  }
  m_type = TypeOf(family);
  std::array<bool, 256> inZone{};
  bool carriesNone = true;
  for (int type = 0; type < 256; ++type) {
    const int dimension = DimensionOf(ShapeOfVtkCell(type));
    inZone[type] = dimension > 0 && dimension == family.dimension;
    if (present[type] && !inZone[type]) carriesNone = false;
  }
  if (carriesNone) {
    m_cellCount = static_cast<LgIndex_t>(blockCells);
    return;
  }
  const auto isZoneCell = [&inZone, types](std::int64_t cell) { return inZone[types[cell]]; };
  std::int64_t count = 0, first = -1, last = -1;
  for (std::int64_t i = 0; i < blockCells; ++i) {
    if (!isZoneCell(i)) {
      CountCarried(m_carried, types[i]);
      continue;
    }
    if (first < 0) first = i;
    last = i;
    ++count;
  }
  m_cellCount = static_cast<LgIndex_t>(count);
  m_firstCell = std::max<std::int64_t>(first, 0);
  if (count == 0 || last - first + 1 == count) return;
  m_cellMap.reserve(static_cast<std::size_t>(count));
  for (std::int64_t i = first; i <= last; ++i) {
    if (isZoneCell(i)) m_cellMap.push_back(i);
  }
}

void Zone::CountMarkedCells() {
  vtkUnsignedCharArray* marks = m_block->GetCellGhostArray();
  if (marks == nullptr) return;
  for (LgIndex_t cell = 0; cell < m_cellCount; ++cell) {
    const std::int64_t blockCell = BlockCell(cell);
    if (blockCell >= marks->GetNumberOfTuples()) return;
    const unsigned char mark = marks->GetValue(blockCell);
    if ((mark & vtkDataSetAttributes::DUPLICATECELL) != 0) ++m_carried.ghostCells;
    if ((mark & vtkDataSetAttributes::HIDDENCELL) != 0) ++m_carried.hiddenCells;
  }
}

std::array<LgIndex_t, 3> Zone::IJK() {
  if (IsOrdered()) {
    return {static_cast<LgIndex_t>(m_dimensions[0]), static_cast<LgIndex_t>(m_dimensions[1]),
            static_cast<LgIndex_t>(m_dimensions[2])};
  }
  if (IsFaceBased()) return {m_nodeCount, m_cellCount, FaceMap()->FaceCount()};
  return {m_nodeCount, m_cellCount, NodesPerElement(m_type)};
}

std::int64_t Zone::BlockCell(std::int64_t cell) const {
  return m_cellMap.empty() ? m_firstCell + cell : m_cellMap[static_cast<std::size_t>(cell)];
}

std::int64_t Zone::CellOfBlockCell(std::int64_t blockCell) const {
  if (m_cellMap.empty()) {
    const std::int64_t cell = blockCell - m_firstCell;
    return cell >= 0 && cell < m_cellCount ? cell : -1;
  }
  const auto found = std::lower_bound(m_cellMap.begin(), m_cellMap.end(), blockCell);
  return found != m_cellMap.end() && *found == blockCell ? found - m_cellMap.begin() : -1;
}

std::array<double, 3> Zone::Position(std::int64_t node) const {
  std::array<double, 3> position{};
  m_block->GetPoint(node, position.data());
  return position;
}

void Zone::Bind(Field& field, std::shared_ptr<Storage> storage) {
  // Kept until the new views are made, so that none of them gets an address that somebody still
  // takes for an old one's.
  const FieldView oldView = std::move(field.view);
  const FieldView oldAtNodes = std::move(field.atNodes);
  field.storage = std::move(storage);
  field.rangeStamp = -1;
  if (field.storage == nullptr) return;
  if (field.location == ValueLocation_Nodal) {
    field.view = MakeDirectView(field.storage, 0, m_nodeCount);
  } else if (m_cellMap.empty()) {
    field.view = MakeDirectView(field.storage, m_firstCell, m_cellCount);
  } else {
    field.view = MakeMappedView(field.storage, m_cellMap);
  }
}

void Zone::BindComputedCoordinate(Field& field, int axis) {
  auto coordinates = std::make_shared<ComputedCoordinates>();
  coordinates->dimensions = m_dimensions;
  coordinates->axis = axis;
  if (auto* image = vtkImageData::SafeDownCast(m_block)) {
    vtkMatrix4x4* toPhysical = image->GetIndexToPhysicalMatrix();
    for (int n = 0; n < 4; ++n) coordinates->row[n] = toPhysical->GetElement(axis, n);
    for (std::size_t n = 0; n < 3; ++n) coordinates->start[n] = image->GetExtent()[2 * n];
  } else {
    auto* grid = vtkRectilinearGrid::SafeDownCast(m_block);
    coordinates->ticks = axis == 0   ? grid->GetXCoordinates()
                         : axis == 1 ? grid->GetYCoordinates()
                                     : grid->GetZCoordinates();
  }
  field.location = ValueLocation_Nodal;
  field.view = MakeComputedView(std::move(coordinates), m_nodeCount);
}

}  // namespace qelhost
