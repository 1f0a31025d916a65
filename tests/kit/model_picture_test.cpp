#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "kit/base/error.h"
#include "kit/pictures/model_picture.h"
#include "kit/pictures/view_files.h"
#include "tests/support/pixels.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

constexpr kit::PictureSize size = {400, 300};
constexpr COLORREF background = RGB(140, 140, 140);

constexpr double turn = 25;
constexpr double tilt = -65;

/// Where the view puts a direction of the model: u, v and w.
std::vector<double> turned(double x, double y, double z) {
    const double degree = std::acos(-1.0) / 180;
    const double s1 = std::sin(tilt * degree);
    const double c1 = std::cos(tilt * degree);
    const double s2 = std::sin(turn * degree);
    const double c2 = std::cos(turn * degree);
    return {c2 * x + s2 * y, -c1 * s2 * x + c1 * c2 * y - s1 * z,
            -s1 * s2 * x + s1 * c2 * y + c1 * z};
}

class ModelPicture : public Scratch {
protected:
    ModelPicture() {
        double center[] = {50, -60, 70};
        model_.inti_mode(center, edges_.data(), 1, 0);
        model_.vis_angle_1 = turn;
        model_.vis_angle_2 = tilt;
        model_.change_vis_parm();
    }

    kit::ViewFrame paint(const std::string& name, bool with_edges, bool with_box) {
        const kit::ViewFrame frame = kit::whole_view(model_, with_box, size);
        kit::OffscreenRenderer screen(size);
        screen.begin(frame);
        kit::draw_model(model_, with_edges, with_box);
        kit::OutputFile out(path(name));
        screen.write_png(out);
        out.replace();
        return frame;
    }

    int count(const std::string& name, COLORREF colour) const {
        const Pixels pixels(path(name));
        int found = 0;
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                found += pixels.at(x, y) == colour ? 1 : 0;
            }
        }
        return found;
    }

    std::vector<double> edges_ = {4, 2, 3};
    TMOD3D model_;
};

TEST_F(ModelPicture, ShowsTheSidesThatFaceTheViewerInTheirColours) {
    model_.bodies[0].lightness = 0.9; // not drawn with
    const kit::ViewFrame frame = paint("p.png", false, false);
    const Pixels pixels(path("p.png"));
    int visible = 0;
    for (int axis = 0; axis < 3; ++axis) {
        for (const double sign : {-1.0, 1.0}) {
            double normal[3] = {};
            normal[axis] = sign;
            const double facing = turned(normal[0], normal[1], normal[2])[2];
            if (facing < 0) {
                continue;
            }
            ++visible;
            const auto lightness = static_cast<float>(facing * 0.6F + 0.2F);
            float red = 0;
            float green = 0;
            float blue = 0;
            CMYColor().HLSToRGBf(80.0F, lightness, 0.5F, red, green, blue);
            // All over the side, up to a tenth from its borders.
            for (const double a : {-0.4, 0.05, 0.4}) {
                for (const double b : {-0.4, 0.02, 0.4}) {
                    double at[3];
                    at[axis] = sign * edges_[axis] / 2;
                    at[(axis + 1) % 3] = a * edges_[(axis + 1) % 3];
                    at[(axis + 2) % 3] = b * edges_[(axis + 2) % 3];
                    const std::vector<double> seen = turned(at[0], at[1], at[2]);
                    const int x = static_cast<int>(size.width / 2.0 + seen[0] / frame.unit);
                    const int y = static_cast<int>(size.height / 2.0 - seen[1] / frame.unit);
                    const COLORREF colour = pixels.at(x, y);
                    EXPECT_NEAR(GetRValue(colour), 255 * red, 1) << axis << sign;
                    EXPECT_NEAR(GetGValue(colour), 255 * green, 1) << axis << sign;
                    EXPECT_NEAR(GetBValue(colour), 255 * blue, 1) << axis << sign;
                }
            }
        }
    }
    EXPECT_EQ(visible, 3);
}

TEST_F(ModelPicture, FillsThePageUpToItsMargin) {
    paint("p.png", false, false);
    const Pixels pixels(path("p.png"));
    std::vector<int> xs;
    std::vector<int> ys;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            if (pixels.at(x, y) != background) {
                xs.push_back(x);
                ys.push_back(y);
            }
        }
    }
    const auto [left, right] = std::minmax_element(xs.begin(), xs.end());
    const auto [top, bottom] = std::minmax_element(ys.begin(), ys.end());
    EXPECT_NEAR(*top, 6, 1); // a fiftieth of the shorter side
    EXPECT_NEAR(*bottom, size.height - 7, 1);
    EXPECT_NEAR(*left, size.width - 1 - *right, 1);
    EXPECT_GT(*left, 6);
}

