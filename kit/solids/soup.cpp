#include "kit/solids/soup.h"

#include <algorithm>

#include "kit/solids/exact.h"

namespace korvel::kit {

namespace {

void append_shifted(std::span<const int> indices, int by, std::vector<int>& to) {
    to.clear();
    for (const int index : indices) {
        to.push_back(index + by);
    }
}

} // namespace

void append(const TMOD3D& model, Soup& soup) {
    const auto first_point = static_cast<int>(soup.points.size());
    const int first_face = soup.faces.size();
    for (const VERT3D& vertex : model.verts) {
        soup.points.push_back(to_point(vertex.model_xyz));
    }
    std::vector<int> corners;
    for (const POLY3D& face : model.polys) {
        append_shifted(span_of(face.verts), first_point, corners);
        soup.faces.add(corners);
    }
    for (const BODY3D& body : model.bodies) {
        append_shifted(span_of(body.polys), first_face, soup.bodies.emplace_back());
    }
}

void append(const Soup& other, Soup& soup) {
    const auto first_point = static_cast<int>(soup.points.size());
    const int first_face = soup.faces.size();
    soup.points.insert(soup.points.end(), other.points.begin(), other.points.end());
    std::vector<int> corners;
    for (int face = 0; face < other.faces.size(); ++face) {
        append_shifted(other.faces[face], first_point, corners);
        soup.faces.add(corners);
    }
    for (const std::vector<int>& body : other.bodies) {
        append_shifted(body, first_face, soup.bodies.emplace_back());
    }
}

std::unique_ptr<TMOD3D> model_of(const Soup& soup) {
    const auto assign = [](std::span<const int> from, CArray<int>& to) {
        to.SetSize(static_cast<int>(from.size()));
        std::copy(from.begin(), from.end(), to.begin());
    };
    auto model = std::make_unique<TMOD3D>();
    model->verts.SetSize(static_cast<int>(soup.points.size()));
    for (int v = 0; v < model->verts.GetSize(); ++v) {
        const Point3& point = soup.points[static_cast<std::size_t>(v)];
        std::copy(point.begin(), point.end(), model->verts[v].model_xyz);
    }
    model->polys.SetSize(soup.faces.size());
    for (int f = 0; f < model->polys.GetSize(); ++f) {
        assign(soup.faces[f], model->polys[f].verts);
    }
    model->bodies.SetSize(static_cast<int>(soup.bodies.size()));
    for (int b = 0; b < model->bodies.GetSize(); ++b) {
        assign(soup.bodies[static_cast<std::size_t>(b)], model->bodies[b].polys);
    }
    return model;
}

} // namespace korvel::kit
