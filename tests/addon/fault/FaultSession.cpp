#include "FaultSession.h"

#include "FaultTable.h"
#include "GeometryChoice.h"
#include "User.h"
#include "WrongAnswers.h"

#include "qelvane/Keywords.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>

/// The add-on's one exported function.
extern "C" void InitQelAddOn113(void);

namespace fault {

using fakehost::FakeHost;
using fakehost::Host;
using fakehost::MakeLattice;
using fakehost::StoredType;

namespace {

std::vector<std::string> TextsOf(const std::vector<fakehost::MessageShown>& boxes) {
  std::vector<std::string> texts;
  for (const fakehost::MessageShown& box : boxes) texts.push_back(box.text);
  return texts;
}

/// Those of the first that are not in the second, as often as they are there too many.
std::vector<std::string> Without(const std::vector<std::string>& all,
                                 std::vector<std::string> known) {
  std::vector<std::string> rest;
  for (const std::string& text : all) {
    const auto found = std::find(known.begin(), known.end(), text);
    if (found == known.end()) {
      rest.push_back(text);
    } else {
      known.erase(found);
    }
  }
  return rest;
}

/// "... (Selvane 42)" -> "... (Selvane)".
std::string WithoutLine(const std::string& text) {
  const std::size_t blank = text.find_last_of(' ');
  const std::size_t open = text.find_last_of('(');
  const bool hasPlace = blank != std::string::npos && open != std::string::npos && open < blank &&
                        text.back() == ')' &&
                        text.find_first_not_of("0123456789", blank + 1) == text.size() - 1;
  return hasPlace ? text.substr(0, blank) + ")" : text;
}

/// A function that is called more often than this is let fail at a sample of its calls.
constexpr int kMostCalls = 400;
/// Up to this many calls all of them fail in any build.
constexpr int kCallsInARow = 8;
constexpr int kFirstCalls = 100;
constexpr int kLastCalls = 20;
constexpr int kSampledCalls = 80;
/// Where boxes may be shown has little to do with which of the calls is refused.
constexpr int kBatchEvery = 4;

std::vector<int> CallsToFail(int count) {
  std::vector<int> calls;
  if (count <= kMostCalls) {
    for (int nth = 1; nth <= count; nth += nth < kCallsInARow ? 1 : MARQUELL_FAULT_STEP) {
      calls.push_back(nth);
    }
    return calls;
  }
  for (int nth = 1; nth <= kFirstCalls; ++nth) calls.push_back(nth);
  std::mt19937 random(static_cast<unsigned>(count));
  std::uniform_int_distribution<int> between(kFirstCalls + 1, count - kLastCalls);
  for (int i = 0; i < kSampledCalls; ++i) calls.push_back(between(random));
  for (int nth = count - kLastCalls + 1; nth <= count; ++nth) calls.push_back(nth);
  return calls;
}

/// Of a function that was called so often: the first, the last and some between them.
std::vector<int> SampleOfCalls(int count) {
  std::vector<int> calls;
  for (const int nth : {1, 2, count / 2, count}) {
    if (nth >= 1 && nth <= count && (calls.empty() || nth > calls.back())) calls.push_back(nth);
  }
  return calls;
}

std::vector<Change> ChangesOf(const Session& session) {
  std::vector<Change> changes;
  for (const Deed& deed : session.deeds) changes.push_back(deed.change);
  return changes;
}

std::string Described(const Trouble& trouble) {
  std::string text = "call " + std::to_string(trouble.nth);
  if (trouble.wrongAnswer >= 0) text += ", wrong answer " + std::to_string(trouble.wrongAnswer);
  if (trouble.then > 0) text += " and the next but " + std::to_string(trouble.then - 1);
  return text;
}

}  // namespace

bool Heard::operator==(const Heard& other) const {
  return isDone == other.isDone && error == other.error && errorBoxes == other.errorBoxes &&
         messages == other.messages;
}

std::string Difference(const Deed& deed, const Heard& heard, const Heard& asUsual) {
  if (heard == asUsual) return "as without it";
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : " + ") + part; };
  if (!heard.isDone && heard.error != asUsual.error) add("failed: " + WithoutLine(heard.error));
  for (const std::string& box : Without(heard.errorBoxes, asUsual.errorBoxes)) {
    add(deed.box != nullptr && box == deed.box ? "box" : "box: " + box);
  }
  for (const std::string& box : Without(heard.messages, asUsual.messages)) add("message: " + box);
  return text.empty() ? "nothing" : text;
}

