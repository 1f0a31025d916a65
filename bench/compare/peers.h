#pragma once

#include <filesystem>
#include <memory>

#include "bench/compare/contest.h"
#include "bench/inputs/samples.h"
#include "korvel/polyregion/plydt.h"

// korvel's jobs, done by the peers. Input is converted to the peer's own records before the clock
// starts, and results are counted after it stops. Each library, and each kernel of CGAL, has a
// source file of its own because they compile slowly.

namespace korvel::bench {

/// CGAL: all segments at once into an Arrangement_2 of exact numbers. Finds its bounded faces.
Run arrange_with_cgal(const CurveArrays& curves);

/// GEOS: the curves noded by a unary union, then polygonized. Finds the polygons.
Run polygonize_with_geos(const CurveArrays& curves);

/// CGAL: a constrained Delaunay triangulation of each region, exact predicates on doubles. Finds
/// the area of the triangles within the regions.
Run triangulate_with_cgal(const PLYDT& set);

/// CGAL: an OFF file read by its own reader into a polygon soup, the soup oriented and turned into
/// a Surface_mesh. Finds the edges.
Run read_with_cgal(const std::filesystem::path& off);

/// The same with a model file, read by fscanf.
Run scan_with_cgal(const std::filesystem::path& model);

/// A Surface_mesh of CGAL's, to be cut.
class CgalMesh {
public:
    explicit CgalMesh(const std::filesystem::path& model);
    ~CgalMesh();

    /// A Polygon_mesh_slicer, its search tree included, and its cut by the plane y = v. Finds the
    /// length of the cut.
    Run cut(double v) const;

private:
    struct Mesh;
    std::unique_ptr<Mesh> mesh_;
};

/// OpenMesh: a file read into an array kernel of triangles, which derives half-edges. Finds the
/// faces.
Run read_with_openmesh(const std::filesystem::path& mesh);

/// A mesh of OpenMesh's, to be written.
class OpenMeshMesh {
public:
    explicit OpenMeshMesh(const std::filesystem::path& mesh);
    ~OpenMeshMesh();

    /// In the format of the suffix, binary where it has a binary form. Finds the faces.
    Run write(const std::filesystem::path& file) const;

private:
    struct Mesh;
    std::unique_ptr<Mesh> mesh_;
};

} // namespace korvel::bench
