#include "kit/base/grid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/base/number_text.h"

namespace korvel::kit {
namespace {

/// A step as a fraction of integers.
struct Fraction {
    double numerator = 1;
    double denominator = 1;
    double value() const { return numerator / denominator; }
};

// Files in single precision hold whole numbers up to here.
constexpr double most_steps = 1 << 24;

// What is nearer to a whole number than this is that number: coordinates have rounding errors of
// their own, which are the larger the farther away the origin is.
constexpr double whole_within = 1e-6;

std::optional<Fraction> parse_fraction(std::string_view text);
std::optional<Fraction> as_decimal(const Fraction& fraction);
std::optional<Fraction> parse_decimal(std::string_view text);
Fraction power_of_ten(int exponent);
Rectangle extent_of(std::span<const Point2> points);
Fraction step_for(std::span<const Point2> points, double extent);
std::optional<Fraction> widest_fit(std::span<const Point2> points,
                                   const std::vector<Fraction>& candidates);
double origin_for(double least, double greatest, double step);
void check_reach(const Rectangle& extent, const Grid& grid);

// An empty rectangle stays empty.
template <class Map>
Rectangle mapped(const Rectangle& box, Map map) {
    Rectangle result;
    if (!box.is_empty()) {
        for (const Point2& corner : {Point2{box.left, box.top}, Point2{box.right, box.bottom}}) {
            const Point2 to = map(corner);
            result.take_in(to[0], to[1]);
        }
    }
    return result;
}

double rounded_if_near(double value) {
    const double whole = std::nearbyint(value);
    return std::abs(value - whole) <= whole_within ? whole : value;
}

} // namespace

Grid::Grid(double numerator, double denominator, const Point3& origin)
    : numerator_(numerator), denominator_(denominator) {
    const double step = numerator / denominator;
    const bool is_finite =
        std::all_of(origin.begin(), origin.end(), [](double v) { return std::isfinite(v); });
    if (!(numerator > 0 && denominator > 0 && step > 0) || !std::isfinite(step) || !is_finite) {
        throw input_error("a grid needs a finite step above 0 and a finite origin");
    }
    for (std::size_t axis = 0; axis < origin.size(); ++axis) {
        origin_[axis] = rounded_if_near(origin[axis] * denominator);
    }
}

std::optional<Grid> Grid::parse(std::string_view step, const Point3& origin) {
    const std::optional<Fraction> fraction = parse_fraction(step);
    return fraction ? std::optional(Grid(fraction->numerator, fraction->denominator, origin))
                    : std::nullopt;
}

Grid& Grid::turn_y_down(bool is_down) {
    sign_[1] = is_down ? -1 : 1;
    return *this;
}

Grid Grid::from(const Point3& origin) const {
    Grid grid(numerator_, denominator_, origin);
    return grid.turn_y_down(is_y_down());
}

bool Grid::is_identity() const {
    return numerator_ == denominator_ && origin_ == space_origin && !is_y_down();
}

Point3 Grid::origin() const {
    return {origin_[0] / denominator_, origin_[1] / denominator_, origin_[2] / denominator_};
}

std::string Grid::step_text() const {
    if (const auto decimal = as_decimal({numerator_, denominator_})) {
        return number_text(decimal->value());
    }
    return number_text(numerator_) + "/" + number_text(denominator_);
}

double Grid::steps(std::size_t axis, double user) const {
    return rounded_if_near(sign_[axis] * (user * denominator_ - origin_[axis]) / numerator_);
}

GridPoint Grid::nearest(const Point2& user) const {
    const auto rounded = [](double steps) {
        using Limits = std::numeric_limits<int>;
        return static_cast<int>(
            std::clamp<double>(std::nearbyint(steps), Limits::min(), Limits::max()));
    };
    const Point2 steps = to_grid(user);
    GridPoint point = {};
    point.x = rounded(steps[0]);
    point.y = rounded(steps[1]);
    return point;
}

Rectangle in_user_units(const Rectangle& steps, const Grid& grid) {
    return mapped(steps, [&](const Point2& corner) { return grid.to_user(corner); });
}

Rectangle in_steps(const Rectangle& user, const Grid& grid) {
    return mapped(user, [&](const Point2& corner) { return grid.to_grid(corner); });
}

Grid grid_for(std::span<const Point2> points, const GridChoice& choice) {
    const Rectangle extent = extent_of(points);
    const double size =
        points.empty() ? 0 : std::max(extent.right - extent.left, extent.bottom - extent.top);
    if (!std::isfinite(size)) {
        throw input_error("the coordinates are too far apart for a grid");
    }
    const Grid step = choice.step.value_or([&] {
        const Fraction fraction = step_for(points, size);
        return Grid(fraction.numerator, fraction.denominator);
    }());
    Point2 origin = {};
    if (choice.origin) {
        origin = *choice.origin;
    } else if (!points.empty()) {
        origin = {origin_for(extent.left, extent.right, step.step()),
                  origin_for(extent.top, extent.bottom, step.step())};
    }
    const Grid grid = step.from({origin[0], origin[1], 0});
    check_reach(extent, grid);
    return grid;
}

namespace {

std::optional<Fraction> parse_fraction(std::string_view text) {
    const std::size_t slash = text.find('/');
    std::optional<Fraction> fraction = parse_decimal(text.substr(0, slash));
    if (fraction && slash != std::string_view::npos) {
        const std::optional<Fraction> parts = parse_decimal(text.substr(slash + 1));
        if (!parts) {
            return {};
        }
        fraction = {fraction->numerator * parts->denominator,
                    fraction->denominator * parts->numerator};
    }
    if (!fraction || !(fraction->value() > 0) || !std::isfinite(fraction->value())) {
        return {};
    }
    return as_decimal(*fraction).value_or(*fraction);
}

// 1/4 as 25/100, 1/3 as nothing.
std::optional<Fraction> as_decimal(const Fraction& fraction) {
    const std::optional<Fraction> decimal = parse_decimal(number_text(fraction.value()));
    const bool is_same = decimal && decimal->numerator * fraction.denominator ==
                                        fraction.numerator * decimal->denominator;
    return is_same ? decimal : std::nullopt;
}

// "12.5e-3" as 125 / 10^4, so that the decimal is exact.
std::optional<Fraction> parse_decimal(std::string_view text) {
    const std::size_t exponent_at = std::min(text.find_first_of("eE"), text.size());
    std::string digits(text.substr(0, exponent_at));
    int exponent = 0;
    if (exponent_at < text.size()) {
        std::string_view rest = text.substr(exponent_at + 1);
        rest.remove_prefix(!rest.empty() && rest[0] == '+' ? 1 : 0);
        const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), exponent);
        if (error != std::errc() || end != rest.data() + rest.size()) {
            return {};
        }
    }
    const std::size_t point = digits.find('.');
    if (point != std::string::npos) {
        exponent -= static_cast<int>(digits.size() - point - 1);
        digits.erase(point, 1);
    }
    double numerator = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), numerator);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(numerator)) {
        return {};
    }
    const Fraction power = power_of_ten(exponent);
    return Fraction{numerator * power.numerator, power.denominator};
}