void PrepareZones(QelZoneType_e type, QelPlotType_e plotType) {
  FakeHost& host = Host();
  fakehost::Frame& frame = host.AddFrame(plotType);
  for (const char* layer : {SV_SHOWEDGE, SV_SHOWMESH, SV_SHOWSHADE}) frame.layers[layer] = true;
  const bool isSolid = type == ZoneType_FETetra || type == ZoneType_FEBrick ||
                       type == ZoneType_FEPolyhedron ||
                       (type == ZoneType_Ordered && plotType == PlotType_Cartesian3D);
  const LgIndex_t rows = type == ZoneType_FELineSeg ? 0 : 2;
  for (LgIndex_t zone = 1; zone <= kFileZones; ++zone) {
    host.AddZone(MakeLattice(type, 2, rows, isSolid ? 1 : 0));
  }
  for (const QelValueLocation_e location : {ValueLocation_Nodal, ValueLocation_CellCentered}) {
    const LgIndex_t var =
        host.AddVariable(location == ValueLocation_Nodal ? "n" : "c", location, StoredType::Double,
                         [](LgIndex_t, LgIndex_t item) { return 1.0 * item; });
    host.Share(1, 2, var);
    host.ActiveFrame().blanking.constraints[1] = {
        true, var, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant, 2.0};
  }
  host.ActiveFrame().blanking.include = true;
}

// Running ----------------------------------------------------------------------------------------

FaultRunner::FaultRunner(const Session& session) : m_session(session) {
  // Once before anything is counted: the dialog is built in the first run of a process.
  Start(false);
  if (session.isLoading) InitQelAddOn113();
  Host().ChooseMenu(kMenuLabel);
  CloseEverything(m_problems);
  // The values that an undisturbed step reaches.
  Start(false);
  if (session.isLoading) InitQelAddOn113();
  m_freshMask = DoNext(false, m_problems);
  CloseEverything(m_problems);
  CountCalls();
  for (const std::string& problem : m_problems) ADD_FAILURE() << session.name << ": " << problem;
  m_problems.clear();
}

void FaultRunner::Start(bool isBatch) {
  FakeHost& host = Host();
  host.Reset();
  m_session.prepare();
  host.isRecording = true;
  // A No would hold for the process, as would a geometry that is waited for.
  host.queuedAnswers.assign(99, true);
  qelvane::qelutiltools::SetGeometryArmed(false);
  host.isBatch = isBatch;
  if (m_session.isLoading) return;
  InitQelAddOn113();
  if (m_session.isOpened) host.ChooseMenu(kMenuLabel);
  host.calls.clear();
}

Heard FaultRunner::Do(const Deed& deed) {
  FakeHost& host = Host();
  host.errorBoxes.clear();
  host.messageBoxes.clear();
  Heard heard;
  if (deed.act != nullptr) {
    deed.act();
  } else {
    const fakehost::PlayResult result = host.Play(deed.line);
    heard.isPlayed = true;
    heard.isDone = result.isDone;
    heard.error = result.error;
    host.RunIdleQueue();
  }
  heard.errorBoxes = host.errorBoxes;
  heard.messages = TextsOf(host.messageBoxes);
  return heard;
}

void FaultRunner::CountCalls() {
  Start(false);
  std::map<std::string, int> counts;
  std::map<std::string, int> allCounts;
  for (const Deed& deed : m_session.deeds) {
    const Snapshot before = ValuesOfUser();
    m_asUsual.push_back(Do(deed));
    const std::string wrong = WrongValue(before, ValuesOfUser(), {deed.change});
    if (!wrong.empty()) m_problems.push_back(deed.name + " without a fault: " + wrong);
  }
  for (const fakehost::CallRecord& call : Host().calls) {
    if (call.isFallible) ++counts[call.function];
    ++allCounts[call.function];
  }
  m_counts.assign(counts.begin(), counts.end());
  m_allCounts.assign(allCounts.begin(), allCounts.end());
  CloseEverything(m_problems);
}

void FaultRunner::RunAll(const std::vector<std::string>& except) {
  for (const auto& [function, count] : m_counts) {
    if (std::find(except.begin(), except.end(), function) != except.end()) continue;
    for (const int nth : CallsToFail(count)) {
      RunOne({function, nth}, false);
      if (nth == 1 || nth % kBatchEvery == 0) RunOne({function, nth}, true);
    }
  }
}

void FaultRunner::RunTwice(const std::vector<std::string>& except) {
  for (const auto& [function, count] : m_counts) {
    if (std::find(except.begin(), except.end(), function) != except.end()) continue;
    for (const int nth : SampleOfCalls(count)) {
      // What is called next are the attempts to clean up, then what the user does next.
      for (const int then : {1, 2, 3, 5, 9, 20}) {
        RunOne({function, nth, Trouble::kRefused, then}, then == 3);
      }
    }
  }
}

void FaultRunner::RunWrongAnswers() {
  std::map<std::string, int> counts(m_allCounts.begin(), m_allCounts.end());
  for (const Liar& liar : Liars()) {
    for (const int nth : SampleOfCalls(counts[liar.function])) {
      for (int answer = 0; answer < liar.wrongAnswers; ++answer) {
        RunOne({liar.function, nth, answer}, answer % 2 == 1);
      }
    }
  }
}

