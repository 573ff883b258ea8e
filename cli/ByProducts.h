// What a run writes beside its result, so that all appear at its end or none does.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace qelhost {
class StagedTarget;
}

namespace marquell::cli {

class ByProducts {
 public:
  ByProducts();
  ~ByProducts();
  ByProducts(const ByProducts&) = delete;
  ByProducts& operator=(const ByProducts&) = delete;

  /// Where the file is to be written for now. What nobody commits is removed.
  ///
  /// throws  TargetError; WriteCancelled when the run is to end
  std::string Stage(const std::string& path);

  /// Stages a file of this text.
  void Add(const std::string& path, const std::string& text);

  /// Gives all files their names.
  ///
  /// throws  TargetError
  void Commit();

 private:
  struct Staged {
    std::string path;
    std::unique_ptr<qelhost::StagedTarget> target;
  };
  std::vector<Staged> m_staged;
};

}  // namespace marquell::cli
