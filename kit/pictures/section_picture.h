#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/pictures/label_writer.h"
#include "kit/pictures/picture_size.h"
#include "kit/solids/section.h"

namespace korvel::kit {

/// What a plot of a section shows, by the middle of it and the lengths to a pixel along both axes.
struct SectionScale {
    Point2 middle = {};
    double u = 1;
    double v = 1;
};

/// How a section is drawn.
struct SectionPictureOptions {
    PictureSize size = {};

    /// What the picture shows, along the `PlaneAxes` of the section: u from `left` to `right`, v
    /// from `top` (its least) to `bottom` (its greatest). Without it the whole section.
    std::optional<Rectangle> part = {};

    /// The plot takes all the room that the page has, in this scale: for views that are zoomed and
    /// moved. `part` has no effect then.
    std::optional<SectionScale> scale = {};

    /// Of bodies, by their numbers. A name is written in place of the number unless it is empty.
    std::vector<std::string> names = {};

    /// A bar of a round length in the lower right corner, in pictures with labels.
    bool scale_bar = false;

    /// A list of the bodies to the right of the plot, in pictures with labels: colours, names or
    /// numbers, and areas. Where it has more lines than the picture is high, the bodies with the
    /// largest areas are listed, and how many more there are.
    bool legend = false;

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

/// Where in a picture what of a section is.
struct SectionPlot {
    Rectangle pixels; ///< between the axes; y counts downward from the upper left corner
    Rectangle shown;  ///< along the axes of the section

    SectionScale scale() const;

    /// Coordinates along the axes of the section in pixels, and back.
    Point2 to_pixel(const Point2& seen) const;
    Point2 from_pixel(const Point2& pixel) const;
};

/// The plot of the picture that `draw` draws with these options; empty rectangles where it draws
/// nothing. As fast as `Section::bounds`, which it asks for unless a part or a scale is given.
SectionPlot plot_of(const Section& section, const SectionPictureOptions& options);

} // namespace korvel::kit
