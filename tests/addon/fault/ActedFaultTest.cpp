// Every call is refused once that is made while the user works with dialog, mouse and view, while
// the host tells of changes and asks through its services, and while the add-on is loaded.
#include "FaultTest.h"

#include <iterator>

namespace {

using fault::ExpectAllSurvived;
using fault::Session;

TEST(LoadingFaults, AreSurvived) { ExpectAllSurvived("loading", {fault::LoadingSession()}); }

TEST(NoticeFaults, AreSurvived) { ExpectAllSurvived("notices", fault::NoticeSessions()); }

/// One test for each session, so that they can run side by side.
class SessionFaults : public ::testing::TestWithParam<Session> {};

TEST_P(SessionFaults, AreSurvived) { ExpectAllSurvived(GetParam().name, {GetParam()}); }

const auto kNameOf = [](const auto& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(DialogIn3D, SessionFaults,
                         ::testing::ValuesIn(fault::DialogSessions(PlotType_Cartesian3D)), kNameOf);
INSTANTIATE_TEST_SUITE_P(DialogIn2D, SessionFaults,
                         ::testing::ValuesIn(fault::DialogSessions(PlotType_Cartesian2D)), kNameOf);
INSTANTIATE_TEST_SUITE_P(Services, SessionFaults, ::testing::ValuesIn(fault::ServiceSessions()),
                         kNameOf);

}  // namespace
