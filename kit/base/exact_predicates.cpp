// Signs of determinants by a filter and, where that cannot decide, by expansions: sums of doubles
// that represent a number exactly (J. R. Shewchuk, Adaptive precision floating-point arithmetic and
// fast robust geometric predicates, 1997).

#include "kit/base/exact_predicates.h"

#include <cmath>
#include <limits>
#include <vector>

#include "kit/base/areas.h"

namespace korvel::kit {
namespace {

constexpr double u = std::numeric_limits<double>::epsilon() / 2;
constexpr double turn_error = (3 + 16 * u) * u;    // relative to the sum of magnitudes
constexpr double circle_error = (10 + 96 * u) * u; // as well

// Differences of integers up to these give sums of products of two, and of four, that fit into a
// WideInteger.
constexpr double largest_in_turn = 1ULL << 62U;
constexpr double largest_in_circle = 1ULL << 30U;

int exact_turn(PlanePoint a, PlanePoint b, PlanePoint c);
int exact_side_of_circle(PlanePoint a, PlanePoint b, PlanePoint c, PlanePoint d);

template <class Number>
int sign_of(Number value) {
    return (value > 0) - (value < 0);
}

} // namespace

int turn(PlanePoint a, PlanePoint b, PlanePoint c) {
    const double left = (a.x - c.x) * (b.y - c.y);
    const double right = (a.y - c.y) * (b.x - c.x);
    const double area = left - right;
    if (std::abs(area) > turn_error * (std::abs(left) + std::abs(right))) {
        return sign_of(area);
    }
    return left == 0 && right == 0 ? 0 : exact_turn(a, b, c);
}

int side_of_circle(PlanePoint a, PlanePoint b, PlanePoint c, PlanePoint d) {
    const double ax = a.x - d.x;
    const double ay = a.y - d.y;
    const double bx = b.x - d.x;
    const double by = b.y - d.y;
    const double cx = c.x - d.x;
    const double cy = c.y - d.y;
    const double bxcy = bx * cy;
    const double cxby = cx * by;
    const double cxay = cx * ay;
    const double axcy = ax * cy;
    const double axby = ax * by;
    const double bxay = bx * ay;
    const double a_lift = ax * ax + ay * ay;
    const double b_lift = bx * bx + by * by;
    const double c_lift = cx * cx + cy * cy;
    const double determinant =
        a_lift * (bxcy - cxby) + b_lift * (cxay - axcy) + c_lift * (axby - bxay);
    const double magnitude = (std::abs(bxcy) + std::abs(cxby)) * a_lift +
                             (std::abs(cxay) + std::abs(axcy)) * b_lift +
                             (std::abs(axby) + std::abs(bxay)) * c_lift;
    if (std::abs(determinant) > circle_error * magnitude) {
        return sign_of(determinant);
    }
    return exact_side_of_circle(a, b, c, d);
}

namespace {

// The exact sum of two doubles, as the rounded sum and its error.
struct Sum {
    double rounded;
    double error;
};

Sum sum_of(double a, double b) {
    const double rounded = a + b;
    const double b_part = rounded - a;
    return {rounded, (a - (rounded - b_part)) + (b - b_part)};
}

// A number as the sum of two with at most 26 bits (Veltkamp's splitting).
Sum split(double value) {
    const double scaled = 134217729 * value; // by 2^27 + 1
    const double high = scaled - (scaled - value);
    return {high, value - high};
}

// A product and its rounding error (Dekker). Not by `fma`, which mingw-w64 rounds twice.
Sum product_of(double a, double b) {
    const double rounded = a * b;
    const auto [a_high, a_low] = split(a);
    const auto [b_high, b_low] = split(b);
    const double rest = ((a_high * b_high - rounded) + a_high * b_low) + a_low * b_high;
    return {rounded, rest + a_low * b_low};
}

// A number as the sum of doubles of growing magnitude that do not overlap.
class Expansion {
public:
    static Expansion difference(double a, double b) {
        const Sum sum = sum_of(a, -b);
        Expansion result;
        result.append(sum.error);
        result.append(sum.rounded);
        return result;
    }

