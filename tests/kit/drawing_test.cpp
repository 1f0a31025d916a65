// Pictures in a host's own device context, and the matrices for its own OpenGL window.

#include <gmock/gmock.h>

#include "kit/kit.h"
#include "kit/pictures/sized_outlines.h"
#include "tests/support/recording_dc.h"

namespace korvel::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Two squares of 10 and 20 units beside each other; x from 0 to 30, y from 0 to 20.
kit::Map two_squares() {
    kit::Network network;
    network.add_curve(std::vector<kit::GridPoint>{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}});
    network.add_curve(std::vector<kit::GridPoint>{{10, 0}, {30, 0}, {30, 20}, {10, 20}, {10, 0}});
    return kit::find_regions(network).take_map();
}

std::vector<std::string> of_kind(const RecordingDC& dc, const std::string& start) {
    std::vector<std::string> found;
    for (const std::string& call : dc.calls) {
        if (call.rfind(start, 0) == 0) {
            found.push_back(call);
        }
    }
    return found;
}

class Labels final : public kit::LabelWriter {
public:
    std::vector<std::string> texts;

    void write_text(const std::string& text, double, double, double, kit::Anchor) override {
        texts.push_back(text);
    }
    double text_width(const std::string& text, double size) override {
        return static_cast<double>(text.size()) * size / 2;
    }
};

TEST(Drawing, MapsComeLargestFirstInTheirColours) {
    kit::Map map = two_squares();
    const int small = map.region_at({5, 5}).value();
    map.set_colour(small, {1, 2, 3});
    map.set_colour(1 - small, {4, 5, 6});
    RecordingDC dc;
    kit::MapPictureOptions options = {.size = {340, 240}, .colours = kit::RegionColours::own};
    kit::draw(map, dc, options); // 11 pixels to a unit
    EXPECT_THAT(of_kind(dc, "brush "),
                ElementsAre("brush 4-5-6", "brush back", "brush 1-2-3", "brush back"));
    EXPECT_THAT(of_kind(dc, "polygons").at(1), HasSubstr(" 4,229 114,229 114,119 4,119"));
    EXPECT_EQ(of_kind(dc, "pen").back(), "pen back");

    RecordingDC distinct;
    options.colours = kit::RegionColours::distinct;
    kit::draw(map, distinct, options);
    EXPECT_THAT(distinct.calls, Not(Contains("brush 1-2-3")));
    EXPECT_EQ(of_kind(distinct, "polygons"), of_kind(dc, "polygons"));
    EXPECT_EQ(map[small].colour(), (kit::Colour{1, 2, 3}));

    RecordingDC y_down;
    options.y_down = true;
    kit::draw(map, y_down, options);
    EXPECT_THAT(of_kind(y_down, "polygons").at(1), HasSubstr(" 4,9 114,9 114,119 4,119"));

    RecordingDC triangles;
    const kit::Triangulation mesh = kit::triangulate(map);
    kit::draw(mesh, triangles, options);
    EXPECT_EQ(of_kind(triangles, "polygon ").size(),
              static_cast<std::size_t>(mesh.triangle_count()));

    RecordingDC empty;
    kit::draw(kit::Map(), empty, options);
    EXPECT_THAT(of_kind(empty, "polygon"), IsEmpty());
}

TEST(Drawing, OutlinesAreAsWideAsTheirPolygonsAllow) {
    const auto pen_of = [](int side) {
        RecordingDC dc;
        kit::SizedOutlines device(dc, RGB(0, 0, 0), 16, 16);
        CBrush brush(RGB(200, 100, 0));
        device.SelectObject(&brush);
        const POINT corners[] = {{0, 0}, {side, 0}, {side, side}, {0, side}};
        device.Polygon(corners, 4);
        return dc.calls.at(1);
    };
    EXPECT_EQ(pen_of(16 * 1000), "pen 0 16 0-0-0");
    EXPECT_EQ(pen_of(16 * 12), "pen 0 9 0-0-0");
    EXPECT_EQ(pen_of(16 * 2), "pen 0 4 120-60-0") << "thinner than the device draws";
    EXPECT_EQ(pen_of(0), "pen 0 4 200-100-0");
}

