// Plays random journals over random data on the open host and on the host in memory, and holds
// against each other, after every line, all values to the last bit, whether it was carried out and
// what is hidden; and sees to it that neither takes up more and more memory.
//
//   soak SECONDS SEED        journals of the seeds from SEED on, for so long
//   soak --replay SEED       the journal of one seed, line by line
#include "OpenSide.h"
#include "Peer.h"
#include "RandomData.h"
#include "RandomJournal.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace soak;

struct Tally {
  std::int64_t journals = 0;
  std::int64_t lines = 0;
  std::int64_t equal = 0;
  std::int64_t done = 0;
};

/// Where two hosts come to differ.
struct Difference {
  std::size_t line = 0;  ///< as many lines were alike
  std::string text;
};

struct Session {
  std::vector<std::string> journal;
  std::optional<Difference> difference;
  Memory peerMemory;
};

/// The open host says of a failure that has no text, and of its own commands, what the other
/// cannot.
Outcome AsCompared(Outcome outcome, const std::string& line) {
  const bool isHostCommand = line.rfind("$!", 0) == 0;
  if (isHostCommand || outcome.error == "The add-on gives no reason.") outcome.error.clear();
  return outcome;
}

class Soak {
 public:
  explicit Soak(bool isLoud) : m_peer(MARQUELL_SOAK_PEER), m_isLoud(isLoud) {}

  Session Play(std::uint64_t seed, Tally& tally) {
    constexpr const char* kServices[] = {"",
                                         "bulk",
                                         "bulk,parallel,progress",
                                         "bulk:zero+wide,parallel",
                                         "bulk:interleaved+partial,progress",
                                         "bulk:points+bent"};
    Random random(seed);
    Session session;
    const Copy copy = m_open.Begin(MakeRandomData(random));
    session.journal = MakeRandomJournal(random, copy);
    const std::string services = random.OneOf(kServices);
    if (m_isLoud)
      std::printf("seed %llu, %s\n", static_cast<unsigned long long>(seed), services.c_str());
    const Outcome here = m_open.Look(true, {});
    session.difference =
        Compare(0, here, m_peer.Begin(copy, services, here.relevantZones), "the data");
    for (std::size_t n = 0; n < session.journal.size() && !session.difference; ++n) {
      PlayLine(session, n, tally);
    }
    End(session);
    ++tally.journals;
    return session;
  }

 private:
  void PlayLine(Session& session, std::size_t n, Tally& tally) {
    const std::string& line = session.journal[n];
    const Outcome here = AsCompared(m_open.Play(line), line);
    const Outcome there = AsCompared(m_peer.Play(line, here.relevantZones), line);
    if (m_isLoud) {
      std::printf("%s\n    %s %s\n", line.c_str(), here.isDone ? "done" : "not done",
                  here.error.c_str());
    }
    session.difference = Compare(n, here, there, line);
    ++tally.lines;
    tally.equal += session.difference ? 0 : 1;
    tally.done += here.isDone ? 1 : 0;
  }

  static std::optional<Difference> Compare(std::size_t line, const Outcome& here,
                                           const Outcome& there, const std::string& what) {
    const std::string text = DifferenceOf(here, there);
    if (text.empty()) return std::nullopt;
    return Difference{line, what + ": " + text};
  }

  void End(Session& session) {
    const std::string complaint = m_open.End();
    const Peer::Ended ended = m_peer.End();
    session.peerMemory = ended.memory;
    if (session.difference) return;
    const std::size_t all = session.journal.size();
    if (!complaint.empty()) session.difference = Difference{all, complaint};
    if (!ended.complaints.empty()) session.difference = Difference{all, ended.complaints.front()};
  }

  OpenSide m_open;
  Peer m_peer;
  bool m_isLoud;
};