    void add(double value) {
        Expansion result;
        double rest = value;
        for (const double part : parts_) {
            const Sum sum = sum_of(rest, part);
            result.append(sum.error);
            rest = sum.rounded;
        }
        result.append(rest);
        parts_ = std::move(result.parts_);
    }

    void add(const Expansion& other, double sign = 1) {
        for (const double part : other.parts_) {
            add(sign * part);
        }
    }

    friend Expansion operator*(const Expansion& a, const Expansion& b) {
        Expansion product;
        for (const double p : a.parts_) {
            for (const double q : b.parts_) {
                const Sum exact = product_of(p, q);
                product.add(exact.error);
                product.add(exact.rounded);
            }
        }
        return product;
    }

    int sign() const { return parts_.empty() ? 0 : sign_of(parts_.back()); }

private:
    void append(double part) {
        if (part != 0) {
            parts_.push_back(part);
        }
    }

    std::vector<double> parts_; // without zeros
};

Expansion difference_of_products(const Expansion& ax, const Expansion& ay, const Expansion& bx,
                                 const Expansion& by) {
    Expansion result = ax * by;
    result.add(ay * bx, -1);
    return result;
}

// A difference of points with integer coordinates.
struct WideDifference {
    WideInteger x = 0;
    WideInteger y = 0;
};

// False where the difference is rounded, is no integer or is too large.
bool take_difference(PlanePoint a, PlanePoint b, double largest, WideDifference& out) {
    const auto take = [&](double from, double to, WideInteger& taken) {
        const double difference = from - to;
        if (!(std::abs(difference) <= largest)) {
            return false;
        }
        taken = static_cast<std::int64_t>(difference);
        return static_cast<double>(taken) == difference && sum_of(from, -to).error == 0;
    };
    return take(a.x, b.x, out.x) && take(a.y, b.y, out.y);
}

int exact_turn(PlanePoint a, PlanePoint b, PlanePoint c) {
    WideDifference p;
    WideDifference q;
    if (take_difference(a, c, largest_in_turn, p) && take_difference(b, c, largest_in_turn, q)) {
        return sign_of(p.x * q.y - p.y * q.x);
    }
    return difference_of_products(Expansion::difference(a.x, c.x), Expansion::difference(a.y, c.y),
                                  Expansion::difference(b.x, c.x), Expansion::difference(b.y, c.y))
        .sign();
}

int exact_side_of_circle(PlanePoint a, PlanePoint b, PlanePoint c, PlanePoint d) {
    WideDifference p;
    WideDifference q;
    WideDifference r;
    if (take_difference(a, d, largest_in_circle, p) &&
        take_difference(b, d, largest_in_circle, q) &&
        take_difference(c, d, largest_in_circle, r)) {
        return sign_of((p.x * p.x + p.y * p.y) * (q.x * r.y - r.x * q.y) +
                       (q.x * q.x + q.y * q.y) * (r.x * p.y - p.x * r.y) +
                       (r.x * r.x + r.y * r.y) * (p.x * q.y - q.x * p.y));
    }
    const Expansion x[] = {Expansion::difference(a.x, d.x), Expansion::difference(b.x, d.x),
                           Expansion::difference(c.x, d.x)};
    const Expansion y[] = {Expansion::difference(a.y, d.y), Expansion::difference(b.y, d.y),
                           Expansion::difference(c.y, d.y)};
    Expansion determinant;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const int k = (i + 2) % 3;
        Expansion lift = x[i] * x[i];
        lift.add(y[i] * y[i]);
        determinant.add(lift * difference_of_products(x[j], y[j], x[k], y[k]));
    }
    return determinant.sign();
}

} // namespace
} // namespace korvel::kit
