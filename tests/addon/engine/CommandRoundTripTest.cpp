// What is recorded is read back: every command as a line, and whole sessions as journals.
#include "CMacroEngine.h"
#include "EngineTest.h"
#include "PickReference.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

using namespace reference;
using qelvane::qelutiltools::Attribute_Rule;
using qelvane::qelutiltools::MacroAttribute;
using qelvane::qelutiltools::MacroCommand;
using qelvane::qelutiltools::MacroEngine;
using qelvane::qelutiltools::MacroValue;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::SizeIs;

constexpr char kAddOn[] = "Marquell ";

/// The line without the add-on's name.
std::string LineOf(const std::string& recorded) {
  EXPECT_EQ(recorded.rfind(kAddOn, 0), 0u) << recorded;
  return recorded.substr(sizeof kAddOn - 1);
}

// Commands -------------------------------------------------------------------------------------

enum class Kind { Number, Integer, Name, Modifier, Rule, Corners };

struct CommandRow {
  std::int32_t id;
  const char* word;
  std::vector<std::pair<std::int32_t, Kind>> attributes;
};

void PrintTo(const CommandRow& row, std::ostream* out) { *out << row.word; }

/// Every command with what it can say about itself, by the numbers of the vocabulary.
const std::vector<CommandRow>& AllCommands() {
  constexpr std::int32_t kRule = 1;
  constexpr std::int32_t kVariable = 2;
  constexpr std::int32_t kModifier = 3;
  constexpr std::int32_t kZone = 4;
  constexpr std::int32_t kSeed = 5;
  constexpr std::int32_t kElement = 6;
  constexpr std::int32_t kAnchorX = 7;
  constexpr std::int32_t kAnchorY = 8;
  constexpr std::int32_t kAnchorZ = 9;
  constexpr std::int32_t kSizeX = 10;
  constexpr std::int32_t kSizeY = 11;
  constexpr std::int32_t kSizeZ = 12;
  constexpr std::int32_t kRotateX = 13;
  constexpr std::int32_t kRotateY = 14;
  constexpr std::int32_t kRotateZ = 15;
  constexpr std::int32_t kRadius = 16;
  constexpr std::int32_t kCorners = 17;
  static const std::vector<CommandRow> rows = {
      {0, "UNDOALTER", {}},
      {1, "UNDOBLANK", {}},
      {2,
       "PICKRECTANGLE",
       {{kAnchorX, Kind::Number},
        {kAnchorY, Kind::Number},
        {kSizeX, Kind::Number},
        {kSizeY, Kind::Number}}},
      {3,
       "PICKCIRCLE",
       {{kAnchorX, Kind::Number}, {kAnchorY, Kind::Number}, {kRadius, Kind::Number}}},
      {4, "PICKPOLYGON", {{kCorners, Kind::Corners}}},
      {5,
       "PICKCUBE",
       {{kAnchorX, Kind::Number},
        {kAnchorY, Kind::Number},
        {kAnchorZ, Kind::Number},
        {kSizeX, Kind::Number},
        {kSizeY, Kind::Number},
        {kSizeZ, Kind::Number},
        {kRotateX, Kind::Number},
        {kRotateY, Kind::Number},
        {kRotateZ, Kind::Number}}},
      {6,
       "PICKSPHERE",
       {{kAnchorX, Kind::Number},
        {kAnchorY, Kind::Number},
        {kAnchorZ, Kind::Number},
        {kRadius, Kind::Number}}},
      {7,
       "ALTERELEMENT",
       {{kVariable, Kind::Name},
        {kModifier, Kind::Modifier},
        {kZone, Kind::Integer},
        {kElement, Kind::Integer}}},
      {8, "BLANKELEMENT", {{kZone, Kind::Integer}, {kElement, Kind::Integer}}},
      {9,
       "ALTERSURFACE",
       {{kVariable, Kind::Name},
        {kModifier, Kind::Modifier},
        {kZone, Kind::Integer},
        {kSeed, Kind::Integer},
        {kRule, Kind::Rule}}},
      {10, "BLANKSURFACE", {{kZone, Kind::Integer}, {kSeed, Kind::Integer}, {kRule, Kind::Rule}}},
      {11,
       "ALTERAREA",
       {{kVariable, Kind::Name}, {kModifier, Kind::Modifier}, {kRule, Kind::Rule}}},
      {12, "BLANKAREA", {{kRule, Kind::Rule}}},
      {13, "VIEWXY", {}},
      {14, "VIEWXZ", {}},
      {15, "VIEWYZ", {}},
      {16, "VIEW3D", {}},
      {17, "PICKGEOMETRY", {}}};
  return rows;
}

std::string SixDigits(double number) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

/// A number that its line spells whole: in six digits, and no hair above a whole number, which it
/// would be taken for.
double RandomNumber(Random& random) {
  constexpr double kHair = 1e-7;
  const double scales[] = {1e-4, 0.001, 1.0, 1.0, 1e6, 1e200};
  while (true) {
    const double number =
        std::stod(SixDigits((random.Below(2000001) - 1000000) / 64.0 * scales[random.Below(6)]));
    const double above = number - std::floor(number);
    if (above == 0.0 || above >= kHair) return number;
  }
}

