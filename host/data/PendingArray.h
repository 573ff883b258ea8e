// An array of a file that is read when its values are first needed.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <stdexcept>

namespace qelhost {

/// Values that could not be read when they were needed; the text names the file and says why.
class ValuesError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Until it is loaded, the VTK array that it stands for has its name, type and components, and no
/// values.
class PendingArray {
 public:
  virtual ~PendingArray() = default;

  /// Fills the array, once, whichever thread comes first. Throws ValuesError, and may be tried
  /// again.
  void Load();
  bool IsLoaded() const { return m_isLoaded; }
  virtual std::int64_t TupleCount() const = 0;

 private:
  virtual void Fill() = 0;

  std::mutex m_loading;
  std::atomic<bool> m_isLoaded{false};
};

}  // namespace qelhost
