// Where everything stands in a VTK XML file of one mesh.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "PieceCounts.h"
#include "XmlTags.h"

namespace qelhost {

enum class XmlSection { FieldData, PointData, CellData, Mesh };

/// One array of the file. Places are bytes of the file.
struct XmlArray {
  XmlSection section = XmlSection::Mesh;
  std::string part;  ///< of the mesh: "Points", "Cells", "Polys", ...
  int piece = 0;     ///< from 1; 0: before all pieces
  std::string name;
  int vtkType = 0;           ///< as VTK's reader makes it; 0: no number, or unknown
  bool isTypeKnown = false;  ///< of numbers, and of strings
  int components = 1;
  std::int64_t tuples = -1;  ///< that its mesh has for it; -1: they cannot be told from outside
  bool isInline = false;
  bool isText = false;  ///< inline, as decimal numbers
  XmlTag tag;
  std::int64_t keysBegin = 0;     ///< of elements inside; 0: there are none
  std::int64_t closing = 0;       ///< of its end tag; the tag's end where it has none
  std::int64_t payloadBegin = 0;  ///< blanks first where it is inline, then its header
  std::int64_t payloadLimit = 0;  ///< no byte of it stands there or further
  bool hasOtherKeys = false;      ///< elements inside say more than what its range is
};

struct XmlLayout {
  bool isPlain = true;     ///< one piece, and nothing that only VTK's reader need understand
  std::string type;        ///< UnstructuredGrid, PolyData, ...
  std::string compressor;  ///< VTK's class name; "" for none
  bool wideHeader = false;
  bool bigEndian = false;
  PieceCounts whole;                      ///< of all pieces: its extent, where the type has one
  bool isAppendedText = false;            ///< the appended data are base64
  std::vector<XmlTag> attributeSections;  ///< PointData and CellData, as opened
  std::vector<std::int64_t> sectionEnds;  ///< their end tags, in the same order
  std::int64_t points = 0;
  std::int64_t cells = 0;  ///< both as the piece says; 0 for kinds that have an extent instead
  std::vector<XmlArray> arrays;
  std::int64_t appendedBegin = 0;  ///< behind the underscore; 0: there are no appended data
  std::int64_t appendedEnd = 0;    ///< where its end tag stands, blanks before it left out
};

/// Nothing for what is not the markup of a VTK XML file as VTK writes it, down to the last tag:
/// whether it is any is for VTK's reader to say. Throws FileError when the file cannot be opened,
/// or says what can be of no mesh.
std::optional<XmlLayout> ReadXmlLayout(const std::string& path);

}  // namespace qelhost
