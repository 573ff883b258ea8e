#include "ApiTesting.h"

#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

TEST(Strings, AreZeroFilledAndReleasedOnce) {
  char* text = QelUtilStringAlloc(3, "label");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(std::string(text, 4), std::string(4, '\0'));
  QelUtilStringDealloc(&text);
  EXPECT_EQ(text, nullptr);
  QelUtilStringDealloc(&text);
  char own[] = "own";
  char* foreign = own;
  QelUtilStringDealloc(&foreign);
  EXPECT_EQ(foreign, nullptr);
  text = QelUtilStringAlloc(0, nullptr);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(*text, '\0');
  QelUtilStringDealloc(&text);
}

std::vector<SetIndex_t> MembersOf(const QelSet* set) {
  std::vector<SetIndex_t> members;
  for (SetIndex_t n = QelUtilSetGetNextMember(set, 0); n != 0;
       n = QelUtilSetGetNextMember(set, n)) {
    members.push_back(n);
  }
  return members;
}

TEST(Sets, HoldEachMemberOnceInAscendingOrder) {
  QelSet* set = QelUtilSetAlloc(true);
  for (const SetIndex_t member : std::vector<SetIndex_t>{7, 1, 5000000000, 7}) {
    EXPECT_TRUE(QelUtilSetAddMember(set, member, false));
  }
  EXPECT_THAT(MembersOf(set), ElementsAre(1, 7, 5000000000));
  EXPECT_EQ(QelUtilSetGetMemberCount(set), 3);
  EXPECT_TRUE(QelUtilSetIsMember(set, 7));
  EXPECT_FALSE(QelUtilSetIsMember(set, 2));
  EXPECT_FALSE(QelUtilSetAddMember(set, 0, false));
  EXPECT_FALSE(QelUtilSetAddMember(set, -1, false));
  EXPECT_EQ(QelUtilSetGetMemberCount(set), 3);
  QelUtilSetDealloc(&set);
  EXPECT_EQ(set, nullptr);
}

TEST(ArgumentLists, TakeEveryKindAndRefuseBadNamesAndHandles) {
  QelArgList* list = QelUtilArgListAlloc();
  QelSet* set = QelUtilSetAlloc(false);
  ArbParam_t number = 0;
  double real = 0.0;
  EXPECT_TRUE(QelUtilArgListAppendInt(list, "A", 1));
  EXPECT_TRUE(QelUtilArgListAppendDouble(list, "B", 1.5));
  EXPECT_TRUE(QelUtilArgListAppendString(list, "C", "text"));
  EXPECT_TRUE(QelUtilArgListAppendArray(list, "D", &real));
  EXPECT_TRUE(QelUtilArgListAppendSet(list, "E", set));
  EXPECT_TRUE(QelUtilArgListAppendFunction(list, "F", &real));
  EXPECT_TRUE(QelUtilArgListAppendArbParam(list, "G", 1));
  EXPECT_TRUE(QelUtilArgListAppendArbParamPtr(list, "H", &number));
  EXPECT_TRUE(QelUtilArgListAppendDoublePtr(list, "I", &real));
  EXPECT_FALSE(QelUtilArgListAppendInt(list, nullptr, 1));
  EXPECT_FALSE(QelUtilArgListAppendInt(list, "", 1));
  EXPECT_FALSE(QelUtilArgListAppendString(list, "C", nullptr));
  EXPECT_FALSE(QelUtilArgListAppendSet(list, "E", nullptr));
  QelUtilArgListClear(list);
  QelUtilArgListDealloc(&list);
  EXPECT_EQ(list, nullptr);
  EXPECT_FALSE(QelUtilArgListAppendInt(list, "A", 1));
  QelUtilSetDealloc(&set);
}

TEST(ArgumentLists, ASetThatWasReleasedMeanwhileIsRefused) {
  ShowTimeSteps();
  QelArgList* list = QelUtilArgListAlloc();
  QelSet* set = QelUtilSetAlloc(false);
  QelUtilSetAddMember(set, 1, false);
  QelUtilArgListAppendString(list, "P1", "FIELDMAP");
  QelUtilArgListAppendString(list, "P2", "SHADE");
  QelUtilArgListAppendString(list, "P3", "SHOW");
  QelUtilArgListAppendSet(list, "OBJECTSET", set);
  QelUtilArgListAppendArbParam(list, "IVALUE", 0);
  QelUtilSetDealloc(&set);
  const QelSetValueResult_e result = QelUtilStyleSetLowLevelX(list);
  EXPECT_NE(result, SetValueResult_Ok);
  EXPECT_NE(result, SetValueResult_Duplicate);
  QelUtilArgListDealloc(&list);
  CloseEverything();
}

}  // namespace
}  // namespace qelhost
