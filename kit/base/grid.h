#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"

namespace korvel::kit {

/// The user's coordinates of points that the exact classes hold in whole steps: origin + step × the
/// number of steps, along each axis. The z of a map is not used.
///
/// The step is a fraction of integers, and the origin a number of its denominators, as far as
/// doubles hold that: coordinates on the grid of a decimal step are those nearest to the decimal.
class Grid {
public:
    /// Steps of 1 from 0: user's coordinates and steps are the same numbers.
    Grid() = default;

    /// A step above 0 of `numerator` / `denominator`, and what has the coordinates 0 in steps.
    /// Throws an `Error` for any other step, and for numbers that are not finite.
    Grid(double numerator, double denominator, const Point3& origin = {});

    /// A step from its text: "0.001", "5", "1/3600" or "1e-3"; nothing if it is none.
    static std::optional<Grid> parse(std::string_view step, const Point3& origin = {});

    /// y grows downward in the user's coordinates: a step along y decreases it.
    Grid& turn_y_down(bool is_down = true);

    /// The same steps from another origin.
    Grid from(const Point3& origin) const;

    bool is_identity() const;
    bool is_y_down() const { return sign_[1] < 0; }
    double step() const { return numerator_ / denominator_; }
    Point3 origin() const;

    /// "0.001", "1/3600".
    std::string step_text() const;

    // From steps to the user's coordinates.

    Point2 to_user(const Point2& steps) const { return {user(0, steps[0]), user(1, steps[1])}; }
    Point2 to_user(const GridPoint& steps) const { return to_user(to_point(steps)); }
    Point3 to_user(const Point3& steps) const {
        return {user(0, steps[0]), user(1, steps[1]), user(2, steps[2])};
    }
    double length(double steps) const { return steps * step(); }
    double area(double square_steps) const { return square_steps * step() * step(); }

    // Back. Numbers of steps that are within a millionth of a whole number are rounded to it, so
    // that coordinates which the grid has given return to it.

    Point2 to_grid(const Point2& user) const { return {steps(0, user[0]), steps(1, user[1])}; }
    Point3 to_grid(const Point3& user) const {
        return {steps(0, user[0]), steps(1, user[1]), steps(2, user[2])};
    }

    /// The point of the grid nearest to a point; one outside 32 bits goes to the end of the range.
    GridPoint nearest(const Point2& user) const;

    bool operator==(const Grid& other) const = default;

private:
    double user(std::size_t axis, double steps) const {
        return (origin_[axis] + sign_[axis] * steps * numerator_) / denominator_;
    }
    double steps(std::size_t axis, double user) const;

    double numerator_ = 1;
    double denominator_ = 1;
    Point3 origin_ = {}; // in parts of 1 / denominator
    Point3 sign_ = {1, 1, 1};
};

/// A rectangle of steps in the user's coordinates, and back.
Rectangle in_user_units(const Rectangle& steps, const Grid& grid);
Rectangle in_steps(const Rectangle& user, const Grid& grid);

/// What of a grid is prescribed.
struct GridChoice {
    std::optional<Grid> step = {};     ///< a grid with this step; its origin does not count
    std::optional<Point2> origin = {}; ///< in the user's coordinates
};

/// The grid for points with decimals.
///
/// Unless it is prescribed, the step is the widest up to 1 on which all points are (1, 0.1, 0.01,
/// …, or 1/60, 1/3600, 1/36000, …), else the finest decimal one with which the extent is at most
/// 2^24 steps, so that files in single precision hold them. The origin is 0 where that keeps
/// coordinates within 2^24 steps, else a round number near the middle.
///
/// Throws an `Error` when a coordinate is not finite, or more than 2^31 steps from the origin.
/// Linear.
Grid grid_for(std::span<const Point2> points, const GridChoice& choice = {});

} // namespace korvel::kit
