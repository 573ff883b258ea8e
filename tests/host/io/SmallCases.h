// Small files of the formats that have a folder of files, or a library of their own.
#pragma once

#include <string>

namespace filetesting {

/// bar.case with what belongs to it: two bricks with p at their nodes and q at their cells.
void SaveEnSightCase(const std::string& folder);
/// The same with binary files.
void SaveBinaryEnSightCase(const std::string& folder);

/// box.foam with what belongs to it: a cube with p at its cell, and its walls.
void SaveFoamCase(const std::string& folder);

}  // namespace filetesting
