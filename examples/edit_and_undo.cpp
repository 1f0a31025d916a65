// A click, two drags and an undo, as a window with a mouse would call them: each drag is judged,
// and one that spoils the model is undone.

#include <cstdio>

#include "kit/kit.h"

using namespace korvel::kit;

/// What a window does on a mouse click and while a button is held; it draws into files.
class Window {
public:
    Window() : editor_(make_ball({0, 0, 0}, 10, 3)) {
        editor_.set_view({.turn = 30, .tilt = -65});
        frame_ = view_frame(editor_.solids(), look_);
    }

    void click(int x, int y) {
        look_.marked = editor_.pick(frame_.u_of(x), frame_.v_of(y));
        if (!look_.marked) {
            throw input_error("nothing is at this pixel");
        }
        editor_.gather_vertex(look_.marked->vertex, 4); // and what is up to four edges away
    }

    /// Moves what is gathered by so many pixels.
    void drag(int right, int up) {
        editor_.move({right * frame_.unit, up * frame_.unit, 0});
        look_.marked.reset(); // its place has moved
        const Verdict verdict = editor_.judge();
        if (!verdict.is_legal()) {
            std::printf("undone: %s\n", text(verdict).c_str());
            editor_.undo();
        }
    }

    void redraw(const char* file) { write_picture(editor_.solids(), file, look_); }

private:
    SolidsEditor editor_;
    ViewOptions look_ = {.size = {800, 800}, .edges = true};
    ViewFrame frame_;
};

int main(int argc, char** argv) try {
    if (argc != 4) {
        throw input_error("usage: edit_and_undo CLICKED DRAGGED UNDONE");
    }
    Window window;
    window.click(230, 260);
    window.redraw(argv[1]);
    window.drag(-120, 90);
    window.redraw(argv[2]);
    window.drag(700, -600); // out at the other side
    window.redraw(argv[3]); // as before
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
