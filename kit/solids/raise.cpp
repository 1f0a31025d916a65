#include "kit/solids/raise.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

#include "kit/base/error.h"
#include "kit/base/parallel.h"
#include "kit/maps/cap.h"
#include "kit/maps/triangulation.h"
#include "kit/solids/join.h"
#include "kit/solids/placed_model.h"
#include "kit/solids/soup.h"
#include "kit/solids/welding.h"

namespace korvel::kit {
namespace {

// What becomes of a region, made on any thread.
struct Part {
    Filled filled = Filled::not_at_all;
    std::string notice;
    Surface surface;
    std::unique_ptr<TMOD3D> body; // without faces: left out, see the others
    Soup soup;                    // instead of the body, where bodies are welded
};

/// The way from points of the map in steps of its grid to the model.
struct ToModel {
    ToModel(const RaiseOptions& options, const Grid& grid);

    bool is_placed;            // the model is raised in steps of the grid and has its placement
    std::array<int, 2> origin; // in steps
    Point2 shift;              // in units of the model
    Point2 unit;
    double level_unit = 1; // units of the levels to one of what is raised
};

void check(const RaiseOptions& options);
std::optional<Levels> levels_of(int region, const RaiseOptions& options);
Part raise_region(const PLYDT& set, int region, const ToModel& to_model,
                  const RaiseOptions& options);
std::optional<LeftOut> why_left_out(const Part& part, int region, const RaiseOptions& options);
void put_together(std::vector<Part>& parts, const RaiseOptions& options, const Context& context,
                  Raised& raised);
Placement placement_of_model(const Placement& map, LevelAxis axis);
void name_and_colour_bodies(const Map& map, Raised& raised);

// The nearest whole numbers that fit 32 bits.
Point2 whole(const Point2& point) {
    return to_point(Grid().nearest(point));
}

} // namespace

Raised raise(const Map& map, const RaiseOptions& options, const Context& context) {
    check(options);
    PLYDT set;
    copy_oriented(map, set);
    const ToModel to_model(options, map.placement().grid);
    std::vector<Part> parts(static_cast<std::size_t>(set.region_list.GetSize()));
    for_each_in_parallel(
        set.region_list.GetSize(), options.threads,
        [&](int region) { parts[region] = raise_region(set, region, to_model, options); },
        "raising regions", context);
    Raised raised;
    put_together(parts, options, context, raised);
    if (to_model.is_placed) {
        const Placement placement = placement_of_model(map.placement(), options.axis);
        to_user(placement.grid, raised.solids.model());
        raised.solids.set_placement(placement);
    }
    name_and_colour_bodies(map, raised);
    return raised;
}

namespace {

void check(const RaiseOptions& options) {
    const auto check_levels = [](const Levels& levels, const std::string& whose) {
        if (!(levels.low < levels.high) || !std::isfinite(levels.low) ||
            !std::isfinite(levels.high)) {
            throw input_error("the lower level" + whose + " is not below the upper one");
        }
    };
    check_levels({options.low, options.high}, "");
    for (std::size_t region = 0; region < options.levels_of_region.size(); ++region) {
        check_levels(options.levels_of_region[region].value_or(Levels()),
                     " of region " + std::to_string(region));
    }
    for (const double unit : options.unit) {
        if (unit == 0 || !std::isfinite(unit)) {
            throw input_error("a unit of 0 units of the map");
        }
    }
}

std::optional<Levels> levels_of(int region, const RaiseOptions& options) {
    const auto slot = static_cast<std::size_t>(region);
    if (slot < options.levels_of_region.size() && options.levels_of_region[slot]) {
        return options.levels_of_region[slot];
    }
    return options.only_listed ? std::nullopt : std::optional(Levels{options.low, options.high});
}

// A model in units of the map is raised in whole steps and then takes the map's placement, so that
// its file has the map's points exactly.
ToModel::ToModel(const RaiseOptions& options, const Grid& grid)
    : is_placed(!grid.is_identity() && !grid.is_y_down() && options.origin == plane_origin &&
                options.unit == Point2{1, 1}),
      origin(), shift(), unit(options.unit) {
    if (is_placed) {
        level_unit = grid.step();
    } else if (grid.is_identity() && options.origin == whole(options.origin)) {
        origin = {static_cast<int>(options.origin[0]), static_cast<int>(options.origin[1])};
    } else {
        const Point2 zero = grid.to_user(Point2());
        const Point2 one = grid.to_user(Point2{1, 1});
        for (std::size_t k = 0; k < 2; ++k) {
            shift[k] = (zero[k] - options.origin[k]) / options.unit[k];
            unit[k] = options.unit[k] / (one[k] < zero[k] ? -grid.step() : grid.step());
        }
    }
}

Part raise_region(const PLYDT& set, int region, const ToModel& to_model,
                  const RaiseOptions& options) {
    Part part;
    const std::optional<Levels> levels = levels_of(region, options);
    PLYDT cap;
    if (levels) {
        part.filled = make_cap(set, set.region_list[region], options.fill, cap);
    }
    if (part.filled == Filled::not_at_all) {
        return part;
    }
    cap.CoordinatesTrans(static_cast<int>(options.axis), to_model.origin[0], to_model.origin[1],
                         to_model.shift[0], to_model.shift[1], to_model.unit[0], to_model.unit[1],
                         levels->low / to_model.level_unit, levels->high / to_model.level_unit);
    const MessageBoxOverride notices([&](const char* text, unsigned) {
        part.notice = text;
        return IDOK;
    });
    auto body = std::make_unique<TMOD3D>();
    body->create3dmode(cap);
    part.surface = surface_of(*body, 0);
    if (options.separate) {
        part.body = std::move(body);
    } else {
        append(*body, part.soup);
    }
    return part;
}

void put_together(std::vector<Part>& parts, const RaiseOptions& options, const Context& context,
                  Raised& raised) {
    Soup soup;
    for (int region = 0; region < static_cast<int>(parts.size()); ++region) {
        Part part = std::move(parts[region]);
        if (options.on_notice && !part.notice.empty()) {
            options.on_notice(part.notice);
        }
        if (const std::optional<LeftOut> left_out = why_left_out(part, region, options)) {
            if (options.on_left_out) {
                options.on_left_out(*left_out);
            }
            raised.left_out.push_back(*left_out);
            continue;
        }
        if (options.separate) {
            append_bodies(*part.body, raised.solids.model());
        } else {
            append(part.soup, soup);
        }
        raised.region_of_body.push_back(region);
        ++(part.filled == Filled::by_front ? raised.caps_by_front : raised.caps_by_delaunay);
    }
    if (raised.region_of_body.empty()) {
        return;
    }
    if (options.separate) {
        const CheckPointScope calls = context.follow_calls();
        derive(raised.solids.model());
    } else {
        raised.solids = Solids(welded(std::move(soup), {}, context, raised.welded));
    }
}

std::optional<LeftOut> why_left_out(const Part& part, int region, const RaiseOptions& options) {
    using Reason = LeftOut::Reason;
    if (!levels_of(region, options)) {
        return LeftOut{region, Reason::no_levels};
    }
    if (part.filled == Filled::not_at_all) {
        return LeftOut{region, options.fill == Fill::front ? Reason::front_does_not_fit
                                                           : Reason::unsound_rings};
    }
    return part.surface.is_clean()
               ? std::nullopt
               : std::optional(LeftOut{region, Reason::unsound_body, part.surface});
}

// Levels are counted from 0. A model whose map is not level is in no reference system.
Placement placement_of_model(const Placement& map, LevelAxis axis) {
    const auto [x, y, z] = map.grid.origin();
    switch (axis) {
    case LevelAxis::z:
        return {map.grid, map.reference};
    case LevelAxis::y:
        return {map.grid.from(Point3{x, 0, y}), {}};
    default:
        return {map.grid.from(Point3{0, x, y}), {}};
    }
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
    case LeftOut::Reason::no_levels:
        return "no levels are given for it";
    case LeftOut::Reason::unsound_body:
        break;
    }
    return "its body would be " + state_text(left_out.surface);
}

} // namespace korvel::kit
