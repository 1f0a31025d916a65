#include "apps/workbench/document/reference_systems.h"

#include <algorithm>
#include <cmath>

namespace korvel::workbench {
namespace {

constexpr const char* degrees_of_gps = "EPSG:4326";
constexpr const char* of_browsers = "EPSG:3857";

kit::Rectangle in_degrees(const std::string& reference, const kit::Rectangle& bounds);
std::string utm_of(const std::string& reference, const kit::Rectangle& degrees);

} // namespace

std::vector<SystemChoice> usual_systems(const std::string& reference,
                                        const kit::Rectangle& bounds) {
    std::vector<SystemChoice> systems;
    const auto add = [&](const std::string& system) {
        if (!system.empty() && system != reference) {
            systems.push_back({system, kit::reference_name(system)});
        }
    };
    if (reference.empty() || bounds.is_empty() || !kit::has_projections()) {
        return systems;
    }
    try {
        const kit::Rectangle degrees = in_degrees(reference, bounds);
        add(utm_of(reference, degrees));
        add(of_browsers);
        if (!kit::is_geographic(reference)) {
            add(degrees_of_gps);
        }
        add(kit::equal_area_about(reference, degrees));
    } catch (const kit::Error&) { // what cannot be chosen is left out
    }
    return systems;
}

QString shown_reference(const std::string& reference) {
    constexpr qsizetype most = 60;
    std::string name = reference;
    try {
        name = kit::reference_name(reference);
    } catch (const kit::Error&) { // then it is shown as it is
    }
    return QString::fromStdString(name).left(most);
}

namespace {

// Around the corners and the middles of the sides.
kit::Rectangle in_degrees(const std::string& reference, const kit::Rectangle& bounds) {
    if (kit::is_geographic(reference)) {
        return bounds;
    }
    const double x = (bounds.left + bounds.right) / 2;
    const double y = (bounds.top + bounds.bottom) / 2;
    std::vector<kit::Point2> points = {
        {bounds.left, bounds.top},
        {x, bounds.top},
        {bounds.right, bounds.top},
        {bounds.left, y},
        {bounds.right, y},
        {bounds.left, bounds.bottom},
        {bounds.right, bounds.bottom},
        {x, bounds.bottom},
    };
    kit::projection(reference, degrees_of_gps)->forward(points);
    kit::Rectangle degrees;
    for (const auto& [longitude, latitude] : points) {
        degrees.take_in(longitude, latitude);
    }
    return degrees;
}

// With the datum of the system where there are zones with it, else with that of GPS. Empty for what
// no zone is made for.
std::string utm_of(const std::string& reference, const kit::Rectangle& degrees) {
    constexpr double widest = 12;
    constexpr double zone_width = 6;
    constexpr double farthest_south = -80;
    constexpr double farthest_north = 84;
    const double longitude = (degrees.left + degrees.right) / 2;
    const double latitude = (degrees.top + degrees.bottom) / 2;
    if (degrees.right - degrees.left > widest || std::abs(longitude) > 180 ||
        degrees.top < farthest_south || degrees.bottom > farthest_north) {
        return {};
    }
    const int zone = std::min(60, static_cast<int>((longitude + 180) / zone_width) + 1);
    int code = latitude < 0 ? 32700 : 32600;
    if (latitude >= 0 && reference == "EPSG:4258" && zone >= 28 && zone <= 38) {
        code = 25800; // of Europe
    } else if (latitude >= 0 && reference == "EPSG:4269" && zone <= 23) {
        code = 26900; // of North America
    }
    return "EPSG:" + std::to_string(code + zone);
}

} // namespace
} // namespace korvel::workbench
