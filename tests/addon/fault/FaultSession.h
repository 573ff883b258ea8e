#pragma once

#include "FakeHost.h"
#include "User.h"

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// Sessions in which one call of the host is refused, and what comes of it.
namespace fault {

/// One thing that a user, a journal or the host does.
struct Deed {
  std::string name;
  std::function<void()> act;
  std::string line;  ///< played when there is no act
  /// What becomes of a value of "n" or "c" that the deed reaches; null: none of them changes.
  Change change = nullptr;
  /// The box that stands for an internal error; null: the deed is a question, which shows nothing
  /// whatever happens.
  const char* box = "An error occured in the Marquell add-on. Please try again.";
};

struct Session {
  std::string name;
  /// Makes frames, zones and variables; the host is fresh.
  std::function<void()> prepare;
  std::vector<Deed> deeds;
  bool isOpened = false;   ///< the user has opened the dialog before the first deed
  bool isLoading = false;  ///< faults may lie in the loading of the add-on, too
};

/// What the world hears of one deed.
struct Heard {
  bool isPlayed = false;
  bool isDone = true;
  std::string error;                    ///< of a played line
  std::vector<std::string> errorBoxes;  ///< in their order
  std::vector<std::string> messages;    ///< other boxes
  bool operator==(const Heard& other) const;
};

/// What lasts for the process when it fails: work that is never asked for again.
inline const std::string kQueueing = "QelUtilOnIdleQueueAddCallback";

/// What is heard with a refused call and not without it: "as without it", "failed: " + the text of
/// the line, "box" for the deed's own error box, "box: " + the text of any other one, "message: " +
/// the text of another box; joined when there is more than one, and "nothing" when there is less
/// than without it. The lines of source files are left out.
std::string Difference(const Deed& deed, const Heard& heard, const Heard& asUsual);

/// For messages of tests.
inline void PrintTo(const Session& session, std::ostream* out) { *out << session.name; }

/// Two zones of a type that share what they can, with "n" at the nodes and "c" at the cells; some
/// of the cells are hidden.
void PrepareZones(QelZoneType_e type, QelPlotType_e plotType);

/// What goes wrong in one run.
struct Trouble {
  static constexpr int kRefused = -1;

  std::string function;
  int nth = 1;  ///< of its calls
  /// Else it is answered, wrongly; see WrongAnswers.
  int wrongAnswer = kRefused;
  /// The call that is refused besides, counted from the one refused first; 0: none.
  int then = 0;
};

/// Lets the calls of a session fail, one in each run, and looks at what comes of it.
class FaultRunner {
 public:
  explicit FaultRunner(const Session& session);

  /// Every call of every function, but for those functions.
  void RunAll(const std::vector<std::string>& except = {});
  /// Every call of one function; each run in a process of its own, because what such a fault leaves
  /// lasts for the process.
  void RunApart(const std::string& function);
  /// A sample of the calls of every function, and then one of those that follow: what is said is
  /// not looked at.
  void RunTwice(const std::vector<std::string>& except = {});
  /// A sample of the calls of every function that can answer wrongly; likewise.
  void RunWrongAnswers();

  int FaultCount() const { return m_faultCount; }
  int SurvivedCount() const { return m_survivedCount; }
  /// "function | what was heard" for all that the table does not allow.
  const std::vector<std::string>& Unexpected() const { return m_unexpected; }

 private:
  void Start(bool isBatch);
  Heard Do(const Deed& deed);
  void CountCalls();
  void RunOne(const Trouble& trouble, bool isBatch);
  void CheckDeed(const Trouble& trouble, const Deed& deed, const Heard& heard, const Heard& asUsual,
                 bool isBatch);
  void CheckLater(const Deed& deed, const Heard& heard, const Heard& asUsual);
  void Note(const std::string& what);

  const Session& m_session;
  std::vector<Heard> m_asUsual;
  std::vector<std::pair<std::string, int>> m_counts;  ///< of calls that can be refused
  std::vector<std::pair<std::string, int>> m_allCounts;
  std::vector<std::vector<bool>> m_freshMask;
  int m_faultCount = 0;
  int m_survivedCount = 0;
  std::vector<std::string> m_unexpected;
  std::vector<std::string> m_problems;
};

}  // namespace fault
