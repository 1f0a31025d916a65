#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

namespace korvel::kit {

/// A number whose bytes begin at `bytes`, in the given order.
template <class Number>
Number number_at(const char* bytes, std::endian order = std::endian::little) {
    using Bits = std::conditional_t<
        sizeof(Number) == 8, std::uint64_t,
        std::conditional_t<sizeof(Number) == 4, std::uint32_t,
                           std::conditional_t<sizeof(Number) == 2, std::uint16_t, std::uint8_t>>>;
    Bits bits = 0;
    std::memcpy(&bits, bytes, sizeof bits);
    if (order != std::endian::native) {
        Bits turned = 0;
        for (std::size_t i = 0; i < sizeof bits; ++i) {
            turned =
                static_cast<Bits>(turned | ((bits >> 8 * i & 0xFFU) << 8 * (sizeof bits - 1 - i)));
        }
        bits = turned;
    }
    return std::bit_cast<Number>(bits);
}

/// Appends the bytes of a number, the least one first.
template <class Number>
void append_bytes(std::string& text, Number number) {
    const auto turned = number_at<Number>(reinterpret_cast<const char*>(&number));
    text.append(reinterpret_cast<const char*>(&turned), sizeof turned);
}

} // namespace korvel::kit
