#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// Which part of a map a picture shows, and how: `--view X,Y,X,Y` and `--stretch F`.
class MapView {
public:
    void add_options(CLI::App& command);

    /// Throws an input error when an option does not fit.
    void check() const;

    /// How the map is drawn.
    kit::MapPictureOptions options() const;

private:
    std::string view_;
    double stretch_ = 1;
};

} // namespace korvel::command
