#include "kit/files/ply_values.h"

#include <algorithm>
#include <array>
#include <limits>

#include "kit/files/byte_order.h"
#include "kit/files/text_file.h"

namespace korvel::kit {

PlyValues::PlyValues(ByteInput& input, const PlyHeader& header)
    : input_(input), scan_(input), is_text_(header.is_text), order_(header.order) {
    scan_.cross_lines();
}

std::size_t PlyValues::most_left() const {
    return is_text_ ? scan_.most_left() : input_.most_left();
}

double PlyValues::next(PlyType type, const char* what) {
    if (is_text_) {
        return scan_.number(what);
    }
    std::array<char, 8> bytes = {};
    const char* const data = bytes.data();
    input_.read(bytes.data(), size_of(type), what);
    switch (type) {
    case PlyType::int8:
        return number_at<std::int8_t>(data);
    case PlyType::uint8:
        return number_at<std::uint8_t>(data);
    case PlyType::int16:
        return number_at<std::int16_t>(data, order_);
    case PlyType::uint16:
        return number_at<std::uint16_t>(data, order_);
    case PlyType::int32:
        return number_at<std::int32_t>(data, order_);
    case PlyType::uint32:
        return number_at<std::uint32_t>(data, order_);
    case PlyType::float32:
        return number_at<float>(data, order_);
    case PlyType::float64:
        return number_at<double>(data, order_);
    }
    return 0;
}

std::size_t PlyValues::next_length(const PlyProperty& list) {
    const double length = next(*list.count_type, "the length of a list");
    const std::size_t most = (most_left() + 1) / least_size(list.type);
    if (!(length >= 0) || length > static_cast<double>(most)) {
        fail("the length of a list is " + shortest_digits(length) +
             ", where the file has room for " + std::to_string(most) + " entries");
    }
    return static_cast<std::size_t>(length);
}

void PlyValues::skip(const PlyProperty& property) {
    std::size_t count = property.count_type ? next_length(property) : 1;
    for (; is_text_ && count > 0; --count) {
        scan_.need_word("a property");
    }
    std::array<char, 256> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t left = is_text_ ? 0 : count * size_of(property.type); left > 0;) {
        const std::size_t part = std::min(left, bytes.size());
        input_.read(bytes.data(), part, "a property");
        left -= part;
    }
}

void PlyValues::need_room(const PlyElement& element) const {
    std::size_t least = 0;
    for (const PlyProperty& property : element.properties) {
        least += least_size(property.count_type ? *property.count_type : property.type);
    }
    const std::size_t most = (most_left() + 1) / std::max<std::size_t>(least, 1);
    if (element.count > most && least > 0) {
        fail("the header has " + std::to_string(element.count) + " of element " +
             kit::quoted(element.name) + ", where the file has room for " + std::to_string(most));
    }
}

void PlyValues::finish() {
    if (is_text_ && (!scan_.at_line_end() || scan_.next_line())) {
        const std::string_view word = scan_.word();
        input_.fail(quoted(word) + " follows the last element", word);
    }
    if (!is_text_ && !input_.at_end()) {
        input_.context().warn(input_.name() + ": bytes after the last element are left out");
    }
}

void PlyValues::fail(const std::string& message) const {
    if (is_text_) {
        input_.fail(message);
    }
    input_.fail_at_byte(message);
}

} // namespace korvel::kit
