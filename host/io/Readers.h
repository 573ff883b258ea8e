// Readers of one file, or of a case made of files that belong to its reader.
#pragma once

#include <string>

#include "FileTree.h"

namespace qelhost {

void ReadXml(const std::string& path, FileSource& source);
void ReadXmlPieces(const std::string& path, FileSource& source);
void ReadLegacy(const std::string& path, FileSource& source);
void ReadExodus(const std::string& path, FileSource& source);
void ReadCgns(const std::string& path, FileSource& source);
void ReadEnSight(const std::string& path, FileSource& source);
void ReadOpenFoam(const std::string& path, FileSource& source);
void ReadStl(const std::string& path, FileSource& source);
void ReadObj(const std::string& path, FileSource& source);

}  // namespace qelhost