MacroValue RandomValue(Random& random, Kind kind) {
  MacroValue value;
  switch (kind) {
    case Kind::Number:
    case Kind::Integer:
      value.Type = MacroValue::kNumber;
      value.Number = kind == Kind::Integer ? 1.0 + random.Below(2147483646) : RandomNumber(random);
      break;
    case Kind::Rule: {
      constexpr std::int32_t kAllInside = 16;
      value.Type = MacroValue::kKeyword;
      value.Keyword = kAllInside + random.Below(4);
      break;
    }
    case Kind::Name: {
      static const char* const names[] = {"P",    "Pressure [Pa]", "rho = p/RT",
                                          "a, b", "Größe",         "x\ty"};
      value.Strings = {names[random.Below(6)]};
      break;
    }
    case Kind::Modifier:
      value.Strings = {std::string(1, "=+-*/"[random.Below(5)]) + SixDigits(RandomNumber(random))};
      break;
    case Kind::Corners: {
      std::string corners;
      for (int count = 3 + random.Below(40); count > 0; --count) {
        if (!corners.empty()) corners += ',';
        corners += SixDigits(RandomNumber(random)) + ", " + SixDigits(RandomNumber(random));
      }
      value.Strings = {corners};
      break;
    }
  }
  return value;
}

void ExpectSame(const MacroCommand& read, const MacroCommand& written) {
  EXPECT_EQ(read.Command, written.Command);
  ASSERT_EQ(read.Attributes.size(), written.Attributes.size());
  for (std::size_t i = 0; i < read.Attributes.size(); ++i) {
    EXPECT_EQ(read.Attributes[i].Attribute, written.Attributes[i].Attribute);
    const MacroValue& a = read.Attributes[i].Value;
    const MacroValue& b = written.Attributes[i].Value;
    EXPECT_EQ(a.Type, b.Type);
    EXPECT_EQ(a.Strings, b.Strings);
    EXPECT_EQ(a.Number, b.Number);
    EXPECT_EQ(a.Keyword, b.Keyword);
  }
}

class RecordedCommand : public fakehost::EngineTest,
                        public ::testing::WithParamInterface<CommandRow> {};

