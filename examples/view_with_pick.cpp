// A ball, turned and drawn by OpenGL without a window, with what lies in the middle of the view
// picked and marked.

#include <GL/gl.h>

#include <cstdio>
#include <optional>
#include <stdexcept>

#include "kit/pictures/model_picture.h"
#include "kit/pictures/offscreen_renderer.h"
#include "korvel/module/korvel.h"

using namespace korvel::kit;

int main(int argc, char** argv) try {
    if (argc != 2) {
        throw std::runtime_error("usage: view_with_pick PICTURE.png");
    }
    double centre[] = {0, 0, 0};
    double radius[] = {10};
    TMOD3D ball;
    ball.inti_mode(centre, radius, 0, 2); // 20 triangles, each made four, twice
    ball.bodies[0].hue = 210;
    ball.vis_angle_1 = 30; // about z
    ball.vis_angle_2 = 65; // about x
    ball.change_vis_parm();

    const std::optional<Pick> hit = pick(ball, 0, 0);
    if (!hit) {
        throw std::runtime_error("nothing lies in the middle of the view");
    }
    std::printf("body %d, face %d, nearest vertex %d, point (%.3f, %.3f, %.3f)\n", hit->body,
                hit->face, hit->vertex, hit->point[0], hit->point[1], hit->point[2]);
    ball.edit_state[0] = 2; // how many edges far the neighbourhood of the picked vertex reaches
    ball.set_rel_triangle_vert();

    const PictureSize size = {800, 800};
    const ViewFrame frame = whole_view(ball, false, size);
    OutputFile out(argv[1]);
    OffscreenRenderer screen(size);
    screen.begin(frame);
    ball.gl_draw_mbody();
    ball.gl_draw_body_outlook(); // the edges
    glDepthFunc(GL_ALWAYS);
    ball.gl_draw_sel_vert(); // the neighbourhood's vertices, in front of everything
    glDepthFunc(GL_LEQUAL);
    draw_pick(ball, *hit, frame);
    screen.write_png(out);
    out.replace(); // the name appears once the picture is complete
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
