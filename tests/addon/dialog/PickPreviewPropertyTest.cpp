// What the add-on says an apply would write is what it then writes, in random scenes; and saying so
// changes nothing.
#include "DialogTest.h"
#include "ExtensionScene.h"
#include "HostLock.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <sstream>

namespace {

using extension::AllValues;
using extension::AnyBoundary;
using fakehost::DialogTest;
using fakehost::PickAnswer;
using fakehost::Service;
using fakehost::SpanVariant;
using fakehost::Zone;
using qelvane::qelutiltools::ControlIds;
using reference::Boundary;
using reference::Random;
using reference::Shape;
using ::testing::IsEmpty;

/// All that a question may call: none of them changes anything. A set is how the host tells which
/// zones are relevant.
const std::set<std::string>& ReadingCalls() {
  static const std::set<std::string> calls = {"QelUtilLockStart",
                                              "QelUtilLockFinish",
                                              "QelUtilExtensionGet",
                                              "QelUtilFrameGetPlotType",
                                              "QelUtilDataSetGetUniqueID",
                                              "QelUtilDataSetGetNumZones",
                                              "QelUtilDataSetGetNumVars",
                                              "QelUtilDataSetGetInfo",
                                              "QelUtilDataSetIsAvailable",
                                              "QelUtilStringDealloc",
                                              "QelUtilSetAlloc",
                                              "QelUtilSetAddMember",
                                              "QelUtilSetIsMember",
                                              "QelUtilSetDealloc",
                                              "QelUtilSolutionTimeGetCurrent",
                                              "QelUtilZoneGetName",
                                              "QelUtilZoneGetRelevant",
                                              "QelUtilZoneIsActive",
                                              "QelUtilZoneGetType",
                                              "QelUtilZoneIsFiniteElement",
                                              "QelUtilZoneGetIJK",
                                              "QelUtilVarGetNumByAssignment",
                                              "QelUtilDataValueGetLocation",
                                              "QelUtilDataValueIsPassive",
                                              "QelUtilDataValueGetReadableNLRef",
                                              "QelUtilDataValueGetCountByRef",
                                              "QelUtilDataValueRefGetGetFunc",
                                              "QelUtilDataNodeGetReadableRef",
                                              "QelUtilDataNodeGetByRef",
                                              "QelUtilDataElemGetReadableRef",
                                              "QelUtilDataElemGetNumFaces",
                                              "QelUtilDataElemGetFace",
                                              "QelUtilDataFaceMapGetReadableRef",
                                              "QelUtilDataFaceMapGetNFaceNodes",
                                              "QelUtilDataFaceMapGetFaceNode",
                                              "QelUtilBlankingIsActive",
                                              "QelUtilBlankingCheckDataPoint",
                                              "QelUtilBlankingCheckFECell",
                                              "QelUtilBlankingCheckIJKCell",
                                              "QelUtilGeomGetBase",
                                              "QelUtilGeomGetNext",
                                              "QelUtilGeomIsValid",
                                              "QelUtilGeomGetType",
                                              "QelUtilGeomGetAnchorPos",
                                              "QelUtilGeomRectangleGetSize",
                                              "QelUtilGeomSquareGetSize",
                                              "QelUtilGeomCircleGetRadius",
                                              "QelUtilGeomPolyGetPointCount",
                                              "QelUtilGeom2DPolylineGetPoint",
                                              "QelUtilPickListGetCount",
                                              "QelUtilPickListGetType",
                                              "QelUtilPickListGetGeom",
                                              "QelUtilSetupTransformations",
                                              "QelUtilConvert3DPositionToGrid",
                                              "QelUtilConvertXPosition",
                                              "QelUtilConvertYPosition",
                                              "QelUtilConvertXDimension",
                                              "QelGUIDialogIsUp",
                                              "QelGUIRadioBoxGetToggle",
                                              "fieldSpan",
                                              "nodeMapSpan",
                                              "projection",
                                              "blankedCells",
                                              "blankedNodes",
                                              "workers",
                                              "forRange"};
  return calls;
}

std::string Number(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

/// The bytes of everything that is stored, to be put back.
struct Saved {
  std::vector<std::vector<unsigned char>> values = AllValues();

  void PutBack(fakehost::FakeHost& host) const {
    std::size_t column = 0;
    for (Zone& zone : host.ActiveData()->zones) {
      for (fakehost::Values& var : zone.vars) {
        const std::vector<unsigned char>& bytes = values.at(column++);
        if (var.storage == nullptr) continue;
        const std::size_t size = fakehost::SizeOf(var.storage->type);
        for (std::int64_t i = 0; i < var.storage->count; ++i) {
          if (bytes.empty()) {
            // What was passive was all 0.
            var.storage->Set(i, 0.0);
          } else {
            std::memcpy(var.storage->At(i), &bytes[static_cast<std::size_t>(i) * size], size);
          }
        }
      }
    }
  }
};

/// What the questions and their answers showed, so that it is seen that they showed something.
struct Tally {
  int answered = 0;
  int unanswered = 0;
  int withItems = 0;
  int passive = 0;
};

class PickPreviews : public DialogTest, public ::testing::WithParamInterface<int> {
 protected:
  void SetUp() override {}

  void OpenOn(Random& random, QelZoneType_e type) {
    host.Reset();
    OfferAtRandom(random);
    extension::MakeRandomScene(random, type);
    for (const char* layer : {SV_SHOWEDGE, SV_SHOWMESH, SV_SHOWSHADE}) {
      host.ActiveFrame().layers[layer] = true;
    }
    for (Zone& zone : host.ActiveData()->zones) {
      for (fakehost::Values& values : zone.vars) values.isWritable = true;
    }
    host.queuedAnswers.assign(9, true);
    InitQelAddOn113();
    host.ChooseMenu("Marquell ...");
    host.ChooseRadio(Ids().surfaceRadioBox, 1);
  }

  void OfferAtRandom(Random& random) {
    std::vector<Service> services = {Service::PickQuery};
    if (random.Flip()) services.push_back(Service::Bulk);
    if (random.Flip()) services.push_back(Service::Parallel);
    SpanVariant variant;
    variant.isInterleaved = random.Below(4) == 0;
    variant.isPartial = random.Below(4) == 0;
    variant.isWide = random.Flip();
    variant.startsAtZero = random.Flip();
    variant.isBent = random.Below(4) == 0;
    host.OfferExtensions(services, variant);
  }

  void Choose(Random& random) {
    const int varCount = static_cast<int>(host.ActiveData()->varNames.size());
    const bool isCoordinate = random.Below(8) == 0;
    var = isCoordinate ? 1 + random.Below(3) : 4 + random.Below(std::min(4, varCount - 3));
    host.TurnTo(Ids().tab, 1);
    host.Choose(Ids().variableMenu, var);
    host.Choose(Ids().insideOutsideMenu, 1 + random.Below(2));
    host.Choose(Ids().anyAllMenu, 1 + random.Below(2));
    isBlankMode = random.Below(3) == 0;
    if (isBlankMode) host.TurnTo(Ids().tab, 2);
    if (isBlankMode) var = static_cast<LgIndex_t>(host.ActiveData()->varNames.size());
  }

  void DrawOrPlace(Random& random) {
    const Boundary boundary = AnyBoundary(random, 8);
    steps = boundary.Line();
    if (!boundary.Is3d()) {
      host.DrawGeometry(boundary.Drawn());
      // Of several, one has to be selected.
      if (host.ActiveFrame().geometries.size() > 1 && random.Below(3) != 0) {
        host.SelectGeometry(host.ActiveFrame().geometries[0].id);
      }
      if (random.Below(4) == 0) host.RotateView(25, 50, 10);
      return;
    }
    const bool isCube = boundary.shape == Shape::Cube;
    host.Switch(isCube ? Ids().cubeTool : Ids().sphereTool, true);
    if (random.Below(4) == 0) return;
    const std::vector<std::pair<LgIndex_t, double>> cube = {
        {Ids().anchorXField, boundary.anchor.x}, {Ids().anchorYField, boundary.anchor.y},
        {Ids().anchorZField, boundary.anchor.z}, {Ids().sizeXField, boundary.size.x},
        {Ids().sizeYField, boundary.size.y},     {Ids().sizeZField, boundary.size.z},
        {Ids().rotateXField, boundary.angles.x}, {Ids().rotateYField, boundary.angles.y},
        {Ids().rotateZField, boundary.angles.z}};
    const std::vector<std::pair<LgIndex_t, double>> sphere = {
        {Ids().centerXField, boundary.anchor.x},
        {Ids().centerYField, boundary.anchor.y},
        {Ids().centerZField, boundary.anchor.z},
        {Ids().radiusField, boundary.size.x}};
    for (const auto& [field, number] : isCube ? cube : sphere) {
      host.EnterText(field, Number(number));
    }
    // Before the host is idle the numbers are new and the zone is old.
    if (random.Flip()) host.RunIdleQueue();
  }

  /// All that a question could have left behind, of the host and of the session.
  std::string EverythingButValues() {
    std::ostringstream out;
    out << host.notices.size() << ' ' << host.recordedLines.size() << ' '
        << host.messageBoxes.size() << ' ' << host.errorBoxes.size() << ' ' << host.idleQueue.size()
        << ' ' << host.styleCalls.size() << ' ' << host.waitHistory.size() << ' '
        << host.redrawCount << ' ' << host.mouseMode << ' ' << host.progress.size();
    const fakehost::Frame& frame = host.ActiveFrame();
    out << " blanking " << frame.blanking.include << frame.blanking.constraints.size();
    for (const std::string& name : host.ActiveData()->varNames) out << ' ' << name;
    for (const Zone& zone : host.ActiveData()->zones) {
      out << ' ' << zone.id << zone.name;
      for (const fakehost::Values& values : zone.vars) out << ' ' << values.storage.get();
    }
    for (const fakehost::Geometry& geometry : frame.geometries) out << ' ' << geometry.coordSys;
    for (const fakehost::Control& control : host.Controls()) {
      out << ' ' << control.text << control.value << control.isSensitive << control.isVisible;
    }
    AddSession(out);
    return out.str();
  }

  static void AddSession(std::ostringstream& out) {
    auto& session = Session();
    out << " session " << session.IsUndoAvailable() << session.IsBlankMode()
        << static_cast<int>(session.Kind()) << static_cast<int>(session.Rule()) << ' '
        << session.AlterVariable() << ' ' << session.LastApplied().op << ' '
        << session.LastApplied().value << ' ' << session.UndoGeometry() << ' '
        << session.PickedElement() << ' ' << session.PolyBoundary().Definition().xMin << ' '
        << session.PolyBoundary().IsDefined();
    for (const auto* boundary :
         {static_cast<qelvane::qelutiltools::CPickBoundary3d*>(&session.Cube()),
          static_cast<qelvane::qelutiltools::CPickBoundary3d*>(&session.Sphere())}) {
      for (const double number : boundary->Definition()) out << ' ' << number;
      const auto& box = boundary->BoundingBox();
      out << ' ' << boundary->IsGeometryValid() << ' ' << box.min.x << ' ' << box.max.y;
    }
    out << ' ' << session.Cube().FillsItsBox() << session.Cube().IsInside(0.1, 0.2, 0.3);
  }

  /// As a host asks: for the smaller count first, then for the other.
  PickAnswer Ask(LgIndex_t zone) {
    const fakehost::Mesh& mesh = host.ZoneAt(zone)->mesh;
    const std::int64_t nodes = mesh.NodeCount();
    const std::int64_t cells = mesh.CellCount();
    PickAnswer answer = host.AskPick(zone, std::min(nodes, cells));
    if (!answer.isAnswered) answer = host.AskPick(zone, std::max(nodes, cells));
    return answer;
  }

  std::vector<PickAnswer> AskAboutAllZones() {
    const std::string before = EverythingButValues();
    const auto values = AllValues();
    host.calls.clear();
    std::vector<PickAnswer> answers;
    for (LgIndex_t zone = 1; host.ZoneAt(zone) != nullptr; ++zone) answers.push_back(Ask(zone));
    std::set<std::string> changing;
    for (const fakehost::CallRecord& call : host.calls) {
      if (ReadingCalls().count(call.function) == 0) changing.insert(call.function);
    }
    EXPECT_THAT(changing, IsEmpty());
    EXPECT_EQ(EverythingButValues(), before);
    EXPECT_TRUE(AllValues() == values);
    return answers;
  }

  /// Which values an apply writes, by zone: whatever a value is, 0 and 1 cannot both be the same.
  /// False when there was nothing to apply.
  bool Apply(std::vector<std::vector<bool>>& written) {
    const Saved saved;
    written.assign(host.ActiveData()->zones.size(), {});
    bool isApplied = false;
    for (const char* modifier : {"=0", "=1"}) {
      if (!isBlankMode) host.EnterText(Ids().modifierField, modifier);
      host.recordedLines.clear();
      host.isRecording = true;
      isApplied = host.Press(Ids().applyButton) && !host.recordedLines.empty();
      NoteWritten(saved, written);
      saved.PutBack(host);
    }
    return isApplied;
  }

  void NoteWritten(const Saved& saved, std::vector<std::vector<bool>>& written) {
    const auto now = AllValues();
    const std::size_t varCount = host.ActiveData()->varNames.size();
    for (std::size_t zone = 0; zone < written.size(); ++zone) {
      const std::size_t column = zone * varCount + static_cast<std::size_t>(var - 1);
      const auto& values = host.ActiveData()->zones[zone].vars[static_cast<std::size_t>(var - 1)];
      if (values.storage == nullptr) continue;
      const std::size_t size = fakehost::SizeOf(values.storage->type);
      const auto count = static_cast<std::size_t>(values.storage->count);
      // What was passive was all 0.
      std::vector<unsigned char> before = saved.values[column];
      before.resize(count * size, 0);
      written[zone].resize(count, false);
      for (std::size_t i = 0; i < count; ++i) {
        if (std::memcmp(&before[i * size], &now[column][i * size], size) != 0) {
          written[zone][i] = true;
        }
      }
    }
  }

  /// Counted from 1, which a reader can follow.
  static std::string ItemsOf(const std::vector<bool>& items) {
    std::string text = std::to_string(items.size()) + " values:";
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (items[i]) text += " " + std::to_string(i + 1);
    }
    return text;
  }

  void Compare(const std::vector<PickAnswer>& answers, bool isApplied,
               const std::vector<std::vector<bool>>& written, Tally& tally) {
    for (std::size_t zone = 0; zone < answers.size(); ++zone) {
      SCOPED_TRACE("zone " + std::to_string(zone + 1));
      const PickAnswer& answer = answers[zone];
      EXPECT_EQ(answer.isAnswered, isApplied);
      const bool hasItems = std::count(answer.items.begin(), answer.items.end(), true) > 0;
      const bool hasWritten = std::count(written[zone].begin(), written[zone].end(), true) > 0;
      EXPECT_EQ(hasItems, hasWritten);
      if (hasWritten) {
        EXPECT_EQ(ItemsOf(answer.items), ItemsOf(written[zone]));
      }
      tally.withItems += hasItems ? 1 : 0;
    }
    (isApplied ? tally.answered : tally.unanswered) += 1;
  }

  void RunSeed(unsigned seed, QelZoneType_e type, Tally& tally) {
    Random random(seed * 8 + static_cast<unsigned>(type));
    OpenOn(random, type);
    for (int pick = 0; pick < 3 && !HasFailure(); ++pick) {
      Choose(random);
      DrawOrPlace(random);
      SCOPED_TRACE("seed " + std::to_string(seed) + ", pick " + std::to_string(pick) + ": " +
                   steps);
      const bool wasPassive = host.ValuesAt(1, var)->storage == nullptr;
      const std::vector<PickAnswer> answers = AskAboutAllZones();
      std::vector<std::vector<bool>> written;
      const bool isApplied = Apply(written);
      // An apply that ended with an error is one that a question cannot speak of.
      if (!host.errorBoxes.empty()) return;
      Compare(answers, isApplied, written, tally);
      tally.passive += wasPassive && isApplied ? 1 : 0;
    }
  }

  LgIndex_t var = 0;
  bool isBlankMode = false;
  std::string steps;
};

TEST_P(PickPreviews, AreWhatApplyThenWrites) {
  constexpr unsigned kSeeds = 60;
  Tally tally;
  for (unsigned seed = 1; seed <= kSeeds && !HasFailure(); ++seed) {
    RunSeed(seed, static_cast<QelZoneType_e>(GetParam()), tally);
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
    EXPECT_THAT(host.Misuse(), IsEmpty());
    EXPECT_THAT(host.Leaks(), IsEmpty());
  }
  EXPECT_GT(tally.answered, 40) << "too little was asked";
  EXPECT_GT(tally.unanswered, 10);
  EXPECT_GT(tally.withItems, 40);
  EXPECT_GT(tally.passive, 3);
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, PickPreviews, ::testing::Range(0, 8));

}  // namespace
