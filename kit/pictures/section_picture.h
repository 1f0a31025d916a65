#pragma once

#include <optional>
#include <string>

#include "kit/base/rectangle.h"
#include "kit/pictures/label_writer.h"
#include "kit/pictures/picture_size.h"
#include "kit/solids/section.h"

namespace korvel::kit {

/// How a section is drawn.
struct SectionPictureOptions {
    PictureSize size = {};

    /// What the picture shows: u from left to right, v from top (its least) to bottom (its
    /// greatest), in coordinates of the model along the `PlaneAxes` of the section. Without it the
    /// whole section.
    std::optional<Rectangle> part = {};

    std::string title = {};
    std::string remark = {}; ///< at the other end of the title's line

    /// Writes title, scales and numbers into a host's own `CDC`; without it only the polygons are
    /// drawn. Files always have labels.
    LabelWriter* labels = nullptr;

    /// Device units to a pixel of a `CDC` that is drawn into: 1 for most windows. Files are always
    /// drawn with `PictureFit::units_per_pixel`.
    int units_per_pixel = 1;
};

/// Draws the polygons of a section in the colours of their bodies, holes open, v upward, into the
/// upper left `options.size` pixels of a device context, with both axes, their scales and the
/// numbers of the bodies where there is room for them: not in pictures of less than 200 pixels.
/// Where one axis would be squeezed to a thin strip it is drawn on a larger scale, and its name
/// gives the factor: "z × 20". Nothing is drawn of an empty section unless a part is given. Linear
/// in the section.
void draw(const Section& section, CDC& dc, const SectionPictureOptions& options = {});

} // namespace korvel::kit
