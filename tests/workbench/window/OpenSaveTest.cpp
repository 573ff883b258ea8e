// Files in the window: opened, saved, refused, lost and found.
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QSettings>

#include <gmock/gmock.h>

#include "DataSetFiles.h"
#include "Desk.h"
#include "MenuBar.h"
#include "UserActions.h"

namespace marquell::workbench {
namespace {

using testing::HasSubstr;
using Answer = DocumentQuestions::Answer;

/// Alters something, by whatever way.
void Alter(Desk& desk) {
  desk.workspace().Do([](qelhost::Host& host) {
    qelhost::Player player(host);
    for (const char* const line :
         {"Marquell PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=2 SIZEY=2 SIZEZ=2",
          "Marquell ALTERAREA VARIABLE=\"phi\" MODIFIER=\"+1\" RULE=ANYINSIDE"}) {
      const qelhost::LineResult result = qelhost::PlayLine(host, player, line);
      ASSERT_TRUE(result.isDone) << result.message;
    }
  });
  desk.Settle();
}

TEST(OpenSaveTest, OpeningShowsTheDataAndNamesThemInTheTitle) {
  Desk desk;
  EXPECT_FALSE(ActionNamed(&desk.window(), "save")->isEnabled());
  desk.OpenExample("part/gmsh_part.vtu");
  EXPECT_THAT(desk.window().windowTitle().toStdString(), HasSubstr("gmsh_part.vtu"));
  EXPECT_FALSE(desk.window().isWindowModified());
  EXPECT_TRUE(ActionNamed(&desk.window(), "save")->isEnabled());
  EXPECT_EQ(desk.window().Files().Recent().front(), desk.Path("part/gmsh_part.vtu"));
}

TEST(OpenSaveTest, AFileThatCannotBeReadIsToldAndLeavesEverythingAsItWas) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  const qelhost::DataSetPtr before = desk.Frame().Data();
  QFile bad(desk.Path("bad.vtu"));
  ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
  bad.write("<VTKFile type=\"UnstructuredGrid\"");
  bad.close();
  EXPECT_FALSE(desk.window().Files().Open(bad.fileName()));
  EXPECT_FALSE(desk.window().Files().Open(desk.Path("there is none.vtu")));
  ASSERT_EQ(desk.Failures().size(), 2);
  EXPECT_THAT(desk.Failures()[0].toStdString(), HasSubstr("bad.vtu"));
  EXPECT_THAT(desk.Failures()[1].toStdString(), HasSubstr("there is none.vtu"));
  EXPECT_EQ(desk.Frame().Data(), before);
}

TEST(OpenSaveTest, SavingOverTheSourceKeepsWhatWasNotReadYet) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  const auto original = qelhost::ReadDataSet(MARQUELL_EXAMPLES "/part/gmsh_part.vtu");
  Alter(desk);
  EXPECT_TRUE(desk.window().isWindowModified());
  desk.Choose("save");
  EXPECT_TRUE(desk.Failures().isEmpty()) << desk.Failures().join(";").toStdString();
  EXPECT_FALSE(desk.window().isWindowModified());
  // Every array is asked for only now, after the file was replaced.
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()),
            ValuesOf(*qelhost::ReadDataSet(desk.Path("part/gmsh_part.vtu").toStdString())));
  EXPECT_NE(ValuesOf(*desk.Frame().Data()), ValuesOf(*original));
  // And once more: the second save starts from a file that the first one wrote.
  Alter(desk);
  desk.Choose("save");
  EXPECT_TRUE(desk.Failures().isEmpty()) << desk.Failures().join(";").toStdString();
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()),
            ValuesOf(*qelhost::ReadDataSet(desk.Path("part/gmsh_part.vtu").toStdString())));
}

TEST(OpenSaveTest, ResultsThatWereOpenedAreReplacedOnlyWhenTheUserSaysSo) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  Alter(desk);
  int asked = 0;
  bool answer = false;
  desk.window().Files().questions.replace = [&](QWidget*, const QString& name) {
    EXPECT_EQ(name, "gmsh_part.vtu");
    ++asked;
    return answer;
  };
  const auto original = ValuesOf(*qelhost::ReadDataSet(desk.Frame().fileName));
  desk.Choose("save");
  EXPECT_TRUE(desk.window().isWindowModified());
  EXPECT_EQ(ValuesOf(*qelhost::ReadDataSet(desk.Frame().fileName)), original);
  answer = true;
  desk.Choose("save");
  EXPECT_FALSE(desk.window().isWindowModified());
  Alter(desk);
  desk.Choose("save");
  EXPECT_EQ(asked, 2) << "what this window wrote itself is written again without a question";
}

