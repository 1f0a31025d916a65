#pragma once

#include <bit>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "kit/files/byte_input.h"
#include "kit/files/mesh.h"

// The head of a PLY file, which describes the rows of numbers that follow.

namespace korvel::kit {

enum class PlyType { int8, uint8, int16, uint16, int32, uint32, float32, float64 };

constexpr std::size_t size_of(PlyType type) {
    constexpr std::size_t sizes[] = {1, 1, 2, 2, 4, 4, 4, 8};
    return sizes[static_cast<std::size_t>(type)];
}

constexpr bool is_integer(PlyType type) {
    return type < PlyType::float32;
}

struct PlyProperty {
    std::string name;
    PlyType type = PlyType::float32;
    std::optional<PlyType> count_type = {}; ///< of a list
};

struct PlyElement {
    std::string name;
    std::size_t count = 0;
    std::vector<PlyProperty> properties = {};
};

struct PlyHeader {
    bool is_text = false;
    std::endian order = std::endian::little;
    std::vector<PlyElement> elements = {};
};

/// Reads up to the line "end_header". `mesh` is what the comments may mark.
PlyHeader read_ply_header(ByteInput& input, Mesh& mesh);

} // namespace korvel::kit