void Tell(std::uint64_t seed, const Session& session) {
  std::printf("seed %llu differs: %s\nthe journal:\n", static_cast<unsigned long long>(seed),
              session.difference->text.c_str());
  for (std::size_t n = 0; n < session.journal.size() && n <= session.difference->line; ++n) {
    std::printf("  %s\n", session.journal[n].c_str());
  }
}

/// The least memory in use, of journals that come after another: what is in use between two
/// journals goes up and down.
class LeastMemory {
 public:
  void Take(const Memory& open, const Memory& peer) {
    const std::int64_t heap = open.heap + peer.heap;
    const std::int64_t resident = open.resident + peer.resident;
    m_heap = m_isEmpty ? heap : std::min(m_heap, heap);
    m_resident = m_isEmpty ? resident : std::min(m_resident, resident);
    m_isEmpty = false;
  }
  double HeapMiB() const { return static_cast<double>(m_heap) / (1 << 20); }
  double ResidentMiB() const { return static_cast<double>(m_resident) / (1 << 20); }

 private:
  bool m_isEmpty = true;
  std::int64_t m_heap = 0;
  std::int64_t m_resident = 0;
};

int Run(double seconds, std::uint64_t firstSeed) {
  using Clock = std::chrono::steady_clock;
  constexpr std::int64_t kAtATime = 20;
  // Tables grow by doubling; a journal of which anything stayed would pass this within an hour.
  constexpr double kMostHeapGrowthMiB = 1.0;
  constexpr double kMostResidentGrowthMiB = 16.0;
  const Clock::time_point start = Clock::now();
  const auto passed = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
  Soak soak(false);
  Tally tally;
  LeastMemory before;
  LeastMemory now;
  std::int64_t differing = 0;
  for (std::uint64_t seed = firstSeed; passed() < seconds || tally.journals < 3 * kAtATime;
       ++seed) {
    const Session session = soak.Play(seed, tally);
    if (session.difference) {
      Tell(seed, session);
      if (++differing >= 5) break;
    }
    // The first tenth warms up, with two rounds at least.
    const std::int64_t round = (tally.journals - 1) / kAtATime;
    if ((tally.journals - 1) % kAtATime == 0) now = LeastMemory();
    now.Take(MemoryInUse(), session.peerMemory);
    if (round < 2 || passed() < 0.1 * seconds) before = now;
  }
  std::printf(
      "%lld journals, %lld lines (%lld carried out), %lld equal, memory %.1f -> %.1f MiB, heap in "
      "use %.2f -> %.2f MiB\n",
      static_cast<long long>(tally.journals), static_cast<long long>(tally.lines),
      static_cast<long long>(tally.done), static_cast<long long>(tally.equal), before.ResidentMiB(),
      now.ResidentMiB(), before.HeapMiB(), now.HeapMiB());
#ifdef MARQUELL_SANITIZED
  constexpr bool kIsWatched = false;
#else
  constexpr bool kIsWatched = true;
#endif
  const bool isFlat =
      !kIsWatched || (now.HeapMiB() - before.HeapMiB() < kMostHeapGrowthMiB &&
                      now.ResidentMiB() - before.ResidentMiB() < kMostResidentGrowthMiB);
  if (!isFlat) std::printf("memory grows\n");
  // Journals that mostly fail would show nothing.
  const bool isTelling = tally.done * 2 > tally.lines;
  if (!isTelling) std::printf("too few lines were carried out\n");
  return differing == 0 && isFlat && isTelling ? 0 : 1;
}

int Replay(std::uint64_t seed) {
  Soak soak(true);
  Tally tally;
  const Session session = soak.Play(seed, tally);
  if (session.difference) Tell(seed, session);
  return session.difference ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  try {
    if (args.size() == 2 && args[0] == "--replay") return Replay(std::stoull(args[1]));
    if (args.size() == 2) return Run(std::stod(args[0]), std::stoull(args[1]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "soak: %s\n", error.what());
    return 1;
  }
  std::fprintf(stderr, "usage: soak SECONDS SEED\n       soak --replay SEED\n");
  return 2;
}
