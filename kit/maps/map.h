#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/base/colour.h"
#include "kit/base/context.h"
#include "kit/base/indexed_range.h"
#include "kit/base/owned.h"
#include "kit/base/placement.h"
#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/files/features.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

class Map;

/// A region of a map: an area inside an outer ring and outside its holes. It refers to the map, and
/// is valid as long as that exists and keeps its regions.
class Region {
public:
    Region(const Map& map, int index) : map_(&map), index_(index) {}

    int index() const { return index_; }

    /// The index in the map from which this one was kept (`Map::kept`), else `index()`.
    int number() const;

    /// Rings: ring 0 is the outer one, the others are holes. A region without area may have none.
    int ring_count() const { return record().rings.GetSize(); }
    int hole_count() const { return ring_count() > 0 ? ring_count() - 1 : 0; }

    /// The corner of a ring, as a function of its index.
    struct Corner {
        const CCPloy2DRg* set = nullptr;
        const Grid* grid = nullptr;
        const CArray<int>* corners = nullptr;
        Point2 operator()(int k) const {
            const VERT2D& corner = set->pt_list[(*corners)[k]];
            return grid->to_user(Point2{corner.x, corner.y});
        }
    };

    /// The corners of a ring as a range of `Point2`, the first one not repeated at the end.
    IndexedRange<Corner> ring(int which) const;

    /// The number of corners of all rings.
    int point_count() const;

    /// The area without the holes, in square units of the map; exact up to one rounding where
    /// coordinates are integers, and up to two more on another grid. Linear in the corners.
    double area() const;

    /// The length of all rings.
    double perimeter() const;

    /// The area inside a ring alone.
    double ring_area(int which) const;

    /// A point inside the region, far from its border as a rule; nothing for a region without area.
    /// Linear in the corners, n log n for those that are met by a few lines of equal y.
    std::optional<Point2> inner_point() const;

    Rectangle bounds() const;
    Colour colour() const;
    const std::string& name() const; ///< empty unless one was set

    /// The value of an attribute of the map.
    const FieldValue& value(std::size_t field) const;

private:
    const CCPloy2DRg::PyToRg& record() const;

    const Map* map_;
    int index_;
};

/// Regions with holes, with a name, a colour and values of attributes for each. Regions are
/// numbered from 0.
///
/// The exact class holds the points in steps of a grid; points, lengths and areas go in and out in
/// the user's coordinates. Without a placement both are the same.
class Map {
    struct At {
        const Map* map = nullptr;
        Region operator()(int index) const { return {*map, index}; }
    };

public:
    // Make.

    Map() = default;

    /// Takes over regions, or copies them. Throws an `Error` when an index is outside its list.
    explicit Map(std::unique_ptr<CCPloy2DRg> regions, Placement placement = {});
    explicit Map(const CCPloy2DRg& regions, Placement placement = {});

    /// The given regions in ascending order, each once, with their names, colours and values, and
    /// the rings and points that they use.
    Map kept(std::span<const int> regions) const;

    // Read and write.

    /// Reads a polygon-region file and its placement. Coordinates pass through single precision: a
    /// warning names the first whole number that this changes. Throws an `Error` that names the
    /// line of the first thing that does not fit.
    static Map read(const std::filesystem::path& file, const Context& context = {});
    static Map read(const TextFile& file, const Context& context = {});

    /// Writes a polygon-region file, completely or not at all, with the placement in a line of its
    /// own. Names, colours and attributes are not stored.
    void write(const std::filesystem::path& file) const;
    void write(OutputFile& out) const;

    // Ask.

    int size() const { return regions_->region_list.GetSize(); }
    bool empty() const { return size() == 0; }
    Region operator[](int index) const { return {*this, index}; }
    auto begin() const { return IndexedRange<At>::iterator({this}, 0); }
    auto end() const { return IndexedRange<At>::iterator({this}, size()); }

    /// The number of points of the map.
    int point_count() const { return regions_->pt_list.GetSize(); }

    /// The first region that contains a point; its holes do not belong to it. Exact; of two regions
    /// beside a border one contains the points on it. Linear in the map; for many points see
    /// `RegionLocator`.
    std::optional<int> region_at(const Point2& point) const;

    /// The first region whose outer ring contains a point, be it in one of its holes or not.
    std::optional<int> outline_at(const Point2& point) const;

    /// For each region those that share a side with it, ascending. Linear in the map.
    std::vector<std::vector<int>> neighbours() const;

    /// The same for one region. Linear in the map too: for many regions keep the list of all.
    std::vector<int> neighbours(int region) const;

    /// Regions that are next to nothing, such as a border leaves that was drawn twice with
    /// different points: with less area than `share` × the perimeter × a step, ascending. Linear.
    std::vector<int> slivers(double share = 1) const;

    // Measure.

    /// Around all regions; points that no region uses do not count.
    Rectangle bounds() const;

    /// The sum of the regions' areas.
    double area() const;

    /// Whether every coordinate in steps is an integer of 32 bits, so that areas are exact.
    bool is_on_grid() const { return is_on_grid_; }

    // Attributes.

    const std::vector<Field>& fields() const { return fields_; }

    /// Replaces the attributes that regions have; none has a value of them yet.
    void set_fields(std::vector<Field> fields);

    /// The values of a region, in the order of the fields.
    void set_values(int region, std::vector<FieldValue> values);

    // Change.

    void set_name(int region, std::string_view name);
    void set_colour(int region, Colour colour);

    /// Gives every region a colour such that regions that share a side have clearly different ones.
    void colour_distinctly();

    /// A hue for every region, in degrees above 0 and up to 360, such that regions that share a
    /// side have clearly different hues.
    std::vector<double> distinct_hues() const;

    // Placement.

    const Placement& placement() const { return placement_; }
    void set_placement(Placement placement) { placement_ = std::move(placement); }

    /// The points of all regions in the user's coordinates.
    std::vector<Point2> points() const;

    /// Moves the points to others, as many as `points()`, in whole steps of a grid; with the
    /// identity grid they keep their decimals. Borders that were apart can meet afterwards.
    void move_points(std::span<const Point2> points, Placement placement);

    // The exact class.

    /// Points are in steps of the grid.
    const CCPloy2DRg& regions() const { return *regions_; }

    /// Hands the regions over; this map is empty afterwards.
    std::unique_ptr<CCPloy2DRg> take_regions();

private:
    friend class Region;

    template <class Fits>
    std::optional<int> first_region(Fits fits) const;
    bool encloses(int ring, const Point2& point) const;

    Owned<CCPloy2DRg> regions_;
    std::vector<std::string> names_; // of the first regions; those behind have none
    std::vector<int> numbers_;       // empty unless the map was kept from another
    std::vector<Field> fields_;
    std::vector<std::vector<FieldValue>> values_; // of the first regions; those behind have none
    Placement placement_;
    bool is_on_grid_ = true;
};

} // namespace korvel::kit
