#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>

namespace korvel::test {

/// Decodes a fuzzer's bytes into choices and numbers. After the last byte every value is 0.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

    /// An endless sequence of bytes derived from a text, for a target whose whole input is the
    /// text.
    explicit Bytes(const std::string& text) : is_endless_(true) {
        for (const char c : text) {
            state_ = (state_ ^ static_cast<std::uint8_t>(c)) * 0x100000001b3U;
        }
    }

    bool is_empty() const { return !is_endless_ && next_ == end_; }

    std::uint8_t byte() {
        if (is_endless_) {
            state_ = state_ * 0x5851f42d4c957f2dU + 0x14057b7ef767814fU;
            return static_cast<std::uint8_t>(state_ >> 56U);
        }
        return next_ == end_ ? std::uint8_t{0} : *next_++;
    }

    /// From 0 to `count` − 1; 0 when `count` is not positive.
    int choice(int count) { return count > 0 ? byte() % count : 0; }

    bool chance(int of) { return choice(of) == of - 1; }

    int word() {
        std::uint32_t bits = 0;
        for (int k = 0; k < 4; ++k) {
            bits = bits << 8U | byte();
        }
        return static_cast<int>(bits);
    }

    /// Usually small, otherwise an end of the range or any value.
    int integer() {
        const int kind = byte();
        switch (kind) {
        case 255:
            return std::numeric_limits<int>::min();
        case 254:
            return std::numeric_limits<int>::max();
        case 253:
            return word();
        default:
            return kind - 126;
        }
    }

    /// An index into a list of `size` entries, rarely one outside of it.
    int index(int size) {
        const int kind = byte();
        if (kind >= 248) {
            const int outside[] = {-1, size, size + 1, integer()};
            return outside[kind % 4];
        }
        return size > 0 ? (kind << 8U | byte()) % size : 0;
    }

    /// Usually a small multiple of a quarter, otherwise a value that is difficult for arithmetic.
    double real() {
        const int kind = byte();
        if (kind < 240) {
            return (kind - 120) * 0.25;
        }
        constexpr double odd[] = {0.0,
                                  -0.0,
                                  1e-300,
                                  1e300,
                                  -1e300,
                                  1e9,
                                  3e38,
                                  std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::denorm_min()};
        const int which = kind - 240;
        if (which < static_cast<int>(std::size(odd))) {
            return odd[which];
        }
        const std::uint64_t bits = static_cast<std::uint64_t>(static_cast<std::uint32_t>(word()))
                                       << 32U |
                                   static_cast<std::uint32_t>(word());
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

private:
    const std::uint8_t* next_ = nullptr;
    const std::uint8_t* end_ = nullptr;
    bool is_endless_ = false;
    std::uint64_t state_ = 0xcbf29ce484222325U;
};

} // namespace korvel::test
