#pragma once

#include <filesystem>
#include <span>
#include <utility>
#include <vector>

#include "kit/base/colour.h"
#include "kit/base/indexed_range.h"
#include "kit/base/placement.h"
#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/files/output_file.h"
#include "kit/solids/plane.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

class Section;

/// A closed polygon of a section. It refers to the section and is valid as long as that exists.
class SectionPolygon {
public:
    SectionPolygon(const Section& section, int index) : section_(&section), index_(index) {}

    int index() const { return index_; }

    /// The body that was cut.
    int body() const;

    /// Whether it bounds a hole: it is inside an odd number of other polygons of its body.
    bool is_hole() const;

    /// The area that it encloses in the plane, in square units of the model.
    double area() const;

    /// The colour of the body.
    Colour colour() const;

    /// A corner in model coordinates, as a function of its index.
    struct Corner {
        const TMOD2D* model = nullptr;
        const CArray<int>* corners = nullptr;
        Point3 operator()(int k) const { return to_point(model->verts[(*corners)[k]].model_xyz); }
    };

    /// The corners as a range of `Point3`, at least three, the first one not repeated at the end.
    IndexedRange<Corner> points() const;

    /// Whether the polygon contains a point as it is seen along the axes of the section's plane. A
    /// point on the border belongs to either side. Linear in the corners.
    bool contains(const Point2& seen) const;

private:
    const Section* section_;
    int index_;
};

/// What a plane cuts out of one body.
struct SectionBody {
    int body = 0;
    std::vector<int> polygons; ///< of the section
    double area = 0;           ///< of the polygons, holes subtracted
};

/// The polygons in which a plane cuts the bodies of a model (`Solids::cut`), numbered from 0, those
/// of a body next to one another. Empty where the plane meets no body.
class Section {
    struct At {
        const Section* section = nullptr;
        SectionPolygon operator()(int index) const { return {*section, index}; }
    };

public:
    /// A section without polygons, by the plane z = 0.
    Section() = default;

    // Ask.

    /// Where the cut was made: beside the plane that was asked for if vertices are on that one.
    const Plane& plane() const { return plane_; }

    /// The axes along which pictures show it.
    PlaneAxes axes() const { return PlaneAxes(plane_); }

    int size() const { return model_.polys.GetSize(); }
    bool empty() const { return size() == 0; }
    SectionPolygon operator[](int index) const { return {*this, index}; }
    auto begin() const { return IndexedRange<At>::iterator({this}, 0); }
    auto end() const { return IndexedRange<At>::iterator({this}, size()); }

    /// The bodies that were cut, ascending.
    std::span<const SectionBody> bodies() const { return bodies_; }

    /// Where the plane meets an edge that is on no closed polygon: a body is open there.
    std::span<const Point3> loose_points() const { return loose_points_; }

    /// That of the solids.
    const Placement& placement() const { return placement_; }

    // Measure.

    /// Of all bodies, holes subtracted.
    double area() const { return area_; }

    /// Around all points as they are seen along `axes()`, loose ones included; empty for none.
    Rectangle bounds() const;

    // Write.

    /// Writes a section file, completely or not at all, in steps of the placement's grid, with the
    /// placement unless it is plain. It contains no colours.
    void write(const std::filesystem::path& file) const;
    void write(OutputFile& out) const;

    // The exact class.

    /// The section as `TMOD3D::get_section` makes it, a group for each polygon, with the areas of
    /// the polygons.
    const TMOD2D& model() const { return model_; }

private:
    friend class SectionPolygon;
    friend class Solids;
    friend Section cut_model(TMOD3D& model, const Plane& plane);

    explicit Section(const Plane& plane) : plane_(plane) {}
    void cut_by_body(TMOD3D& model);
    void trace_touching_bodies(TMOD3D& model);
    void find_holes();
    void measure();
    void find_loose_points();

    Plane plane_;
    TMOD2D model_;
    Placement placement_;
    std::vector<SectionBody> bodies_;
    std::vector<bool> is_hole_; // of each polygon
    std::vector<int> body_of_;  // of each polygon
    std::vector<Point3> loose_points_;
    double area_ = 0;
};

/// Cuts a model whose relations are current.
///
/// Through a vertex the exact class takes every edge that ends there as crossed, and loops may stay
/// open. Where vertices are on the plane, the cut is made beside it, by a distance just above what
/// rounding may hide.
Section cut_model(TMOD3D& model, const Plane& plane);

/// The least and the greatest distance of the model's vertices from a plane, along its normal.
std::pair<double, double> distances_from(const Plane& plane, const TMOD3D& model);

} // namespace korvel::kit
