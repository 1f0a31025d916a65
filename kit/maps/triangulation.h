#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/indexed_range.h"
#include "kit/base/points.h"
#include "kit/files/output_file.h"
#include "kit/maps/coverage.h"
#include "kit/maps/fill.h"
#include "kit/maps/map.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How regions are triangulated.
struct TriangulateOptions {
    Fill fill = Fill::automatic;
    int threads = 0; ///< 0 takes one for each core; `Fill::front` always takes one
};

/// The regions of a map with the triangles that cover them. A value that does not change: copies
/// share it.
class Triangulation {
public:
    // Ask.

    int region_count() const { return state_->set.region_list.GetSize(); }
    int triangle_count() const { return state_->set.trg_list.GetSize(); }

    /// A triangle by its corners.
    using Triangle = std::array<Point2, 3>;

    /// A triangle, as a function of its index among those of a region.
    struct At {
        const PLYDT* set = nullptr;
        const Grid* grid = nullptr;
        int first = 0;
        Triangle operator()(int k) const;
    };

    /// The triangles of a region.
    IndexedRange<At> of_region(int region) const;

    /// How a region was filled; without triangles in the way asked for it counts as `not_at_all`.
    /// With `Fill::front` it has triangles in that case, which overlap or leave gaps.
    Filled filled(int region) const { return state_->filled[static_cast<std::size_t>(region)]; }

    /// The number of regions that were filled so.
    int count(Filled filled) const;

    // Measure.

    /// How well the triangles of a region cover it: exact where the map's coordinates are integers.
    /// The triangles of the library's advancing front may overlap or leave a gap where corners lie
    /// in line. Linear in the region.
    Coverage coverage(int region) const;

    // Write.

    /// Writes a triangle file in the user's coordinates, completely or not at all.
    void write(const std::filesystem::path& file) const;
    void write(OutputFile& out) const;

    // The exact class.

    /// Where the map is.
    const Placement& placement() const { return state_->placement; }

    /// Points in steps of the grid, rings, regions and triangles, those of region k before those of
    /// region k + 1.
    const PLYDT& triangles() const { return state_->set; }

    /// The index in `trg_list` after the last triangle of each region.
    const std::vector<int>& ends() const { return state_->ends; }

private:
    friend Triangulation triangulate(const Map& map, const TriangulateOptions& options,
                                     const Context& context);

    struct State {
        PLYDT set;
        std::vector<int> ends;
        std::vector<Filled> filled;
        bool is_on_grid = true;
        Placement placement;
    };

    std::shared_ptr<const State> state_ = std::make_shared<State>();
};

/// Covers the regions of a map with triangles between their corners. Rings are turned to positive
/// area first.
///
/// `Fill::front` gives the triangles of `PLYDT::region_tranglate` for each region, also where they
/// do not cover it. With the others every region is covered exactly, or has no triangles because it
/// has a flaw: `flaw_of` finds it. `Filled::by_front` means triangles that cover the region, and
/// with `Fill::automatic` that no corner of one is within the side of another and none is flat.
///
/// The result is the same for each number of threads. Takes about a second for 500,000 corners with
/// `Fill::delaunay`, and several with the front.
Triangulation triangulate(const Map& map, const TriangulateOptions& options = {},
                          const Context& context = {});

/// The map's points, rings and regions as the exact class takes them, rings turned to positive
/// area.
void copy_oriented(const Map& map, PLYDT& set);

} // namespace korvel::kit
