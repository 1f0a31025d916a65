#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace korvel::command {

/// Adds name, help and all commands to the empty program.
void build_program(CLI::App& program);

/// The arguments in the order in which the program parses them, last first. Throws an input error
/// when one of them is empty.
std::vector<std::string> arguments(int argc, char** argv);

} // namespace korvel::command
