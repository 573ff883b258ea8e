#pragma once

#include "Selvane.h"

#include "qelvane/Types.h"

#include <memory>
#include <vector>

namespace qelvane::qelutiltools {

/// The pick sessions of the process, one a data set, in the order in which they were made, and the
/// current one. Both lookups make their result the current session, also when it is none; a session
/// that another one follows can undo nothing afterwards.
class SessionRegistry {
 public:
  /// The one registry; made at first use, its sessions live until the process exits.
  static SessionRegistry& Instance();

  SessionRegistry(const SessionRegistry&) = delete;
  SessionRegistry& operator=(const SessionRegistry&) = delete;

  /// The session of the active frame's data set, made when missing. Null unless the frame shows
  /// data in a 2D or 3D Cartesian plot.
  Selvane* GetOrCreate();

  /// The same without making one: null also when the data set has no session yet.
  Selvane* Find();

  /// Whether the session is the current one and the active frame shows its data set. Unlike the
  /// lookups it switches nothing.
  bool IsCurrent(const Selvane& session) const;

  /// Nothing can be undone any more, in whatever data set.
  void DropUndo();

  /// Every data set is gone.
  void DeleteAll();

 private:
  SessionRegistry() = default;
  Selvane* SessionOf(QelUniqueID_t dataSetId) const;
  Selvane* SwitchTo(Selvane* session);

  std::vector<std::unique_ptr<Selvane>> m_sessions;
  Selvane* m_current = nullptr;
};

}  // namespace qelvane::qelutiltools
