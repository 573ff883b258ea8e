#include "RandomJournal.h"

#include <cstdio>

namespace soak {

namespace {

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

class Lines {
 public:
  Lines(Random& random, const Copy& data) : m_random(random), m_data(data) {}

  std::string Next() {
    using Make = std::string (Lines::*)();
    struct Row {
      int weight;
      Make make;
    };
    static constexpr Row kRows[] = {
        {8, &Lines::Boundary},     {9, &Lines::AlterArea}, {4, &Lines::AlterElement},
        {4, &Lines::AlterSurface}, {3, &Lines::BlankArea}, {2, &Lines::BlankElement},
        {2, &Lines::BlankSurface}, {4, &Lines::Undo},      {2, &Lines::View},
        {6, &Lines::HostCommand},  {2, &Lines::Nonsense}};
    int all = 0;
    for (const Row& row : kRows) all += row.weight;
    int at = m_random.Below(all);
    for (const Row& row : kRows) {
      if ((at -= row.weight) < 0) return (this->*row.make)();
    }
    return {};
  }

 private:
  std::string Place() { return Number(m_random.Between(-4, 7)); }
  std::string Length() {
    return Number(m_random.IsOneIn(8) ? m_random.Between(-5, 0) : m_random.Between(0.2, 8));
  }
  std::string Anchor() {
    // Some lie in the plane of the picture, from the middle of the data, and some in the data.
    return " ANCHORX=" + Place() + " ANCHORY=" + Place();
  }

  std::string Corners() {
    std::string text;
    const int count = 1 + m_random.Below(m_random.IsOneIn(4) ? 30 : 7);
    for (int corner = 0; corner < count; ++corner) {
      text += (corner == 0 ? "" : ",") + Place() + "," + Place();
    }
    return " CORNERS=\"" + text + "\"";
  }

  std::string Angles() {
    std::string text;
    for (const char axis : {'X', 'Y', 'Z'}) {
      if (m_random.IsOneIn(3)) {
        text += std::string(" ROTATE") + axis + "=" + Number(m_random.Between(-180, 180));
      }
    }
    return text;
  }

  std::string Boundary() {
    switch (m_random.Below(6)) {
      case 0:
        return "Marquell PICKCIRCLE" + Anchor() + " RADIUS=" + Length();
      case 1:
        return "Marquell PICKPOLYGON" + Corners();
      case 2:
        return "Marquell PICKCUBE" + Anchor() + " ANCHORZ=" + Place() + " SIZEX=" + Length() +
               " SIZEY=" + Length() + " SIZEZ=" + Length() + Angles();
      case 3:
        return "Marquell PICKSPHERE" + Anchor() + " ANCHORZ=" + Place() + " RADIUS=" + Length();
      default:
        return "Marquell PICKRECTANGLE" + Anchor() + " SIZEX=" + Length() + " SIZEY=" + Length();
    }
  }

  LgIndex_t Zone() { return 1 + m_random.Below(static_cast<int>(m_data.zones.size())); }

  std::string ZoneAndItem(const char* word) {
    const LgIndex_t zone = Zone();
    const auto& fields = m_data.fields[static_cast<std::size_t>(zone - 1)];
    const auto nodeCount = static_cast<int>(fields.front().values.size());
    const int item = m_random.Below(nodeCount + 1) + (m_random.IsOneIn(10) ? 0 : 1);
    const LgIndex_t named = m_random.IsOneIn(20) ? 99 : zone;
    return " ZONE=" + std::to_string(named) + " " + word + "=" + std::to_string(item);
  }

  std::string Modifier(bool isCoordinate) {
    // Places stay such that no two ways to add up disagree about them.
    constexpr const char* kGentle[] = {"+0.5", "*1.1", "-0.25", "/1.5", "*-1"};
    constexpr const char* kAny[] = {"+1",    "*1.4",   "=7.5",    "-0.5",   "/3",     "*0",
                                    "=-33",  "+1e300", "*1e300",  "/7",     "=1e999", "*1e-300",
                                    "=+nan", "+1e999", "*-0.001", "=127.5", "+0",     "--3",
                                    "=-0",   "5abc",   "1e3"};
    constexpr const char* kBad[] = {"abc", "", "/0", "/", "=inf", "x5", "/-0"};
    if (m_random.IsOneIn(15)) return m_random.OneOf(kBad);
    return isCoordinate ? m_random.OneOf(kGentle) : m_random.OneOf(kAny);
  }

  /// At times nothing, which leaves it as it was.
  std::string Change() {
    if (m_random.IsOneIn(20)) return {};
    const auto count = static_cast<int>(m_data.variables.size());
    constexpr int kCoordinates = 3;
    const bool isCoordinate = m_random.IsOneIn(12);
    const int var = isCoordinate ? m_random.Below(kCoordinates)
                                 : kCoordinates + m_random.Below(count - kCoordinates);
    std::string name = m_data.variables[static_cast<std::size_t>(var)];
    if (m_random.IsOneIn(25)) name = m_random.IsOneIn(2) ? "PICK_BLANK" : "no such variable";
    return " VARIABLE=\"" + name + "\" MODIFIER=\"" + Modifier(isCoordinate) + "\"";
  }

