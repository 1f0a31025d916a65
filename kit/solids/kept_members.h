#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "korvel/module/korvel.h"

namespace korvel::kit {

// Members of the exact class's records that undo keeps and compares.

template <class Value>
void copy_value(const Value& from, Value& to) {
    if constexpr (std::is_array_v<Value>) {
        for (std::size_t i = 0; i < std::extent_v<Value>; ++i) {
            copy_value(from[i], to[i]);
        }
    } else if constexpr (requires { to.Copy(from); }) {
        to.Copy(from);
    } else {
        to = from;
    }
}

template <class Record, class... Member>
void copy_members(const Record& from, Record& to, Member Record::*... members) {
    (copy_value(from.*members, to.*members), ...);
}

/// To the last bit, so that what is no number equals itself.
template <class Value>
bool is_same_value(const Value& a, const Value& b) {
    if constexpr (std::is_array_v<Value>) {
        return std::equal(std::begin(a), std::end(a), std::begin(b),
                          is_same_value<std::remove_extent_t<Value>>);
    } else if constexpr (requires { a.GetSize(); }) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    } else if constexpr (std::is_same_v<Value, double>) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    } else {
        return a == b;
    }
}

template <class Record, class... Member>
bool have_same(const Record& a, const Record& b, Member Record::*... members) {
    return (is_same_value(a.*members, b.*members) && ...);
}

inline void copy_bounds(const TMOD3D& from, TMOD3D& to) {
    copy_members(from, to, &TMOD3D::wrap_cuboid, &TMOD3D::wrap_radius, &TMOD3D::cuboid_corners,
                 &TMOD3D::cuboid_min, &TMOD3D::cuboid_max);
}

/// What is gathered and picked.
inline void copy_selection(const TMOD3D& from, TMOD3D& to) {
    copy_members(from, to, &TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3,
                 &TMOD3D::relat_list_4, &TMOD3D::mut_weights, &TMOD3D::edit_state,
                 &TMOD3D::pick_data);
}

inline void copy_span(const BODY3D& from, BODY3D& to) {
    copy_members(from, to, &BODY3D::model_min, &BODY3D::model_max, &BODY3D::view_mid,
                 &BODY3D::view_span, &BODY3D::view_min, &BODY3D::view_max, &BODY3D::change_dirt);
}

} // namespace korvel::kit
