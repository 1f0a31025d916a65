#pragma once

#include <string>

#include "kit/base/rectangle.h"
#include "kit/pictures/picture_canvas.h"
#include "kit/solids/section_cut.h"

namespace korvel::kit {

/// What a picture of a section shows.
struct SectionView {
    PlaneAxes axes;
    Rectangle box; ///< u from left to right, v from top (its least) to bottom (its greatest)
    std::string title;
    std::string remark; ///< at the other end of the title's line
};

/// Paints the polygons of a cut in the colours of their bodies, holes open, v upward, with both
/// axes, their scales and the numbers of the bodies where there is room for them. Where one axis
/// would be squeezed to a thin strip it is drawn on a larger scale, and its name gives the factor:
/// "z × 20".
void paint_section(PictureCanvas& canvas, PictureSize size, const Cut& cut,
                   const SectionView& view);

} // namespace korvel::kit