Fraction power_of_ten(int exponent) {
    return exponent < 0 ? Fraction{1, std::pow(10.0, -exponent)}
                        : Fraction{std::pow(10.0, exponent), 1};
}

Rectangle extent_of(std::span<const Point2> points) {
    Rectangle extent;
    for (const auto& [x, y] : points) {
        if (!std::isfinite(x) || !std::isfinite(y)) {
            throw input_error("a coordinate is not a finite number");
        }
        extent.take_in(x, y);
    }
    return extent;
}

Fraction step_for(std::span<const Point2> points, double extent) {
    constexpr int finest = 12; // of an extent of 0; the most digits that a degree is given with
    int decimals = finest;
    while (extent > most_steps * power_of_ten(-decimals).value()) {
        --decimals;
    }
    std::vector<Fraction> decimal;
    for (int digits = std::min(0, decimals); digits <= decimals; ++digits) {
        decimal.push_back(power_of_ten(-digits));
    }
    std::vector<Fraction> sexagesimal;
    for (double parts = 60; extent * parts <= most_steps && parts <= 3.6e9;
         parts *= parts < 3600 ? 60 : 10) {
        sexagesimal.push_back({1, parts});
    }
    if (const auto fit = widest_fit(points, decimal)) {
        return *fit;
    }
    return widest_fit(points, sexagesimal).value_or(decimal.back());
}

// The first of the candidates on which all points are, if there is one; each candidate is a part of
// the one before, so that points which are on that one need not be looked at again.
std::optional<Fraction> widest_fit(std::span<const Point2> points,
                                   const std::vector<Fraction>& candidates) {
    auto candidate = candidates.begin();
    for (const Point2& point : points) {
        const auto is_off = [&](double coordinate) {
            const double steps = coordinate * candidate->denominator / candidate->numerator;
            return std::abs(steps - std::nearbyint(steps)) > whole_within;
        };
        while (candidate != candidates.end() && (is_off(point[0]) || is_off(point[1]))) {
            ++candidate;
        }
        if (candidate == candidates.end()) {
            return {};
        }
    }
    return candidate == candidates.end() ? std::nullopt : std::optional(*candidate);
}

// 0, or the roundest number of steps that keeps both ends within the limit. What is too wide for
// that gets the middle.
double origin_for(double least, double greatest, double step) {
    const auto fits = [&](double origin) {
        return std::abs(least - origin) <= most_steps * step &&
               std::abs(greatest - origin) <= most_steps * step;
    };
    if (fits(0)) {
        return 0;
    }
    const double middle = least + (greatest - least) / 2;
    double origin = middle;
    for (double unit = 1e7 * step; unit >= step * 0.5; unit /= 10) {
        origin = std::nearbyint(middle / unit) * unit;
        if (fits(origin)) {
            break;
        }
    }
    return origin;
}

void check_reach(const Rectangle& extent, const Grid& grid) {
    if (extent.is_empty()) {
        return;
    }
    constexpr double limit = std::numeric_limits<int>::max();
    const Point2 low = grid.to_grid(Point2{extent.left, extent.top});
    const Point2 high = grid.to_grid(Point2{extent.right, extent.bottom});
    for (const double steps : {low[0], low[1], high[0], high[1]}) {
        if (!(std::abs(steps) <= limit)) {
            throw input_error("steps of " + grid.step_text() + " are too small: a coordinate is " +
                              number_text(std::abs(steps)) +
                              " of them from the origin, which holds 31 bits");
        }
    }
}

} // namespace
} // namespace korvel::kit
