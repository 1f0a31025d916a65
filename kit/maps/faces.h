#pragma once

#include <array>
#include <memory>
#include <vector>

#include "kit/maps/noding.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// What a segment of a noded network is.
enum class SegmentKind : unsigned char {
    border,   ///< between two faces, or between a face and the outside
    bridge,   ///< with the same face, or the outside, on both sides
    dangling, ///< on a tree that ends loosely
};

/// The faces that a noded network encloses.
struct Faces {
    /// Each bounded face as a region: its outer ring, then its holes. Rings pass each of their
    /// points once; a hole may touch the outer ring or another hole in a point. Outer rings have
    /// positive area, holes negative. Points are those of the noded network that a ring uses.
    std::unique_ptr<CCPloy2DRg> regions;

    std::vector<SegmentKind> kinds; ///< of each segment of the noded network

    /// Of each border the regions on its left and on its right; −1 is the outside.
    std::vector<std::array<int, 2>> sides;

    int components = 0; ///< of the borders
};

/// Traces the faces of a noded network and nests them. Regions are in the order of the first of
/// their outer rings' segments.
///
/// Throws std::logic_error unless the number of faces is E - V + C, counted over the borders, and
/// their areas add up to those of the outlines that are in no other. n log n.
Faces faces_of(const NodedNetwork& network, const Context& context = {});

} // namespace korvel::kit
