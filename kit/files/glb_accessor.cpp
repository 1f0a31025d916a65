#include "kit/files/glb_accessor.h"

#include <bit>
#include <string>

namespace korvel::kit {
namespace {

std::size_t width_of(const GlbValue& accessor, bool has_points);

} // namespace

GlbAccessor::GlbAccessor(const GlbValue& root, std::size_t index, const std::vector<char>& bytes,
                         bool has_points)
    : value_(root.member("accessors").element(index)), components_(has_points ? 3 : 1) {
    if (value_.find("sparse")) {
        fail("sparse accessors are not read");
    }
    if (const auto normalized = value_.find("normalized"); normalized && normalized->is_true()) {
        fail("normalized numbers are not read as coordinates or indices");
    }
    const char* const type = has_points ? "VEC3" : "SCALAR";
    if (const GlbValue found = value_.member("type"); found.text() != type) {
        found.fail("'" + found.text() + "', where " + type + " is expected");
    }
    width_ = width_of(value_, has_points);
    count_ = value_.member("count").whole();
    find_bytes(root, bytes);
}

void GlbAccessor::find_bytes(const GlbValue& root, const std::vector<char>& bytes) {
    if (!value_.find("bufferView")) {
        fail("accessors without a view of a buffer are not read");
    }
    const GlbValue view = root.member("bufferViews").element(value_.member("bufferView").whole());
    if (const std::size_t buffer = view.member("buffer").whole(); buffer != 0) {
        view.fail("buffer " + std::to_string(buffer) + ", where only that in the file is read");
    }
    // Of 32 bits each, in 64.
    const std::uint64_t start = view.whole("byteOffset", 0);
    const std::uint64_t length = view.member("byteLength").whole();
    const std::uint64_t offset = value_.whole("byteOffset", 0);
    const std::size_t width = components_ * width_;
    stride_ = view.whole("byteStride", width);
    if (start + length > bytes.size()) {
        view.fail("the view ends after the " + std::to_string(bytes.size()) +
                  " bytes of the buffer");
    }
    if (stride_ < width || stride_ > 252) {
        view.fail("a stride of " + std::to_string(stride_) + " bytes");
    }
    if (count_ > 0 && offset + std::uint64_t{stride_} * (count_ - 1) + width > length) {
        fail(std::to_string(count_) + " values are more than its view of " +
             std::to_string(length) + " bytes contains");
    }
    first_ = count_ == 0 ? nullptr : bytes.data() + start + offset;
}

Point3 GlbAccessor::point(std::size_t index) const {
    const std::size_t at = index * stride_;
    return {std::bit_cast<float>(bits(at)), std::bit_cast<float>(bits(at + 4)),
            std::bit_cast<float>(bits(at + 8))};
}

std::uint32_t GlbAccessor::index(std::size_t index) const {
    return bits(index * stride_);
}

// The lowest byte comes first.
std::uint32_t GlbAccessor::bits(std::size_t at) const {
    std::uint32_t value = 0;
    for (std::size_t i = width_; i-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(first_[at + i]);
    }
    return value;
}

namespace {

std::size_t width_of(const GlbValue& accessor, bool has_points) {
    const GlbValue type = accessor.member("componentType");
    const std::size_t number = type.whole();
    if (has_points && number == 5126) {
        return 4;
    }
    if (!has_points && (number == 5121 || number == 5123 || number == 5125)) {
        return number == 5121 ? 1 : number == 5123 ? 2 : 4;
    }
    type.fail("component type " + std::to_string(number) + " is not read for " +
              (has_points ? "coordinates" : "indices"));
}

} // namespace
} // namespace korvel::kit
