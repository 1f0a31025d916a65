#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"

namespace korvel::kit {

/// A network of curves with integer coordinates, in which `find_regions` finds regions. Curves are
/// numbered from 0 in the order in which they were added.
class Network {
public:
    // Make.

    Network() = default;

    /// The points of all curves, one after another, and the number of points of each curve, as
    /// `CREGION::SetPtsInfo` takes them. Counts that do not fit the points are cut to what is
    /// there.
    Network(const CArray<GridPoint>& points, const CArray<int>& counts);

    /// Appends a curve, closed if its first point is its last. Curves of any length are taken,
    /// also none. Costs the curve's length.
    void add_curve(std::span<const GridPoint> points);

    // Read and write.

    /// Reads a curve file. Throws an `Error` that names the line of the first thing that does not
    /// fit.
    static Network read(const std::filesystem::path& file);
    static Network read(const TextFile& file);

    /// Writes a curve file, completely or not at all.
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

    Rectangle bounds() const;

    /// The name of the file that was read, for messages; "network" for any other.
    const std::string& name() const { return name_; }
    void set_name(std::string_view name) { name_ = name; }

private:
    std::vector<GridPoint> points_; // of all curves, one after another
    std::vector<int> ends_;         // of each curve among the points
    std::string name_ = "network";
};

} // namespace korvel::kit
