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

    /// What the picture shows, along the `PlaneAxes` of the section: u from `left` to `right`, v
    /// from `top` (its least) to `bottom` (its greatest). Without it the whole section.
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
/// upper left `options.size` pixels of a device context. In pictures of 200 pixels and more both
/// axes are drawn with their names and scales, and the number of each body wherever it fits into
/// the body, in a smaller font where there is less room. Lengths are true; where one axis would be
/// squeezed to a thin strip it is drawn on a larger scale, and its name gives the factor:
/// "z × 20". Nothing is drawn of an empty section unless a part is given. Linear in the section but
/// for the search for the places of the numbers, which visits a polygon up to 2000 times.
void draw(const Section& section, CDC& dc, const SectionPictureOptions& options = {});

} // namespace korvel::kit
