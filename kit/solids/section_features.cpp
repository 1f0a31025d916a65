#include "kit/solids/section_features.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include "kit/base/colour.h"

namespace korvel::kit {
namespace {

std::map<int, std::vector<int>> holes_by_outline(const Section& section, const SectionBody& body);
void add_section_ring(const Section& section, int polygon, bool is_outer, Features& out);

} // namespace

Features features_of(const Section& section) {
    Features features;
    features.name = "section";
    features.fields = {
        {"body", Field::Type::integer}, {"area", Field::Type::real}, {"colour", Field::Type::text}};
    for (const SectionBody& body : section.bodies()) {
        for (const auto& [outline, holes] : holes_by_outline(section, body)) {
            add_section_ring(section, outline, true, features);
            for (const int hole : holes) {
                add_section_ring(section, hole, false, features);
            }
        }
        features.features.push_back({Shape::polygons,
                                     features.paths.size(),
                                     {std::int64_t{body.body}, body.area,
                                      colour_text(section[body.polygons[0]].colour())}});
    }
    return features;
}

namespace {

// The outlines of a body, and for each the holes in it: the smallest outline around a hole has it.
std::map<int, std::vector<int>> holes_by_outline(const Section& section, const SectionBody& body) {
    std::map<int, std::vector<int>> holes;
    for (const int polygon : body.polygons) {
        if (!section[polygon].is_hole()) {
            holes[polygon];
        }
    }
    for (const int polygon : body.polygons) {
        if (!section[polygon].is_hole()) {
            continue;
        }
        const Point2 corner = section.axes().seen(section[polygon].points()[0]);
        double least = std::numeric_limits<double>::infinity();
        std::vector<int>* around = nullptr;
        for (auto& [outline, inside] : holes) {
            if (section[outline].area() < least && section[outline].contains(corner)) {
                least = section[outline].area();
                around = &inside;
            }
        }
        if (around != nullptr) {
            around->push_back(polygon);
        }
    }
    return holes;
}

void add_section_ring(const Section& section, int polygon, bool is_outer, Features& out) {
    const PlaneAxes axes = section.axes();
    const std::size_t first = out.points.size();
    for (const Point3& corner : section[polygon].points()) {
        out.points.push_back(axes.seen(corner));
    }
    out.points.push_back(out.points[first]);
    out.paths.push_back({out.points.size(), is_outer});
}

} // namespace
} // namespace korvel::kit
