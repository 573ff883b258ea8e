#include "ApiTesting.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace qelhost {
namespace {

/// What is wrong with the arguments of a call.
enum class Wrong { Null, Foreign, Stale, TooLarge, TooSmall };
constexpr Wrong kWrongs[] = {Wrong::Null, Wrong::Foreign, Wrong::Stale, Wrong::TooLarge,
                             Wrong::TooSmall};

/// Handles that were good once.
struct StaleHandles {
  QelSet* set = nullptr;
  QelArgList* list = nullptr;
  QelView* view = nullptr;
  char* text = nullptr;
};

StaleHandles MakeStaleHandles() {
  StaleHandles stale;
  QelSet* set = stale.set = QelUtilSetAlloc(false);
  QelUtilSetDealloc(&set);
  QelArgList* list = stale.list = QelUtilArgListAlloc();
  QelUtilArgListDealloc(&list);
  QelView* view = nullptr;
  if (QelUtilViewGet(&view)) stale.view = view;
  QelUtilViewDealloc(&view);
  char* text = stale.text = QelUtilStringAlloc(8, "stale");
  QelUtilStringDealloc(&text);
  return stale;
}

StaleHandles staleHandles;

/// An address that may be compared and never followed.
template <class Pointer>
Pointer Foreign() {
  return reinterpret_cast<Pointer>(std::uintptr_t{0x1000});
}

template <class Handle>
Handle* HandleOf(Wrong wrong, Handle* stale) {
  if (wrong == Wrong::Foreign) return Foreign<Handle*>();
  return wrong == Wrong::Stale ? stale : nullptr;
}

/// The argument of that type that is wrong in that way. Places for answers are null, or good where
/// a call must be able to follow them.
template <class T>
struct Argument {
  static T Of(Wrong wrong) {
    if constexpr (std::is_same_v<T, bool>) {
      return wrong != Wrong::Null;
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(wrong == Wrong::TooLarge ? 99 : -1);
    } else if constexpr (std::is_floating_point_v<T>) {
      using Limits = std::numeric_limits<T>;
      return wrong == Wrong::Foreign ? Limits::quiet_NaN() : Limits::infinity();
    } else if constexpr (std::is_integral_v<T>) {
      using Limits = std::numeric_limits<T>;
      if (wrong == Wrong::TooLarge) return Limits::max();
      if (wrong == Wrong::TooSmall) return Limits::min();
      return static_cast<T>(wrong == Wrong::Null ? 0 : -1);
    } else if constexpr (std::is_pointer_v<T> && std::is_class_v<std::remove_pointer_t<T>>) {
      return HandleOf<std::remove_pointer_t<T>>(wrong, nullptr);
    } else {
      return nullptr;
    }
  }
};

template <>
struct Argument<QelSet*> {
  static QelSet* Of(Wrong wrong) { return HandleOf(wrong, staleHandles.set); }
};
template <>
struct Argument<const QelSet*> : Argument<QelSet*> {};
template <>
struct Argument<QelArgList*> {
  static QelArgList* Of(Wrong wrong) { return HandleOf(wrong, staleHandles.list); }
};
template <>
struct Argument<const QelView*> {
  static const QelView* Of(Wrong wrong) { return HandleOf(wrong, staleHandles.view); }
};
template <>
struct Argument<const char*> {
  static const char* Of(Wrong wrong) { return wrong == Wrong::Null ? nullptr : "no such thing"; }
};
template <>
struct Argument<const void*> {
  static const void* Of(Wrong wrong) {
    return wrong == Wrong::Foreign ? Foreign<const void*>() : nullptr;
  }
};

/// A place that holds a wrong handle, as the functions that release one are given.
template <class Handle>
struct PlaceOf {
  static Handle** Of(Wrong wrong, Handle* stale) {
    static Handle* place = nullptr;
    place = HandleOf(wrong, stale);
    return wrong == Wrong::Null ? nullptr : &place;
  }
};
template <>
struct Argument<QelSet**> {
  static QelSet** Of(Wrong wrong) { return PlaceOf<QelSet>::Of(wrong, staleHandles.set); }
};
template <>
struct Argument<QelArgList**> {
  static QelArgList** Of(Wrong wrong) { return PlaceOf<QelArgList>::Of(wrong, staleHandles.list); }
};
template <>
struct Argument<QelView**> {
  static QelView** Of(Wrong wrong) { return PlaceOf<QelView>::Of(wrong, staleHandles.view); }
};
template <>
struct Argument<char**> {
  static char** Of(Wrong wrong) { return PlaceOf<char>::Of(wrong, staleHandles.text); }
};

template <class Result, class... Arguments>
std::function<void(Wrong)> CallOf(Result (*function)(Arguments...)) {
  return [function]([[maybe_unused]] Wrong wrong) { function(Argument<Arguments>::Of(wrong)...); };
}

struct Row {
  const char* function;
  std::function<void(Wrong)> call;
};

/// A macro only because the function's name is wanted too.
#define HOSTILE(function) \
  Row { #function, CallOf(function) }

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = {
      HOSTILE(QelUtilLockOn),
      HOSTILE(QelUtilLockOff),
      HOSTILE(QelUtilLockStart),
      HOSTILE(QelUtilLockFinish),
      HOSTILE(QelUtilLockIsOn),
      HOSTILE(QelUtilLockGetCurrentOwnerName),
      HOSTILE(QelUtilAddOnRegister),
      HOSTILE(QelUtilMacroAddCommandCallback),
      HOSTILE(QelUtilMenuAddSeparator),
      HOSTILE(QelUtilMenuAddOption),
      HOSTILE(QelUtilMenuSetSensitivity),
      HOSTILE(QelUtilStateChangeAddCallbackX),
      HOSTILE(QelUtilStateChangeGetStyleParam),
      HOSTILE(QelUtilStateChanged),
      HOSTILE(QelUtilStateChangedX),
      HOSTILE(QelUtilOnIdleQueueAddCallback),
      HOSTILE(QelUtilStringDealloc),
      HOSTILE(QelUtilSetAlloc),
      HOSTILE(QelUtilSetDealloc),
      HOSTILE(QelUtilSetAddMember),
      HOSTILE(QelUtilSetIsMember),
      HOSTILE(QelUtilSetGetMemberCount),
      HOSTILE(QelUtilSetGetNextMember),
      HOSTILE(QelUtilArgListAlloc),
      HOSTILE(QelUtilArgListClear),
      HOSTILE(QelUtilArgListDealloc),
      HOSTILE(QelUtilArgListAppendInt),
      HOSTILE(QelUtilArgListAppendDouble),
      HOSTILE(QelUtilArgListAppendString),
      HOSTILE(QelUtilArgListAppendArray),
      HOSTILE(QelUtilArgListAppendSet),
      HOSTILE(QelUtilArgListAppendFunction),
      HOSTILE(QelUtilArgListAppendArbParam),
      HOSTILE(QelUtilArgListAppendArbParamPtr),
      HOSTILE(QelUtilArgListAppendDoublePtr),
      HOSTILE(QelUtilFrameGetCount),
      HOSTILE(QelUtilFrameGetUniqueID),
      HOSTILE(QelUtilFrameActivateByUniqueID),
      HOSTILE(QelUtilFrameGetPlotType),
      HOSTILE(QelUtilDataSetIsAvailable),
      HOSTILE(QelUtilDataSetGetUniqueID),
      HOSTILE(QelUtilDataSetGetInfo),
      HOSTILE(QelUtilDataSetGetNumZones),
      HOSTILE(QelUtilDataSetGetNumVars),
      HOSTILE(QelUtilDataSetAddZone),
      HOSTILE(QelUtilDataSetDeleteZone),
      HOSTILE(QelUtilDataSetAddVarX),
      HOSTILE(QelUtilCreateSphericalZone),
      HOSTILE(QelUtilZoneGetName),
      HOSTILE(QelUtilZoneRename),
      HOSTILE(QelUtilZoneGetType),
      HOSTILE(QelUtilZoneIsFiniteElement),
      HOSTILE(QelUtilZoneGetIJK),
      HOSTILE(QelUtilZoneIsActive),
      HOSTILE(QelUtilZoneGetRelevant),
      HOSTILE(QelUtilSolutionTimeGetCurrent),
      HOSTILE(QelUtilZoneSetStrandID),
      HOSTILE(QelUtilZoneGetFieldMap),
      HOSTILE(QelUtilVarGetName),
      HOSTILE(QelUtilVarGetNumByName),
      HOSTILE(QelUtilVarGetNumByAssignment),
      HOSTILE(QelUtilVarGetMinMax),
      HOSTILE(QelUtilDataValueGetLocation),
      HOSTILE(QelUtilDataValueIsPassive),
      HOSTILE(QelUtilDataValueAlloc),
      HOSTILE(QelUtilDataValueGetShareCount),
      HOSTILE(QelUtilDataValueBranchShared),
      HOSTILE(QelUtilDataValueGetReadableNLRef),
      HOSTILE(QelUtilDataValueGetWritableNativeRef),
      HOSTILE(QelUtilDataValueGetCountByRef),
      HOSTILE(QelUtilDataValueGetByRef),
      HOSTILE(QelUtilDataValueSetByRef),
      HOSTILE(QelUtilDataValueArraySetByRef),
      HOSTILE(QelUtilDataValueRefGetGetFunc),
      HOSTILE(QelUtilDataValueRefGetSetFunc),
      HOSTILE(QelUtilDataLoadBegin),
      HOSTILE(QelUtilDataLoadEnd),
      HOSTILE(QelUtilDataNodeGetReadableRef),
      HOSTILE(QelUtilDataNodeGetWritableRef),
      HOSTILE(QelUtilDataNodeGetByRef),
      HOSTILE(QelUtilDataNodeSetByRef),
      HOSTILE(QelUtilDataNodeToElemMapGetReadableRef),
      HOSTILE(QelUtilDataNodeToElemMapGetNumElems),
      HOSTILE(QelUtilDataNodeToElemMapGetElem),
      HOSTILE(QelUtilDataFaceNbrGetReadableRef),
      HOSTILE(QelUtilDataFaceNbrGetNumNByRef),
      HOSTILE(QelUtilDataElemGetReadableRef),
      HOSTILE(QelUtilDataElemGetNumFaces),
      HOSTILE(QelUtilDataElemGetFace),
      HOSTILE(QelUtilDataFaceMapGetReadableRef),
      HOSTILE(QelUtilDataFaceMapGetLeftElem),
      HOSTILE(QelUtilDataFaceMapGetRightElem),
      HOSTILE(QelUtilDataFaceMapGetNFaceNodes),
      HOSTILE(QelUtilDataFaceMapGetFaceNode),
      HOSTILE(QelUtilBlankingIsActive),
      HOSTILE(QelUtilBlankingCheckDataPoint),
      HOSTILE(QelUtilBlankingCheckFECell),
      HOSTILE(QelUtilBlankingCheckIJKCell),
      HOSTILE(QelUtilGeomGetBase),
      HOSTILE(QelUtilGeomGetNext),
      HOSTILE(QelUtilGeomIsValid),
      HOSTILE(QelUtilGeomGetType),
      HOSTILE(QelUtilGeomSetPositionCoordSys),
      HOSTILE(QelUtilGeomGetAnchorPos),
      HOSTILE(QelUtilGeomRectangleGetSize),
      HOSTILE(QelUtilGeomSquareGetSize),
      HOSTILE(QelUtilGeomCircleGetRadius),
      HOSTILE(QelUtilGeomPolyGetPointCount),
      HOSTILE(QelUtilGeom2DPolylineGetPoint),
      HOSTILE(QelUtilPickListGetCount),
      HOSTILE(QelUtilPickListGetType),
      HOSTILE(QelUtilPickListGetGeom),
      HOSTILE(QelUtilProbeInstallCallback),
      HOSTILE(QelUtilProbeFieldGetZone),
      HOSTILE(QelUtilProbeFieldGetCell),
      HOSTILE(QelUtilProbeGetPointIndex),
      HOSTILE(QelUtilMouseSetMode),
      HOSTILE(QelUtilMouseGetCurrentMode),
      HOSTILE(QelUtilConvertXPosition),
      HOSTILE(QelUtilConvertYPosition),
      HOSTILE(QelUtilConvertXDimension),
      HOSTILE(QelUtilSetupTransformations),
      HOSTILE(QelUtilConvert3DPositionToGrid),
      HOSTILE(QelUtilViewGet),
      HOSTILE(QelUtilViewSet),
      HOSTILE(QelUtilViewDealloc),
      HOSTILE(QelUtilViewGetMagnification),
      HOSTILE(QelUtilViewRotate3D),
      HOSTILE(QelUtilThreeDViewGetViewerAngle),
      HOSTILE(QelUtilContourSetVariable),
      HOSTILE(QelUtilFieldLayerIsActive),
      HOSTILE(QelUtilFieldLayerSetIsActive),
      HOSTILE(QelUtilZoneSetActive),
      HOSTILE(QelUtilZoneSetEdgeLayer),
      HOSTILE(QelUtilZoneSetMesh),
      HOSTILE(QelUtilZoneSetShade),
      HOSTILE(QelUtilZoneSetScatter),
      HOSTILE(QelUtilZoneSetContour),
      HOSTILE(QelUtilZoneSetVector),
      HOSTILE(QelUtilStyleSetLowLevelX),
      HOSTILE(QelUtilStyleGetLowLevelX),
      HOSTILE(QelUtilMacroIsRecordingActive),
      HOSTILE(QelUtilMacroIsBatchModeActive),
      HOSTILE(QelUtilMacroRecordAddOnCommand),
      HOSTILE(QelUtilMacroRecordRawCommand),
      HOSTILE(QelUtilMacroExecuteCommand),
      HOSTILE(QelUtilDialogErrMsg),
      HOSTILE(QelUtilDialogMessageBox),
      HOSTILE(QelUtilPleaseWait),
      HOSTILE(QelUtilRedraw),
      HOSTILE(QelUtilHelp),
      HOSTILE(QelGUIDialogCreateModeless),
      HOSTILE(QelGUIDialogLaunch),
      HOSTILE(QelGUIDialogDrop),
      HOSTILE(QelGUIDialogIsUp),
      HOSTILE(QelGUIBitmapToggleAdd),
      HOSTILE(QelGUISetToolTip),
      HOSTILE(QelGUITabAdd),
      HOSTILE(QelGUITabAddPage),
      HOSTILE(QelGUITabSetCurrentPage),
      HOSTILE(QelGUIFormAdd),
      HOSTILE(QelGUIFormAddPage),
      HOSTILE(QelGUIFormSetCurrentPage),
      HOSTILE(QelGUILabelAdd),
      HOSTILE(QelGUIOptionMenuAdd),
      HOSTILE(QelGUIToggleAdd),
      HOSTILE(QelGUIButtonAdd),
      HOSTILE(QelGUITextFieldAdd),
      HOSTILE(QelGUISpinTextFieldAdd),
      HOSTILE(QelGUIRadioBoxAdd),
      HOSTILE(QelGUIRadioBoxGetToggle),
      HOSTILE(QelGUIToggleSet),
      HOSTILE(QelGUIOptionMenuGet),
      HOSTILE(QelGUIOptionMenuSet),
      HOSTILE(QelGUIOptionMenuGetItemCount),
      HOSTILE(QelGUIOptionMenuDeleteAllItems),
      HOSTILE(QelGUIOptionMenuAppendItem),
      HOSTILE(QelGUILabelSetText),
      HOSTILE(QelGUIButtonSetText),
      HOSTILE(QelGUITextFieldGetDouble),
      HOSTILE(QelGUITextFieldSetString),
      HOSTILE(QelGUISetSensitivity),
      HOSTILE(QelGUISetVisibility),
      // The largest string that can be asked for is a good one, so it is not.
      Row{"QelUtilStringAlloc", [](Wrong) { EXPECT_EQ(QelUtilStringAlloc(-1, nullptr), nullptr); }},
  };
  return rows;
}

TEST(HostileArgumentsTable, HasEveryFunctionOfTheHeaders) {
  std::set<std::string> tried;
  for (const Row& row : Rows()) tried.insert(row.function);
  EXPECT_EQ(tried, DeclaredFunctions());
}

class HostileArguments : public ::testing::Test {
 protected:
  void TearDown() override {
    while (QelUtilLockIsOn()) QelUtilLockOff();
    CloseEverything();
  }
  static void CallAll() {
    staleHandles = MakeStaleHandles();
    for (const Row& row : Rows()) {
      SCOPED_TRACE(row.function);
      for (const Wrong wrong : kWrongs) row.call(wrong);
    }
  }
};

TEST_F(HostileArguments, CrashNothingWithoutAFrame) {
  CloseEverything();
  CallAll();
}

TEST_F(HostileArguments, ChangeNothingOfADataSet) {
  ShowBricks(3, 3, 3);
  CallAll();
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 1);
  EXPECT_EQ(QelUtilDataSetGetNumVars(), 4);
  EXPECT_TRUE(QelUtilZoneIsActive(1));
  double min = 0.0;
  double max = 0.0;
  QelUtilVarGetMinMax(4, &min, &max);
  EXPECT_EQ(min, 0.0);
  EXPECT_EQ(max, 26.0);
}

TEST_F(HostileArguments, CrashNothingOnAZoneOfElements) {
  ShowElements();
  CallAll();
}

}  // namespace
}  // namespace qelhost
