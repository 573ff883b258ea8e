// Every call that a played line makes is refused once, for every type of zone.
#include "FaultTest.h"

namespace {

struct TypeRow {
  QelZoneType_e type;
  const char* name;
};

void PrintTo(const TypeRow& row, std::ostream* out) { *out << row.name; }

class PlayedFaults : public ::testing::TestWithParam<TypeRow> {};

TEST_P(PlayedFaults, AreSurvived) {
  fault::ExpectAllSurvived(std::string("lines on ") + GetParam().name,
                           fault::PlayedSessions(GetParam().type));
}

INSTANTIATE_TEST_SUITE_P(Zones, PlayedFaults,
                         ::testing::Values(TypeRow{ZoneType_Ordered, "Ordered"},
                                           TypeRow{ZoneType_FETriangle, "Triangles"},
                                           TypeRow{ZoneType_FEQuad, "Quads"},
                                           TypeRow{ZoneType_FETetra, "Tetrahedra"},
                                           TypeRow{ZoneType_FEBrick, "Bricks"},
                                           TypeRow{ZoneType_FELineSeg, "Segments"},
                                           TypeRow{ZoneType_FEPolygon, "Polygons"},
                                           TypeRow{ZoneType_FEPolyhedron, "Polyhedra"}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
