#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "kit/files/output_file.h"

namespace korvel::kit {

/// Text and records on their way into a file, in blocks. What is put is written by `flush` at the
/// latest; errors of writing show when the file is closed.
class ByteOutput {
public:
    explicit ByteOutput(OutputFile& out) : out_(out) { text_.reserve(block + spare); }
    ~ByteOutput() { flush(); }
    ByteOutput(const ByteOutput&) = delete;
    ByteOutput& operator=(const ByteOutput&) = delete;

    void put(std::string_view text) {
        text_ += text;
        flush_block();
    }

    /// In the shortest digits that read back as the same number; 0 without a sign.
    template <class Number>
    void put_number(Number number) {
        std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
        const auto result =
            std::to_chars(digits.data(), digits.data() + digits.size(), number + Number());
        put({digits.data(), static_cast<std::size_t>(result.ptr - digits.data())});
    }

    /// The bytes of a value, the lowest first.
    template <class Value>
    void put_binary(Value value) {
        static_assert(std::is_trivially_copyable_v<Value>);
        std::array<char, sizeof(Value)> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init)
        std::memcpy(bytes.data(), &value, sizeof value);
        if constexpr (std::endian::native == std::endian::big) {
            for (std::size_t i = 0; i < sizeof value / 2; ++i) {
                std::swap(bytes[i], bytes[sizeof value - 1 - i]);
            }
        }
        put({bytes.data(), bytes.size()});
    }

    void flush() {
        std::fwrite(text_.data(), 1, text_.size(), out_.stream());
        text_.clear();
    }

private:
    static constexpr std::size_t block = 1U << 16U;
    static constexpr std::size_t spare = 1U << 10U;

    void flush_block() {
        if (text_.size() >= block) {
            flush();
        }
    }

    OutputFile& out_;
    std::string text_;
};

} // namespace korvel::kit
