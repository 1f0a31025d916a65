#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kit/files/mesh.h"

namespace korvel::kit {

/// The comments by which a file states that its parts are bodies, and where they are: "korvel
/// model" and, unless the placement is plain, its line "grid …". None for other meshes.
std::vector<std::string> mesh_mark(const Mesh& mesh);

/// Takes a comment of a file over into the mesh if it is one of these. A damaged one is ignored.
void take_mesh_mark(std::string_view comment, Mesh& mesh);

/// The colour that a part has where each has one: its own or the most frequent one of its faces, of
/// which those without a colour have that of their first corner. `part` 0 is all of a mesh without
/// parts. Linear in the part.
std::optional<Colour> part_colour(const Mesh& mesh, std::size_t part);

/// The faces of a part, of which 0 is all of a mesh without parts.
struct FaceRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};
FaceRange part_faces(const Mesh& mesh, std::size_t part);
std::size_t part_count(const Mesh& mesh);

} // namespace korvel::kit
