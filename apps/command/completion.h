#pragma once

#include <string>

#include "apps/command/options.h"

namespace korvel::command {

/// A script that completes the arguments of the program in "bash", "zsh" or "fish": its commands,
/// their options, files, directories and words where an option or an operand takes them.
std::string completion_script(const Program& program, const std::string& shell);

} // namespace korvel::command
