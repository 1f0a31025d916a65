#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "kit/base/rectangle.h"
#include "kit/pictures/flat_picture.h"
#include "kit/pictures/picture_fit.h"

namespace korvel::command {

/// Which part of a map a picture shows, and how: `--view X,Y,X,Y` and `--stretch F`.
class MapView {
public:
    void add_options(CLI::App& command);

    /// Throws an input error when an option does not fit.
    void check() const;

    /// Shows `box` unless the user asked for another view.
    kit::PictureFit fit(const kit::Rectangle& box, kit::PictureSize size) const;

    /// How to draw a map into a picture file of this size.
    kit::MapPictureOptions options(kit::PictureSize size) const;

private:
    std::string view_;
    double stretch_ = 1;
};

} // namespace korvel::command
