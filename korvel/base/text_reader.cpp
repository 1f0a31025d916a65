// Numbers from text, as the C library's formatted input takes them.

#include "korvel/base/text_reader.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace korvel {
namespace {

constexpr int surely_fitting = 9; // digits of an integer
constexpr int exact_digits = 15;  // of a real, which stand in a double without rounding

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

/// The white space of every locale; what else a locale takes for it is left to `fscanf`.
bool is_space(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

TextReader::TextReader(FILE* stream) : stream_(stream) {
#ifdef __GLIBC__
    flockfile(stream);
    takes_characters_ = std::fwide(stream, -1) < 0;
    takes_reals_ = takes_characters_ && std::strcmp(std::localeconv()->decimal_point, ".") == 0;
#endif
}

TextReader::~TextReader() {
#ifdef __GLIBC__
    funlockfile(stream_);
#endif
}

bool TextReader::read(int& target) {
    return take_ready(target) || take(target);
}

bool TextReader::read(float& target) {
    return take_ready(target) || take(target);
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

/// From the present position to the end of the stream; 0 where the stream cannot be positioned.
long long TextReader::bytes_left() {
    const long here = std::ftell(stream_);
    if (here < 0 || std::fseek(stream_, 0, SEEK_END) != 0) {
        return 0;
    }
    const long end = std::ftell(stream_);
    std::fseek(stream_, here, SEEK_SET);
    return end - here;
}

bool TextReader::read(long long declared, std::vector<int>& numbers) {
    return read_all(declared, numbers);
}

bool TextReader::read(long long declared, std::vector<float>& numbers) {
    return read_all(declared, numbers);
}

template <class Number>
bool TextReader::read_all(long long declared, std::vector<Number>& numbers) {
    constexpr long long believed = 1 << 22; // memory that is not used costs nothing
    numbers.reserve(static_cast<std::size_t>(std::clamp<long long>(declared, 0, believed)));
    for (long long i = 0; i < declared; ++i) {
        Number number = 0;
        if (!take_ready(number) && !take(number)) {
            return false;
        }
        numbers.push_back(number);
    }
    return true;
}

bool TextReader::take_ready(int& target) {
#ifdef __GLIBC__
    const char* at = takes_characters_ ? next_ready() : nullptr;
    if (at != nullptr) {
        const bool is_negative = *at == '-';
        at += is_negative ? 1 : 0;
        const char* const first = at;
        int value = 0;
        for (; is_digit(*at) && at - first < surely_fitting; ++at) {
            value = 10 * value + (*at - '0');
        }
        if (at != first && !is_digit(*at)) {
            stream_->_IO_read_ptr = const_cast<char*>(at);
            target = is_negative ? -value : value;
            return true;
        }
    }
#endif
    return false;
}

bool TextReader::take_ready(float& target) {
#ifdef __GLIBC__
    const char* at = takes_reals_ ? next_ready() : nullptr;
    if (at != nullptr) {
        const bool is_negative = *at == '-';
        at += is_negative ? 1 : 0;
        Digits digits;
        const auto take_digits = [&] {
            const char* const first = at;
            for (; is_digit(*at) && at - first <= exact_digits; ++at) {
                digits.value = 10 * digits.value + static_cast<unsigned>(*at - '0');
            }
            return static_cast<int>(at - first);
        };
        digits.count = take_digits();
        if (*at == '.') {
            ++at;
            digits.behind_point = take_digits();
            digits.count += digits.behind_point;
        }
        if (!is_letter(*at, 'e') && !is_letter(*at, 'x') &&
            convert_plain(digits, is_negative, target)) {
            stream_->_IO_read_ptr = const_cast<char*>(at);
            return true;
        }
    }
#endif
    return false;
}

#ifdef __GLIBC__
/// The next text but space in the stream's buffer, of which all that can be plain stands ready.
const char* TextReader::next_ready() const {
    constexpr int longest = 2 * exact_digits + 5; // two runs of digits, a sign, a point, an end
    const char* const end = stream_->_IO_read_end;
    const char* at = stream_->_IO_read_ptr;
    while (at != end && is_space(*at)) {
        ++at;
    }
    return end - at >= longest ? at : nullptr;
}
#endif

bool TextReader::take(int& target) {
    if (!takes_characters_) {
        return std::fscanf(stream_, "%d", &target) == 1;
    }
    int c = next_after_space();
    if (!is_digit(c) && !is_sign(c)) {
        give_back(c);
        return c != EOF && std::fscanf(stream_, "%d", &target) == 1;
    }
    const bool is_negative = c == '-';
    text_.clear();
    if (is_sign(c)) {
        text_.push_back(static_cast<char>(c));
        c = next();
    }
    int digits = 0;
    int value = 0;
    for (; is_digit(c); c = next()) {
        if (++digits <= surely_fitting) {
            value = 10 * value + (c - '0');
        }
        text_.push_back(static_cast<char>(c));
    }
    give_back(c); // what follows a sign alone is not taken, but the sign is
    if (digits == 0) {
        return false;
    }
    if (digits <= surely_fitting) {
        target = is_negative ? -value : value;
    } else {
        // The library converts to a `long` and keeps its low half.
        target = static_cast<int>(std::strtol(text_.c_str(), nullptr, 10));
    }
    return true;
}

bool TextReader::take(float& target) {
    if (!takes_reals_) {
        return std::fscanf(stream_, "%f", &target) == 1;
    }
    int c = next_after_space();
    if (!is_digit(c) && !is_sign(c) && c != '.') {
        give_back(c);
        return c != EOF && std::fscanf(stream_, "%f", &target) == 1;
    }
    const bool is_negative = c == '-';
    text_.clear();
    if (is_sign(c)) {
        text_.push_back(static_cast<char>(c));
        c = next();
        if (is_letter(c, 'i') || is_letter(c, 'n')) {
            give_back(c);
            return scan_word(is_negative, target);
        }
    }
    return convert(take_real(c), is_negative, target);
}

/// Takes the longest start of a number, "1e+" and "0x" included, and gives back what follows it.
TextReader::Digits TextReader::take_real(int c) {
    Digits digits;
    bool has_point = false;
    bool has_exponent = false;
    int exponent_mark = 'e';
    const auto take = [&] {
        text_.push_back(static_cast<char>(c));
        c = next();
    };
    if (c == '0') {
        take();
        if (is_letter(c, 'x')) {
            take();
            exponent_mark = 'p';
            digits.is_plain = false;
        } else {
            ++digits.count;
        }
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
            give_back(c);
            return digits;
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

/// The number where a quotient in double precision gives it; false for the others, which are few.
bool TextReader::convert_plain(const Digits& digits, bool is_negative, float& target) {
    // The digits and these powers stand in a double without rounding, so the quotient is rounded
    // once, to 53 bits; that and rounding to 24 bits come out as one rounding unless the first one
    // has hit the middle between two floats.
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

/// "inf", "nan" and their longer forms behind a sign, which is taken already.
bool TextReader::scan_word(bool is_negative, float& target) {
    float value = 0;
    if (std::fscanf(stream_, "%f", &value) != 1) {
        return false;
    }
    target = is_negative ? -value : value;
    return true;
}

int TextReader::next() {
#ifdef __GLIBC__
    return getc_unlocked(stream_);
#else
    return std::getc(stream_);
#endif
}

void TextReader::give_back(int character) {
    if (character != EOF) {
        std::ungetc(character, stream_);
    }
}

int TextReader::next_after_space() {
    int c = next();
    while (is_space(c)) {
        c = next();
    }
    return c;
}

} // namespace korvel
