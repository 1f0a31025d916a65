#pragma once

#include <cmath>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

namespace korvel {

/// Two doubles in one register where the processor has SSE2; each result is rounded as it would be
/// alone.
class TwoDoubles {
public:
    static TwoDoubles both(double value) { return {value, value}; }
    static TwoDoubles load(const double* two) { return {two[0], two[1]}; }

#if defined(__SSE2__) || defined(_M_X64)
    friend TwoDoubles operator+(TwoDoubles a, TwoDoubles b) {
        return _mm_add_pd(a.two_, b.two_);
    }
    friend TwoDoubles operator-(TwoDoubles a, TwoDoubles b) {
        return _mm_sub_pd(a.two_, b.two_);
    }
    friend TwoDoubles operator*(TwoDoubles a, TwoDoubles b) {
        return _mm_mul_pd(a.two_, b.two_);
    }
    friend TwoDoubles abs(TwoDoubles a) {
        return _mm_andnot_pd(_mm_set1_pd(-0.0), a.two_);
    }
    /// Not below 0.
    friend TwoDoubles positive_part(TwoDoubles a) {
        return _mm_max_pd(a.two_, _mm_setzero_pd());
    }
    /// A bit for each.
    friend unsigned operator>(TwoDoubles a, TwoDoubles b) {
        return static_cast<unsigned>(_mm_movemask_pd(_mm_cmpgt_pd(a.two_, b.two_)));
    }

private:
    TwoDoubles(__m128d two) : two_(two) {}
    TwoDoubles(double first, double second) : two_(_mm_set_pd(second, first)) {}

    __m128d two_;
#else
    friend TwoDoubles operator+(TwoDoubles a, TwoDoubles b) {
        return {a.first_ + b.first_, a.second_ + b.second_};
    }
    friend TwoDoubles operator-(TwoDoubles a, TwoDoubles b) {
        return {a.first_ - b.first_, a.second_ - b.second_};
    }
    friend TwoDoubles operator*(TwoDoubles a, TwoDoubles b) {
        return {a.first_ * b.first_, a.second_ * b.second_};
    }
    friend TwoDoubles abs(TwoDoubles a) {
        return {std::fabs(a.first_), std::fabs(a.second_)};
    }
    friend TwoDoubles positive_part(TwoDoubles a) {
        return {a.first_ > 0 ? a.first_ : 0, a.second_ > 0 ? a.second_ : 0};
    }
    friend unsigned operator>(TwoDoubles a, TwoDoubles b) {
        return (a.first_ > b.first_ ? 1U : 0U) | (a.second_ > b.second_ ? 2U : 0U);
    }

private:
    TwoDoubles(double first, double second) : first_(first), second_(second) {}

    double first_;
    double second_;
#endif
};

} // namespace korvel
