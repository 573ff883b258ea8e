#pragma once

#include "FaultSession.h"

#include <vector>

namespace fault {

/// What journals say: every command, in zones of the type.
std::vector<Session> PlayedSessions(QelZoneType_e type);
/// What a user does with the dialog, the mouse and the view.
std::vector<Session> DialogSessions(QelPlotType_e plotType);
/// What the host tells, with the dialog open and closed.
std::vector<Session> NoticeSessions();
/// What the host asks and tells through its services: previews, drags, restored values.
std::vector<Session> ServiceSessions();
/// The add-on is loaded and used once.
Session LoadingSession();

}  // namespace fault
