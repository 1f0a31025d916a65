#pragma once

#include <string>
#include <vector>

#include "kit/base/points.h"
#include "kit/pictures/label_writer.h"
#include "kit/solids/section.h"

namespace korvel::kit {

/// What a legend may take of a picture, in pixels.
struct LegendRoom {
    double width = 0;
    double height = 0;
    double font = 10;
};

/// The list of the bodies of a section that is not empty, in the order of their numbers: colour,
/// name or number, and area, in whole units or five digits. Where not all fit into the height, the
/// largest are listed, and how many more there are; names that are too wide are cut off.
class SectionLegend {
public:
    SectionLegend(const Section& section, const std::vector<std::string>& names,
                  LabelWriter& labels, const LegendRoom& room);

    /// What it takes of the room.
    double width() const { return width_; }
    double height() const;

    void paint(CDC& dc, LabelWriter& labels, const Point2& upper_left, int units_per_pixel) const;

private:
    struct Line {
        Colour colour;
        std::string name;
        std::string area;
    };

    std::vector<Line> lines_;
    std::string more_; ///< empty if all bodies are listed
    double font_ = 10;
    double width_ = 0;
};

} // namespace korvel::kit
