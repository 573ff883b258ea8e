// Data sets whose every byte can be compared, and operations on them.
#pragma once

#include "History.h"

#include <vtkDataArray.h>
#include <vtkSmartPointer.h>

#include <functional>
#include <string>
#include <vector>

namespace historytest {

using namespace qelhost;

/// Zones of nodes in a line, `count` each; the arrays are at the nodes of the zone of their place.
DataSetPtr MakeLines(const std::vector<std::vector<vtkSmartPointer<vtkDataArray>>>& arraysOfZones,
                     int count);

/// An array of that VTK type with values that no two neighbours share.
vtkSmartPointer<vtkDataArray> MakeArray(int vtkType, const char* name, int count,
                                        int components = 1);

/// Every byte of every array that a zone from a file shows, once for each zone.
std::vector<std::string> BytesOf(DataSet& data);

/// What an add-on does between asking for a reference and leaving it.
using Write = std::function<void(QelFieldData& field)>;

/// Asks for the reference as an add-on does, and writes.
void Alter(History& history, const DataSetPtr& data, LgIndex_t zone, const std::string& variable,
           const Write& write);
/// Puts a value in at an offset from 0.
Write Put(LgIndex_t offset, double value);
/// The same in all.
Write PutAll(double value);

}  // namespace historytest
