#include "kit/pictures/flat_section.h"

#include <algorithm>
#include <utility>

namespace korvel::kit {
namespace {

using Ring = std::vector<Point2>;

Ring ring_seen(const SectionPolygon& polygon, const PlaneAxes& axes);
Ring clipped(Ring ring, const Rectangle& frame);
void add_polygon(const Ring& ring, TMOD2D& model, POLY3D_CPLX& group);

} // namespace

FlatSection flatten(const Section& section, const Rectangle& frame) {
    FlatSection flat;
    const PlaneAxes axes = section.axes();
    for (const SectionBody& body : section.bodies()) {
        POLY3D_CPLX group;
        group.rgb = section.model().groups[body.polygons[0]].rgb;
        for (const int polygon : body.polygons) {
            const Ring ring = clipped(ring_seen(section[polygon], axes), frame);
            if (!ring.empty()) {
                add_polygon(ring, flat.model, group);
            }
        }
        flat.model.groups.Add(group);
    }
    return flat;
}

namespace {

Ring ring_seen(const SectionPolygon& polygon, const PlaneAxes& axes) {
    Ring ring;
    ring.reserve(static_cast<std::size_t>(polygon.points().size()));
    for (const Point3& corner : polygon.points()) {
        ring.push_back(axes.seen(corner));
    }
    return ring;
}

/// The part of a ring where a coordinate is on the inner side of a limit; `inward` is 1 where
/// greater values are inside and -1 otherwise.
Ring cut_off(const Ring& ring, std::size_t axis, double limit, double inward) {
    Ring inside;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2& a = ring[i];
        const Point2& b = ring[(i + 1) % ring.size()];
        const double from_a = inward * (a[axis] - limit);
        const double from_b = inward * (b[axis] - limit);
        if (from_a >= 0) {
            inside.push_back(a);
        }
        if ((from_a < 0) != (from_b < 0)) {
            const double part = from_a / (from_a - from_b);
            Point2 crossing = {a[0] + part * (b[0] - a[0]), a[1] + part * (b[1] - a[1])};
            crossing[axis] = limit;
            inside.push_back(crossing);
        }
    }
    return inside;
}

// The sides of the frame one after another. Where a ring leaves the frame several times the result
// runs along the frame in between, which changes nothing of what is filled.
Ring clipped(Ring ring, const Rectangle& frame) {
    const auto is_inside = [&](const Point2& point) { return frame.contains(point[0], point[1]); };
    if (std::all_of(ring.begin(), ring.end(), is_inside)) {
        return ring;
    }
    ring = cut_off(ring, 0, frame.left, 1);
    ring = cut_off(ring, 0, frame.right, -1);
    ring = cut_off(ring, 1, frame.top, 1);
    return cut_off(ring, 1, frame.bottom, -1);
}

void add_polygon(const Ring& ring, TMOD2D& model, POLY3D_CPLX& group) {
    POLY3D polygon;
    for (const Point2& corner : ring) {
        VERT3D vertex;
        vertex.model_xyz[0] = corner[0];
        vertex.model_xyz[1] = corner[1];
        polygon.verts.Add(model.verts.GetSize());
        model.verts.Add(vertex);
    }
    group.polys.Add(model.polys.GetSize());
    model.polys.Add(polygon);
}

} // namespace

std::vector<std::vector<Point2>> FlatSection::rings(int group) const {
    std::vector<Ring> rings;
    for (const int polygon : model.groups[group].polys) {
        Ring& ring = rings.emplace_back();
        for (const int corner : model.polys[polygon].verts) {
            const double* const at = model.verts[corner].model_xyz;
            ring.push_back({at[0], at[1]});
        }
    }
    return rings;
}

} // namespace korvel::kit
