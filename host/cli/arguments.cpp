#include "host/cli/arguments.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

#include "host/io/errors.h"
#include "host/io/text_file.h"

namespace korvel::host {
namespace {

template <class Number>
bool parse_number(std::string_view text, Number& value) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && stop == text.data() + text.size();
}

template <class Number>
bool parse_pair(std::string_view text, char separator, Number& first, Number& second) {
    const std::size_t middle = text.find(separator);
    return middle != std::string_view::npos && parse_number(text.substr(0, middle), first) &&
           parse_number(text.substr(middle + 1), second);
}

[[noreturn]] void fail(const std::string& option, const std::string& text, const char* expected) {
    throw InputError("korvel: " + option + ": " + shown(text) + " is not " + expected);
}

} // namespace

tagPOINT parse_lattice_point(const std::string& option, const std::string& text) {
    tagPOINT point = {};
    if (!parse_pair(text, ',', point.x, point.y)) {
        fail(option, text, "a point X,Y of two integers that fit 32 bits");
    }
    return point;
}

RealPoint parse_real_point(const std::string& option, const std::string& text) {
    RealPoint point;
    if (!parse_pair(text, ',', point.x, point.y) || !std::isfinite(point.x) ||
        !std::isfinite(point.y)) {
        fail(option, text, "a point X,Y of two finite numbers");
    }
    return point;
}

PictureSize parse_picture_size(const std::string& option, const std::string& text) {
    constexpr int smallest = 16;
    constexpr int largest = 20000;
    const auto fits = [](int length) { return length >= smallest && length <= largest; };
    PictureSize size;
    if (!parse_pair(text, 'x', size.width, size.height) || !fits(size.width) ||
        !fits(size.height)) {
        fail(option, text, "a size WxH of 16 to 20000 pixels each");
    }
    return size;
}

Box parse_box(const std::string& option, const std::string& text) {
    const std::size_t middle = text.find(',', text.find(',') + 1);
    Box box;
    if (middle != std::string::npos) {
        for (const std::string& corner : {text.substr(0, middle), text.substr(middle + 1)}) {
            const RealPoint point = parse_real_point(option, corner);
            box.take_in(point.x, point.y);
        }
    }
    if (!(box.left < box.right && box.top < box.bottom)) {
        fail(option, text, "a view X,Y,X,Y of two opposite corners");
    }
    return box;
}

void check_stretch(double factor) {
    if (!(factor >= 1e-6 && factor <= 1e6)) {
        fail("--stretch", shortest(factor), "a factor from 0.000001 to 1000000");
    }
}

void check_tolerance(double tolerance) {
    if (!std::isfinite(tolerance) || tolerance < 0) {
        fail("--tolerance", shortest(tolerance), "a distance of 0 or more");
    }
}

} // namespace korvel::host