TEST(OpenSaveTest, SaveAsGoesOnWithTheNewFile) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  Alter(desk);
  desk.window().Files().questions.fileToSave = [&](QWidget*, const QString&) {
    return desk.Path("other.vtu");
  };
  desk.Choose("saveAs");
  EXPECT_THAT(desk.window().windowTitle().toStdString(), HasSubstr("other.vtu"));
  EXPECT_EQ(ValuesOf(*desk.Frame().Data()),
            ValuesOf(*qelhost::ReadDataSet(desk.Path("other.vtu").toStdString())));
}

TEST(OpenSaveTest, ATargetThatCannotBeWrittenIsToldAndTheDataStayUnsaved) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  Alter(desk);
  desk.window().Files().questions.fileToSave = [&](QWidget*, const QString&) {
    return desk.Path("no/such/folder/a.vtu");
  };
  desk.Choose("saveAs");
  EXPECT_EQ(desk.Failures().size(), 1);
  EXPECT_TRUE(desk.window().isWindowModified());
  EXPECT_THAT(desk.window().windowTitle().toStdString(), HasSubstr("gmsh_part.vtu"));
}

TEST(OpenSaveTest, AFormatThatCannotBeWrittenIsSavedAsAnother) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.exo");
  QString proposed;
  desk.window().Files().questions.fileToSave = [&](QWidget*, const QString& proposal) {
    proposed = proposal;
    return QString();
  };
  desk.Choose("save");
  EXPECT_TRUE(proposed.endsWith("gmsh_part.vtm") || proposed.endsWith("gmsh_part.vtu"))
      << proposed.toStdString();
}

TEST(OpenSaveTest, UnsavedDataAreAskedAboutBeforeTheyGo) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  Alter(desk);
  int asked = 0;
  Answer answer = Answer::Cancel;
  desk.window().Files().questions.unsaved = [&](QWidget*, const QString& name) {
    EXPECT_EQ(name, "gmsh_part.vtu");
    ++asked;
    return answer;
  };
  EXPECT_FALSE(desk.window().Files().Close());
  EXPECT_FALSE(desk.window().Files().Open(desk.Example("part/mixed.vtu")));
  EXPECT_FALSE(desk.window().close());
  EXPECT_EQ(asked, 3);
  EXPECT_TRUE(desk.window().isWindowModified());
  answer = Answer::Save;
  EXPECT_TRUE(desk.window().Files().Close());
  EXPECT_EQ(desk.host().frames.Count(), 0);
  desk.OpenExample("part/gmsh_part.vtu");
  EXPECT_FALSE(desk.window().isWindowModified());
}

TEST(OpenSaveTest, UndoingEverythingLeavesNothingToSave) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  Alter(desk);
  desk.Choose("undo");
  EXPECT_FALSE(desk.window().isWindowModified());
  desk.Choose("redo");
  EXPECT_TRUE(desk.window().isWindowModified());
  EXPECT_THAT(ActionNamed(&desk.window(), "undo")->text().toStdString(), HasSubstr("phi"));
}

TEST(OpenSaveTest, AFileDroppedOnTheWindowIsOpened) {
  Desk desk;
  const QString file = desk.Example("part/mixed.vtu");
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(file)});
  QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&desk.window(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&desk.window(), &drop);
  desk.Settle();
  ASSERT_EQ(desk.host().frames.Count(), 1);
  EXPECT_EQ(QString::fromStdString(desk.Frame().fileName), file);
}

TEST(OpenSaveTest, ASecondFileOpensInAFrameOfItsOwn) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  EXPECT_TRUE(desk.window().Files().Add(desk.Example("part/mixed.vtu")));
  desk.Settle();
  EXPECT_EQ(desk.host().frames.Count(), 2);
  auto* const tabs = desk.window().findChild<QTabBar*>("frames");
  ASSERT_TRUE(tabs->isVisible());
  EXPECT_EQ(tabs->currentIndex(), 1);
  desk.workspace().Act("$!FRAME 1");
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_THAT(desk.window().windowTitle().toStdString(), HasSubstr("gmsh_part.vtu"));
}

TEST(OpenSaveTest, AnAddOnThatIsNotThereIsSaid) {
  Desk desk;
  EXPECT_THROW(desk.host().LoadAddOns({"/there/is/no.so"}), std::exception);
}

TEST(OpenSaveTest, TheLayoutAndTheRecentFilesAreThereNextTime) {
  QSettings().clear();
  QString file;
  {
    Desk desk;
    desk.OpenExample("part/gmsh_part.vtu");
    file = desk.Path("part/gmsh_part.vtu");
    desk.window().resize(1111, 777);
    desk.window().close();
  }
  Desk desk;
  desk.window().RestoreSettings();
  EXPECT_EQ(desk.window().Files().Recent(), QStringList{file});
  EXPECT_EQ(desk.window().size(), QSize(1111, 777));
  QSettings().clear();
}

}  // namespace
}  // namespace marquell::workbench
