#include "Picture.h"

#include <dlfcn.h>

#include <filesystem>

namespace qelhost {
namespace {

namespace fs = std::filesystem;

constexpr char kLibrary[] = "libqelrender.so";

/// The folder of the library that this code lies in.
fs::path OwnFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&LoadPainter), &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  return fs::path(info.dli_fname).parent_path();
}

}  // namespace

std::unique_ptr<Painter> LoadPainter() {
  std::error_code error;
  const fs::path beside = OwnFolder() / kLibrary;
  const std::string file = fs::exists(beside, error) ? beside.string() : kLibrary;
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* const reason = dlerror();
    throw PictureError(std::string("pictures cannot be drawn: ") +
                       (reason == nullptr ? kLibrary : reason));
  }
  const auto make = reinterpret_cast<MakePainter>(dlsym(library, kPainterEntry));
  if (make == nullptr) throw PictureError(file + ": holds no painter");
  return std::unique_ptr<Painter>(make());
}

}  // namespace qelhost
