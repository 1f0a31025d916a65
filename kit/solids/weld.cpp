#include "kit/solids/weld.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "kit/solids/soup.h"
#include "kit/solids/welding.h"

namespace korvel::kit {
namespace {

bool opens_a_body(const TMOD3D& before, const TMOD3D& after);
void copy_attributes(const TMOD3D& from, TMOD3D& to);

} // namespace

WeldReport weld(Solids& solids, const WeldOptions& options, const Context& context) {
    const auto weld_all = [&](bool walls, WeldReport& report) {
        Soup soup;
        append(solids.model(), soup);
        return welded(std::move(soup), {options.tolerance, walls}, context, report);
    };
    WeldReport report;
    std::unique_ptr<TMOD3D> model = weld_all(options.match_walls, report);
    if (report.walls_split + report.walls_turned > 0 && opens_a_body(solids.model(), *model)) {
        model = weld_all(false, report);
    }
    copy_attributes(solids.model(), *model);
    Solids whole(std::move(model));
    if (whole.view() != solids.view()) {
        whole.set_view(solids.view());
    }
    for (const Body body : solids) {
        whole.set_name(body.index(), body.name());
    }
    whole.set_placement(solids.placement());
    solids = std::move(whole);
    return report;
}

namespace {

bool opens_a_body(const TMOD3D& before, const TMOD3D& after) {
    for (int body = 0; body < after.bodies.GetSize(); ++body) {
        if (!surface_of(after, body).is_closed() && surface_of(before, body).is_closed()) {
            return true;
        }
    }
    return false;
}

// What bodies have besides what is derived.
void copy_attributes(const TMOD3D& from, TMOD3D& to) {
    for (int b = 0; b < to.bodies.GetSize(); ++b) {
        const BODY3D& source = from.bodies[b];
        BODY3D& body = to.bodies[b];
        body.hue = source.hue;
        body.saturation = source.saturation;
        body.lightness = source.lightness;
        body.alpha = source.alpha;
        body.param_1 = source.param_1;
        body.param_2 = source.param_2;
        body.param_3 = source.param_3;
    }
    std::copy_n(from.orig, 3, to.orig);
    std::copy_n(from.orig_shift, 3, to.orig_shift);
}

} // namespace
} // namespace korvel::kit
