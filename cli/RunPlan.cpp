#include "RunPlan.h"

#include "DataSetFiles.h"
#include "Interrupt.h"
#include "Terminal.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>

#include <fcntl.h>
#include <unistd.h>

namespace marquell::cli {

namespace {

namespace fs = std::filesystem;

std::string LowerExtension(const fs::path& path) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

const qelhost::FormatHelp* FindFormat(const std::vector<qelhost::FormatHelp>& formats,
                                      const std::string& extension) {
  const auto found = std::find_if(formats.begin(), formats.end(), [&](const auto& format) {
    return format.extension == extension;
  });
  return found == formats.end() ? nullptr : &*found;
}

void RequireWritableFormat(const std::string& target) {
  const std::string extension = LowerExtension(target);
  const std::vector<qelhost::FormatHelp> formats = qelhost::KnownFormats();
  const qelhost::FormatHelp* format = FindFormat(formats, extension);
  if (format == nullptr) {
    throw UsageError(extension.empty()
                         ? fmt::format("{}: has no extension that names a file format", target)
                         : fmt::format("{}: {} is no known file format", target, extension));
  }
  if (!format->writable) {
    throw UsageError(fmt::format("{}: {} files can be read only; write {} instead", target,
                                 extension, format->writtenAs));
  }
}

/// The file name of an input, with an extension that can be written.
std::string NameInFolder(const fs::path& input) {
  const std::vector<qelhost::FormatHelp> formats = qelhost::KnownFormats();
  const qelhost::FormatHelp* format = FindFormat(formats, LowerExtension(input));
  fs::path name = input.filename();
  if (format != nullptr && !format->writable) name.replace_extension(format->writtenAs);
  return name.string();
}

std::vector<std::string> TargetsInFolder(const RunOptions& options) {
  std::vector<std::string> targets;
  std::set<std::string> names;
  for (const std::string& input : options.inputs) {
    const std::string name = NameInFolder(input);
    if (!names.insert(name).second) {
      throw UsageError(fmt::format("{}: another input would be written as {} too", input, name));
    }
    targets.push_back((fs::path(options.output) / name).string());
  }
  return targets;
}

/// 0, or the system's reason. Permissions alone do not tell: a file system may take no files at
/// all.
int TryToMakeAFile(const fs::path& folder) {
  // Without a name nothing can be left behind; not every file system has such files.
  const int nameless = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (nameless >= 0) {
    close(nameless);
    return 0;
  }
  // An interrupt in between would leave the file behind.
  sigset_t interrupts;
  sigset_t before;
  sigemptyset(&interrupts);
  for (const int signal : kInterrupts) sigaddset(&interrupts, signal);
  pthread_sigmask(SIG_BLOCK, &interrupts, &before);
  std::string probe = (folder / ".marquell-XXXXXX").string();
  const int file = mkstemp(probe.data());
  const int reason = file < 0 ? errno : 0;
  if (file >= 0) {
    close(file);
    unlink(probe.c_str());
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return reason;
}

void RequireFolder(const fs::path& folder, const std::string& target) {
  const fs::path place = folder.empty() ? fs::path(".") : folder;
  std::error_code error;
  if (!fs::is_directory(place, error)) {
    throw TargetError(
        fmt::format("{}: cannot be written: {} is no folder", target, place.string()));
  }
  if (const int reason = TryToMakeAFile(place)) {
    throw TargetError(fmt::format("{}: cannot be written: {}", target, std::strerror(reason)));
  }
}

void RequireFree(const std::string& target, bool force) {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(target, error);
  if (!fs::exists(status)) return;
  if (fs::is_directory(target, error)) {
    throw TargetError(fmt::format("{}: cannot be written: is a folder", target));
  }
  // A link that leads nowhere is a place for a file.
  if (fs::exists(target, error) && !fs::is_regular_file(target, error)) {
    throw TargetError(fmt::format("{}: cannot be written: is no regular file", target));
  }
  if (!force) {
    throw TargetError(fmt::format("{}: exists already; --force replaces it", target));
  }
}

/// What two paths of one file have in common.
std::string RealName(const std::string& path) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(fs::absolute(path), error);
  return error ? path : real.string();
}

/// One would be lost under the other. Only results may replace inputs.
void RequireApart(const std::vector<std::string>& targets,
                  const std::vector<std::string>& byProducts, const RunOptions& options) {
  std::set<std::string> names = {RealName(options.journal)};
  const auto take = [&names](const std::string& file) {
    if (names.insert(RealName(file)).second) return;
    throw UsageError(fmt::format("{}: is another file of this run", file));
  };
  for (const std::string& addOn : options.addOns) names.insert(RealName(addOn));
  for (const std::string& target : targets) take(target);
  for (const std::string& input : options.inputs) names.insert(RealName(input));
  for (const std::string& byProduct : byProducts) {
    if (!byProduct.empty()) take(byProduct);
  }
}

/// Names alone: whether they are free and can be written is not looked at.
std::vector<std::string> NameTargets(const RunOptions& options) {
  if (options.dryRun) return {};
  if (options.output.empty()) throw UsageError("--output is required unless --dry-run is given");
  if (options.inputs.size() == 1) return {options.output};
  return TargetsInFolder(options);
}

}  // namespace

std::vector<std::string> PlanTargets(const RunOptions& options) {
  std::vector<std::string> targets = NameTargets(options);
  const std::vector<std::string> byProducts = {options.report, options.record, options.image,
                                               options.imageBefore, options.imagePair};
  for (const std::string& byProduct : byProducts) {
    if (byProduct.empty()) continue;
    RequireFree(byProduct, options.force);
    RequireFolder(fs::path(byProduct).parent_path(), byProduct);
  }
  RequireApart(targets, byProducts, options);
  if (targets.empty()) return targets;

  for (const std::string& target : targets) RequireWritableFormat(target);
  std::error_code error;
  const bool isInFolder = targets.size() > 1 && fs::exists(options.output, error);
  const fs::path output = options.output;
  RequireFolder(isInFolder ? output : output.parent_path(), options.output);
  for (const std::string& target : targets) RequireFree(target, options.force);
  return targets;
}

OutputFolder::OutputFolder(const RunOptions& options) {
  std::error_code error;
  if (fs::create_directory(options.output, error)) m_made = options.output;
  if (error) {
    throw TargetError(fmt::format("{}: cannot be made: {}", options.output, error.message()));
  }
}

OutputFolder::~OutputFolder() {
  std::error_code refused;  // there is something in it
  if (!m_made.empty()) fs::remove(m_made, refused);
}

}  // namespace marquell::cli
