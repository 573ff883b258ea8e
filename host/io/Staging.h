// Output that is complete or not there at all.
#pragma once

#include <string>
#include <vector>

namespace qelhost {

/// A target written beside itself and renamed into place. What was not committed is removed, its
/// piece folder with it.
class StagedTarget {
 public:
  /// oldPieces: files that the target's present index names. Throws FileError when the folder is
  /// missing.
  explicit StagedTarget(const std::string& path, std::vector<std::string> oldPieces = {});
  ~StagedTarget();
  StagedTarget(const StagedTarget&) = delete;
  StagedTarget& operator=(const StagedTarget&) = delete;

  const std::string& TemporaryPath() const { return m_temporary; }
  /// A folder beside the target that does not exist yet, named for it.
  std::string FolderPath() const;
  const std::string& FolderName() const { return m_folder; }
  const std::string& Stem() const { return m_stem; }

  /// Renames the target into place, then removes the old pieces, when all of them lie in one folder
  /// named for the target. Before anything is replaced, what replaces it is brought to the disk, so
  /// that a power failure leaves the old data or the new; a new target has no old data to lose.
  void Commit();

 private:
  void BringToDisk() const;
  void RemoveOldPieces() const;

  std::string m_path;  ///< with links resolved, so that a link stays one
  std::string m_directory;
  std::string m_stem;
  std::string m_temporary;
  std::string m_folder;
  std::vector<std::string> m_oldPieces;
  bool m_committed = false;
};

/// Throws FileError unless the disk takes some more bytes behind the file's end. A writer whose
/// last bytes were lost in a closing flush reports nothing, but then these are lost too.
void RequireRoomBehind(const std::string& path);

}  // namespace qelhost
