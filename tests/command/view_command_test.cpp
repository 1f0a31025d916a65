#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/model_file.h"
#include "kit/pictures/view_frame.h"
#include "tests/support/command_scratch.h"
#include "tests/support/pixels.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

std::string number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

class ViewCommand : public CommandScratch {
protected:
    /// A model file as the command sees it at its usual angles.
    TMOD3D seen(const std::string& name) const {
        TMOD3D model;
        kit::read_model(kit::TextFile(path(name).string()), model);
        model.vis_angle_1 = 30;
        model.vis_angle_2 = -60;
        model.change_vis_parm();
        return model;
    }
};

/// The share of the pixels of one picture that have the same colour at moved positions in another.
template <class Moved>
double agreement(const Pixels& a, const Pixels& b, Moved moved) {
    int same = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto [to_x, to_y] = moved(x, y);
            same += a.at(x, y) == b.at(to_x, to_y) ? 1 : 0;
        }
    }
    return same / (double(a.width()) * a.height());
}

TEST_F(ViewCommand, TurnsRoundOnce) {
    write("m", tetrahedron());
    const int side = 100;
    const Result result =
        run("view m --angles 0,0 --turntable 4 --size 100x100 --picture turned.png");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("wrote turned-00.png to turned-03.png\n"));
    EXPECT_EQ(files(), 5);
    for (int i = 0; i < 4; ++i) {
        const Pixels frame(path("turned-0" + std::to_string(i) + ".png"));
        const Pixels next(path("turned-0" + std::to_string((i + 1) % 4) + ".png"));
        const auto stay = [](int x, int y) { return std::pair(x, y); };
        const auto quarter_turn = [](int x, int y) { return std::pair(side - 1 - y, x); };
        EXPECT_LT(agreement(frame, next, stay), 0.9) << i;
        EXPECT_GT(agreement(frame, next, quarter_turn), 0.97) << i;
    }
    ASSERT_EQ(run("view m --turntable 101 --size 16x16 --picture t.png").status, 0);
    EXPECT_EQ(files(), 5 + 101);
    EXPECT_GT(read("t-100.png").size(), 50U);
}

TEST_F(ViewCommand, PicksTheFacesOfABall) {
    ASSERT_EQ(run("starter ball --size 9 --center 5,-70,800 --rounds 2 -o m").status, 0);
    TMOD3D model = seen("m");
    int picked = 0;
    for (int f = 0; f < model.polys.GetSize(); f += 7) {
        const POLY3D& face = model.polys[f];
        if (face.rotated_plane[2] < 0.6) {
            continue; // from behind, or so slanting that other corners come near
        }
        ++picked;
        const int* const corners = face.verts.GetData();
        double at[3] = {};
        double expected[3] = {};
        for (int k = 0; k < 3; ++k) {
            const double parts[] = {0.55, 0.3, 0.15}; // near corner 0 and side 0-1
            for (int corner = 0; corner < 3; ++corner) {
                at[k] += parts[corner] * model.verts[corners[corner]].view_xyz[k];
                expected[k] += parts[corner] * model.verts[corners[corner]].model_xyz[k];
            }
        }
        const std::string click = number(at[0]) + "," + number(at[1]);
        const Result result = run("view m --pick " + click);
        ASSERT_EQ(result.status, 0) << result.err;
        const std::string start = click + ": face " + std::to_string(f) + " of body 0, point ";
        ASSERT_THAT(result.out, HasSubstr(start));
        double reported[4] = {};
        ASSERT_EQ(std::sscanf(result.out.c_str() + result.out.find(start) + start.size(),
                              "%lf,%lf,%lf, depth %lf", reported, reported + 1, reported + 2,
                              reported + 3),
                  4);
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(reported[k], expected[k], 1e-9);
        }
        EXPECT_NEAR(reported[3], at[2], 1e-9);
        EXPECT_THAT(result.out, HasSubstr("nearest vertex " + std::to_string(corners[0]) + " at "));
        const std::string ends[] = {std::to_string(corners[0]), std::to_string(corners[1])};
        EXPECT_THAT(result.out,
                    testing::AnyOf(HasSubstr("vertices " + ends[0] + " and " + ends[1] + ","),
                                   HasSubstr("vertices " + ends[1] + " and " + ends[0] + ",")));
    }
    EXPECT_GT(picked, 5);

    const Result beside = run("view m --pick 100,3.5 --picture p.png");
    EXPECT_EQ(beside.status, 0);
    EXPECT_THAT(beside.out, HasSubstr("\n100,3.5: none\nwrote p.png\n"));
}

