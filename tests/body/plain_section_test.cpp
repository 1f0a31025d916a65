// Sections against their plain form, where numbers are out of the ordinary.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/body/plain_model.h"
#include "tests/support/dice.h"
#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

/// Edges of any length and direction, which products and quotients of them leave the range of
/// numbers at.
TEST(PlainSection, CutsOfOddEdgesAgree) {
    int cut = 0;
    for (unsigned seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const int most = 10 * dice(0, 17);
        const auto odd = [&] {
            return dice.one_in(9) ? 0 : std::pow(10, dice(-most, most)) * dice(-3, 3);
        };
        TMOD3D model;
        model.verts.SetSize(4);
        for (VERT3D& vertex : model.verts) {
            std::generate_n(vertex.model_xyz, 3, odd);
        }
        model.lines.SetSize(20);
        for (LINE3D& line : model.lines) {
            line.set_line_point(dice(0, 3), dice(0, 3));
            std::generate_n(line.direction, 3, odd);
            line.length = odd();
        }
        double plane[4] = {odd(), odd(), odd(), odd()};
        TMOD2D out;
        TMOD2D plain_out;
        model.get_section(plane, out);
        get_section_plainly(model, plane, plain_out);
        ASSERT_PRED_FORMAT2(same_state, out, plain_out);
        cut += out.verts.GetSize();
    }
    EXPECT_GT(cut, 2000);
    EXPECT_LT(cut, 30000);
}

} // namespace
