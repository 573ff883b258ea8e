// What a file held, in the shape in which it is written back.
#pragma once

#include <vtkDataSet.h>
#include <vtkSmartPointer.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "DataSet.h"
#include "SourceEncoding.h"
#include "xml/XmlSource.h"

namespace qelhost {

/// Arrays of a data set whose values may be others than those of its file.
using TouchedArrays = std::set<vtkDataArray*>;

using XmlAttributes = std::vector<std::pair<std::string, std::string>>;

/// A block, or a group of them. The root of a file with one mesh is that block.
struct FileNode {
  bool isGroup = false;
  std::string name;
  std::vector<FileNode> children;     ///< of a group
  vtkSmartPointer<vtkDataSet> block;  ///< null: an empty block
  FileEncoding encoding;              ///< of the file that held the block
  std::shared_ptr<XmlSource> xml;     ///< that file, when it is read as needed; null: it is read
  std::string carriedFile;            ///< no mesh: a file to copy as it is
  std::string tag;                    ///< of the index: Block, Piece or DataSet; "": choose
  XmlAttributes attributes;           ///< of the index entry, but for its file
};

struct FileStep {
  double time = 0;
  FileNode root;
  XmlAttributes attributes;       ///< of the collection's entry, but for its file
  XmlAttributes indexAttributes;  ///< of the multi-block index' root: how its field data is stored
  std::string indexFieldData;     ///< the index' own field data, as XML text
};

/// What DataSet keeps for its file. `hasTimes`: the steps carry solution times.
struct FileSource : Source {
  std::string path;
  std::string extension;
  bool hasTimes = false;
  std::vector<FileStep> steps;
};

}  // namespace qelhost
