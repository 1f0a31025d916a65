#include "korvel/geometry/view_transform.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double radians_per_degree = 0.017453292519943295;

struct Matrix {
    double at[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

Matrix turn_about_x(double cosine, double sine);
Matrix turn_about_z(double cosine, double sine);
void multiply(const Matrix& a, const Matrix& b, double* product);

} // namespace

void rate_xyz_matrix(double a, double b, double* m1, double* m2, double* dir) {
    const double tilt = a * radians_per_degree;
    const double turn = b * radians_per_degree;
    const double c1 = std::cos(tilt);
    const double s1 = std::sin(tilt);
    const double c2 = std::cos(turn);
    const double s2 = std::sin(turn);
    multiply(turn_about_x(c1, s1), turn_about_z(c2, s2), m1);
    std::copy_n(m1 + 8, 3, dir);
    multiply(turn_about_z(c2, -s2), turn_about_x(c1, -s1), m2);
}

void rotate_point(double* m, double* p, double* q) {
    const double x = p[0];
    const double y = p[1];
    const double z = p[2];
    q[0] = m[0] * x + m[4] * y + m[8] * z;
    q[1] = m[1] * x + m[5] * y + m[9] * z;
    q[2] = m[2] * x + m[6] * y + m[10] * z;
}

namespace {

Matrix turn_about_x(double cosine, double sine) {
    Matrix m;
    m.at[1][1] = cosine;
    m.at[1][2] = -sine;
    m.at[2][1] = sine;
    m.at[2][2] = cosine;
    return m;
}

Matrix turn_about_z(double cosine, double sine) {
    Matrix m;
    m.at[0][0] = cosine;
    m.at[0][1] = sine;
    m.at[1][0] = -sine;
    m.at[1][1] = cosine;
    return m;
}

/// Sums start at 0, so that no element becomes a negative zero.
void multiply(const Matrix& a, const Matrix& b, double* product) {
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) {
                sum += a.at[row][k] * b.at[k][column];
            }
            product[4 * row + column] = sum;
        }
    }
}

} // namespace