TEST_F(ViewCommand, MarksWhatAPixelShows) {
    ASSERT_EQ(run("starter ball --size 9 -o m").status, 0);
    const TMOD3D model = seen("m");
    const kit::ViewFrame frame = kit::whole_view(model, false, {600, 500});
    const POLY3D* face = model.polys.GetData(); // the one that faces the viewer most
    for (const POLY3D& other : model.polys) {
        face = other.rotated_plane[2] > face->rotated_plane[2] ? &other : face;
    }
    // The pixel at a mean of the face's corners.
    const auto pixel = [&](double part_0, double part_1, double part_2) {
        double at[2] = {};
        for (int k = 0; k < 2; ++k) {
            at[k] = part_0 * model.verts[face->verts[0]].view_xyz[k] +
                    part_1 * model.verts[face->verts[1]].view_xyz[k] +
                    part_2 * model.verts[face->verts[2]].view_xyz[k];
        }
        return std::pair(static_cast<int>((at[0] - frame.left) / frame.unit),
                         static_cast<int>((frame.top() - at[1]) / frame.unit));
    };
    const auto [x, y] = pixel(0.5, 0.3, 0.2);
    const std::string click = std::to_string(x) + "," + std::to_string(y);
    const Result result =
        run("view m --size 600x500 --click " + click + " --picture p.png --verbose");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(": face " + std::to_string(face - model.polys.GetData()) +
                                      " of body 0, point"));
    // By the bounds of the view that the command prints, the pixel is at the position of the pick.
    double bounds[4] = {};
    ASSERT_EQ(std::sscanf(result.out.c_str() + result.out.find("picture u"),
                          "picture u %lf to %lf, v %lf to %lf", bounds, bounds + 1, bounds + 2,
                          bounds + 3),
              4);
    double at[2] = {};
    ASSERT_EQ(std::sscanf(result.out.c_str() + result.out.find("pixel "),
                          "pixel %*d,%*d at %lf,%lf", at, at + 1),
              2);
    EXPECT_NEAR(at[0], bounds[0] + (x + 0.5) / 600 * (bounds[1] - bounds[0]), 1e-9);
    EXPECT_NEAR(at[1], bounds[3] - (y + 0.5) / 500 * (bounds[3] - bounds[2]), 1e-9);

    const Pixels pixels(path("p.png"));
    const auto colour = [&](std::pair<int, int> at) { return pixels.at(at.first, at.second); };
    EXPECT_EQ(colour({x, y}), RGB(255, 255, 255)) << "the point";
    EXPECT_EQ(colour(pixel(1, 0, 0)), RGB(0, 51, 255)) << "the vertex";
    EXPECT_EQ(colour(pixel(0.4, 0.6, 0)), RGB(230, 0, 0)) << "the edge";
    for (const auto& inside : {pixel(0.1, 0.3, 0.6), pixel(0.2, 0.6, 0.2), pixel(0.6, 0.1, 0.3)}) {
        EXPECT_EQ(colour(inside), RGB(255, 230, 0)) << "the face";
    }
    EXPECT_NE(colour(pixel(-0.3, 0.8, 0.5)), RGB(255, 230, 0)) << "its neighbour";
}

