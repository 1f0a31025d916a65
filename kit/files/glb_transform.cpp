#include "kit/files/glb_transform.h"

#include <cstddef>
#include <vector>

namespace korvel::kit {
namespace {

GlbTransform transform_of_matrix(const GlbValue& matrix);
void rotate(const GlbValue& rotation, GlbTransform& transform);

Point3 linear(const GlbTransform& transform, const Point3& point) {
    Point3 to = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        to[axis] = transform.x[axis] * point[0] + transform.y[axis] * point[1] +
                   transform.z[axis] * point[2];
    }
    return to;
}

Point3 sum(const Point3& a, const Point3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

} // namespace

Point3 GlbTransform::operator()(const Point3& point) const {
    return sum(linear(*this, point), origin);
}

GlbTransform GlbTransform::after(const GlbTransform& inner) const {
    return {linear(*this, inner.x), linear(*this, inner.y), linear(*this, inner.z),
            (*this)(inner.origin)};
}

bool GlbTransform::is_mirroring() const {
    return x[0] * (y[1] * z[2] - y[2] * z[1]) - y[0] * (x[1] * z[2] - x[2] * z[1]) +
               z[0] * (x[1] * y[2] - x[2] * y[1]) <
           0;
}

GlbTransform glb_transform(const GlbValue& node) {
    if (const auto matrix = node.find("matrix")) {
        return transform_of_matrix(*matrix);
    }
    GlbTransform transform;
    if (const auto rotation = node.find("rotation")) {
        rotate(*rotation, transform);
    }
    if (const auto scale = node.find("scale")) {
        const std::vector<double> factors = scale->numbers(3);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            transform.x[axis] *= factors[0];
            transform.y[axis] *= factors[1];
            transform.z[axis] *= factors[2];
        }
    }
    if (const auto translation = node.find("translation")) {
        const std::vector<double> by = translation->numbers(3);
        transform.origin = {by[0], by[1], by[2]};
    }
    return transform;
}

namespace {

GlbTransform transform_of_matrix(const GlbValue& matrix) {
    const std::vector<double> m = matrix.numbers(16); // column after column
    if (m[3] != 0 || m[7] != 0 || m[11] != 0 || m[15] != 1) {
        matrix.fail("the last row of the matrix is not 0 0 0 1");
    }
    return {{m[0], m[1], m[2]}, {m[4], m[5], m[6]}, {m[8], m[9], m[10]}, {m[12], m[13], m[14]}};
}

// A quaternion x y z w, of length 1 but for rounding errors.
void rotate(const GlbValue& rotation, GlbTransform& transform) {
    const std::vector<double> q = rotation.numbers(4);
    const double square = q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3];
    if (!(square > 0)) {
        rotation.fail("a rotation by 0 0 0 0");
    }
    const double two = 2 / square;
    const auto [x, y, z, w] = std::array{q[0], q[1], q[2], q[3]};
    transform.x = {1 - two * (y * y + z * z), two * (x * y + z * w), two * (x * z - y * w)};
    transform.y = {two * (x * y - z * w), 1 - two * (x * x + z * z), two * (y * z + x * w)};
    transform.z = {two * (x * z + y * w), two * (y * z - x * w), 1 - two * (x * x + y * y)};
}

} // namespace
} // namespace korvel::kit
