#include "Progress.h"

#include <fmt/format.h>

#include <cstdio>

#include <unistd.h>

namespace marquell::cli {

namespace {

constexpr std::size_t kBarWidth = 30;
constexpr std::chrono::seconds kPatience{2};

}  // namespace

Progress::Progress(bool isWanted) : m_isWanted(isWanted && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { Clear(); }

void Progress::Show(std::size_t done, std::size_t all, const std::string& what) {
  if (!m_isWanted || all == 0 || std::chrono::steady_clock::now() - m_start < kPatience) return;
  const std::size_t filled = kBarWidth * done / all;
  const std::string bar = std::string(filled, '#') + std::string(kBarWidth - filled, '.');
  fmt::print(stderr, "\r\033[K[{}] {} {}/{}", bar, what, done, all);
  std::fflush(stderr);
  m_isShown = true;
}

void Progress::Clear() {
  if (!m_isShown) return;
  fmt::print(stderr, "\r\033[K");
  std::fflush(stderr);
  m_isShown = false;
}

}  // namespace marquell::cli
