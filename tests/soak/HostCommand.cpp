#include "HostCommand.h"

#include "FakeHost.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"
#include "qelvane/toolbox/ArgList.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace soak {

using fakehost::Host;

namespace {

/// The host on top of the lock stack while it acts.
class HostActs {
 public:
  HostActs() { Host().lockOwners.emplace_back("Workbench"); }
  ~HostActs() { Host().lockOwners.pop_back(); }
  HostActs(const HostActs&) = delete;
  HostActs& operator=(const HostActs&) = delete;
};

bool SetPlotType(const std::string& name) {
  static const std::map<std::string, QelPlotType_e> kTypes = {{"CARTESIAN2D", PlotType_Cartesian2D},
                                                              {"CARTESIAN3D", PlotType_Cartesian3D},
                                                              {"POLAR", PlotType_Polar}};
  const auto type = kTypes.find(name);
  if (type == kTypes.end()) return false;
  Host().ActiveFrame().plotType = type->second;
  Host().Deliver(StateChange_Style, {SV_PLOTTYPE});
  return true;
}

bool SetZone(LgIndex_t number, bool isActive) {
  fakehost::Zone* const zone = Host().ZoneAt(number);
  if (zone == nullptr) return false;
  zone->isActive = isActive;
  return true;
}

/// constraint  0: a setting of all blanking
bool SetBlanking(LgIndex_t constraint, const std::string& name, const std::string& value) {
  const HostActs acts;
  QelArgList* args = QelUtilArgListAlloc();
  if (constraint > 0) QelUtilArgListAppendInt(args, SV_OFFSET1, constraint);
  QelUtilArgListAppendString(args, SV_P1, SV_BLANKING);
  QelUtilArgListAppendString(args, SV_P2, SV_VALUE);
  if (constraint > 0) QelUtilArgListAppendString(args, SV_P3, SV_CONSTRAINT);
  QelUtilArgListAppendString(args, constraint > 0 ? SV_P4 : SV_P3, name.c_str());
  if (name == SV_VALUECUTOFF) {
    QelUtilArgListAppendDouble(args, SV_DVALUE, std::atof(value.c_str()));
  } else {
    const ArbParam_t number = value == "YES" ? 1 : value == "NO" ? 0 : std::atoi(value.c_str());
    QelUtilArgListAppendArbParam(args, SV_IVALUE, number);
  }
  const QelSetValueResult_e result = QelUtilStyleSetLowLevelX(args);
  QelUtilArgListDealloc(&args);
  return result == SetValueResult_Ok || result == SetValueResult_Duplicate;
}

}  // namespace

bool CarryOut(const std::string& line) {
  char word[64] = {};
  char value[64] = {};
  int number = 0;
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  const char* const text = line.c_str();
  if (std::sscanf(text, "$!PLOTTYPE %63s", word) == 1) return SetPlotType(word);
  if (std::sscanf(text, "$!VIEW PSI=%lf ALPHA=%lf THETA=%lf", &a, &b, &c) == 3) {
    // Which way theta turns the picture is for each host to say; this one says the other way.
    Host().RotateView(a, b, -c);
    return true;
  }
  if (std::sscanf(text, "$!ZONE %d ACTIVE=%63s", &number, word) == 2) {
    return SetZone(number, word == std::string("YES"));
  }
  if (std::sscanf(text, "$!TIME %lf", &a) == 1) {
    Host().solutionTime = a;
    Host().Deliver(StateChange_SolutionTime);
    return true;
  }
  if (std::sscanf(text, "$!BLANKING VALUE{CONSTRAINT %d {%63s = %63[^}]}}", &number, word, value) ==
      3) {
    return SetBlanking(number, word, value);
  }
  if (std::sscanf(text, "$!BLANKING VALUE{%63s = %63[^}]}", word, value) == 2) {
    return SetBlanking(0, word, value);
  }
  return false;
}

}  // namespace soak
