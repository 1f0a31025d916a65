#pragma once

#include <string>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// `--fill auto|front|delaunay`, auto unless given.
class FillChoice {
public:
    void add_option(Options options, const std::string& purpose);
    kit::Fill fill() const;

private:
    std::string name_ = "auto";
};

/// `--threads N`: 0, for all cores, unless given.
void add_threads_option(Options options, int& threads);

} // namespace korvel::command
