#include "Terminal.h"

#include <fmt/format.h>
#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace marquell::cli {

namespace {

/// Messages name files, whose names may hold anything.
class OneLineSink : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    const auto level = spdlog::level::to_string_view(message.level);
    PrintError(fmt::format("{}: {}", std::string(level.data(), level.size()),
                           std::string(message.payload.data(), message.payload.size())));
  }
  void flush_() override {}
};

/// Other controls have two bytes, and some terminals obey them as they obey escape sequences.
bool EndsControl(const std::string& line, unsigned char c) {
  return c >= 0x80 && c < 0xa0 && !line.empty() && line.back() == '\xc2';
}

}  // namespace

void StartLog(Verbosity verbosity) {
  auto logger = std::make_shared<spdlog::logger>("marquell", std::make_shared<OneLineSink>());
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
    const bool isBlank = std::strchr(" \t\n\v\f\r", c) != nullptr && c != '\0';
    const bool isObeyed = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    if (EndsControl(line, static_cast<unsigned char>(c))) {
      line.back() = '?';
    } else if (!isBlank) {
      line += isObeyed ? '?' : c;
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
