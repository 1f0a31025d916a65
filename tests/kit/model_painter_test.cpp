#include "kit/pictures/model_painter.h"

#include <GL/gl.h>

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "kit/pictures/gl_view.h"
#include "kit/pictures/model_picture.h"
#include "kit/pictures/model_view.h"
#include "kit/pictures/view_files.h"
#include "tests/support/pixels.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

class ModelPainter : public Scratch {
protected:
    static constexpr kit::PictureSize size = {500, 400};

    Pixels paint(const kit::ViewFrame& frame, const std::function<void()>& draw) {
        screen_.begin(frame);
        draw();
        glDisable(GL_CULL_FACE);
        kit::OutputFile out(path("p.png"));
        screen_.write_png(out);
        out.replace();
        return Pixels(path("p.png"));
    }

    static int differences(const Pixels& a, const Pixels& b) {
        int count = 0;
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) {
                count += a.at(x, y) != b.at(x, y) ? 1 : 0;
            }
        }
        return count;
    }

    kit::OffscreenRenderer screen_{size};
};

kit::Solids painted_bodies() {
    std::vector<kit::Solids> parts;
    parts.push_back(kit::make_ball({0, 0, 0}, 10, 5));
    parts.push_back(kit::make_cuboid({8, 2, 3}, {9, 7, 12}, 2));
    parts.push_back(kit::make_ball({-9, 4, -5}, 6, 2));
    kit::Solids solids = kit::merge(std::move(parts));
    solids.set_colour(1, {200, 0.7, 0.5, 1});
    solids.set_colour(2, {330, 0.9, 0.5, 1});
    return solids;
}

TEST_F(ModelPainter, HasThePixelsOfTheLibraryAtEachAngle) {
    kit::Solids solids = painted_bodies();
    kit::ModelPainter painter;
    painter.take_model(solids.model());
    for (const kit::ViewAngles angles : {kit::ViewAngles{5, 5}, {0, -90}, {37, -64}, {201, 80}}) {
        solids.set_view(angles);
        painter.take_view(solids.model());
        const kit::ViewFrame frame = kit::view_frame(solids, {.size = size});
        // The library draws what is turned away too, darker; at the rim it may hit a pixel.
        const Pixels expected = paint(frame, [&] {
            glEnable(GL_CULL_FACE);
            solids.model().gl_draw_mbody();
        });
        const Pixels drawn = paint(frame, [&] { painter.draw_faces(); });
        EXPECT_EQ(differences(drawn, expected), 0) << angles.turn;
        const Pixels with_edges = paint(frame, [&] {
            painter.draw_faces();
            painter.draw_edges();
        });
        const Pixels library_edges = paint(frame, [&] {
            glEnable(GL_CULL_FACE);
            solids.model().gl_draw_mbody();
            solids.model().gl_draw_body_outlook();
        });
        EXPECT_EQ(differences(with_edges, library_edges), 0) << angles.turn;
        EXPECT_GT(differences(with_edges, drawn), 1000);
    }
}

TEST_F(ModelPainter, DrawsOpenBodiesAndThoseBehindOthersFromBothSides) {
    kit::Solids solids = painted_bodies();
    solids.model().bodies[0].polys.SetSize(solids.model().bodies[0].polys.GetSize() - 900);
    solids.derive();
    solids.set_view({140, -40});
    const kit::ViewFrame frame = kit::view_frame(solids, {.size = size});
    kit::ModelPainter painter;
    painter.take_model(solids.model());
    painter.take_view(solids.model());
    const Pixels drawn = paint(frame, [&] { painter.draw_faces(); });
    const Pixels expected = paint(frame, [&] { kit::draw_model(solids.model(), false, false); });
    EXPECT_LE(differences(drawn, expected), 2);
    painter.take_model(solids.model(), {0});
    painter.take_view(solids.model());
    solids.remove(std::vector{0});
    const Pixels without = paint(frame, [&] { painter.draw_faces(); });
    EXPECT_GT(differences(without, drawn), 1000);
}

} // namespace
} // namespace korvel::test
