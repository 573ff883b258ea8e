// Real results: what the host says of them, against what is known of them.
#include <gmock/gmock.h>

#include "DataSetFiles.h"
#include "FileTesting.h"

namespace {

using namespace filetesting;
using qelhost::DataSetPtr;
using qelhost::ReadDataSet;

std::string Example(const std::string& name) { return std::string(EXAMPLES_DIR) + "/" + name; }

class SampleFiles : public FolderTest {};

TEST_F(SampleFiles, FlowCaseHasItsZonesAndComesBackByteForByte) {
  const DataSetPtr data = ReadDataSet(Example("pitzDaily/pitzDaily.vtm"));
  ASSERT_EQ(data->ZoneCount(), 6);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FEBrick);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 12225);
  EXPECT_EQ(data->FindZone(2)->name, "boundary/inlet");
  EXPECT_EQ(data->FindZone(2)->Type(), ZoneType_FEQuad);
  EXPECT_GT(data->VariableNumber("U_X"), 0);
  EXPECT_GT(data->VariableNumber("U_X (cell)"), 0);
  WriteDataSet(*data, In("copy.vtm"));
  for (const char* piece : {"_0.vtu", "_1.vtp", "_2.vtp", "_3.vtp", "_4.vtp", "_5.vtp"}) {
    EXPECT_EQ(Contents(In(std::string("copy/copy") + piece)),
              Contents(Example(std::string("pitzDaily/pitzDaily/pitzDaily") + piece)));
  }
}

TEST_F(SampleFiles, PolyhedralTimeSeriesIsWhollyPolyhedral) {
  const DataSetPtr data = ReadDataSet(Example("flange/flange.pvd"));
  ASSERT_EQ(data->ZoneCount(), 15);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FEPolyhedron);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 15678 + 2092 + 1544);
  EXPECT_EQ(data->FindZone(1)->strand, data->FindZone(6)->strand);
  EXPECT_NE(data->FindZone(1)->strand, data->FindZone(2)->strand);
  EXPECT_THAT(data->SolutionTimes(), ::testing::ElementsAre(1, 2, 3));
  WriteDataSet(*data, In("copy.pvd"));
  EXPECT_EQ(Contents(In("copy/copy_2/copy_2_0.vtu")),
            Contents(Example("flange/flange_3/flange_3_0.vtu")));
}

TEST_F(SampleFiles, HigherOrderCellsCountByTheirCorners) {
  const DataSetPtr data = ReadDataSet(Example("part/gmsh_part2.vtu"));
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FETetra);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 1139);
}

TEST_F(SampleFiles, MixedCellsMakeABrickZoneAndLowerOnesAreCarried) {
  const DataSetPtr data = ReadDataSet(Example("part/mixed.vtu"));
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FEBrick);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 810);
  EXPECT_EQ(data->FindZone(1)->Carried().lowerDimensionCells, 42);
  WriteDataSet(*data, In("copy.vtu"));
  EXPECT_EQ(Contents(In("copy.vtu")), Contents(Example("part/mixed.vtu")));
}

TEST_F(SampleFiles, ExodusIsReadAndWrittenAsBlocks) {
  const DataSetPtr data = ReadDataSet(Example("part/gmsh_part.exo"));
  ASSERT_EQ(data->ZoneCount(), 1);
  EXPECT_EQ(data->FindZone(1)->Type(), ZoneType_FETetra);
  EXPECT_EQ(data->FindZone(1)->CellCount(), 3231);
  WriteDataSet(*data, In("copy.vtm"));
  WriteDataSet(*data, In("copy.vtu"));
  const DataSetPtr blocks = ReadDataSet(In("copy.vtm"));
  const DataSetPtr single = ReadDataSet(In("copy.vtu"));
  for (const DataSetPtr& copy : {blocks, single}) {
    for (const char* name : {"X", "phi", "vel_Y"}) {
      const LgIndex_t from = data->VariableNumber(name), to = copy->VariableNumber(name);
      ASSERT_GT(to, 0) << name;
      const QelFieldData* a = data->Readable(1, from);
      const QelFieldData* b = copy->Readable(1, to);
      ASSERT_EQ(a->count, b->count);
      for (LgIndex_t i = 0; i < a->count; ++i) ASSERT_EQ(a->get(a, i), b->get(b, i));
    }
  }
}

}  // namespace