TEST(Drawing, TheMainExtentLeavesOutFarPoints) {
    // A field of 40 x 25 cells and one far away.
    kit::Network network;
    const auto add_cell = [&](int x, int y) {
        network.add_curve(
            std::vector<kit::GridPoint>{{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}, {x, y}});
    };
    for (int i = 0; i < 1000; ++i) {
        add_cell(i % 40, i / 40);
    }
    add_cell(100, 3);
    const kit::Map map = kit::find_regions(network).take_map();
    kit::MapPictureOptions options = {.size = {400, 400}};
    EXPECT_EQ(kit::regions_left_out(map, options), 0);
    const double whole = options.fit(map.regions()).scale;
    options.extent = kit::Extent::most;
    EXPECT_EQ(kit::regions_left_out(map, options), 1);
    EXPECT_NEAR(options.fit(map.regions()).scale, whole * 101 / 40, 1e-9);
    EXPECT_EQ(options.fit(kit::triangulate(map).triangles()).scale,
              options.fit(map.regions()).scale);
    options.part = kit::Rectangle{0, 0, 101, 25};
    EXPECT_EQ(kit::regions_left_out(map, options), 0);

    std::vector<double> even;
    for (int i = 0; i < 1000; ++i) {
        even.push_back(i);
    }
    std::vector<double> few(even.begin(), even.begin() + 998);
    few.push_back(1e6);
    EXPECT_EQ(kit::main_extent(few, even).right, 1e6) << "small maps are not clipped";
    even.push_back(1331); // 999, the extent without it, is more than three quarters
    EXPECT_EQ(kit::main_extent(even, even).right, 1331);
    even.back() = 1333;
    EXPECT_EQ(kit::main_extent(even, even).right, 999);
    EXPECT_TRUE(kit::main_extent({}, {}).is_empty());
}

TEST(Drawing, SectionsHaveLabelsWhereTheHostWritesThem) {
    const kit::Section section = kit::make_cuboid({0, 0, 0}, {6, 4, 2}).cut(kit::Plane::at_y(0.5));
    kit::SectionPictureOptions options = {.size = {600, 400}, .title = "a cut"};
    RecordingDC bare;
    kit::draw(section, bare, options);
    EXPECT_EQ(of_kind(bare, "polygons").size(), 1U);
    EXPECT_THAT(of_kind(bare, "line"), IsEmpty());

    Labels labels;
    options.labels = &labels;
    RecordingDC full;
    kit::draw(section, full, options);
    EXPECT_GT(of_kind(full, "line").size(), 10U);
    for (const char* text : {"a cut", "x", "z", "0.0", "-2.5"}) {
        EXPECT_THAT(labels.texts, Contains(text));
    }
    RecordingDC nothing;
    kit::draw(kit::Section(), nothing, options);
    EXPECT_THAT(nothing.calls, IsEmpty());
}

TEST(Drawing, TheMatricesPlaceTheModelInTheFrame) {
    kit::Solids solids = kit::make_cuboid({50, -60, 70}, {4, 2, 3}, 1);
    solids.set_view({.turn = 25, .tilt = -65});
    const std::array<double, 16> view = kit::view_matrix(solids.model());
    const kit::ViewFrame frame = kit::view_frame(solids, {.size = {400, 300}});
    const std::array<double, 16> projection = kit::projection(frame).matrix();
    const auto times = [](const std::array<double, 16>& m, const kit::Point3& p) {
        kit::Point3 product;
        for (std::size_t row = 0; row < 3; ++row) {
            product[row] = m[row] * p[0] + m[4 + row] * p[1] + m[8 + row] * p[2] + m[12 + row];
        }
        return product;
    };
    for (const VERT3D& vertex : solids.model().verts) {
        const kit::Point3 seen = times(view, kit::to_point(vertex.model_xyz));
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(seen[k], vertex.view_xyz[k], 1e-12);
            EXPECT_LT(std::abs(times(projection, seen)[k]), 1);
        }
    }
    // The corner that is nearest to the viewer has the least depth.
    const kit::Point3 corner = times(projection, {frame.left, frame.top(), frame.nearest});
    EXPECT_THAT(corner, testing::Pointwise(testing::DoubleNear(1e-12), {-1.0, 1.0, -1.0}));
}

} // namespace
} // namespace korvel::test
