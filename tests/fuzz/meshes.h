#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "kit/base/error.h"
#include "kit/files/mesh_files.h"
#include "tests/fuzz/exercise.h"

// What the programs for the readers of meshes have in common.

namespace korvel::test {

/// Whether everything in a mesh refers to what it contains.
inline bool is_consistent(const kit::Mesh& mesh) {
    const auto is_finite = [](const kit::Point3& point) {
        return std::all_of(point.begin(), point.end(), [](double v) { return std::isfinite(v); });
    };
    const auto is_index = [&](std::int32_t corner) {
        return corner >= 0 && static_cast<std::size_t>(corner) < mesh.points.size();
    };
    std::size_t end = 0;
    for (const std::uint32_t face_end : mesh.face_ends) {
        if (face_end < end + 3) {
            return false;
        }
        end = face_end;
    }
    std::size_t part_end = 0;
    for (const kit::MeshPart& part : mesh.parts) {
        if (part.face_end < part_end) {
            return false;
        }
        part_end = part.face_end;
    }
    const auto is_for = [](std::size_t count, std::size_t all) {
        return count == 0 || count == all;
    };
    return std::all_of(mesh.points.begin(), mesh.points.end(), is_finite) &&
           std::all_of(mesh.corners.begin(), mesh.corners.end(), is_index) &&
           (mesh.face_ends.empty() ? mesh.corners.size() % 3 == 0 : end == mesh.corners.size()) &&
           is_for(part_end, mesh.face_count()) &&
           is_for(mesh.point_colours.size(), mesh.points.size()) &&
           is_for(mesh.face_colours.size(), mesh.face_count());
}

/// Reads a mesh of the format, or refuses it. What was read is consistent, and is written and read
/// again: `is_kept` compares.
template <class IsKept>
void exercise_mesh(const std::uint8_t* data, std::size_t size, kit::MeshFormat format,
                   IsKept is_kept) {
    FILE* const stream = stream_over(reinterpret_cast<const char*>(data), size);
    try {
        const kit::Mesh mesh = kit::read_mesh(stream, "fuzzed", format);
        if (!is_consistent(mesh)) {
            std::abort();
        }
        kit::write_mesh(mesh, "written", format);
        if (!is_kept(mesh, kit::read_mesh("written", format))) {
            std::abort();
        }
    } catch (const kit::Error&) {
        // Refused.
    }
    std::fclose(stream);
}

} // namespace korvel::test
