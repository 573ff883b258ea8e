// Draws the six tool pictures of the dialog, enlarged, into a folder.
#include "ToolPictures.h"
#include "Picture.h"
#include "Staging.h"

#include <cstdio>
#include <exception>
#include <string>

namespace {

using namespace qelvane::qelutiltools;

constexpr int kScale = 3;

struct Named {
  const char* name;
  const ToolPicture& picture;
};
constexpr Named kPictures[] = {{"element", kElementPicture}, {"rectangle", kRectanglePicture},
                               {"circle", kCirclePicture},   {"polygon", kPolygonPicture},
                               {"cube", kCubePicture},       {"sphere", kSpherePicture}};

qelhost::Picture Enlarged(const ToolPicture& small) {
  constexpr int kEdge = kToolPictureEdge * kScale;
  qelhost::Picture picture{kEdge, kEdge, {}};
  for (int y = 0; y < kEdge; ++y) {
    for (int x = 0; x < kEdge; ++x) {
      const int from = 3 * (y / kScale * kToolPictureEdge + x / kScale);
      for (int part = 0; part < 3; ++part) {
        picture.rgb.push_back(
            static_cast<unsigned char>(small[static_cast<std::size_t>(from + part)]));
      }
    }
  }
  return picture;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tool_pictures FOLDER\n");
    return 2;
  }
  try {
    const auto painter = qelhost::LoadPainter();
    for (const Named& named : kPictures) {
      qelhost::WriteBytes(std::string(argv[1]) + "/" + named.name + ".png",
                          painter->Png({Enlarged(named.picture)}));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tool_pictures: %s\n", error.what());
    return 3;
  }
  return 0;
}
