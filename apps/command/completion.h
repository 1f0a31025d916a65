#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace korvel::command {

/// Adds the option --completion SHELL, which prints the script and is not listed in the help.
void add_completion_option(CLI::App& program);

/// A script that completes the arguments of the program in "bash", "zsh" or "fish": its commands,
/// their options, files, directories and words where an option or an operand takes them.
std::string completion_script(const CLI::App& program, const std::string& shell);

} // namespace korvel::command
