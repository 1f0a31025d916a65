#pragma once

#include <string>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// Which part of a map a picture shows, and how: `--view X,Y,X,Y`, `--y-down` and
/// `--stretch F`.
class MapView {
public:
    void add_options(Options options);

    /// Throws an input error when an option does not fit.
    void check() const;

    /// How the map is drawn.
    kit::MapPictureOptions options() const;

private:
    std::string view_;
    bool y_down_ = false;
    double stretch_ = 1;
};

} // namespace korvel::command
