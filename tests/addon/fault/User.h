#pragma once

#include "FakeHost.h"

#include <string>
#include <vector>

/// The user of a session: the values that are theirs, and what they do when the trouble is over.
namespace fault {

inline constexpr char kMenuLabel[] = "Marquell ...";
inline constexpr LgIndex_t kFileZones = 2;

/// What a deed may do to a value that it is about.
using Change = double (*)(double);

/// The values of "n" and "c" in the zones of the file: they alone are a user's own.
using Snapshot = std::vector<std::vector<double>>;

Snapshot ValuesOfUser();

/// The first value that is neither what it was nor what a change makes of it; empty: none.
std::string WrongValue(const Snapshot& before, const Snapshot& after,
                       const std::vector<Change>& changes);

/// A value of the blanking variable that is neither 0 nor 1; empty: none.
std::string WrongBlank();

/// What a user does next, in a plot that shows everything from above. Which values it reaches; what
/// goes wrong on the way is added to problems.
std::vector<std::vector<bool>> DoNext(bool mayLeaveZone, std::vector<std::string>& problems);

/// Everything is closed, with nothing kept.
void CloseEverything(std::vector<std::string>& problems, bool isLying = false);

}  // namespace fault
