// More than one refused call: a second one while the add-on cleans up after the first, and calls
// that are answered, but wrongly. Nothing crashes or leaks, values change as the deeds change them,
// and the next step works.
#include "FaultTest.h"

namespace {

using fault::FaultRunner;
using fault::Session;

void Add(std::vector<Session>& all, const std::string& prefix, std::vector<Session> sessions) {
  for (Session& session : sessions) {
    session.name = prefix + session.name;
    all.push_back(session);
  }
}

std::vector<Session> AllSessions() {
  std::vector<Session> all;
  Add(all, "Grid", fault::PlayedSessions(ZoneType_Ordered));
  Add(all, "Quads", fault::PlayedSessions(ZoneType_FEQuad));
  Add(all, "Bricks", fault::PlayedSessions(ZoneType_FEBrick));
  Add(all, "Polyhedra", fault::PlayedSessions(ZoneType_FEPolyhedron));
  Add(all, "Dialog", fault::DialogSessions(PlotType_Cartesian3D));
  Add(all, "FlatDialog", fault::DialogSessions(PlotType_Cartesian2D));
  Add(all, "Notices", fault::NoticeSessions());
  Add(all, "Services", fault::ServiceSessions());
  return all;
}

class Troubles : public ::testing::TestWithParam<Session> {};

TEST_P(Troubles, AreSurvivedWhenTwoCallsAreRefused) {
  fault::ExpectAllSurvived(GetParam().name, {GetParam()}, "double faults",
                           [](FaultRunner& runner) { runner.RunTwice({fault::kQueueing}); });
}

TEST_P(Troubles, AreSurvivedWhenAnAnswerIsWrong) {
  fault::ExpectAllSurvived(GetParam().name, {GetParam()}, "wrong answers",
                           [](FaultRunner& runner) { runner.RunWrongAnswers(); });
}

INSTANTIATE_TEST_SUITE_P(Sessions, Troubles, ::testing::ValuesIn(AllSessions()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
