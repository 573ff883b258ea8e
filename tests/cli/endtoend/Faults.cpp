#include "Faults.h"

#include "DataFiles.h"
#include "Meshes.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace clitest {

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kInputs = {"edits.journal", "in.vtu", "text.vtu",
                                          "in.vtm",        "in.pvd", "in.vtk"};

const std::vector<Scenario>& Scenarios() {
  static const std::vector<std::string> kPicture = {"--image-width", "64", "--image-height", "64"};
  static const std::vector<Scenario> scenarios = [] {
    std::vector<Scenario> all = {
        {"Copied", {"in.vtu", "-o", "new.vtu"}, {"new.vtu"}},
        {"CopiedOverOld", {"in.vtu", "-o", "old.vtu"}, {"old.vtu"}},
        {"CopiedOverItsInput", {"in.vtu", "-o", "in.vtu"}, {"in.vtu"}},
        {"Encoded", {"text.vtu", "-o", "new.vtu"}, {"new.vtu"}},
        {"EncodedOverOld", {"in.vtk", "-o", "old.vtu"}, {"old.vtu"}},
        {"Blocks", {"in.vtm", "-o", "new.vtm"}, {"new.vtm"}},
        {"BlocksOverOld", {"in.vtm", "-o", "old.vtm"}, {"old.vtm"}},
        {"BlocksOverTheirInput", {"in.vtm", "-o", "in.vtm"}, {"in.vtm"}},
        {"Steps", {"in.pvd", "-o", "new.pvd"}, {"new.pvd"}},
        {"StepsOverOld", {"in.pvd", "-o", "old.pvd"}, {"old.pvd"}},
        {"Legacy", {"in.vtk", "-o", "new.vtk"}, {"new.vtk"}},
        {"LegacyOverOld", {"in.vtk", "-o", "old.vtk"}, {"old.vtk"}},
        {"Recording", {"in.vtu", "--dry-run", "--record", "new.journal"}, {"new.journal"}},
        {"RecordingOverOld", {"in.vtu", "--dry-run", "--record", "old.journal"}, {"old.journal"}},
        {"Report", {"in.vtu", "--dry-run", "--report", "new.json"}, {"new.json"}},
        {"ReportOverOld", {"in.vtu", "--dry-run", "--report", "old.json"}, {"old.json"}},
        {"Picture", {"in.vtu", "--dry-run", "--image", "new.png"}, {"new.png"}},
        {"PictureOverOld", {"in.vtu", "--dry-run", "--image", "old.png"}, {"old.png"}},
        {"EverythingOverOld",
         {"in.vtu", "-o", "old.vtu", "--record", "old.journal", "--report", "old.json", "--image",
          "old.png"},
         {"old.vtu", "old.journal", "old.json", "old.png"}},
    };
    for (Scenario& scenario : all) {
      const auto& arguments = scenario.arguments;
      if (std::find(arguments.begin(), arguments.end(), "--image") == arguments.end()) continue;
      scenario.arguments.insert(scenario.arguments.end(), kPicture.begin(), kPicture.end());
    }
    return all;
  }();
  return scenarios;
}

std::string TextOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return "\nthere is no " + file.filename().string() + "\n";
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

