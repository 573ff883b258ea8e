// The subcommands of the program, one file each.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

namespace marquell::cli {

/// Adds the options to the subcommand and returns what runs it and gives the exit code.
using DefineSubcommand = std::function<int()> (*)(CLI::App& app);

std::function<int()> DefineRun(CLI::App& app);
std::function<int()> DefineInfo(CLI::App& app);
std::function<int()> DefineCheck(CLI::App& app);

}  // namespace marquell::cli
