// A user's way from a file to a file, and the same from the recorded journal without a window.
#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>

#include "DataSetFiles.h"
#include "Desk.h"
#include "JournalPanel.h"
#include "UserActions.h"

namespace marquell::workbench {
namespace {

using testing::IsEmpty;

/// What marquell run makes of the journal; false when it fails.
bool RunHeadless(const QString& journal, const QString& input, const QString& output) {
  QProcess run;
  run.setProcessChannelMode(QProcess::MergedChannels);
  run.start(MARQUELL_PROGRAM,
            {"run", journal, input, "-o", output, "--add-on", MARQUELL_ADDON, "--quiet"});
  const bool isDone = run.waitForFinished(120000) && run.exitCode() == 0;
  EXPECT_TRUE(isDone) << run.readAll().toStdString();
  return isDone;
}

TEST(JourneyTest, DrawAlterUndoHideSaveIsWhatTheJournalDoes) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  desk.Choose("journalRecord");
  desk.Choose("addOn:Marquell ...");
  desk.ChooseFrom("Choose variable to pick and alter", "phi");
  desk.Type("Define modifier for picked notes/cells", "*2");
  desk.Press("Define pick area using a rectangle");
  ASSERT_EQ(desk.host().interaction.mouseMode, Mouse_GeomRectangle);
  const double half = 0.2 * desk.plot().width() * desk.plot().Scene().GridPerPixel();
  desk.Drag(desk.At(-half, -half), desk.At(half, half));
  const auto before = ValuesOf(*desk.Frame().Data());
  desk.Press("Apply Alteration");
  const auto altered = ValuesOf(*desk.Frame().Data());
  EXPECT_NE(altered, before);
  desk.Press("Undo last alter");
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()), before);
  desk.Press("Apply Alteration");
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()), altered);
  // The window's own undo and redo beside the dialog's.
  desk.Choose("undo");
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()), before);
  desk.Choose("redo");
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()), altered);
  // The box, turned by its field, hides cells.
  desk.workspace().Do([](qelhost::Host& host) {
    for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
      if (host.dialogs.Find(id)->kind == qelhost::ControlKind::Tab) {
        qelhost::TurnToPage(host, id, 2);
      }
    }
  });
  desk.Settle();
  desk.Press("Define pick area using a cube");
  desk.Type("Rotate Z", "15");
  desk.Press("Apply Blanking");
  EXPECT_NE(ValuesOf(*desk.Frame().Data()), altered);
  EXPECT_THAT(desk.Failures(), IsEmpty());

  desk.window().Files().questions.fileToSave = [&](QWidget*, const QString&) {
    return desk.Path("window.vtu");
  };
  desk.Choose("saveAs");
  desk.Choose("journalStop");
  const QString journal = desk.Path("recorded.journal");
  ASSERT_TRUE(desk.window().Journal().SaveTo(journal));
  ASSERT_TRUE(
      RunHeadless(journal, MARQUELL_EXAMPLES "/part/gmsh_part.vtu", desk.Path("headless.vtu")));
  QFile window(desk.Path("window.vtu"));
  QFile headless(desk.Path("headless.vtu"));
  ASSERT_TRUE(window.open(QIODevice::ReadOnly) && headless.open(QIODevice::ReadOnly));
  EXPECT_EQ(window.readAll(), headless.readAll()) << "byte for byte";
}

TEST(JourneyTest, HiddenCellsAreNeitherProbedNorDrawn) {
  Desk desk;
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  desk.Choose("addOn:Marquell ...");
  desk.Choose("modeProbe");
  const QPoint at = desk.At(0.0, 0.0);
  desk.Click(at);
  ASSERT_GT(desk.host().interaction.probedCell, 0);
  desk.workspace().Do([](qelhost::Host& host) {
    qelhost::Player player(host);
    for (const char* const line :
         {"Marquell PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=3 SIZEY=3 SIZEZ=3",
          "Marquell BLANKAREA RULE=ANYINSIDE", "$!BLANKING VALUE{INCLUDE = YES"}) {
      const qelhost::LineResult result = qelhost::PlayLine(host, player, line);
      ASSERT_TRUE(result.isDone) << result.message;
    }
  });
  desk.Settle();
  desk.Choose("modeProbe");
  desk.Click(at);
  EXPECT_EQ(desk.host().interaction.probedCell, 0);
}

TEST(JourneyTest, ABrokenJournalIsToldAndTheDataStay) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  EXPECT_FALSE(desk.window().Journal().OpenFile(desk.Path("no.journal")));
  EXPECT_EQ(desk.Failures().size(), 1);
  EXPECT_NE(desk.Frame().Data(), nullptr);
}

}  // namespace
}  // namespace marquell::workbench
