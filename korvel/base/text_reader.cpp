// Numbers from text, as the C library's formatted input converts them.

#include "korvel/base/text_reader.h"

#include <cstdlib>
#include <cstring>

#include "korvel/platform/check_point.h"
#include "korvel/platform/plain_reading.h"
#include "korvel/platform/text_stream.h"

namespace korvel {
namespace {

constexpr int surely_fitting = 9; // digits of an integer
constexpr int exact_digits = 15;  // of a real, which a double represents without rounding

bool is_digit(int c) {
    return c >= '0' && c <= '9';
}

bool is_hex_digit(int c) {
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool is_letter(int c, int lower) {
    return c == lower || c == lower - 'a' + 'A';
}

bool is_sign(int c) {
    return c == '+' || c == '-';
}

/// The white space of every locale. What else is white space in a locale is left to `fscanf`.
bool is_space(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Printed, because `localeconv` may not be called by two threads at once.
bool decimal_point_is_full_stop() {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    return std::strcmp(text, "0.5") == 0;
}

} // namespace

TextReader::TextReader(FILE* stream) : stream_(stream) {
    lock_stream(stream);
    takes_characters_ = is_read_by_characters(stream);
    takes_reals_ = takes_characters_ && decimal_point_is_full_stop();
}

TextReader::~TextReader() {
    return_lookahead();
    unlock_stream(stream_);
    if (!is_plain_) {
        report_odd_number();
    }
}

int TextReader::believable_records(long long declared, int least_bytes) {
    constexpr long long always_believed = 65536;
    constexpr long long longest = std::numeric_limits<int>::max();
    if (declared <= always_believed) {
        return static_cast<int>(std::max<long long>(declared, 0));
    }
    const bool fits = declared <= longest && declared <= bytes_left() / least_bytes;
    return static_cast<int>(fits ? declared : always_believed);
}

long long TextReader::bytes_left() {
    return_lookahead();
    return bytes_from_here(stream_);
}

bool TextReader::read(long long declared, std::vector<int>& numbers, const char* stage) {
    return read_all(declared, numbers, stage);
}

bool TextReader::read(long long declared, std::vector<float>& numbers, const char* stage) {
    return read_all(declared, numbers, stage);
}

template <class Number>
bool TextReader::read_all(long long declared, std::vector<Number>& numbers, const char* stage) {
    constexpr long long believed = 1 << 22; // memory that is not used costs nothing
    numbers.reserve(static_cast<std::size_t>(std::clamp<long long>(declared, 0, believed)));
    for (long long i = 0; i < declared; ++i) {
        Number number = 0;
        if (!read(number)) {
            return false;
        }
        numbers.push_back(number);
        check_point_after(i, declared, 1 << 14, stage);
    }
    return true;
}

bool TextReader::read(int& target) {
    int c = takes_characters_ ? next_after_space() : EOF;
    if (!is_digit(c) && !is_sign(c)) {
        return scan(c, "%d", target);
    }
    const bool is_negative = c == '-';
    if (is_sign(c)) {
        c = next();
    }
    int digits = 0;
    int value = 0;
    for (; is_digit(c) && digits < surely_fitting; c = next()) {
        value = 10 * value + (c - '0');
        ++digits;
    }
    if (is_digit(c)) {
        target = take_long(c, is_negative, value);
        return true;
    }
    end_plain(c); // what follows a sign alone is not taken, but the sign is
    if (digits == 0) {
        is_plain_ = false;
        return false;
    }
    target = is_negative ? -value : value;
    return true;
}

/// The rest of an integer of more digits than surely fit, from digit `c` on. The library converts
/// such a text to 64 bits and keeps the low half.
int TextReader::take_long(int c, bool is_negative, int first_digits) {
    is_plain_ = false;
    text_.assign(is_negative ? 1 : 0, '-');
    text_ += std::to_string(first_digits);
    for (; is_digit(c); c = next()) {
        text_.push_back(static_cast<char>(c));
    }
    lookahead_ = c;
    return static_cast<int>(std::strtoll(text_.c_str(), nullptr, 10));
}

bool TextReader::read(float& target) {
    int c = takes_reals_ ? next_after_space() : EOF;
    if (!is_digit(c) && !is_sign(c) && c != '.') {
        return scan(c, "%f", target);
    }
    const bool is_negative = c == '-';
    const bool has_sign = is_sign(c);
    if (has_sign) {
        c = next();
        if (is_letter(c, 'i') || is_letter(c, 'n')) {
            return scan_word(c, is_negative, target);
        }
    }
    Digits digits = take_plain(c);
    const bool is_complete = !is_digit(c) && c != '.' && !is_letter(c, 'e') && !is_letter(c, 'x');
    if (is_complete && convert_plain(digits, is_negative, target)) {
        end_plain(c);
        return true;
    }
    is_plain_ = false;
    text_.clear();
    if (has_sign) {
        text_.push_back(is_negative ? '-' : '+');
    }
    text_ += text_of(digits);
    take_rest(c, digits);
    return convert(digits, is_negative, target);
}

/// Takes digits with at most one point among them, as long as the digits are exact. `c` is the
/// first character and becomes the one that follows.
TextReader::Digits TextReader::take_plain(int& c) {
    Digits digits;
    const auto take_digits = [&] {
        for (; is_digit(c) && digits.count < exact_digits; c = next()) {
            digits.value = 10 * digits.value + static_cast<unsigned>(c - '0');
            ++digits.count;
        }
    };
    take_digits();
    if (c == '.') {
        const int before_point = digits.count;
        digits.has_point = true;
        c = next();
        take_digits();
        digits.behind_point = digits.count - before_point;
    }
    return digits;
}

std::string TextReader::text_of(const Digits& digits) {
    const std::string value = digits.count > 0 ? std::to_string(digits.value) : "";
    std::string text(static_cast<std::size_t>(digits.count) - value.size(), '0');
    text += value;
    if (digits.has_point) {
        text.insert(text.size() - static_cast<std::size_t>(digits.behind_point), 1, '.');
    }
    return text;
}

/// Takes the rest of the longest start of a number, "1e+" and "0x" included, from character `c` on;
/// `text_` contains what was taken before.
void TextReader::take_rest(int c, Digits& digits) {
    bool has_point = digits.has_point;
    bool has_exponent = false;
    int exponent_mark = 'e';
    const auto take = [&] {
        text_.push_back(static_cast<char>(c));
        c = next();
    };
    if (digits.count == 1 && digits.value == 0 && !has_point && is_letter(c, 'x')) {
        take();
        exponent_mark = 'p';
        digits.is_plain = false;
        digits.count = 0;
    }
    for (;; take()) {
        if (is_digit(c)) {
            digits.value = 10 * digits.value + static_cast<unsigned>(c - '0');
            ++digits.count;
            digits.behind_point += has_point ? 1 : 0;
        } else if (exponent_mark == 'p' && !has_exponent && is_hex_digit(c)) {
            ++digits.count;
        } else if (has_exponent && is_sign(c) && text_.back() == exponent_mark) {
            continue;
        } else if (digits.count > 0 && !has_exponent && is_letter(c, exponent_mark)) {
            c = exponent_mark;
            has_exponent = has_point = true;
            digits.is_plain = false;
        } else if (!has_point && c == '.') {
            has_point = true;
        } else {
            lookahead_ = c;
            return;
        }
    }
}

/// Rounds to single precision once. False for a text without digits, such as a sign alone.
bool TextReader::convert(const Digits& digits, bool is_negative, float& target) const {
    if (convert_plain(digits, is_negative, target)) {
        return true;
    }
    char* end = nullptr;
    const float value = std::strtof(text_.c_str(), &end);
    // "0x" alone is no number, though "0" is one and "0x." counts as 0.
    if (end == text_.c_str() || is_letter(text_.back(), 'x')) {
        return false;
    }
    target = value;
    return true;
}

/// The number, where a quotient in double precision gives it; false for the few others.
bool TextReader::convert_plain(const Digits& digits, bool is_negative, float& target) {
    // A double represents the digits and these powers exactly, so the quotient is rounded once, to
    // 53 bits. Rounding that to 24 bits gives the same as one rounding, unless the first one gave
    // the middle between two floats.
    constexpr double powers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr std::uint64_t bits_dropped = (std::uint64_t{1} << 29U) - 1;
    constexpr std::uint64_t middle = std::uint64_t{1} << 28U;
    if (!digits.is_plain || digits.count == 0 || digits.count > exact_digits) {
        return false;
    }
    const double value = static_cast<double>(digits.value) / powers[digits.behind_point];
    std::uint64_t bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    if ((bits & bits_dropped) == middle) {
        return false;
    }
    target = static_cast<float>(is_negative ? -value : value);
    return true;
}

/// "inf", "nan" and their longer forms after a sign, from character `c` on.
bool TextReader::scan_word(int c, bool is_negative, float& target) {
    float value = 0;
    if (!scan(c, "%f", value)) {
        return false;
    }
    target = is_negative ? -value : value;
    return true;
}

/// Leaves the number that starts with `c`, which may be EOF, to the C library.
template <class Number>
bool TextReader::scan(int c, const char* format, Number& target) {
    is_plain_ = false;
    if (c != EOF) {
        lookahead_ = c;
    }
    return_lookahead();
    return std::fscanf(stream_, format, &target) == 1;
}

int TextReader::next() {
    return next_character(stream_);
}

int TextReader::next_after_space() {
    int c = lookahead_ != EOF ? lookahead_ : next();
    while (is_space(c)) {
        c = next();
    }
    lookahead_ = EOF;
    return c;
}

/// The character after a plain number, which belongs to none.
void TextReader::end_plain(int c) {
    is_plain_ &= is_space(c) || c == EOF;
    lookahead_ = c;
}

void TextReader::return_lookahead() {
    if (lookahead_ != EOF) {
        std::ungetc(lookahead_, stream_);
        lookahead_ = EOF;
    }
}

} // namespace korvel
