#include "ByProducts.h"

#include "FileError.h"
#include "Staging.h"
#include "Terminal.h"
#include "WriteCancel.h"

#include <fmt/format.h>
#include <spdlog/spdlog.h>

namespace marquell::cli {

namespace {

/// The file may be named by the place that it has for now.
template <class Body>
void NamingTarget(const std::string& path, Body&& body) {
  try {
    body();
  } catch (const qelhost::FileError& error) {
    throw TargetError(fmt::format("{}: cannot be written: {}", path, error.Reason()));
  }
}

}  // namespace

ByProducts::ByProducts() = default;

ByProducts::~ByProducts() = default;

std::string ByProducts::Stage(const std::string& path) {
  qelhost::StopIfCancelled();
  NamingTarget(path, [&] {
    m_staged.push_back({path, std::make_unique<qelhost::StagedTarget>(path)});
  });
  return m_staged.back().target->TemporaryPath();
}

void ByProducts::Add(const std::string& path, const std::string& text) {
  const std::string place = Stage(path);
  NamingTarget(path, [&] { qelhost::WriteBytes(place, text); });
}

void ByProducts::Commit() {
  for (const Staged& staged : m_staged) {
    NamingTarget(staged.path, [&] { staged.target->Commit(); });
    spdlog::info("{}: written", staged.path);
  }
  m_staged.clear();
}

}  // namespace marquell::cli
