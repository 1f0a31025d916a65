#include "kit/solids/raise.h"

#include <cmath>

#include "kit/base/error.h"
#include "kit/maps/cap.h"
#include "kit/maps/triangulation.h"
#include "kit/solids/join.h"

namespace korvel::kit {
namespace {

void check(const RaiseOptions& options);
void raise_region(const PLYDT& set, int region, const RaiseOptions& options, Raised& out);
void name_and_colour_bodies(const Map& map, Raised& raised);

} // namespace

Raised raise(const Map& map, const RaiseOptions& options, const Context& context) {
    check(options);
    PLYDT set;
    copy_oriented(map, set);
    const MessageBoxOverride notices([&](const char* text, unsigned) {
        if (options.on_notice) {
            options.on_notice(text);
        }
        return IDOK;
    });
    Raised raised;
    const int count = set.region_list.GetSize();
    for (int region = 0; region < count; ++region) {
        raise_region(set, region, options, raised);
        context.report("raising regions", region + 1, count);
    }
    if (!raised.solids.empty()) {
        const CheckPointScope calls = context.follow_calls();
        derive(raised.solids.model());
        name_and_colour_bodies(map, raised);
    }
    return raised;
}

namespace {

void check(const RaiseOptions& options) {
    if (!(options.low < options.high) || !std::isfinite(options.low) ||
        !std::isfinite(options.high)) {
        throw input_error("the lower level is not below the upper one");
    }
    for (const double unit : options.unit) {
        if (unit == 0 || !std::isfinite(unit)) {
            throw input_error("a unit of 0 units of the map");
        }
    }
}

void raise_region(const PLYDT& set, int region, const RaiseOptions& options, Raised& out) {
    const auto leave_out = [&](const LeftOut& left_out) {
        if (options.on_left_out) {
            options.on_left_out(left_out);
        }
        out.left_out.push_back(left_out);
    };
    PLYDT cap;
    const Filled filled = make_cap(set, set.region_list[region], options.fill, cap);
    if (filled == Filled::not_at_all) {
        leave_out({region, options.fill == Fill::front ? LeftOut::Reason::front_does_not_fit
                                                       : LeftOut::Reason::unsound_rings});
        return;
    }
    cap.CoordinatesTrans(static_cast<int>(options.axis), options.origin.x, options.origin.y, 0, 0,
                         options.unit[0], options.unit[1], options.low, options.high);
    TMOD3D body;
    body.create3dmode(cap);
    const Surface surface = surface_of(body, 0);
    if (!surface.is_clean()) {
        leave_out({region, LeftOut::Reason::unsound_body, surface});
        return;
    }
    append_bodies(body, out.solids.model());
    out.region_of_body.push_back(region);
    ++(filled == Filled::by_front ? out.caps_by_front : out.caps_by_delaunay);
}

void name_and_colour_bodies(const Map& map, Raised& raised) {
    constexpr double saturation = 0.55;
    constexpr double lightness = 0.6;
    const std::vector<double> hues = map.distinct_hues();
    for (int body = 0; body < raised.solids.size(); ++body) {
        const int region = raised.region_of_body[static_cast<std::size_t>(body)];
        raised.solids.set_name(body, map[region].name());
        raised.solids.set_colour(body,
                                 {hues[static_cast<std::size_t>(region)], saturation, lightness});
    }
}

} // namespace

std::string text(const LeftOut& left_out) {
    switch (left_out.reason) {
    case LeftOut::Reason::front_does_not_fit:
        return "the front's triangles do not fit its outline";
    case LeftOut::Reason::unsound_rings:
        return "its rings cross, overlap, cut it apart or have no area";
    case LeftOut::Reason::unsound_body:
        break;
    }
    return "its body would be " + state_text(left_out.surface);
}

} // namespace korvel::kit
