#pragma once

#include <memory>

#include "apps/command/options.h"

namespace korvel::command {

/// The program `korvel` with its help and all commands.
std::unique_ptr<Program> korvel_program();

} // namespace korvel::command
