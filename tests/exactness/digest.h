#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>

#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/region/cregion.h"
#include "tests/support/model_state.h"

namespace korvel::test {

constexpr auto members_of(EveryBit, const tagPOINT*) {
    return std::tuple(KORVEL_MEMBER(tagPOINT, x), KORVEL_MEMBER(tagPOINT, y));
}

constexpr auto members_of(EveryBit, const CREGION::CURVE_NODE*) {
    return std::tuple(KORVEL_MEMBER(CREGION::CURVE_NODE, start_node),
                      KORVEL_MEMBER(CREGION::CURVE_NODE, end_node),
                      KORVEL_MEMBER(CREGION::CURVE_NODE, oc_flag));
}

constexpr auto members_of(EveryBit, const CREGION::tagRToC*) {
    return std::tuple(KORVEL_MEMBER(CREGION::tagRToC, ring_area),
                      KORVEL_MEMBER(CREGION::tagRToC, curve_ids));
}

constexpr auto members_of(EveryBit, const CREGION::RToPt*) {
    return std::tuple(KORVEL_MEMBER(CREGION::RToPt, ring_area),
                      KORVEL_MEMBER(CREGION::RToPt, is_removed),
                      KORVEL_MEMBER(CREGION::RToPt, pts));
}

constexpr auto members_of(EveryBit, const CREGION::PyToRg*) {
    return std::make_tuple(KORVEL_MEMBER(CREGION::PyToRg, rings));
}

constexpr auto members_of(EveryBit, const VERT2D*) {
    return std::tuple(KORVEL_MEMBER(VERT2D, x), KORVEL_MEMBER(VERT2D, y));
}

constexpr auto members_of(EveryBit, const PLYDT::SIDE*) {
    return std::tuple(KORVEL_MEMBER(PLYDT::SIDE, p0), KORVEL_MEMBER(PLYDT::SIDE, p1),
                      KORVEL_MEMBER(PLYDT::SIDE, ux), KORVEL_MEMBER(PLYDT::SIDE, uy),
                      KORVEL_MEMBER(PLYDT::SIDE, len));
}

constexpr auto members_of(EveryBit, const PLYDT::TRG*) {
    return std::tuple(KORVEL_MEMBER(PLYDT::TRG, radius), KORVEL_MEMBER(PLYDT::TRG, va),
                      KORVEL_MEMBER(PLYDT::TRG, vb), KORVEL_MEMBER(PLYDT::TRG, vc));
}

constexpr auto members_of(EveryBit, const PLYDT::PRISM_PT*) {
    return std::tuple(KORVEL_MEMBER(PLYDT::PRISM_PT, x), KORVEL_MEMBER(PLYDT::PRISM_PT, y),
                      KORVEL_MEMBER(PLYDT::PRISM_PT, z));
}

/// A number of 64 bits for all bits of many values (FNV-1a). Numbers that are none count as one.
class Digest {
public:
    /// Adds numbers, lists of them with their sizes, and records member by member.
    template <class Value>
    Digest& add(const Value& value) {
        if constexpr (std::is_floating_point_v<Value>) {
            const double number = value;
            take(std::isnan(number) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(number));
        } else if constexpr (std::is_arithmetic_v<Value>) {
            take(static_cast<std::uint64_t>(static_cast<long long>(value)));
        } else if constexpr (requires { std::begin(value); }) {
            take(static_cast<std::uint64_t>(std::distance(std::begin(value), std::end(value))));
            for (const auto& element : value) {
                add(element);
            }
        } else {
            std::apply(
                [&](const auto&... member) { (add(std::invoke(member.second, value)), ...); },
                members_of(EveryBit(), &value));
        }
        return *this;
    }

    std::string text() const {
        char digits[20];
        std::snprintf(digits, sizeof digits, "%08x%08x", static_cast<unsigned>(state_ >> 32U),
                      static_cast<unsigned>(state_));
        return digits;
    }

private:
    void take(std::uint64_t word) {
        for (int byte = 0; byte < 8; ++byte, word >>= 8U) {
            state_ = (state_ ^ (word & 0xffU)) * 0x100000001b3U;
        }
    }

    std::uint64_t state_ = 0xcbf29ce484222325U;
};

} // namespace korvel::test
