// Meshes with arrays of every type, written by VTK in every encoding, and how they are compared.
#pragma once

#include "FileTesting.h"

#include <vtkXMLWriter.h>

#include <string>
#include <vector>

namespace filetesting {

/// A kind of file: its mesh has every numeric type that VTK's files know, at nodes and at cells.
struct Kind {
  const char* extension;
  vtkSmartPointer<vtkDataSet> (*mesh)();
  vtkSmartPointer<vtkXMLWriter> (*writer)();
};

/// .vtu, .vtp, .vts, .vtr and .vti.
const std::vector<Kind>& Kinds();

/// 12 x 12 x 12 bricks, the mesh of the first kind.
vtkSmartPointer<vtkDataSet> Bricks();

struct Encoding {
  int mode;
  int isText;  ///< of the appended data
  int compressor;
  int header;
  int byteOrder;
};

/// Where a file has its numbers, and how.
struct Form {
  const char* name;
  int mode;
  int isText;
};

const std::vector<Form>& Forms();

/// Every compressor, header width and byte order.
std::vector<Encoding> EncodingsOf(const Form& form);
std::string NameOf(const Encoding& encoding);

/// In blocks small enough that an array has several.
void SaveEncoded(const Kind& kind, const Encoding& encoding, vtkDataSet* mesh,
                 const std::string& path);

vtkSmartPointer<vtkDataSet> ReadByVtk(const std::string& path);

/// Mesh, arrays, their names, types and parts as active attributes; values bit for bit.
void ExpectSame(vtkDataSet* a, vtkDataSet* b);

}  // namespace filetesting
