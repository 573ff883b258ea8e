// Where every deed of the user passes through.
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <string>

#include "Host.h"

namespace marquell::workbench {

/// Between the windows and the host. A window never changes the host itself: it hands what the user
/// does to Do or Act. Afterwards Changed is sent once, and everything that shows the host looks at
/// it again; there is no finer notice, because an add-on may change anything in answer to a click.
class Workspace : public QObject {
  Q_OBJECT

 public:
  explicit Workspace(qelhost::Host& host, QObject* parent = nullptr)
      : QObject(parent), m_host(host) {}

  qelhost::Host& TheHost() const { return m_host; }

  /// Runs a deed; what it throws is shown to the user by Failed. A deed within a deed belongs to
  /// it. Answers whether it ended without an error.
  bool Do(const std::function<void(qelhost::Host&)>& deed);
  /// Carries out one of the host's own commands and records it.
  bool Act(const std::string& command);
  /// A deed is under way, or somebody holds the workspace: what begins deeds of its own accord
  /// waits.
  bool IsBusy() const { return m_depth > 0 || m_holds > 0; }

  /// Keeps others from beginning deeds while it lives; who holds the workspace may.
  class Hold {
   public:
    explicit Hold(Workspace& workspace) : m_workspace(workspace) { ++m_workspace.m_holds; }
    ~Hold() { --m_workspace.m_holds; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    Workspace& m_workspace;
  };

 signals:
  void Changed();
  /// A deed did not work; why in a sentence.
  void Failed(const QString& reason);

 private:
  qelhost::Host& m_host;
  int m_depth = 0;
  int m_holds = 0;
};

}  // namespace marquell::workbench
