#include "kit/files/mesh_builder.h"

#include <string>

namespace korvel::kit {

std::size_t ListGrowth::expected(std::size_t present) {
    constexpr std::size_t fewest = 256;
    if (first_ < 0) {
        first_ = input_.position();
    }
    if (present < fewest) {
        return fewest;
    }
    if (!input_.knows_size()) {
        return 2 * present;
    }
    const auto read = static_cast<double>(std::max(1LL, input_.position() - first_));
    const double rate = std::min(static_cast<double>(present) / read, 1.0);
    const double more = rate * static_cast<double>(input_.most_left());
    return present + present / 8 + static_cast<std::size_t>(1.01 * more);
}

bool FaceBuilder::end_face() {
    const std::size_t count = mesh_.corners.size() - first_;
    if (count < 3) {
        mesh_.corners.resize(first_);
        ++dropped_;
        return false;
    }
    const bool were_triangles = mesh_.face_ends.empty();
    if (were_triangles && count > 3) {
        for (std::uint32_t end = 3; end <= first_; end += 3) {
            growth_.add(mesh_.face_ends, end);
        }
    }
    first_ = mesh_.corners.size();
    if (!were_triangles || count > 3) {
        growth_.add(mesh_.face_ends, static_cast<std::uint32_t>(first_));
    }
    return true;
}

void FaceBuilder::finish(const ByteInput& input) const {
    if (dropped_ > 0) {
        input.context().warn(input.name() + ": " + std::to_string(dropped_) +
                             " faces with fewer than three corners are left out");
    }
}

} // namespace korvel::kit
