// XML files whose arrays stand there once for each time step: all of them but one would be lost.
#include <vtkXMLUnstructuredGridWriter.h>

#include "HostileFiles.h"

namespace filetesting {
namespace {

class StepsInOneMesh : public HostileFiles {
 protected:
  std::string SaveSteps(int count) {
    const vtkSmartPointer<vtkUnstructuredGrid> grid = TwoBricks();
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetFileName(In("a.vtu").c_str());
    writer->SetInputData(grid);
    writer->SetDataModeToAppended();
    writer->SetNumberOfTimeSteps(count);
    writer->Start();
    for (int step = 0; step < count; ++step) {
      grid->GetPointData()->GetArray("p")->SetComponent(0, 0, step);
      grid->GetPointData()->GetArray("p")->Modified();
      writer->WriteNextTime(step);
    }
    writer->Stop();
    return In("a.vtu");
  }
};

TEST_F(StepsInOneMesh, AreRefusedAndNotCalledDamaged) {
  const std::string path = SaveSteps(2);
  ASSERT_THAT(Contents(path), testing::HasSubstr("TimeStep=\"1\""));
  EXPECT_EQ(ReadError(path),
            path + ": holds several time steps of one mesh; write a file for each step");
}

TEST_F(StepsInOneMesh, AreReadWhenThereIsOne) {
  const std::string path = SaveSteps(1);
  EXPECT_EQ(ReadError(path), "");
}

}  // namespace
}  // namespace filetesting