void Save(const fs::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    names.push_back(fs::relative(entry.path(), folder).string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// Folders of pieces are numbered as there is room; the rest of an index is fixed.
std::string WithoutFolders(const std::string& index) {
  static const std::regex folder("file=\"[^\"/]*/");
  return std::regex_replace(index, folder, "file=\"*/");
}

std::string WithoutTimes(const std::string& report) {
  static const std::regex time("econds\": [^,\n]*");
  return std::regex_replace(report, time, "econds\": *");
}

/// The same for every name of a folder of pieces.
std::vector<std::string> WithoutNumbers(const std::vector<std::string>& names) {
  static const std::regex number("^(old|new|in)(_[0-9]+)?(/|$)");
  std::vector<std::string> plain;
  for (const std::string& name : names) {
    plain.push_back(std::regex_replace(name, number, "$1$3"));
  }
  std::sort(plain.begin(), plain.end());
  return plain;
}

std::vector<FileCall> CallsIn(const std::string& log) {
  std::vector<FileCall> calls;
  std::istringstream lines(log);
  std::string number;
  FileCall call;
  std::string path;
  while (lines >> number >> call.name >> call.bytes && std::getline(lines, path)) {
    calls.push_back(call);
  }
  return calls;
}

std::vector<std::string> Preloaded(const std::string& folder) {
  const char* const others = std::getenv("LD_PRELOAD");
  const std::string libraries =
      std::string(FAULTY_FILES) + (others ? " " : "") + (others ? others : "");
  // Sanitizers want to come first, and need not.
  return {"LD_PRELOAD=" + libraries, "FAULT_FOLDER=" + folder + "/",
          "ASAN_OPTIONS=verify_asan_link_order=0"};
}

std::vector<std::string> EnvironmentOf(const Fault& fault, const std::string& folder) {
  std::vector<std::string> environment = Preloaded(folder);
  if (fault.call > 0) {
    environment.push_back("FAULT_CALL=" + std::to_string(fault.call));
  } else {
    environment.push_back("FAULT_BYTE=" + std::to_string(fault.byte));
  }
  if (fault.signal > 0) environment.push_back("FAULT_SIGNAL=" + std::to_string(fault.signal));
  if (fault.error > 0) environment.push_back("FAULT_ERRNO=" + std::to_string(fault.error));
  if (fault.stays) environment.push_back("FAULT_STAYS=1");
  return environment;
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

FaultTest::FaultTest() {
  fs::create_directory(Path("furniture"));
  const fs::path folder = Path("furniture");
  const std::string line = "Marquell ALTERELEMENT VARIABLE=\"T\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1";
  Save(folder / "edits.journal", Journal({line}));
  const auto write = [&folder](const char* name, vtkDataObject* data, Layout::Mode mode) {
    WriteData((folder / name).string(), data, {mode, "none"});
  };
  write("in.vtu", MixedVolume(), Layout::Mode::kRawAppended);
  write("text.vtu", Bricks(), Layout::Mode::kAscii);
  write("in.vtm", Blocks(), Layout::Mode::kRawAppended);
  write("in.vtk", Bricks(), Layout::Mode::kRawAppended);
  write("old.vtu", Voxels(), Layout::Mode::kBinary);
  write("old.vtm", Blocks(), Layout::Mode::kAscii);
  write("old.vtk", Voxels(), Layout::Mode::kBinary);
  fs::create_directories(folder / "old_2");
  write("old_2/step.vtu", Voxels(), Layout::Mode::kBinary);
  WritePvd((folder / "in.pvd").string(), {{"0", "0", "in.vtu"}, {"1", "0", "in.vtm"}});
  WritePvd((folder / "old.pvd").string(), {{"0", "0", "old_2/step.vtu"}});
  for (const char* const name : {"old.journal", "old.json", "old.png"}) {
    Save(folder / name, std::string("older ") + name + "\n");
  }
  for (const Scenario& scenario : Scenarios()) m_rehearsals.push_back(Rehearse(scenario));
}

void FaultTest::Furnish(const std::string& folder) const {
  fs::create_directories(folder);
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    fs::remove_all(entry.path());
  }
  fs::copy(Path("furniture"), folder, fs::copy_options::recursive);
}

std::vector<std::string> FaultTest::ArgumentsOf(const Scenario& scenario) const {
  std::vector<std::string> arguments = {"run", "edits.journal"};
  arguments.insert(arguments.end(), scenario.arguments.begin(), scenario.arguments.end());
  arguments.insert(arguments.end(), {"--force", "--quiet"});
  return arguments;
}

std::string FaultTest::HeldBy(const std::string& folder, const std::string& target) {
  const fs::path file = fs::path(folder) / target;
  const std::string text = TextOf(file);
  const std::string extension = file.extension().string();
  if (extension == ".json") return WithoutTimes(text);
  if (extension != ".vtm" && extension != ".pvd") return text;
  static const std::regex named("file=\"([^\"]*)\"");
  std::string all = WithoutFolders(text);
  for (std::sregex_iterator at(text.begin(), text.end(), named), end; at != end; ++at) {
    all += HeldBy(file.parent_path().string(), (*at)[1].str());
  }
  return all;
}

Rehearsal FaultTest::Rehearse(const Scenario& scenario) {
  Rehearsal rehearsal;
  rehearsal.scenario = &scenario;
  const std::string folder = FolderOfRun();
  Furnish(folder);
  rehearsal.namesBefore = NamesIn(folder);
  const auto remember = [&](std::map<std::string, std::string>& held) {
    for (const std::string& target : scenario.targets) held[target] = HeldBy(folder, target);
    for (const std::string& input : kInputs) held[input] = HeldBy(folder, input);
  };
  remember(rehearsal.before);
  Surroundings surroundings;
  surroundings.environment = Preloaded(folder);
  surroundings.environment.push_back("FAULT_LOG=" + Path("log"));
  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = Running(folder, ArgumentsOf(scenario), surroundings).Wait();
  rehearsal.seconds = SecondsSince(start);
  if (outcome.exitCode != 0) throw std::runtime_error(scenario.name + (": " + outcome.err));
  remember(rehearsal.after);
  rehearsal.namesAfter = NamesIn(folder);
  rehearsal.calls = CallsIn(TextOf(Path("log")));
  fs::remove(Path("log"));
  for (const FileCall& call : rehearsal.calls) rehearsal.bytes += call.bytes;
  // What cannot be told apart would make every test pass.
  for (const std::string& target : scenario.targets) {
    if (rehearsal.before[target] == rehearsal.after[target]) throw std::runtime_error(target);
  }
  if (rehearsal.bytes == 0) throw std::runtime_error("nothing was seen to be written");
  return rehearsal;
}

const Rehearsal& FaultTest::RehearsalOf(const std::string& name) const {
  return *std::find_if(m_rehearsals.begin(), m_rehearsals.end(),
                       [&name](const Rehearsal& one) { return one.scenario->name == name; });
}

Outcome FaultTest::RunWith(const Rehearsal& rehearsal, const Fault& fault) {
  Furnish(FolderOfRun());
  Surroundings surroundings;
  surroundings.environment = EnvironmentOf(fault, FolderOfRun());
  return Running(FolderOfRun(), ArgumentsOf(*rehearsal.scenario), surroundings).Wait();
}

Outcome FaultTest::RunKilledAfter(const Rehearsal& rehearsal, double seconds) {
  Furnish(FolderOfRun());
  Running program(FolderOfRun(), ArgumentsOf(*rehearsal.scenario));
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  program.Send(SIGKILL);
  return program.Wait();
}

Outcome FaultTest::RunAgain(const Rehearsal& rehearsal) {
  return Running(FolderOfRun(), ArgumentsOf(*rehearsal.scenario)).Wait();
}

State FaultTest::StateOf(const Rehearsal& rehearsal, const std::string& target) const {
  const std::string held = HeldBy(FolderOfRun(), target);
  if (held == rehearsal.before.at(target)) return State::kOld;
  return held == rehearsal.after.at(target) ? State::kNew : State::kBroken;
}

::testing::AssertionResult FaultTest::IsNothingLost(const Rehearsal& rehearsal) const {
  for (const auto& [name, held] : rehearsal.before) {
    if (StateOf(rehearsal, name) == State::kBroken) {
      return ::testing::AssertionFailure() << name << " is neither the old file nor the new one";
    }
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult FaultTest::IsAll(const Rehearsal& rehearsal, State state) const {
  for (const std::string& target : rehearsal.scenario->targets) {
    if (StateOf(rehearsal, target) == state) continue;
    return ::testing::AssertionFailure() << target << " is not as it should be";
  }
  const auto expected =
      WithoutNumbers(state == State::kOld ? rehearsal.namesBefore : rehearsal.namesAfter);
  const std::vector<std::string> names = WithoutNumbers(NamesNow());
  if (names == expected) return IsNothingLost(rehearsal);
  return ::testing::AssertionFailure() << "left are " << ::testing::PrintToString(names);
}

std::vector<std::string> FaultTest::NamesNow() const { return NamesIn(FolderOfRun()); }

int CountFrom(const char* variable, int otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : std::atoi(text);
}

std::string Told(const Rehearsal& rehearsal, const Fault& fault) {
  std::ostringstream text;
  text << rehearsal.scenario->name << " of " << rehearsal.calls.size() << " calls and "
       << rehearsal.bytes << " bytes, ";
  if (fault.call > 0) {
    text << "call " << fault.call << " ("
         << rehearsal.calls[static_cast<std::size_t>(fault.call - 1)].name << ")";
  } else {
    text << "byte " << fault.byte;
  }
  text << ", signal " << fault.signal << ", error " << fault.error
       << (fault.stays ? " that stays" : "");
  return text.str();
}

}  // namespace clitest
