#pragma once

#include <string>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// Which part of a map a picture shows, and how: `--view X,Y,X,Y`, `--all`,
/// `--y-down` and `--stretch F`.
class MapView {
public:
    void add_options(Options options);

    /// Throws an input error when an option does not fit.
    void check() const;

    /// How the map is drawn.
    kit::MapPictureOptions options() const;

    /// Reports the regions that a picture of this size leaves out although nobody chose a part.
    void report_left_out(const kit::Map& map, kit::PictureSize size) const;

private:
    std::string view_;
    bool shows_all_ = false;
    bool y_down_ = false;
    double stretch_ = 1;
};

} // namespace korvel::command
