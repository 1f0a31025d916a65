// A desktop program for Windows. On the left a map, drawn by GDI: a click selects a region or takes
// it back, "Raise" makes solids of the selected ones. On the right these, drawn by OpenGL: the
// mouse turns them or moves the vertices around one. The slider cuts them; the section is below the
// map.

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "kit/kit.h" // with the Windows headers

#include <commctrl.h>
#include <shellapi.h>
#include <uxtheme.h>
#include <windowsx.h>

using namespace korvel::kit;

namespace {

enum Control { raise_button = 100, vertex_box, cut_slider };
constexpr int bar_height = 36;
constexpr Colour plain = {225, 232, 226};
constexpr Colour marked = {240, 170, 60};

PictureSize size_of(HWND window) {
    RECT area = {};
    GetClientRect(window, &area);
    return {std::max(1, int(area.right)), std::max(1, int(area.bottom))};
}

/// What WM_PAINT draws on: a white bitmap, which is shown when it is complete.
struct Page {
    HWND window;
    PictureSize size = size_of(window);
    PAINTSTRUCT paint = {};
    HDC memory = nullptr;
    RECT area = {0, 0, size.width, size.height};
    HPAINTBUFFER buffer = BeginBufferedPaint(BeginPaint(window, &paint), &area,
                                             BPBF_COMPATIBLEBITMAP, nullptr, &memory);

    explicit Page(HWND painted) : window(painted) {
        PatBlt(memory, 0, 0, size.width, size.height, WHITENESS);
    }
    ~Page() { EndBufferedPaint(buffer, TRUE), EndPaint(window, &paint); }
};

/// The program: its windows, and what they show.
struct Host {
    HWND window = nullptr;
    HWND map_pane = nullptr;
    HWND section_pane = nullptr;
    HWND model_pane = nullptr; // on top of the others: Wine shows no OpenGL in child windows
    Map map;
    MapPictureOptions map_look = {.extent = Extent::most, .colours = RegionColours::own};
    std::set<int> selected;
    std::optional<SolidsEditor> editor; // of the solids, once there are any
    ViewAngles angles = {.turn = 20, .tilt = -55};
    ViewOptions model_look = {.outlines = true};
    ViewFrame frame;
    std::optional<POINT> drag_from; // while the button is pressed …
    ViewAngles angles_before;       // … and what was when it was
    int moves_before = 0;
    int cut_at = 50; // percent of the extent along y

    void paint_map() {
        const Page page(map_pane);
        GdiCanvas canvas(page.memory);
        map_look.size = page.size;
        draw(map, canvas, map_look);
    }

    void click_map(int x, int y) {
        const auto [width, height] = map_look.size = size_of(map_pane);
        const auto shown = map_look.fit(map.regions()).page_in_map(); // y grows upward
        const auto region =
            map.region_at({shown.left + (x + 0.5) / width * (shown.right - shown.left),
                           shown.bottom - (y + 0.5) / height * (shown.bottom - shown.top)});
        if (region) {
            if (!selected.insert(*region).second) {
                selected.erase(*region);
            }
            map.set_colour(*region, selected.contains(*region) ? marked : plain);
            refresh(map_pane);
        }
    }

    /// Makes bodies that are ten units high, and together a hundred wide.
    void raise_selected() {
        if (selected.empty()) {
            AfxMessageBox("Select regions of the map first.");
            return;
        }
        const Map chosen = map.kept(std::vector<int>(selected.begin(), selected.end()));
        const auto box = chosen.bounds();
        const double unit = (box.right - box.left) / 100;
        const RaiseOptions options = {
            .high = 10, .unit = {unit, unit * map_look.stretch}, .origin = {box.left, box.top}};
        editor.emplace(raise(chosen, options).solids);
        turn_model();
        refresh(section_pane);
    }

    void turn_model() {
        model_look.size = size_of(model_pane);
        if (editor) {
            editor->set_view(angles);
            frame = view_frame(editor->solids(), model_look);
        }
        refresh(model_pane);
    }

    void paint_section() {
        const Page page(section_pane);
        GdiCanvas canvas(page.memory);
        if (editor) {
            const Box box = editor->solids().bounds();
            const double y = box.low[1] + (box.high[1] - box.low[1]) * cut_at / 100;
            draw(editor->solids().cut(Plane::at_y(y)), canvas,
                 {.size = page.size, .title = "y = " + std::to_string(y), .labels = &canvas});
        }
    }

    /// Makes an OpenGL context for the pane, which stays the current one.
    void open_model() {
        PIXELFORMATDESCRIPTOR format = {};
        format.nSize = sizeof format;
        format.nVersion = 1;
        format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
        format.cDepthBits = 24;
        const HDC device = GetDC(model_pane); // for ever: the window's class has CS_OWNDC
        SetPixelFormat(device, ChoosePixelFormat(device, &format), &format);
        if (wglMakeCurrent(device, wglCreateContext(device)) == FALSE) {
            throw output_error("this window has no OpenGL");
        }
    }

    void paint_model() {
        ValidateRect(model_pane, nullptr);
        if (editor) {
            draw_view(editor->solids(), frame, model_look);
            SwapBuffers(wglGetCurrentDC());
        }
    }

    void press(int x, int y) {
        drag_from = {x, y};
        angles_before = angles;
        moves_before = editor->undo_count();
        if (IsDlgButtonChecked(window, vertex_box) == BST_CHECKED) {
            model_look.marked = editor->pick(frame.u_of(x), frame.v_of(y));
        }
        if (model_look.marked) {
            editor->gather_vertex(model_look.marked->vertex, 1); // and its neighbours
        }
        SetCapture(model_pane);
        refresh(model_pane);
    }

