// An add-on whose one command cuts a file in half, as a disturbed copy to the same place would.
#include "qelvane/QelUtil.h"

#include <filesystem>
#include <system_error>

extern "C" QEL_API void InitQelAddOn113();

namespace {

bool CutInHalf(const char* path, char**) {
  std::error_code error;
  std::filesystem::resize_file(path, std::filesystem::file_size(path, error) / 2, error);
  return !error;
}

}  // namespace

void InitQelAddOn113() {
  QelUtilLockOn();
  QelUtilAddOnRegister(110, "Shrink", "V1", "Test");
  QelUtilMacroAddCommandCallback("Shrink", CutInHalf);
  QelUtilLockOff();
}
