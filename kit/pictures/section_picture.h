#pragma once

#include <optional>
#include <string>

#include "kit/base/rectangle.h"
#include "kit/pictures/label_writer.h"
#include "kit/pictures/picture_size.h"
#include "kit/solids/section_cut.h"

namespace korvel::kit {

/// How a section is drawn.
struct SectionPictureOptions {
    PictureSize size = {};

    /// What the picture shows: u from left to right, v from top (its least) to bottom (its
    /// greatest), in coordinates of the model along the `PlaneAxes` of the cut. Without it the
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

/// The smallest rectangle around a section as it is seen along the axes of its plane, empty for an
/// empty section.
Rectangle box_of_section(const Cut& cut);

/// Draws the polygons of a cut in the colours of their bodies, holes open, v upward, into the upper
/// left `options.size` pixels of a device context, with both axes, their scales and the numbers of
/// the bodies where there is room for them: not in pictures of less than 200 pixels. Where one axis
/// would be squeezed to a thin strip it is drawn on a larger scale, and its name gives the factor:
/// "z × 20". Nothing is drawn of an empty section unless a part is given. Linear in the section.
void draw(const Cut& cut, CDC& dc, const SectionPictureOptions& options = {});

} // namespace korvel::kit
