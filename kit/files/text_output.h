#pragma once

#include <array>
#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

#include "kit/files/output_file.h"

namespace korvel::kit {

/// Appends the shortest digits that read back as the same number.
template <class Number>
void append_digits(std::string& text, Number value) {
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text.append(digits.data(), end);
}

/// A text, or bytes, on the way to a file, in blocks. Errors of writing show when the file is
/// closed.
class TextOutput {
public:
    explicit TextOutput(OutputFile& out) : out_(out) {}
    ~TextOutput() { flush(0); }
    TextOutput(const TextOutput&) = delete;
    TextOutput& operator=(const TextOutput&) = delete;

    /// What is not written yet, to append to.
    std::string& text() {
        flush(1U << 16U);
        return text_;
    }

    TextOutput& put(std::string_view words) {
        text().append(words);
        return *this;
    }

    template <class Number>
    TextOutput& put_number(Number value) {
        append_digits(text(), value);
        return *this;
    }

private:
    void flush(std::size_t least) {
        if (text_.size() > least) {
            std::fwrite(text_.data(), 1, text_.size(), out_.stream());
            text_.clear();
        }
    }

    OutputFile& out_;
    std::string text_;
};

} // namespace korvel::kit
