#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kit/base/colour.h"
#include "kit/base/placement.h"
#include "kit/base/points.h"

namespace korvel::kit {

/// Faces of a mesh that belong together in its file: an object, a group or a node.
struct MeshPart {
    std::string name = {}; ///< UTF-8; empty if it has none
    std::optional<Colour> colour = {};
    std::size_t face_end = 0; ///< after its last face
};

/// What a file of a mesh contains, as it is: faces may be open, turned, degenerate or doubled, and
/// points may coincide. A fraction of the memory of `Solids`.
struct Mesh {
    std::vector<Point3> points; ///< in the user's coordinates, finite

    /// The corners of all faces, as indices into `points`, face after face.
    std::vector<std::int32_t> corners;

    /// For each face where its corners end in `corners`; empty if all faces are triangles.
    std::vector<std::uint32_t> face_ends;

    std::vector<MeshPart> parts; ///< in the order of the faces, all of them; empty: one part

    /// The parts are bodies as they are, cavities included, because korvel wrote the file.
    bool parts_are_bodies = false;

    std::vector<Colour> point_colours; ///< of all points, or empty
    std::vector<Colour> face_colours;  ///< of all faces, or empty

    /// What the file states of a korvel model: its grid and reference system.
    Placement placement = {};

    std::size_t face_count() const {
        return face_ends.empty() ? corners.size() / 3 : face_ends.size();
    }

    /// The corners of a face.
    std::span<const std::int32_t> face(std::size_t index) const {
        if (face_ends.empty()) {
            return {corners.data() + 3 * index, 3};
        }
        const std::size_t first = index == 0 ? 0 : face_ends[index - 1];
        return {corners.data() + first, face_ends[index] - first};
    }
};

} // namespace korvel::kit
