#include "kit/solids/body.h"

#include <cmath>
#include <mutex>

#include "kit/solids/exact.h"
#include "kit/solids/own_orientation.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

Colour BodyColour::rgb() const {
    Colour colour;
    CMYColor().HLSToRGBi(static_cast<float>(hue), static_cast<float>(lightness),
                         static_cast<float>(saturation), colour.red, colour.green, colour.blue);
    return colour;
}

std::span<const int> Face::vertices() const {
    return span_of(record().verts);
}

std::span<const int> Face::edges() const {
    return span_of(record().lines);
}

Point3 Face::corner(int k) const {
    return to_point(model_->verts[record().verts[k]].model_xyz);
}

Point3 Face::normal() const {
    return to_point(record().plane);
}

// Half the length of the sum of the products of successive corners, seen from the first one.
double Face::area() const {
    const Point3 origin = corner(0);
    Point3 sum = {};
    for (int k = 1; k + 1 < record().verts.GetSize(); ++k) {
        Point3 a = corner(k);
        Point3 b = corner(k + 1);
        for (std::size_t i = 0; i < 3; ++i) {
            a[i] -= origin[i];
            b[i] -= origin[i];
        }
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3;
            const std::size_t l = (i + 2) % 3;
            sum[i] += a[j] * b[l] - a[l] * b[j];
        }
    }
    return std::hypot(sum[0], sum[1], sum[2]) / 2;
}

std::span<const int> Face::neighbours() const {
    return span_of(record().neighbour_faces);
}

std::span<const int> Face::bodies() const {
    return span_of(record().bodies);
}

const BODY3D& Body::record() const {
    return solids_->model().bodies[index_];
}

const std::string& Body::name() const {
    static const std::string none;
    const auto index = static_cast<std::size_t>(index_);
    return index < solids_->names_.size() ? solids_->names_[index] : none;
}

BodyColour Body::colour() const {
    const auto turn = solids_->hold(); // a cut numbers the bodies by their hues
    return {record().hue, record().saturation, record().lightness, record().alpha};
}

double Body::volume() const {
    return own_orientation(solids_->model(), index_).volume;
}

Box Body::bounds() const {
    Box box;
    for (const int v : record().verts) {
        box.take_in(solids_->vertex(v));
    }
    return box;
}

Surface Body::surface() const {
    return surface_of(solids_->model(), index_);
}

IndexedRange<Body::FaceAt> Body::faces() const {
    return {record().polys.GetSize(), FaceAt{&solids_->model(), &record().polys}};
}

std::span<const int> Body::vertices() const {
    return span_of(record().verts);
}

std::span<const int> Body::edges() const {
    return span_of(record().lines);
}

std::span<const int> Body::neighbours() const {
    return span_of(record().neighbour_bodies);
}

} // namespace korvel::kit