    void pull(int x, int y) {
        const double right = x - drag_from->x;
        const double up = drag_from->y - y;
        if (!model_look.marked) {
            angles = {angles_before.turn + right / 2, angles_before.tilt - up / 2};
            turn_model();
        } else {
            while (editor->undo_count() > moves_before) {
                editor->undo(); // each move begins where the button was pressed
            }
            editor->move({right * frame.unit, up * frame.unit, 0});
            refresh(model_pane);
        }
    }

    /// Ends a drag. A move after which faces meet is undone, and the reason is shown.
    void release() {
        drag_from.reset();
        model_look.marked.reset();
        ReleaseCapture();
        const Verdict verdict = editor->undo_count() > moves_before ? editor->judge() : Verdict();
        if (!verdict.is_legal()) {
            editor->undo();
        }
        refresh(model_pane);
        refresh(section_pane);
        if (!verdict.is_legal()) {
            AfxMessageBox(("The move is undone: " + text(verdict) + ".").c_str());
        }
    }

    void lay_out() {
        const auto [width, height] = size_of(window);
        const int left = width / 2;
        const int upper = (height - bar_height) * 3 / 5;
        MoveWindow(map_pane, 0, bar_height, left, upper, TRUE);
        MoveWindow(section_pane, 0, bar_height + upper, left, height - bar_height - upper, TRUE);
        POINT place = {left, bar_height};
        ClientToScreen(window, &place);
        MoveWindow(model_pane, place.x, place.y, width - left, height - bar_height, TRUE);
        turn_model();
    }

    /// Has a pane painted, and shows the state in the title.
    void refresh(HWND pane) {
        InvalidateRect(pane, nullptr, FALSE);
        const int solids = editor ? editor->solids().size() : 0;
        const int moves = editor ? editor->undo_count() : 0;
        SetWindowTextA(window,
                       ("korvel: " + std::to_string(selected.size()) + " selected, " +
                        std::to_string(solids) + " solids, " + std::to_string(moves) + " moves")
                           .c_str());
    }
};

Host host;

/// No exception may pass through Windows.
LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l) try {
    const int x = GET_X_LPARAM(l);
    const int y = GET_Y_LPARAM(l);
    const bool is_map = window == host.map_pane;
    const bool is_model = window == host.model_pane;
    if (message == WM_DESTROY && window == host.window) {
        PostQuitMessage(0);
    } else if (message == WM_WINDOWPOSCHANGED && window == host.window) {
        host.lay_out();
    } else if (message == WM_PAINT && window != host.window) {
        is_map ? host.paint_map() : is_model ? host.paint_model() : host.paint_section();
    } else if (message == WM_LBUTTONDOWN && (is_map || (is_model && host.editor))) {
        is_map ? host.click_map(x, y) : host.press(x, y);
    } else if (message == WM_MOUSEMOVE && host.drag_from) {
        host.pull(x, y);
    } else if (message == WM_LBUTTONUP && host.drag_from) {
        host.release();
    } else if (message == WM_COMMAND && LOWORD(w) == raise_button) {
        host.raise_selected();
    } else if (message == WM_HSCROLL) {
        host.cut_at = int(SendMessageW(HWND(l), TBM_GETPOS, 0, 0));
        host.refresh(host.section_pane);
    } else {
        return DefWindowProcW(window, message, w, l);
    }
    return 0;
} catch (const std::exception& error) {
    AfxMessageBox(error.what());
    return 0;
}

/// A part of the main window, or that itself as long as there is none.
HWND make(const wchar_t* kind, const wchar_t* text, DWORD style, int control, int x, int width) {
    return CreateWindowExW(0, kind, text, style | WS_VISIBLE, x, 4, width, bar_height - 8,
                           host.window, HMENU(INT_PTR(control)), nullptr, nullptr);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) try {
    korvel::set_message_box_handler([](const char* text, unsigned type) {
        return MessageBoxA(host.window, text, "korvel", type);
    });
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count < 2) {
        throw input_error("usage: host CURVES [STRETCH]");
    }
    host.map = find_regions(Network::read(arguments[1])).take_map();
    host.map_look.stretch = count > 2 ? std::stod(arguments[2]) : 1;
    for (int region = 0; region < host.map.size(); ++region) {
        host.map.set_colour(region, plain);
    }
    WNDCLASSW kind = {};
    kind.style = CS_OWNDC | CS_HREDRAW | CS_VREDRAW;
    kind.lpfnWndProc = procedure;
    kind.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    kind.hbrBackground = HBRUSH(COLOR_BTNFACE + 1);
    const wchar_t* const own = kind.lpszClassName = L"korvel host";
    RegisterClassW(&kind);
    InitCommonControls();
    host.window = make(own, L"korvel", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 100);
    host.map_pane = make(own, L"", WS_CHILD, 0, 0, 1);
    host.section_pane = make(own, L"", WS_CHILD, 0, 0, 1);
    host.model_pane = make(own, L"", WS_POPUP, 0, 0, 1);
    make(L"BUTTON", L"Raise", WS_CHILD, raise_button, 6, 90);
    make(L"BUTTON", L"Move vertices", WS_CHILD | BS_AUTOCHECKBOX, vertex_box, 110, 130);
    SendMessageW(make(TRACKBAR_CLASSW, L"", WS_CHILD, cut_slider, 250, 300), TBM_SETPOS, TRUE, 50);
    MoveWindow(host.window, 20, 20, 1100, 720, TRUE);
    host.open_model();
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
} catch (const std::exception& error) {
    AfxMessageBox(error.what());
    return 1;
}