TEST_F(ViewCommand, ShowsWhatItsOptionsSelect) {
    write("m", tetrahedron());
    ASSERT_EQ(run("view m --picture all.png --size 200x150").status, 0);
    ASSERT_EQ(run("view m --picture part.png --size 200x150 --view -3,4,-1,-4").status, 0);
    ASSERT_EQ(run("view m --picture drawn.PNG --size 200x150 --edges --box").status, 0);
    ASSERT_EQ(run("view m --picture outlined.png --size 200x150 --outlines").status, 0);
    const Pixels all(path("all.png"));
    const Pixels outlined(path("outlined.png"));
    int dark = 0;
    for (int y = 0; y < 150; ++y) {
        for (int x = 0; x < 200; ++x) {
            const bool is_dark =
                GetRValue(outlined.at(x, y)) < 60 && GetGValue(outlined.at(x, y)) < 60;
            dark += is_dark && outlined.at(x, y) != all.at(x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(dark, 100);
    // At the edges of a tetrahedron faces turn by less than 170 degrees.
    ASSERT_EQ(run("view m --picture creases.png --size 200x150 --creases 20").status, 0);
    EXPECT_EQ(read("creases.png"), read("outlined.png"));
    ASSERT_EQ(run("view m --picture smooth.png --size 200x150 --creases 170").status, 0);
    EXPECT_EQ(read("smooth.png"), read("all.png"));
    EXPECT_EQ(run("view m --picture all.png --creases 181").status, 2);
    const Result beside = run("view m --picture b.png --size 20x20 --view 900,900,910,910");
    EXPECT_EQ(beside.status, 0);
    EXPECT_THAT(beside.err, HasSubstr("warning: --view shows no part of the model, which extends"));
    const Pixels part(path("part.png"));
    const Pixels drawn(path("drawn.PNG"));
    EXPECT_EQ(all.width(), 200);
    EXPECT_EQ(all.height(), 150);
    EXPECT_EQ(all.at(0, 0), RGB(140, 140, 140));
    EXPECT_NE(read("all.png"), read("part.png"));
    EXPECT_NE(read("all.png"), read("drawn.PNG"));
    // The middle of the part, at full size and larger.
    const kit::ViewFrame frame = kit::whole_view(seen("m"), false, {200, 150});
    EXPECT_EQ(part.at(100, 75), all.at(static_cast<int>((-2 - frame.left) / frame.unit),
                                       static_cast<int>((frame.top() - 0) / frame.unit)));
    EXPECT_EQ(part.at(100, 145), RGB(140, 140, 140));
    // The colour that the file keeps for the body.
    const COLORREF middle = all.at(80, 75);
    float hue = 0;
    float lightness = 0;
    float saturation = 0;
    CMYColor().RGBiToHLS(GetRValue(middle), GetGValue(middle), GetBValue(middle), hue, lightness,
                         saturation);
    EXPECT_NEAR(hue, 120, 2);
    EXPECT_NEAR(saturation, 0.5, 0.02);
}

TEST_F(ViewCommand, BadInputLeavesWhatThereWas) {
    write("m", tetrahedron());
    write("p.png", "former");
    write("p-01.png", "former");
    write("flat", "4\n0.0 0 0\n1 0 0\n2 0 0\n0 1 0\n2\n0 1 2\n0 1 3\n1\n2\n0 0 0\n0 1\n");
    write("huge", "3\n-3e38 0 0\n3e38 0 0\n0 1 0\n1\n0 1 2\n1\n1\n0 0 0\n0\n");
    write("torn", "4\n0.0 0 0\n6 0 0\n0 6 0\n0 0 6\n1\n0 1 7\n1\n1\n0 0 0\n0\n");
    write("curves", "1 2 0 0 4 4");
    std::filesystem::create_directory(path("taken-02.png"));
    std::filesystem::create_symlink("/dev/full", path("full.png"));
    struct Row {
        const char* arguments;
        int status;
        const char* message;
    };
    for (const Row& row : std::vector<Row>{
             {"m", 2, "korvel: --picture, --pick or --click is required"},
             {"m --turntable 3", 2, "--turntable requires --picture"},
             {"m --picture p.png --turntable 0", 2, "--turntable: Value 0 not in range"},
             {"m --picture p.png --turntable 2 --pick 0,0", 2, "--turntable excludes --pick"},
             {"m --picture p.png --pick 1,1 --click 1,1", 2, "--pick excludes --click"},
             {"m --picture p.png --pick 1", 2, "korvel: --pick: '1' is not a point X,Y of two fin"},
             {"m --picture p.png --click 1600,3", 2, "korvel: --click: '1600,3' is not a pixel of"},
             {"m --picture p.png --click 3,-1", 2, "korvel: --click: '3,-1' is not a pixel of a p"},
             {"m --picture p.png --angles 5", 2, "korvel: --angles: '5' is not A,B in finite num"},
             {"m --pick 1,1 --size 99x99", 2, "korvel: --size is of no use without --picture or"},
             {"m --picture p.png --size 9x9", 2, "korvel: --size: '9x9' is not a size WxH of 16"},
             {"m --picture p.png --view 0,0,1", 2, "korvel: --view: '1' is not a point X,Y"},
             {"m --picture p.png --view 0,0,1e-40,1e-40", 2, "m: a picture "},
             {"m --picture p.svg", 2, "p.svg: the name of a picture of a model ends in .png"},
             {"m --picture no/p.png", 1, "no/p.png: cannot be written: No such file"},
             {"m --picture taken.png --turntable 3", 1, "taken-02.png: cannot be written: Is a"},
             {"m --picture full.png", 1, "full.png: cannot be written: No space left on device"},
             {"huge --picture p.png", 2, "huge: a picture "},
             {"torn --picture p.png", 2, "torn:7: the vertex of a face is 7, out of range"},
             {"curves --picture p.png", 2,
              "curves: a curve file, where a body model file is expected"},
             {"none --picture p.png", 2, "none: cannot be read"},
         }) {
        const Result result = run(std::string("view ") + row.arguments);
        EXPECT_EQ(result.status, row.status) << row.arguments;
        EXPECT_THAT(result.err, HasSubstr(row.message)) << row.arguments;
        EXPECT_EQ(read("p.png"), "former") << row.arguments;
        EXPECT_EQ(files(), 9) << row.arguments;
    }
    // A face without area has no plane; it is drawn and passed over by clicks.
    const Result flat = run("view flat --edges --angles 0,0 --pick 0,0 --picture flat.png");
    EXPECT_EQ(flat.status, 0) << flat.err;
    EXPECT_THAT(flat.out, HasSubstr(": none\nwrote flat.png"));
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/dev/null", 1);
    const Result blind = run("view m --picture p.png");
    unsetenv("__EGL_VENDOR_LIBRARY_FILENAMES");
    EXPECT_EQ(blind.status, 1);
    EXPECT_EQ(blind.err, "korvel: there is no OpenGL to draw with: no display\n");
    EXPECT_EQ(read("p.png"), "former");
}

} // namespace
} // namespace korvel::test
