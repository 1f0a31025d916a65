#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "korvel/geometry/cmycolor.h"

namespace {

using Bytes = std::array<unsigned char, 3>;
using Floats = std::array<float, 3>;

Bytes bytes_of(const Floats& hls) {
    Bytes rgb = {1, 2, 3};
    CMYColor().HLSToRGBi(hls[0], hls[1], hls[2], rgb[0], rgb[1], rgb[2]);
    return rgb;
}

Floats hls_of(const Bytes& rgb) {
    Floats hls = {-1, -1, -1};
    CMYColor().RGBiToHLS(rgb[0], rgb[1], rgb[2], hls[0], hls[1], hls[2]);
    return hls;
}

TEST(Colour, WorkedNumbers) {
    const std::pair<Bytes, Floats> from_bytes[] = {
        {{255, 0, 0}, {360, 0.5F, 1}},
        {{255, 255, 0}, {60, 0.5F, 1}},
        {{128, 128, 128}, {0, 128 * 0.003921569F, 0}},
        {{250, 240, 230}, {30, 0.9411765336990356F, 0.6666673421859741F}}};
    for (const auto& [rgb, hls] : from_bytes) {
        EXPECT_EQ(hls_of(rgb), hls);
    }
    // Truncated; 800 degrees work as 440. Double arithmetic would give
    // other bytes in the middle. What no byte holds saturates.
    const std::pair<Floats, Bytes> to_bytes[] = {
        {{80, 0.6F, 0.5F}, {170, 204, 102}}, {{800, 0.25F, 0.5F}, {31, 31, 31}},
        {{50, 0.45F, 0.5F}, {172, 153, 57}}, {{65, 0.25F, 0.4F}, {84, 89, 38}},
        {{0, 0.4F, 0.5F}, {153, 50, 50}},    {{20, 0.95F, 1}, {255, 238, 229}},
        {{80, 0.5F, 5}, {255, 255, 0}},      {{NAN, NAN, 0}, {0, 0, 0}}};
    for (const auto& [hls, rgb] : to_bytes) {
        EXPECT_EQ(bytes_of(hls), rgb);
    }
}

TEST(Colour, BytesComeBackExceptForTruncation) {
    for (int i = 0; i < 1 << 24; i += 101) {
        const Bytes rgb = {static_cast<unsigned char>(i), static_cast<unsigned char>(i >> 8),
                           static_cast<unsigned char>(i >> 16)};
        const Bytes back = bytes_of(hls_of(rgb));
        for (std::size_t k = 0; k < 3; ++k) {
            ASSERT_TRUE(back[k] == rgb[k] || back[k] + 1 == rgb[k]) << i;
        }
    }
}

} // namespace
