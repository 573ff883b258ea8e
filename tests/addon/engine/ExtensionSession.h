#pragma once

#include "FakeHost.h"

#include <string>
#include <vector>

/// Random sessions that a host can be given again with other services offered, and what comes of
/// them. Nothing about a session depends on what is offered.
namespace extension {

struct Offer {
  std::vector<fakehost::Service> services;
  fakehost::SpanVariant variant;

  bool Has(fakehost::Service service) const;
  std::string Name() const;
};

/// What is left of a session that a user, a file or a journal could see.
struct Outcome {
  std::vector<std::string> events;                 ///< answers, notices, boxes, recorded lines
  std::vector<std::vector<unsigned char>> values;  ///< zone by zone and variable by variable
  std::vector<std::string> progress;               ///< empty when the host does not listen
  int changingSteps = 0;                           ///< that left other values than they found
  std::string steps;                               ///< what was done, for messages

  // For the test to see that it shows something.
  int spansShown = 0;
  int rangeRuns = 0;
};

/// Plays the session of a seed on up to three small zones of a type.
Outcome PlaySession(QelZoneType_e type, unsigned seed, const Offer& offer);

/// Plays lines on a tiny zone and the given one in a 3D frame, with a variable at the nodes, "n",
/// and one at the cells, "c".
///
/// hides  cells and nodes with large values are blanked
Outcome PlayLines(const fakehost::Mesh& mesh, fakehost::StoredType coordinates,
                  fakehost::StoredType values, const std::vector<std::string>& lines, bool hides,
                  const Offer& offer);

}  // namespace extension
