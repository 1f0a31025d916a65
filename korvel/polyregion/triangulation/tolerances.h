#pragma once

/// How far rounding can reach in the searches of the triangulation. README.md derives each constant
/// under its name. None of them decides a result: a larger one only leaves more to the exact tests.
/// Lengths are parts of the extent of the region's points, areas parts of its square.
namespace korvel::tolerance {

// Signs of linear forms and of turns.
inline constexpr double line = 1e-12;
inline constexpr double area = 1e-13;
inline constexpr double triangle_area = 4; ///< times `area`: the turns of a point all surely agree
inline constexpr double box = 1e-14;       ///< by which oriented boxes are enlarged

// Crossing tests, with the sine of the angle between the two segments.
inline constexpr double crossing = 3e-15; ///< error of the meeting point, times the sine
inline constexpr double least_angle = 1e-5;
inline constexpr double clear = 2 * crossing / least_angle;
inline constexpr double nearly_in_line = 2.5e-5; ///< difference of slopes, or of intercepts
inline constexpr double beyond_segment = 2e-5;

// The guide's triangulation.
inline constexpr double guide_area = 2e-14;
inline constexpr double blocking_sine = 2 * least_angle;

// Lower bounds for radii; the first times extent / edge, the next four parts of the edge.
inline constexpr double radius = 1e-11;
inline constexpr double near_end = 1e-3;
inline constexpr double near_end_power = 8.1e-3; ///< times the square of half the edge
inline constexpr double end_disk = 1.01e-3;
inline constexpr double flat_edge = 3e-7;
inline constexpr double near_radius = 1e-6; ///< of the radius, within two edges of the middle
inline constexpr double far_radius = 1e-9;
inline constexpr double flat_radius = 1e-3;
inline constexpr double least_flatness = 100;
inline constexpr double most_flatness = 1e6;
inline constexpr double disk = 8;
inline constexpr double flat_disk = 1.01;

// Degenerate triangles.
inline constexpr double shortest_edge = 1e-7;
inline constexpr double flat_slope = 3e-7; ///< times the root of 2 extent / edge
inline constexpr double flat_apex = 1e-9;
inline constexpr double behind_apex = 4;

// Magnitudes that neither overflow nor vanish in products.
inline constexpr double largest = 1e+60;
inline constexpr double shortest = 1e-60;

} // namespace korvel::tolerance
