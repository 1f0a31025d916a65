#pragma once

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::test {

inline constexpr COLORREF white = RGB(255, 255, 255);
inline constexpr COLORREF black = RGB(0, 0, 0);

/// A PNG read back; without pixels where it cannot be read.
class Pixels {
public:
    explicit Pixels(const std::filesystem::path& file);

    int width() const { return width_; }
    int height() const { return height_; }
    COLORREF at(int x, int y) const { return colours_[std::size_t(y) * width_ + x]; }

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<COLORREF> colours_; // row by row from the top
};

/// How a picture differs from another one: in areas of one colour, and where colours meet.
struct PictureDifference {
    int area_pixels = 0;
    int wrong_area_pixels = 0;
    double mean_at_edges = 0; ///< of red, green and blue, which are 0 to 255
};

/// `at(x, y)` is the colour of the other picture. Pixels in areas have no other colour around them,
/// two pixels far.
template <class At>
PictureDifference difference(const Pixels& expected, const At& at) {
    PictureDifference found;
    int edge_pixels = 0;
    for (int y = 2; y < expected.height() - 2; ++y) {
        for (int x = 2; x < expected.width() - 2; ++x) {
            const COLORREF a = expected.at(x, y);
            const COLORREF b = at(x, y);
            bool is_area = true;
            for (int i = 0; i < 25; ++i) {
                is_area = is_area && expected.at(x + i % 5 - 2, y + i / 5 - 2) == a;
            }
            if (is_area) {
                ++found.area_pixels;
                found.wrong_area_pixels += a != b ? 1 : 0;
                continue;
            }
            ++edge_pixels;
            found.mean_at_edges +=
                (std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
                 std::abs(GetBValue(a) - GetBValue(b))) /
                3.0;
        }
    }
    found.mean_at_edges /= edge_pixels > 0 ? edge_pixels : 1;
    return found;
}

} // namespace korvel::test
