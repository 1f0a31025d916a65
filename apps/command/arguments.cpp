#include "apps/command/arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "kit/kit.h"

namespace korvel::command {
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

} // namespace

tagPOINT parse_lattice_point(const std::string& option, const std::string& text) {
    tagPOINT point = {};
    if (!parse_pair(text, ',', point.x, point.y)) {
        refuse(option, text, "a point X,Y of two integers that fit 32 bits");
    }
    return point;
}

RealPoint parse_real_point(const std::string& option, const std::string& text) {
    RealPoint point;
    if (!parse_pair(text, ',', point.x, point.y) || !std::isfinite(point.x) ||
        !std::isfinite(point.y)) {
        refuse(option, text, "a point X,Y of two finite numbers");
    }
    return point;
}

kit::PictureSize parse_picture_size(const std::string& option, const std::string& text) {
    constexpr int smallest = 16;
    constexpr int largest = 20000;
    const auto fits = [](int length) { return length >= smallest && length <= largest; };
    kit::PictureSize size;
    if (!parse_pair(text, 'x', size.width, size.height) || !fits(size.width) ||
        !fits(size.height)) {
        refuse(option, text, "a size WxH of 16 to 20000 pixels each");
    }
    return size;
}

kit::Rectangle parse_box(const std::string& option, const std::string& text) {
    const std::size_t middle = text.find(',', text.find(',') + 1);
    kit::Rectangle box;
    if (middle != std::string::npos) {
        for (const std::string& corner : {text.substr(0, middle), text.substr(middle + 1)}) {
            const RealPoint point = parse_real_point(option, corner);
            box.take_in(point.x, point.y);
        }
    }
    if (!(box.left < box.right && box.top < box.bottom)) {
        refuse(option, text, "a view X,Y,X,Y of two opposite corners");
    }
    return box;
}

std::vector<double> parse_reals(const std::string& option, const std::string& text,
                                const std::string& form) {
    const auto optional = std::find(form.begin(), form.end(), '[');
    const auto least = std::count(form.begin(), optional, ',') + 1;
    const auto most = std::count(form.begin(), form.end(), ',') + 1;
    std::vector<double> values;
    std::string_view rest = text;
    bool has_more = true;
    while (has_more) {
        const std::size_t end = rest.find(',');
        double value = 0;
        if (!parse_number(rest.substr(0, end), value) || !std::isfinite(value)) {
            break;
        }
        values.push_back(value);
        has_more = end != std::string_view::npos;
        rest.remove_prefix(has_more ? end + 1 : rest.size());
    }
    const auto count = static_cast<std::ptrdiff_t>(values.size());
    if (has_more || count < least || count > most) {
        refuse(option, text, form + (most > 1 ? " in finite numbers" : ", a finite number"));
    }
    return values;
}

kit::Point3 parse_point3(const std::string& option, const std::string& text) {
    const std::vector<double> values = parse_reals(option, text, "X,Y,Z");
    return {values[0], values[1], values[2]};
}

void refuse(const std::string& option, const std::string& text, const std::string& expected) {
    throw kit::input_error(option + ": " + kit::quoted(text) + " is not " + expected);
}

void check_stretch(double factor) {
    if (!(factor >= 1e-6 && factor <= 1e6)) {
        refuse("--stretch", kit::number_text(factor), "a factor from 0.000001 to 1000000");
    }
}

void check_tolerance(double tolerance) {
    if (!std::isfinite(tolerance) || tolerance < 0) {
        refuse("--tolerance", kit::number_text(tolerance), "a distance of 0 or more");
    }
}

} // namespace korvel::command