TEST_F(ModelPicture, EdgesComeWhiteAndTheBoxBlack) {
    const std::vector<std::pair<bool, bool>> table = {
        {false, false}, {true, false}, {false, true}, {true, true}};
    for (const auto& [with_edges, with_box] : table) {
        paint("p.png", with_edges, with_box);
        const int whites = count("p.png", white);
        const int blacks = count("p.png", black);
        EXPECT_TRUE(with_edges ? whites > 100 : whites == 0) << whites;
        EXPECT_TRUE(with_box ? blacks > 100 : blacks == 0) << blacks;
    }
}

TEST_F(ModelPicture, TheBoxFitsInToo) {
    double center[] = {0, 0, 0};
    double radius[] = {5, 0, 0};
    model_.RemoveAll();
    model_.inti_mode(center, radius, 0, 3);
    model_.change_vis_parm();
    const kit::ViewFrame alone = kit::whole_view(model_, false, size);
    const kit::ViewFrame boxed = paint("p.png", false, true);
    EXPECT_GT(boxed.unit, 1.2 * alone.unit);
    const Pixels pixels(path("p.png"));
    int lowest = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            lowest = pixels.at(x, y) != background ? y : lowest;
        }
    }
    EXPECT_NEAR(lowest, size.height - 7, 1);
}

TEST_F(ModelPicture, KeepsInsideOfItsFrameWhileItTurns) {
    const double unit = kit::turning_view(model_, true, size).unit;
    double reach[3] = {}; // parts of the frame's half width, half height and half depth
    for (int angle = 0; angle < 360; angle += 5) {
        model_.vis_angle_1 = angle;
        model_.change_vis_parm();
        const kit::ViewFrame frame = kit::turning_view(model_, true, size);
        EXPECT_EQ(frame.unit, unit);
        for (const auto& at : model_.rotated_corners) {
            const double middle[] = {(frame.left + frame.right()) / 2,
                                     (frame.bottom + frame.top()) / 2,
                                     (frame.nearest + frame.farthest) / 2};
            const double half[] = {frame.right() - middle[0], frame.top() - middle[1],
                                   frame.nearest - middle[2]};
            for (int k = 0; k < 3; ++k) {
                reach[k] = std::max(reach[k], std::abs(at[k] - middle[k]) / half[k]);
            }
        }
    }
    EXPECT_LT(reach[0], 0.8); // the page is wider than the model
    EXPECT_NEAR(reach[1], 0.96, 0.002);
    EXPECT_NEAR(reach[2], 0.96, 0.01);
}

TEST_F(ModelPicture, TurntablesAreCompleteOrAbsent) {
    const kit::ViewOptions options = {.size = {60, 40}, .box = true};
    kit::write_turntable(model_, path("t.png"), 3, options);
    EXPECT_EQ(files(), 3);
    EXPECT_NE(read("t-00.png"), read("t-01.png"));
    EXPECT_EQ(model_.vis_angle_1, turn);
    kit::write_picture(model_, path("t-00.png"), options);

    kit::Context context;
    context.on_progress = [](const kit::Progress& progress) {
        if (progress.fraction > 0) {
            throw kit::Error(kit::Error::Kind::cancelled, "enough");
        }
    };
    const std::string before = read("t-01.png");
    model_.bodies[0].hue = 300;
    EXPECT_THROW(kit::write_turntable(model_, path("t.png"), 3, options, context), kit::Error);
    EXPECT_EQ(files(), 3);
    EXPECT_EQ(read("t-01.png"), before);
    EXPECT_EQ(model_.vis_angle_1, turn);
    EXPECT_THROW(kit::write_picture(model_, path("t.svg"), options), kit::Error);
}

TEST_F(ModelPicture, NothingIsTooMuch) {
    EXPECT_THROW(kit::OffscreenRenderer({1 << 20, 16}), kit::Error);
    // A point, and a model that was never turned: empty pages.
    for (const int vertices : {1, 0}) {
        model_.RemoveAll();
        model_.verts.SetSize(vertices);
        model_.model_wrap_cuboid();
        model_.change_vis_parm();
        paint("p.png", true, false);
        EXPECT_EQ(count("p.png", background), size.width * size.height);
    }
}

} // namespace
} // namespace korvel::test
