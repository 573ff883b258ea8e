// Meshes whose pieces are files of their own (.pvtu, .pvtp, .pvts).
#include <vtkNew.h>
#include <vtkXMLDataElement.h>
#include <vtkXMLUtilities.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>
#include <vector>

#include "FileError.h"
#include "IndexWalk.h"
#include "InputFile.h"
#include "MeshCheck.h"
#include "ReadWatch.h"
#include "ReaderParts.h"
#include "Readers.h"
#include "XmlReaders.h"
#include "xml/PieceCounts.h"

namespace qelhost {
namespace {

/// Type and components of an array.
using Shape = std::pair<std::string, std::int64_t>;

/// What the index says of the arrays that all pieces have, by part of the mesh and name; those of
/// the nodes' places have no name here.
using Announced = std::map<std::pair<std::string, std::string>, Shape>;

constexpr struct {
  const char* ofIndex;
  const char* ofPiece;
} kParts[] = {{"PPointData", "PointData"}, {"PCellData", "CellData"}, {"PPoints", "Points"}};

const char* PartOfPiece(const std::string& part) {
  for (const auto& known : kParts) {
    if (part == known.ofIndex) return known.ofPiece;
  }
  return nullptr;
}

std::string KeyOf(const std::string& part, const std::string& name) {
  return part == "Points" ? std::string() : name;
}

std::int64_t ComponentsOf(const std::string& path, vtkXMLDataElement* array) {
  const std::string text = AttributeOf(array, "NumberOfComponents");
  const std::int64_t count = text.empty() ? 1 : NumberIn(text).value_or(-1);
  if (count < 0 || count > 1 << 20) {
    throw FileError(path, "damaged: an array counts what cannot be counted");
  }
  return std::max<std::int64_t>(count, 1);
}

Announced ReadAnnounced(const std::string& path, vtkXMLDataElement* grid) {
  Announced announced;
  for (int i = 0; i < grid->GetNumberOfNestedElements(); ++i) {
    vtkXMLDataElement* const part = grid->GetNestedElement(i);
    const char* const name = PartOfPiece(part->GetName());
    if (name == nullptr) continue;
    for (int n = 0; n < part->GetNumberOfNestedElements(); ++n) {
      vtkXMLDataElement* const array = part->GetNestedElement(n);
      announced[{name, KeyOf(name, AttributeOf(array, "Name"))}] = {AttributeOf(array, "type"),
                                                                    ComponentsOf(path, array)};
    }
  }
  return announced;
}

/// VTK makes room for what the index announces and copies what the pieces have.
void RequireAnnounced(const std::string& path, const XmlLayout& layout, Announced announced) {
  for (const XmlArray& array : layout.arrays) {
    const auto found = announced.find({array.part, KeyOf(array.part, array.name)});
    if (found == announced.end()) continue;
    if (found->second != Shape{array.tag.Value("type"), array.components}) {
      throw FileError(path, "array \"" + array.name + "\" is another than its index says");
    }
    announced.erase(found);
  }
  if (!announced.empty()) {
    const std::string& name = announced.begin()->first.second;
    throw FileError(path, name.empty() ? "lacks the places of its nodes that its index names"
                                       : "lacks array \"" + name + "\" that its index names");
  }
}

PieceCounts ExtentOf(const std::string& path, const std::string& text) {
  XmlTag tag;
  tag.attributes.push_back({"Extent", text});
  PieceCounts counts = PieceCounts::Of(tag);
  if (!counts.areSound) throw FileError(path, "damaged: it has an extent that cannot be");
  return counts;
}

/// The pieces of one index, each checked as if it had been opened by itself.
class PieceChecker {
 public:
  PieceChecker(const std::string& path, const std::string& type, vtkXMLDataElement* grid)
      : m_path(path), m_type(type), m_announced(ReadAnnounced(path, grid)) {
    m_hasExtent = grid->GetAttribute("WholeExtent") != nullptr;
    if (m_hasExtent) m_whole = ExtentOf(path, AttributeOf(grid, "WholeExtent"));
    const std::vector<std::pair<std::string, std::string>> pieces = PiecesOf(grid);
    // All before any is read, which takes time.
    for (const auto& [file, extent] : pieces) OpenIndex::CountFile(file);
    // Only the mesh of one piece needs memory at a time.
    for (const auto& [file, extent] : pieces) Check(file, extent);
    if (m_hasExtent && m_cells < m_whole.cells) Damaged("its pieces do not fill its extent");
  }

  /// Of the last piece.
  const FileEncoding& Encoding() const { return m_encoding; }

 private:
  [[noreturn]] void Damaged(const std::string& what) const {
    throw FileError(m_path, "damaged: " + what);
  }

  /// Their files, and the extents that the index gives them.
  std::vector<std::pair<std::string, std::string>> PiecesOf(vtkXMLDataElement* grid) const {
    const auto folder = std::filesystem::path(m_path).parent_path();
    std::vector<std::pair<std::string, std::string>> pieces;
    for (int i = 0; i < grid->GetNumberOfNestedElements(); ++i) {
      vtkXMLDataElement* const piece = grid->GetNestedElement(i);
      if (std::string(piece->GetName()) != "Piece") continue;
      const std::string file = AttributeOf(piece, "Source");
      if (file.empty()) Damaged("a piece has no file");
      pieces.emplace_back((folder / file).string(), AttributeOf(piece, "Extent"));
    }
    return pieces;
  }

  void Check(const std::string& file, const std::string& extent) {
    RequireFile(file);
    TellRead(0.0);
    FileSource piece;
    piece.path = file;
    ReadXmlOf(file, m_type, piece);
    const XmlOverview overview = ScanXmlFile(file);
    m_encoding = overview.encoding;
    const XmlLayout layout = ReadXmlLayout(file).value_or(XmlLayout());
    const bool isEmpty = overview.countsKnown && overview.points == 0;
    if (!isEmpty) RequireAnnounced(file, layout, m_announced);
    if (m_hasExtent) {
      const PieceCounts counts = ExtentOf(m_path, extent);
      if (!m_whole.Contains(counts)) Damaged("a piece lies outside its extent");
      if (!layout.whole.Contains(counts)) throw FileError(file, "does not fill its piece's extent");
      m_cells += counts.cells;
    }
  }

  const std::string& m_path;
  const std::string m_type;
  const Announced m_announced;
  bool m_hasExtent = false;
  PieceCounts m_whole;
  std::int64_t m_cells = 0;
  FileEncoding m_encoding;
};

}  // namespace

void ReadXmlPieces(const std::string& path, FileSource& source) {
  RequireFile(path);
  const OpenIndex open(path);
  CheckIndexMarkup(path);
  XmlOverview overview = ScanXmlFile(path);
  const std::string type = XmlTypeFor(path);
  RequireType(path, overview, type);
  VtkErrorCapture errors;
  const auto root =
      vtkSmartPointer<vtkXMLDataElement>::Take(vtkXMLUtilities::ReadElementFromFile(path.c_str()));
  vtkXMLDataElement* const grid =
      root == nullptr ? nullptr : root->FindNestedElementWithName(type.c_str());
  if (grid == nullptr) throw FileError(path, "damaged or unreadable");
  const std::string typeOfPieces = type.substr(1);
  overview.encoding = PieceChecker(path, typeOfPieces, grid).Encoding();
  overview.countsKnown = false;
  TakeBlock(source, RunXmlReader(path, overview, nullptr), overview.encoding);
  CheckMesh(path, source.steps[0].root.block);
}

}  // namespace qelhost
