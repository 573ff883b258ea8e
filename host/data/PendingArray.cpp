#include "PendingArray.h"

#include <new>

namespace qelhost {

void PendingArray::Load() {
  if (m_isLoaded) return;
  const std::lock_guard<std::mutex> lock(m_loading);
  if (m_isLoaded) return;
  try {
    Fill();
  } catch (const std::bad_alloc&) {
    throw ValuesError("there is not enough memory for the values of this data set");
  } catch (const std::exception& reason) {
    throw ValuesError(reason.what());
  }
  m_isLoaded = true;
}

}  // namespace qelhost
