#include "SessionRegistry.h"

#include "HostLock.h"

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

/// The data set that the active frame shows in a plot that can be picked in; 0 when there is none.
QelUniqueID_t PickableDataSet() {
  const HostLock lock;
  const QelPlotType_e plotType = QelUtilFrameGetPlotType();
  if (plotType != PlotType_Cartesian3D && plotType != PlotType_Cartesian2D) return 0;
  return QelUtilDataSetGetUniqueID();
}

}  // namespace

SessionRegistry& SessionRegistry::Instance() {
  static SessionRegistry registry;
  return registry;
}

Selvane* SessionRegistry::GetOrCreate() {
  const QelUniqueID_t dataSetId = PickableDataSet();
  if (dataSetId == 0) return SwitchTo(nullptr);
  Selvane* session = SessionOf(dataSetId);
  if (session == nullptr) {
    m_sessions.push_back(std::make_unique<Selvane>(dataSetId));
    session = m_sessions.back().get();
  }
  return SwitchTo(session);
}

Selvane* SessionRegistry::Find() {
  const QelUniqueID_t dataSetId = PickableDataSet();
  return SwitchTo(dataSetId == 0 ? nullptr : SessionOf(dataSetId));
}

bool SessionRegistry::IsCurrent(const Selvane& session) const {
  return m_current == &session && PickableDataSet() == session.DataSetId();
}

void SessionRegistry::DropUndo() {
  for (const std::unique_ptr<Selvane>& session : m_sessions) session->DropUndo();
}

void SessionRegistry::DeleteAll() {
  const HostLock lock;
  m_current = nullptr;
  m_sessions.clear();
}

Selvane* SessionRegistry::SessionOf(QelUniqueID_t dataSetId) const {
  for (const std::unique_ptr<Selvane>& session : m_sessions) {
    if (session->DataSetId() == dataSetId) return session.get();
  }
  return nullptr;
}

Selvane* SessionRegistry::SwitchTo(Selvane* session) {
  if (m_current != nullptr && session != nullptr && session != m_current) {
    m_current->LeaveAsCurrent();
  }
  m_current = session;
  return session;
}

}  // namespace qelvane::qelutiltools
