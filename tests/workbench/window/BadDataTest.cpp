// Data that are not what they should be, in the window.
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>

#include "Desk.h"

namespace marquell::workbench {
namespace {

using testing::HasSubstr;

/// Damages the values of a file's arrays, and leaves its mesh as it is.
void DamageValues(const QString& file) {
  QFile data(file);
  ASSERT_TRUE(data.open(QIODevice::ReadWrite));
  QByteArray bytes = data.readAll();
  const int begin = bytes.indexOf("AppendedData");
  ASSERT_GT(begin, 0);
  constexpr int kFirst = 2000;
  constexpr int kLength = 600000;
  constexpr int kStep = 997;
  for (int place = begin + kFirst; place < begin + kLength; place += kStep) bytes[place] = 'A';
  ASSERT_TRUE(data.seek(0));
  ASSERT_EQ(data.write(bytes), bytes.size());
}

class BadDataTest : public testing::Test {
 protected:
  void OpenDamaged() {
    const QString index = desk.Example("pitzDaily/pitzDaily.vtm");
    DamageValues(desk.Path("pitzDaily/pitzDaily/pitzDaily_0.vtu"));
    EXPECT_TRUE(desk.window().Files().Open(index));
    desk.Settle();
  }
  Desk desk;
};

TEST_F(BadDataTest, ValuesThatCannotBeReadColourNothingAndAreToldOnce) {
  OpenDamaged();
  ASSERT_EQ(desk.Failures().size(), 1);
  EXPECT_THAT(desk.Failures()[0].toStdString(), HasSubstr("pitzDaily_0.vtu"));
  const auto* const variable = desk.window().findChild<QComboBox*>("colourVariable");
  EXPECT_EQ(variable->currentIndex(), 0) << variable->currentText().toStdString();
  desk.Drag(desk.At(0.0, 0.0), desk.At(0.05, 0.0), Qt::MiddleButton);
  desk.window().resize(1100, 700);
  desk.Settle();
  EXPECT_EQ(desk.Failures().size(), 1);
  desk.OpenExample("part/gmsh_part.vtu");
  EXPECT_GT(variable->currentIndex(), 0);
}

TEST_F(BadDataTest, AProbeSaysWhichValuesCannotBeRead) {
  OpenDamaged();
  // What lies before the damaged zone.
  desk.workspace().Act("$!ZONE 6 ACTIVE=NO");
  desk.Choose("modeProbe");
  desk.Click(desk.At(0.0, 0.0), Qt::ControlModifier);
  const std::string said = desk.Label("probed").toStdString();
  EXPECT_THAT(said, HasSubstr("cannot be read"));
  EXPECT_THAT(said, HasSubstr("X = "));
}

TEST_F(BadDataTest, TheEndsOfTheColoursNeverCross) {
  desk.OpenExample("part/gmsh_part.vtu");
  auto* const least = desk.window().findChild<QLineEdit*>("rangeMin");
  auto* const greatest = desk.window().findChild<QLineEdit*>("rangeMax");
  const auto enter = [](QLineEdit* field, const char* text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
    field->clearFocus();
  };
  enter(least, "5000");
  enter(greatest, "6000");
  desk.workspace().Do([](qelhost::Host&) {});
  EXPECT_EQ(least->text(), "5000");
  EXPECT_EQ(greatest->text(), "6000");
  enter(greatest, "100");
  desk.workspace().Do([](qelhost::Host&) {});
  EXPECT_EQ(least->text(), "100");
}

}  // namespace
}  // namespace marquell::workbench
