#pragma once

#include "Copy.h"
#include "DataSet.h"
#include "Player.h"

#include <cstddef>
#include <string>

namespace soak {

/// The open host of this process with the add-on in it.
class OpenSide {
 public:
  OpenSide();

  /// Shows the data and nothing else, and copies it out by way of the interface.
  Copy Begin(const qelhost::DataSetPtr& data);
  Outcome Play(const std::string& line);
  Outcome Look(bool isDone, const std::string& error);
  /// Closes everything; what was left open, or nothing.
  std::string End();

 private:
  qelhost::Host& m_host;
  qelhost::Player m_player;
  LgIndex_t m_zoneCount = 0;  ///< that came with the data
  std::size_t m_failedLines = 0;
};

}  // namespace soak
