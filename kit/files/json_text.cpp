#include "kit/files/json_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace korvel::kit {
namespace {

std::size_t sequence_length(std::string_view text);
void append_escaped(std::string& out, unsigned char c);

} // namespace

void append_json_string(std::string& out, std::string_view text) {
    out += '"';
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        std::size_t length = 1;
        if (first < 0x80) {
            append_escaped(out, first);
        } else if (length = sequence_length(text); length > 0) {
            out += text.substr(0, length);
        } else {
            out += "\xEF\xBF\xBD";
            length = 1;
        }
        text.remove_prefix(length);
    }
    out += '"';
}

void append_json_number(std::string& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out.append(digits.data(), end);
}

void append_json_value(std::string& out, const FieldValue& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
        append_json_string(out, *text);
    } else if (const auto* const real = std::get_if<double>(&value)) {
        const std::size_t start = out.size();
        append_json_number(out, *real);
        if (out.find_first_not_of("-0123456789", start) == std::string::npos) {
            out += ".0";
        }
    } else if (std::holds_alternative<std::monostate>(value)) {
        out += "null";
    } else {
        out += text_of_value(value);
    }
}

namespace {

bool is_between(std::string_view text, std::size_t at, unsigned low, unsigned high) {
    const unsigned byte = at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    return byte >= low && byte <= high;
}

// Of the character of several bytes with which a text begins; 0 if it is no UTF-8. The second byte
// excludes characters in more bytes than they need, surrogates, and what is beyond U+10FFFF.
std::size_t sequence_length(std::string_view text) {
    const unsigned first = static_cast<unsigned char>(text.front());
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    const unsigned low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    if (!is_between(text, 1, low, high)) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (!is_between(text, i, 0x80, 0xBF)) {
            return 0;
        }
    }
    return length;
}

void append_escaped(std::string& out, unsigned char c) {
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    if (c == '"' || c == '\\') {
        out += '\\';
        out += static_cast<char>(c);
    } else if (c >= 0x20) {
        out += static_cast<char>(c);
    } else if (c == '\n') {
        out += "\\n";
    } else if (c == '\t') {
        out += "\\t";
    } else {
        out += "\\u00";
        out += hexadecimal[c >> 4U];
        out += hexadecimal[c & 15U];
    }
}

} // namespace
} // namespace korvel::kit
