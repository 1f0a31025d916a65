#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/base/points.h"
#include "kit/files/glb_json.h"

namespace korvel::kit {

/// A list of values within the binary chunk of a glTF, which was checked against its size.
class GlbAccessor {
public:
    /// Fails unless it has this type ("VEC3", "SCALAR") and a component type and features that are
    /// read: single precision for coordinates, unsigned integers for indices.
    GlbAccessor(const GlbValue& root, std::size_t index, const std::vector<char>& bytes,
                bool has_points);

    std::size_t size() const { return count_; }
    Point3 point(std::size_t index) const;
    std::uint32_t index(std::size_t index) const;

    /// Throws an input error that names the accessor.
    [[noreturn]] void fail(const std::string& message) const { value_.fail(message); }

private:
    void find_bytes(const GlbValue& root, const std::vector<char>& bytes);
    std::uint32_t bits(std::size_t at) const;

    GlbValue value_;
    const char* first_ = nullptr;
    std::size_t count_ = 0;
    std::size_t stride_ = 0;
    std::size_t width_ = 0; // of a component, in bytes
    std::size_t components_ = 1;
};

} // namespace korvel::kit
