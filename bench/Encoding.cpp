#include "Encoding.h"

#include <vtkXMLWriter.h>

namespace marquell::bench {

bool SetEncoding(vtkXMLWriter* writer, const std::string& name) {
  if (name != "raw" && name != "zlib") return false;
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  // A new writer compresses by zlib at zlib's own level, as most files are; choosing zlib by name
  // would choose another level.
  if (name == "raw") writer->SetCompressorTypeToNone();
  return true;
}

}  // namespace marquell::bench
