#include "kit/files/mesh_mark.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "kit/base/error.h"
#include "kit/files/placement_line.h"

namespace korvel::kit {
namespace {

constexpr std::string_view model_mark = "korvel model";
constexpr std::string_view grid_word = "grid ";

} // namespace

std::vector<std::string> mesh_mark(const Mesh& mesh) {
    std::vector<std::string> lines;
    if (mesh.parts_are_bodies) {
        lines.emplace_back(model_mark);
        if (std::string line = placement_line(mesh.placement); !line.empty()) {
            line.pop_back(); // its end
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

void take_mesh_mark(std::string_view comment, Mesh& mesh) {
    comment = comment.substr(std::min(comment.find_first_not_of(white_space), comment.size()));
    comment = comment.substr(0, comment.find_last_not_of(white_space) + 1);
    if (comment == model_mark) {
        mesh.parts_are_bodies = true;
    } else if (mesh.parts_are_bodies && comment.starts_with(grid_word)) {
        try {
            mesh.placement = read_placement({"", std::string(comment)});
        } catch (const Error&) {
            // Coordinates are the user's, with or without it.
        }
    }
}

std::optional<Colour> part_colour(const Mesh& mesh, std::size_t part) {
    if (part < mesh.parts.size() && mesh.parts[part].colour) {
        return mesh.parts[part].colour;
    }
    const bool have_faces = !mesh.face_colours.empty();
    if (!have_faces && mesh.point_colours.empty()) {
        return {};
    }
    std::unordered_map<std::uint32_t, std::size_t> faces_of;
    std::optional<Colour> found;
    std::size_t most = 0;
    const FaceRange faces = part_faces(mesh, part);
    for (std::size_t face = faces.begin; face < faces.end; ++face) {
        const Colour colour =
            have_faces ? mesh.face_colours[face]
                       : mesh.point_colours[static_cast<std::size_t>(mesh.face(face).front())];
        const std::uint32_t key = static_cast<std::uint32_t>(colour.red) << 16U |
                                  static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
        const std::size_t count = ++faces_of[key];
        if (count > most) {
            most = count;
            found = colour;
        }
    }
    return found;
}

FaceRange part_faces(const Mesh& mesh, std::size_t part) {
    if (mesh.parts.empty()) {
        return {0, mesh.face_count()};
    }
    return {part == 0 ? 0 : mesh.parts[part - 1].face_end, mesh.parts[part].face_end};
}

std::size_t part_count(const Mesh& mesh) {
    return mesh.parts.empty() ? 1 : mesh.parts.size();
}

} // namespace korvel::kit
