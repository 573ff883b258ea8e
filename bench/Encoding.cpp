#include "Encoding.h"

#include <vtkXMLWriter.h>

namespace marquell::bench {

bool SetEncoding(vtkXMLWriter* writer, const std::string& name) {
  if (name != "raw" && name != "zlib") return false;
  writer->SetDataModeToAppended();
  writer->EncodeAppendedDataOff();
  if (name == "raw") {
    writer->SetCompressorTypeToNone();
  } else {
    writer->SetCompressorTypeToZLib();
  }
  return true;
}

}  // namespace marquell::bench
