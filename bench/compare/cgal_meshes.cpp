#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/IO/OFF.h>
#include <CGAL/Polygon_mesh_processing/orient_polygon_soup.h>
#include <CGAL/Polygon_mesh_processing/polygon_soup_to_polygon_mesh.h>
#include <CGAL/Polygon_mesh_slicer.h>
#include <CGAL/Surface_mesh.h>

#include "bench/compare/peers.h"

namespace korvel::bench {
namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Point = Kernel::Point_3;
using SurfaceMesh = CGAL::Surface_mesh<Point>;

struct Soup {
    std::vector<Point> points;
    std::vector<std::array<std::size_t, 3>> triangles;
};

/// By CGAL's own reader.
Soup read_off(const std::filesystem::path& file) {
    Soup soup;
    if (!CGAL::IO::read_OFF(file.string(), soup.points, soup.triangles)) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return soup;
}

/// Vertices and faces of a model file by fscanf; its bodies are left unread.
Soup read_model_file(const std::filesystem::path& model) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(model.c_str(), "r"), std::fclose);
    Soup soup;
    std::size_t count = 0;
    bool is_sound = file && std::fscanf(file.get(), "%zu", &count) == 1;
    soup.points.reserve(is_sound ? count : 0);
    while (is_sound && soup.points.size() < count) {
        double x = 0;
        double y = 0;
        double z = 0;
        is_sound = std::fscanf(file.get(), "%lf %lf %lf", &x, &y, &z) == 3;
        soup.points.emplace_back(x, y, z);
    }
    is_sound = is_sound && std::fscanf(file.get(), "%zu", &count) == 1;
    soup.triangles.reserve(is_sound ? count : 0);
    while (is_sound && soup.triangles.size() < count) {
        std::array<std::size_t, 3> t = {};
        is_sound = std::fscanf(file.get(), "%zu %zu %zu", &t[0], &t[1], &t[2]) == 3;
        soup.triangles.push_back(t);
    }
    if (!is_sound) {
        throw std::runtime_error("cannot read the model " + model.string());
    }
    return soup;
}

void make_mesh(Soup soup, SurfaceMesh& mesh) {
    CGAL::Polygon_mesh_processing::orient_polygon_soup(soup.points, soup.triangles);
    CGAL::Polygon_mesh_processing::polygon_soup_to_polygon_mesh(soup.points, soup.triangles, mesh);
}

Run read_with(Soup (*read)(const std::filesystem::path& file), const std::filesystem::path& file) {
    SurfaceMesh mesh;
    Run run;
    run.seconds = seconds_of([&] { make_mesh(read(file), mesh); });
    run.found = static_cast<double>(mesh.number_of_edges());
    return run;
}

double length(const std::vector<std::vector<Point>>& lines) {
    double sum = 0;
    for (const std::vector<Point>& line : lines) {
        for (std::size_t k = 0; k + 1 < line.size(); ++k) {
            sum += std::sqrt(CGAL::squared_distance(line[k], line[k + 1]));
        }
    }
    return sum;
}

} // namespace

Run read_with_cgal(const std::filesystem::path& off) {
    return read_with(read_off, off);
}

Run scan_with_cgal(const std::filesystem::path& model) {
    return read_with(read_model_file, model);
}

struct CgalMesh::Mesh {
    SurfaceMesh surface;
};

CgalMesh::CgalMesh(const std::filesystem::path& model) : mesh_(std::make_unique<Mesh>()) {
    make_mesh(read_model_file(model), mesh_->surface);
}

CgalMesh::~CgalMesh() = default;

Run CgalMesh::cut(double v) const {
    std::vector<std::vector<Point>> lines; // a closed one ends with its first point
    Run run;
    run.seconds = seconds_of([&] {
        CGAL::Polygon_mesh_slicer<SurfaceMesh, Kernel> slicer(mesh_->surface);
        slicer(Kernel::Plane_3(0, 1, 0, -v), std::back_inserter(lines));
    });
    run.found = length(lines);
    return run;
}

} // namespace korvel::bench
