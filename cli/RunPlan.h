// Where the results of a run go, settled before any long work.
#pragma once

#include <string>
#include <vector>

namespace marquell::cli {

/// Picks hide cells by this variable.
constexpr char kBlankingVariable[] = "PICK_BLANK";

struct RunOptions {
  std::string journal;
  std::vector<std::string> inputs;
  std::string output;
  std::string report;
  std::string record;
  std::string image;
  std::string imageBefore;
  std::string imagePair;
  std::string imageVariable;
  int imageWidth = 800;
  int imageHeight = 600;
  std::vector<std::string> addOns;
  bool summary = false;
  bool dryRun = false;
  bool keepGoing = false;
  bool force = false;
  bool ghostCells = false;
  bool dropBlanked = false;
  bool quiet = false;
  bool verbose = false;
};

/// One target an input, in the inputs' order; none in a dry run. Several inputs go under their own
/// names into the folder that the output names.
///
/// throws  UsageError, and TargetError for a target that exists or cannot be made
std::vector<std::string> PlanTargets(const RunOptions& options);

/// The folder for several results, made unless it is there. Goes again when nothing came to stand
/// in it.
class OutputFolder {
 public:
  /// throws  TargetError
  explicit OutputFolder(const RunOptions& options);
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

 private:
  std::string m_made;  ///< empty when it was there before
};

}  // namespace marquell::cli
