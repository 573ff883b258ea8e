#pragma once

#include "CommandText.h"

#include <functional>
#include <string>
#include <vector>

namespace qelhost {

class Host;

/// What a parsed command does. It throws CommandError when that cannot be done.
using CommandAction = std::function<void(Host&)>;

/// Whether the line is one of the host's own commands: it begins with "$!".
bool IsHostCommand(const std::string& line);

/// Whether the line sets value blanking.
bool IsBlankingCommand(const std::string& line);

/// Whether the line can be carried out only where a history is kept.
bool NeedsHistory(const std::string& line);

/// Understands one of the host's own commands without doing anything.
///
/// throws  CommandError when there is no such command or its text is wrong
CommandAction ParseHostCommand(const std::string& line);

/// Carries one out, holding the lock in the host's name.
///
/// throws  CommandError
void RunHostCommand(Host& host, const std::string& line);

/// One line a command, for the help.
struct HostCommandHelp {
  std::string name;
  std::string usage;
};
std::vector<HostCommandHelp> KnownHostCommands();

}  // namespace qelhost
