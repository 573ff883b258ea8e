#pragma once

#include "Copy.h"

#include <string>
#include <vector>

namespace soak {

/// The host in memory of this process with the add-on in it.
class FakeSide {
 public:
  FakeSide();

  /// Starts anew with the data of a copy.
  ///
  /// services  what the host offers beside the interface, as its environment says it
  void Begin(const Copy& copy, const std::string& services,
             const std::vector<LgIndex_t>& relevantZones);
  /// relevantZones  those that apply from now on
  Outcome Play(const std::string& line, const std::vector<LgIndex_t>& relevantZones);
  Outcome Look(bool isDone, const std::string& error) const;
  /// Closes everything; what the add-on did that it must not.
  std::vector<std::string> End();

 private:
  void MakeRelevant(const std::vector<LgIndex_t>& zones) const;
  std::size_t m_zoneCount = 0;  ///< that came with the data
};

}  // namespace soak
