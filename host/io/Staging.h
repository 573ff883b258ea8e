// Output that is complete or not there at all.
#pragma once

#include <string>
#include <vector>

namespace qelhost {

/// A target written in a hidden folder beside it, .NAME.PROCESS.part, and renamed into place. What
/// was not committed is removed. A process that is killed leaves its folder behind; it is locked
/// while its process lives, and the next who writes the same target removes those without a lock.
class StagedTarget {
 public:
  /// oldPieces: files that the target's present index names. Throws FileError when the folder is
  /// missing or something else than a file has the target's name.
  explicit StagedTarget(const std::string& path, std::vector<std::string> oldPieces = {});
  ~StagedTarget();
  StagedTarget(const StagedTarget&) = delete;
  StagedTarget& operator=(const StagedTarget&) = delete;

  const std::string& TemporaryPath() const { return m_temporary; }
  /// A folder for files that the target will name; it does not exist yet.
  std::string PiecesPath() const;
  const std::string& Stem() const { return m_stem; }

  /// Moves the pieces to a folder beside the target, named for it, which did not exist before;
  /// gives its name. There must be some.
  std::string PlacePieces();

  /// Renames the target into place, then removes the old pieces, when all of them lie in one folder
  /// named for the target and no index beside it names any still. Before anything is replaced, what
  /// replaces it is brought to the disk, so that a power failure leaves the old data or the new; a
  /// new target has no old data to lose.
  void Commit();

 private:
  void MakeWorkFolder(const std::string& path, const std::string& start);
  void BringPiecesToDisk() const;
  void RemoveOldPieces() const;

  std::string m_path;  ///< with links resolved, so that a link stays one
  std::string m_directory;
  std::string m_stem;
  std::string m_work;
  std::string m_temporary;
  std::string m_folder;  ///< of the pieces, once they are in place
  std::vector<std::string> m_oldPieces;
  int m_lock = -1;
  bool m_isCommitted = false;
};

/// Writes a file of these bytes. Throws FileError when any of them did not arrive.
void WriteBytes(const std::string& path, const std::string& bytes);

/// Throws FileError unless the disk takes some more bytes behind the file's end. A writer whose
/// last bytes were lost in a closing flush reports nothing, but then these are lost too.
void RequireRoomBehind(const std::string& path);

}  // namespace qelhost
