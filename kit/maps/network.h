#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/base/placement.h"
#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/files/curve_file.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"

namespace korvel::kit {

/// A network of curves, in which `find_regions` finds regions. Points are on a grid and are handed
/// in and out in steps of it; without a placement these are the user's coordinates. Curves are
/// numbered from 0 in the order in which they were added.
class Network {
public:
    // Make.

    Network() = default;

    /// The points of all curves, one after another, and the number of points of each curve, as
    /// `CREGION::SetPtsInfo` takes them. Counts that do not fit the points are cut to what is
    /// there.
    Network(const CArray<GridPoint>& points, const CArray<int>& counts);

    /// What a file contains, with its grid.
    explicit Network(const CurveNetwork& curves);

    /// Appends a curve, closed if its first point is its last. Curves of any length are taken,
    /// also none. Costs the curve's length.
    void add_curve(std::span<const GridPoint> points);

    // Read and write.

    /// Reads a curve file. Points of one with decimals take the nearest place on a grid. Throws an
    /// `Error` that names the line of the first thing that does not fit.
    static Network read(const std::filesystem::path& file, const GridChoice& choice = {});
    static Network read(const TextFile& file, const GridChoice& choice = {});

    /// Writes a curve file in the user's coordinates, completely or not at all.
    void write(const std::filesystem::path& file) const;
    void write(OutputFile& out) const;

    // Ask.

    int curve_count() const { return static_cast<int>(ends_.size()); }
    int point_count() const { return static_cast<int>(points_.size()); }

    /// The points of a curve, valid until the next curve is added.
    std::span<const GridPoint> curve(int index) const;

    /// The points of all curves, one after another.
    std::span<const GridPoint> points() const { return points_; }

    /// Whether a curve of at least three points ends where it starts.
    bool is_closed(int index) const;

    /// In the user's coordinates.
    Rectangle bounds() const;

    /// The grid of the points.
    const Placement& placement() const { return placement_; }
    void set_placement(Placement placement) { placement_ = std::move(placement); }

    /// The farthest that a coordinate was moved to the grid when the network was read.
    double largest_shift() const { return largest_shift_; }
    void set_largest_shift(double shift) { largest_shift_ = shift; }

    /// The name of the file that was read, for messages; "network" for any other.
    const std::string& name() const { return name_; }
    void set_name(std::string_view name) { name_ = name; }

private:
    std::vector<GridPoint> points_; // of all curves, one after another
    std::vector<int> ends_;         // of each curve among the points
    Placement placement_;
    double largest_shift_ = 0;
    std::string name_ = "network";
};

} // namespace korvel::kit
