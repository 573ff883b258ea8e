#include "Controls.h"

namespace qelvane::qelutiltools {

ControlIds Controls;

}  // namespace qelvane::qelutiltools
