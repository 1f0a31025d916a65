#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <iterator>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace korvel::test {

// Comparison of records member by member. A record type becomes comparable under a `Form` by an
// overload that lists its members:
//
//     constexpr auto members_of(EveryBit, const RING*) {
//         return std::tuple(KORVEL_MEMBER(RING, pts), KORVEL_MEMBER(RING, sides));
//     }

#define KORVEL_MEMBER(RECORD, NAME) std::pair(#NAME, &RECORD::NAME)

/// Numbers are the same when all their bits are, or when neither is a number.
struct EveryBit {
    static bool are_same(double a, double b) {
        return a == b ? std::signbit(a) == std::signbit(b) : std::isnan(a) && std::isnan(b);
    }
};

/// The first difference between two values, such as "[3].plane[2] is 1, expected 2", or nothing.
template <class Form, class Value>
std::string first_difference(Form form, const Value& actual, const Value& expected) {
    if constexpr (std::is_arithmetic_v<Value>) {
        const auto a = static_cast<double>(actual);
        const auto b = static_cast<double>(expected);
        if (Form::are_same(a, b)) {
            return {};
        }
        char text[200];
        if (std::is_integral_v<Value>) {
            std::snprintf(text, sizeof text, " is %.0f, expected %.0f", a, b);
        } else {
            std::snprintf(text, sizeof text, " is %.17g (%a), expected %.17g (%a)", a, a, b, b);
        }
        return text;
    } else if constexpr (requires { std::begin(actual); }) {
        const auto size = std::distance(std::begin(actual), std::end(actual));
        const auto expected_size = std::distance(std::begin(expected), std::end(expected));
        if (size != expected_size) {
            return " has " + std::to_string(size) + " elements, expected " +
                   std::to_string(expected_size);
        }
        auto other = std::begin(expected);
        int index = 0;
        for (const auto& element : actual) {
            const std::string found = first_difference(form, element, *other++);
            if (!found.empty()) {
                return '[' + std::to_string(index) + ']' + found;
            }
            ++index;
        }
        return {};
    } else {
        std::string found;
        const auto differs = [&](const auto& member) {
            const auto& [name, value_in] = member;
            found = first_difference(form, std::invoke(value_in, actual),
                                     std::invoke(value_in, expected));
            if (!found.empty()) {
                found = std::string(".") + name + found;
            }
            return !found.empty();
        };
        std::apply([&](const auto&... member) { return (differs(member) || ...); },
                   members_of(form, &actual));
        return found;
    }
}

template <class Form, class Value>
testing::AssertionResult same_under(Form form, const char* actual_name, const char* expected_name,
                                    const Value& actual, const Value& expected) {
    const std::string found = first_difference(form, actual, expected);
    return found.empty()
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << actual_name << found << " as in " << expected_name;
}

/// For `EXPECT_PRED_FORMAT2(same_state, actual, expected)`: every member, every bit of it. A
/// failure names the first member that differs, and both values.
template <class Value>
testing::AssertionResult same_state(const char* actual_name, const char* expected_name,
                                    const Value& actual, const Value& expected) {
    return same_under(EveryBit(), actual_name, expected_name, actual, expected);
}

} // namespace korvel::test