void FaultRunner::RunApart(const std::string& function) {
  for (const auto& [called, count] : m_counts) {
    if (called != function) continue;
    for (const int nth : CallsToFail(count)) {
      std::fflush(nullptr);
      const pid_t child = fork();
      if (child == 0) {
        m_unexpected.clear();
        RunOne({function, nth}, false);
        for (const std::string& line : m_unexpected) std::printf("%s\n", line.c_str());
        std::fflush(nullptr);
        _exit(m_unexpected.empty() && !testing::Test::HasFailure() ? 0 : 1);
      }
      ++m_faultCount;
      int status = 0;
      const bool isOver = waitpid(child, &status, 0) == child;
      if (isOver && WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        ++m_survivedCount;
      } else {
        m_unexpected.push_back(function + " | call " + std::to_string(nth) + " apart, see above");
      }
    }
  }
}

void FaultRunner::RunOne(const Trouble& trouble, bool isBatch) {
  FakeHost& host = Host();
  const std::string& function = trouble.function;
  const bool isPlain = trouble.wrongAnswer < 0 && trouble.then == 0;
  ++m_faultCount;
  m_problems.clear();
  Start(isBatch);
  host.keepsCalls = false;
  if (trouble.wrongAnswer < 0) {
    host.FailCall(function, trouble.nth, trouble.then, kQueueing);
  } else {
    LieOnCall(function, trouble.wrongAnswer, trouble.nth);
  }
  std::string where = "no deed";
  bool isOver = false;
  for (std::size_t i = 0; i < m_session.deeds.size(); ++i) {
    const Deed& deed = m_session.deeds[i];
    const Snapshot before = ValuesOfUser();
    const Heard heard = Do(deed);
    // After two refusals an undo may be that of an earlier deed.
    const std::vector<Change> changes =
        isPlain ? std::vector<Change>{deed.change} : ChangesOf(m_session);
    const std::string wrong = WrongValue(before, ValuesOfUser(), changes);
    if (!wrong.empty()) m_problems.push_back(deed.name + ": " + wrong);
    const std::string wrongBlank = WrongBlank();
    if (!wrongBlank.empty()) m_problems.push_back(deed.name + ": " + wrongBlank);
    if (host.LockDepth() != 0) m_problems.push_back(deed.name + " left a lock on");
    if (!isOver && host.WasFaultHit()) {
      where = deed.name;
      CheckDeed(trouble, deed, heard, m_asUsual[i], isBatch);
      isOver = true;
    } else if (isOver && isPlain) {
      CheckLater(deed, heard, m_asUsual[i]);
    }
  }
  // Less is asked and shown in a batch run.
  if (!isOver && (isPlain || !isBatch)) m_problems.push_back("the call was never made");
  // An add-on that did not load is loaded anew.
  if (m_session.isLoading) {
    CloseEverything(m_problems);
    Start(false);
    InitQelAddOn113();
  }
  // A boundary that was made while the host denied that there is data has not seen the one that was
  // there; the next choice of a tool takes away one of two.
  const bool mayLeaveZone = !isPlain || function == "QelUtilDataSetIsAvailable";
  if (m_freshMask != DoNext(mayLeaveZone, m_problems))
    m_problems.push_back("the next step reaches other values");
  CloseEverything(m_problems, trouble.wrongAnswer >= 0);
  if (m_problems.empty()) ++m_survivedCount;
  for (const std::string& problem : m_problems) {
    Note(function + " | " + problem + " [" + m_session.name + ", " + where + ", " +
         Described(trouble) + (isBatch ? ", batch]" : "]"));
  }
}

void FaultRunner::CheckLater(const Deed& deed, const Heard& heard, const Heard& asUsual) {
  if (heard.error.find("Assert failed") == 0) {
    m_problems.push_back("later: " + deed.name + ": " + heard.error);
  } else if (!Without(heard.errorBoxes, asUsual.errorBoxes).empty() &&
             heard.errorBoxes[0].find("An error occured") == 0) {
    m_problems.push_back("later: " + deed.name + ": " + heard.errorBoxes[0]);
  }
}

void FaultRunner::CheckDeed(const Trouble& trouble, const Deed& deed, const Heard& heard,
                            const Heard& asUsual, bool isBatch) {
  const std::string difference = Difference(deed, heard, asUsual);
  if (isBatch) {
    const bool isInternal = difference.find("box") == 0 && difference.find("box:") != 0;
    if (isInternal || difference.find("+ box") != std::string::npos) {
      m_problems.push_back(deed.name + " shows a box in a batch run: " + difference);
    }
    // Where the user would see a box, nobody sees anything.
    if (difference == "nothing" || difference == "as without it") return;
  }
  if (trouble.wrongAnswer >= 0 || trouble.then > 0) return;
  const bool isExpected = deed.box == nullptr ? difference == "as without it"
                                              : IsExpected(trouble.function, deed.line, difference);
  if (!isExpected) m_problems.push_back("unexpected: " + difference);
}

void FaultRunner::Note(const std::string& what) { m_unexpected.push_back(what); }

}  // namespace fault