  std::string Rule() {
    constexpr const char* kRules[] = {"ANYINSIDE", "ANYOUTSIDE", "ALLINSIDE", "ALLOUTSIDE"};
    if (m_random.IsOneIn(6)) return {};
    if (m_random.IsOneIn(30)) return " RULE=SOMEINSIDE";
    return std::string(" RULE=") + m_random.OneOf(kRules);
  }

  std::string AlterArea() { return "Marquell ALTERAREA" + Change() + Rule(); }
  std::string AlterElement() { return "Marquell ALTERELEMENT" + Change() + ZoneAndItem("ELEMENT"); }
  std::string AlterSurface() {
    return "Marquell ALTERSURFACE" + Change() + ZoneAndItem("SEEDPOINT") + Rule();
  }
  std::string BlankArea() { return "Marquell BLANKAREA" + Rule(); }
  std::string BlankElement() { return "Marquell BLANKELEMENT" + ZoneAndItem("ELEMENT"); }
  std::string BlankSurface() { return "Marquell BLANKSURFACE" + ZoneAndItem("SEEDPOINT") + Rule(); }
  std::string Undo() { return m_random.IsOneIn(4) ? "Marquell UNDOBLANK" : "Marquell UNDOALTER"; }
  std::string View() {
    constexpr const char* kViews[] = {"VIEWXY", "VIEWXZ", "VIEWYZ", "VIEW3D", "PICKGEOMETRY"};
    return std::string("Marquell ") + m_random.OneOf(kViews);
  }

  std::string Constraint() {
    const std::string number = std::to_string(1 + m_random.Below(3));
    const auto variable = [this] {
      return std::to_string(4 + m_random.Below(static_cast<int>(m_data.variables.size()) - 3));
    };
    const auto setting = [&](const std::string& text) {
      return "$!BLANKING VALUE{CONSTRAINT " + number + " {" + text + "}}";
    };
    switch (m_random.Below(6)) {
      case 0:
        return setting("INCLUDE = " + std::string(m_random.IsOneIn(4) ? "NO" : "YES"));
      case 1:
        return setting("VARA = " + variable());
      case 2:
        return setting("VARB = " + variable());
      case 3:
        return setting("RELOP = " + std::to_string(m_random.Below(4)));
      case 4:
        return setting("CONSTRAINTOP2MODE = " + std::to_string(m_random.Below(2)));
      default:
        return setting("VALUECUTOFF = " + Number(m_random.Between(-40, 200)));
    }
  }

  std::string HostCommand() {
    constexpr const char* kPlotTypes[] = {"CARTESIAN2D", "CARTESIAN3D", "CARTESIAN3D",
                                          "CARTESIAN3D", "POLAR"};
    const auto answer = [this] { return std::string(m_random.IsOneIn(3) ? "NO" : "YES"); };
    switch (m_random.Below(8)) {
      case 0:
        return std::string("$!PLOTTYPE ") + m_random.OneOf(kPlotTypes);
      case 1:
        return "$!VIEW PSI=" + Number(m_random.Between(1, 89)) +
               " ALPHA=" + Number(m_random.Between(-170, 170)) +
               " THETA=" + Number(m_random.Between(-80, 80));
      case 2:
        return "$!ZONE " + std::to_string(m_random.IsOneIn(8) ? 77 : Zone()) +
               " ACTIVE=" + answer();
      case 3:
        return "$!BLANKING VALUE{INCLUDE = " + answer() + "}";
      case 4:
        return "$!BLANKING VALUE{BLANKENTIRECELL = " + answer() + "}";
      case 5:
        return "$!BLANKING VALUE{VALUEBLANKCELLMODE = " + std::to_string(m_random.Below(3)) + "}";
      case 6:
        return "$!TIME " + std::to_string(m_random.Below(4));
      default:
        return Constraint();
    }
  }

  std::string Nonsense() {
    constexpr const char* kNonsense[] = {
        "Marquell",
        "Marquell NONSENSE",
        "Marquell PICKRECTANGLE ANCHORX=1",
        "Marquell PICKRECTANGLE ANCHORX=\"1\" ANCHORY=1 SIZEX=1 SIZEY=1",
        "Marquell PICKPOLYGON CORNERS=\"\"",
        "Marquell PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1",
        "Marquell ALTERAREA VARIABLE=",
        "Marquell ALTERAREA MODIFIER=\"+1",
        "Marquell ALTERELEMENT ZONE=1",
        "Marquell BLANKELEMENT ELEMENT=1 ZONE=0",
        "Marquell UNDOALTER RULE=ALLINSIDE",
        "$!NONSENSE"};
    return m_random.OneOf(kNonsense);
  }

  Random& m_random;
  const Copy& m_data;
};

}  // namespace

std::vector<std::string> MakeRandomJournal(Random& random, const Copy& data) {
  Lines lines(random, data);
  std::vector<std::string> journal(static_cast<std::size_t>(10 + random.Below(40)));
  for (std::string& line : journal) line = lines.Next();
  return journal;
}

}  // namespace soak
