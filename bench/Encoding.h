#pragma once

#include <string>

class vtkXMLWriter;

namespace marquell::bench {

/// Makes the writer append its arrays behind the XML, as bytes ("raw") or compressed ("zlib").
/// False when the name is neither.
bool SetEncoding(vtkXMLWriter* writer, const std::string& name);

}  // namespace marquell::bench
