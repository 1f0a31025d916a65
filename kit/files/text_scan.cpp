#include "kit/files/text_scan.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "kit/files/mesh_mark.h"
#include "kit/files/text_file.h"

namespace korvel::kit {
namespace {

std::string_view without_plus_sign(std::string_view word) {
    const bool has_plus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    return has_plus ? word.substr(1) : word;
}

template <class Number>
std::errc scan(std::string_view word, Number& value) {
    const std::string_view digits = without_plus_sign(word);
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return stop == end ? error : std::errc::invalid_argument;
}

// Digits below the range of double precision are 0, as other programs read them; above it they are
// an error.
bool is_tiny(std::string_view word) {
    const std::size_t exponent = word.find_first_of("eE");
    return exponent != std::string_view::npos && word.substr(exponent + 1).starts_with('-');
}

} // namespace

bool TextScan::next_line() {
    for (;;) {
        bool is_line = false;
        std::string_view line = input_.next_line(is_line);
        if (!is_line) {
            next_ = end_;
            return false;
        }
        if (commented_ != nullptr) {
            if (const std::size_t mark = line.find('#'); mark != std::string_view::npos) {
                take_mesh_mark(line.substr(mark + 1), *commented_);
                line = line.substr(0, mark);
            }
        }
        next_ = line.data();
        end_ = next_ + line.size();
        if (!at_line_end()) {
            return true;
        }
    }
}

bool TextScan::at_line_end() {
    while (next_ != end_ && is_white_space(static_cast<unsigned char>(*next_))) {
        ++next_;
    }
    return next_ == end_;
}

std::string_view TextScan::word() {
    at_line_end();
    const char* const first = next_;
    while (next_ != end_ && !is_white_space(static_cast<unsigned char>(*next_))) {
        ++next_;
    }
    return {first, static_cast<std::size_t>(next_ - first)};
}

std::string_view TextScan::rest() {
    at_line_end();
    std::string_view text(next_, static_cast<std::size_t>(end_ - next_));
    next_ = end_;
    return text.substr(0, text.find_last_not_of(white_space) + 1);
}

double TextScan::number(const char* what) {
    const std::string_view text = need_word(what);
    double value = 0;
    const std::errc error = scan(text, value);
    if (error == std::errc::result_out_of_range && is_tiny(text)) {
        return 0;
    }
    if (error == std::errc::result_out_of_range) {
        input_.fail(quoted(text) + " is too large for " + what, text);
    }
    if (error != std::errc()) {
        input_.fail(quoted(text) + " is not a number: expected " + what, text);
    }
    if (!std::isfinite(value)) {
        input_.fail(quoted(text) + " is not a finite number: expected " + what, text);
    }
    return value;
}

std::int64_t TextScan::integer(const char* what, std::int64_t least, std::int64_t most) {
    const std::string_view text = need_word(what);
    std::int64_t value = 0;
    const std::errc error = scan(text, value);
    if (error == std::errc::invalid_argument) {
        input_.fail(quoted(text) + " is not an integer: expected " + what, text);
    }
    if (error != std::errc() || value < least || value > most) {
        input_.fail(std::string(what).append(" is ").append(text.substr(0, 40)) +
                        ", out of range: expected " + std::to_string(least) + " to " +
                        std::to_string(most),
                    text);
    }
    return value;
}

std::int32_t TextScan::index(const char* what, std::size_t size) {
    return static_cast<std::int32_t>(integer(what, 0, static_cast<std::int64_t>(size) - 1));
}

std::string_view TextScan::need_word(const char* what) {
    while (at_line_end()) {
        if (!crosses_lines_) {
            input_.fail(std::string("the line ends where ") + what + " is expected");
        }
        if (!next_line()) {
            input_.fail(std::string("the file ends where ") + what + " is expected");
        }
    }
    return word();
}

bool is_word(std::string_view word, std::string_view small_letters) {
    return std::equal(word.begin(), word.end(), small_letters.begin(), small_letters.end(),
                      [](char one, char other) {
                          return (one >= 'A' && one <= 'Z' ? one - 'A' + 'a' : one) == other;
                      });
}

} // namespace korvel::kit
