// Output that is complete or not there at all.
#ifndef QELHOST_IO_STAGING_H
#define QELHOST_IO_STAGING_H

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
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
  /// named for the target.
  void Commit();

 private:
  void RemoveOldPieces() const;

  std::string m_path;  ///< with links resolved, so that a link stays one
  std::string m_directory;
  std::string m_stem;
  std::string m_temporary;
  std::string m_folder;
  std::vector<std::string> m_oldPieces;
  bool m_committed = false;
};

/// Has the system bring a growing file's bytes to the disk while its writer computes the next ones,
/// so that the final sync, which must wait for them, finds little left to do.
class EarlyWriteback {
 public:
  explicit EarlyWriteback(const std::string& path);
  ~EarlyWriteback();
  EarlyWriteback(const EarlyWriteback&) = delete;
  EarlyWriteback& operator=(const EarlyWriteback&) = delete;

 private:
  void Run();

  std::string m_path;
  bool m_stop = false;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::thread m_thread;
};

/// Brings a file's bytes to the disk; throws FileError when they do not arrive.
void SyncFile(const std::string& path);

/// Throws FileError unless the disk takes some more bytes behind the file's end. A writer whose
/// last bytes were lost in a closing flush reports nothing, but then these are lost too.
void RequireRoomBehind(const std::string& path);

}  // namespace qelhost

#endif  // QELHOST_IO_STAGING_H