TEST_P(RecordedCommand, IsReadBackAsItWas) {
  Load(fakehost::MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.isRecording = true;
  const qelvane::qelutiltools::HostLock lock;
  for (unsigned seed = 1; seed <= 500; ++seed) {
    Random random(seed * 32 + static_cast<unsigned>(GetParam().id));
    MacroCommand written;
    written.Command = GetParam().id;
    for (const auto& [attribute, kind] : GetParam().attributes) {
      written.Attributes.push_back({attribute, RandomValue(random, kind)});
    }
    host.recordedLines.clear();
    MacroEngine.RecordCommand(written);
    ASSERT_THAT(host.recordedLines, SizeIs(1));
    const std::string line = LineOf(host.recordedLines[0]);
    SCOPED_TRACE(line);
    EXPECT_EQ(line.substr(0, line.find(' ')), GetParam().word);
    MacroCommand read;
    ASSERT_TRUE(MacroEngine.ParseCommand(line, read)) << MacroEngine.GlobalError();
    ExpectSame(read, written);
    // And the line of what was read is the line.
    MacroEngine.RecordCommand(read);
    EXPECT_EQ(LineOf(host.recordedLines[1]), line);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, RecordedCommand, ::testing::ValuesIn(AllCommands()),
                         [](const auto& row) { return std::string(row.param.word); });

// Sessions -------------------------------------------------------------------------------------

/// A user who picks at random and records.
class RecordedSession : public fakehost::EngineTest, public ::testing::WithParamInterface<int> {
 protected:
  Scene Begin(unsigned seed) {
    host.Reset();
    Random random(seed);
    const Scene scene = MakeScene(random, static_cast<QelZoneType_e>(GetParam()));
    host.keepsCalls = false;
    InitQelAddOn113();
    return scene;
  }

  void DoSomething(Random& random, const Scene& scene) {
    switch (random.Below(9)) {
      case 0:
      case 1:
      case 2:
        ChooseWhatToDo(random, scene);
        PickArea(random, scene);
        break;
      case 3:
        // A refused seed leaves no line, and what entering the mode sets would not be played.
        ChooseWhatToDo(random, scene, HasHidden());
        PickSurface(random, scene);
        break;
      case 4:
        ChooseWhatToDo(random, scene);
        PickElement(random, scene);
        break;
      case 5:
        Undo();
        break;
      default:
        Reset();
        break;
    }
  }

  void Undo() {
    if (!Session().UndoLastAlter(false)) return;
    Session().RecordUndoAlter();
    ++m_done["undo"];
  }

  /// Only where session and journal agree on the mode, of which a journal tells by its last change
  /// alone.
  void Reset() {
    const std::vector<std::string>& lines = host.recordedLines;
    if (!Session().IsBlankMode() || lines.empty()) return;
    if (lines.back().find("BLANK") == std::string::npos) return;
    Session().ResetPickBlanks();
    Session().RecordUndoBlank();
    ++m_done["reset"];
  }

  void ChooseWhatToDo(Random& random, const Scene& scene, bool mayHide = true) {
    if (mayHide && random.Below(3) == 0) {
      EXPECT_TRUE(Session().EnterBlankMode());
      m_isNodal = false;
    } else {
      Session().EnterAlterMode();
      m_isNodal = random.Flip();
      Session().SetAlterVariable(m_isNodal ? scene.n : scene.c);
      static const char* const modifiers[] = {"+1.5", "-2.25", "*0.5", "/4", "=7.25"};
      EXPECT_TRUE(Session().ParseModifier(modifiers[random.Below(5)]));
    }
    Session().SetPickRule(random.Flip(), random.Flip());
  }

  bool HasHidden() const {
    return std::any_of(
        host.recordedLines.begin(), host.recordedLines.end(),
        [](const std::string& line) { return line.find(" BLANK") != std::string::npos; });
  }

  void Draw(const Boundary& boundary) {
    host.ActiveFrame().geometries.clear();
    host.AddGeometry(boundary.Drawn());
  }

  void PickArea(Random& random, const Scene& scene) {
    const Boundary boundary = RandomBoundary(random, scene.is3d);
    if (boundary.Is3d()) {
      // As typed into the dialog's fields.
      MacroCommand shape;
      ASSERT_TRUE(MacroEngine.ParseCommand(boundary.Line(), shape));
      if (boundary.shape == Shape::Cube) {
        ASSERT_TRUE(Session().Cube().SetFromMacro(shape));
      } else {
        ASSERT_TRUE(Session().Sphere().SetFromMacro(shape));
      }
    } else {
      Draw(boundary);
    }
    Session().SetPickKind(KindOf(boundary.shape), true);
    EXPECT_TRUE(Session().ApplyArea(false));
    Session().RecordArea();
    host.RunIdleQueue();
    ++m_done["area"];
  }

  void PickSurface(Random& random, const Scene& scene) {
    const Boundary boundary = RandomBoundary(random, false);
    Draw(boundary);
    Session().SetPickKind(KindOf(boundary.shape), true);
    EXPECT_TRUE(Session().StartSurfacePick());
    const LgIndex_t zone = 1 + random.Below(scene.zoneCount);
    host.Probe(true, zone, 1, 1 + random.Below(host.ZoneAt(zone)->mesh.NodeCount()));
    m_done["surface"] += host.errorBoxes.empty() ? 1 : 0;
    host.errorBoxes.clear();
  }

  void PickElement(Random& random, const Scene& scene) {
    Session().SetPickKind(PickKind::Element, true);
    const LgIndex_t zone = 1 + random.Below(scene.zoneCount);
    const fakehost::Mesh& mesh = host.ZoneAt(zone)->mesh;
    host.Probe(m_isNodal, zone, 1 + random.Below(mesh.CellCount()),
               1 + random.Below(mesh.NodeCount()));
    EXPECT_THAT(host.errorBoxes, ::testing::IsEmpty());
    EXPECT_THAT(host.messageBoxes, ::testing::IsEmpty());
    ++m_done["element"];
  }

  static PickKind KindOf(Shape shape) {
    static constexpr PickKind kKinds[] = {PickKind::Rectangle, PickKind::Circle, PickKind::Polygon,
                                          PickKind::Cube, PickKind::Sphere};
    return kKinds[static_cast<int>(shape)];
  }

  /// Every value of the zones that came with the data. A zone that has nothing hidden yet may have
  /// its zeros or none.
  std::vector<Bytes> AllValues(const Scene& scene) {
    std::vector<Bytes> all;
    for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
      for (LgIndex_t var = 1; var <= scene.c; ++var) all.push_back(BytesOf(zone, var));
      all.push_back(BytesOf(zone, scene.c + 1));
      all.back().resize(static_cast<std::size_t>(host.ZoneAt(zone)->mesh.CellCount()));
    }
    return all;
  }

  bool m_isNodal = false;
  std::map<std::string, int> m_done;
};

TEST_P(RecordedSession, PlaysBackToTheSameValues) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Scene scene = Begin(seed);
    const std::vector<Bytes> untouched = AllValues(scene);
    Random random(seed * 8 + static_cast<unsigned>(GetParam()));
    host.isRecording = true;
    for (int step = 0; step < 10; ++step) DoSomething(random, scene);
    host.isRecording = false;
    const std::vector<Bytes> left = AllValues(scene);
    m_done["changing"] += left != untouched ? 1 : 0;
    const std::vector<std::string> journal = host.recordedLines;
    host.Deliver(StateChange_NewLayout);

    Begin(seed);
    for (const std::string& line : journal) PlayWell(LineOf(line));
    EXPECT_TRUE(AllValues(scene) == left) << ::testing::PrintToString(journal);
    host.RunIdleQueue();
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
  for (const char* const what : {"area", "surface", "element", "undo", "reset", "changing"}) {
    EXPECT_GT(m_done[what], 10) << what;
  }
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, RecordedSession, ::testing::Range(0, 8));

}  // namespace
