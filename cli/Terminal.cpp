#include "Terminal.h"

#include <fmt/format.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace marquell::cli {

void StartLog(Verbosity verbosity) {
  auto logger = spdlog::stderr_logger_st("marquell");
  logger->set_pattern("marquell: %l: %v");
  switch (verbosity) {
    case Verbosity::kQuiet:
      logger->set_level(spdlog::level::err);
      break;
    case Verbosity::kNormal:
      logger->set_level(spdlog::level::warn);
      break;
    case Verbosity::kVerbose:
      logger->set_level(spdlog::level::debug);
      break;
  }
  spdlog::set_default_logger(std::move(logger));
}

std::string OneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool isBlank = c == '\n' || c == '\r' || c == '\t' || c == ' ';
    if (!isBlank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

void PrintError(const std::string& text) {
  const std::string line = "marquell: " + OneLine(text) + '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void Print(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw TargetError(fmt::format("standard output: cannot be written: {}", std::strerror(errno)));
  }
}

std::string Number(double value) { return fmt::format("{:.6g}", value); }

}  // namespace marquell::cli
