// The host program of examples/windows, driven through its windows as a person would.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace {

constexpr int raise_button = 100;
constexpr int vertex_box = 101;
constexpr int cut_slider = 102;

/// The program, running; ended at the end of the test.
class HostProgram : public testing::Test {
protected:
    void SetUp() override {
        std::wstring line = L"\"" KORVEL_HOST L"\" \"" KORVEL_CURVES L"\" 1.3";
        STARTUPINFOW start = {};
        start.cb = sizeof start;
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &start, &process_));
        EXPECT_TRUE(comes([&] {
            window_ = main_window();
            return window_ != nullptr && title() == "korvel: 0 selected, 0 solids, 0 moves";
        })) << title();
        std::vector<HWND> children;
        for (HWND pane = nullptr; (pane = FindWindowExW(window_, pane, L"korvel host", nullptr));) {
            children.push_back(pane);
        }
        ASSERT_EQ(children.size(), 2U);
        map_ = children[0];
        section_ = children[1];
        if (area_of(section_).top < area_of(map_).top) {
            std::swap(map_, section_);
        }
        for (HWND pane = nullptr; (pane = FindWindowExW(nullptr, pane, L"korvel host", nullptr));) {
            model_ = pane == window_ ? model_ : pane;
        }
    }
    ~HostProgram() override {
        TerminateProcess(process_.hProcess, 1);
        WaitForSingleObject(process_.hProcess, INFINITE);
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }

    static RECT area_of(HWND window) {
        RECT area = {};
        GetWindowRect(window, &area);
        return area;
    }

    static HWND main_window() {
        HWND found = nullptr;
        do {
            found = FindWindowExW(nullptr, found, L"korvel host", nullptr);
        } while (found != nullptr && GetWindow(found, GW_OWNER) != nullptr);
        return found;
    }

    /// Waits for what the program does in its own time.
    template <class Condition>
    static bool comes(Condition condition) {
        for (int tenths = 0; tenths < 300; ++tenths) {
            if (condition()) {
                return true;
            }
            Sleep(100);
        }
        return false;
    }

    std::string title() const {
        std::array<char, 200> text = {};
        GetWindowTextA(window_, text.data(), int(text.size()));
        return text.data();
    }
    bool title_comes(const std::string& expected) const {
        return comes([&] { return title() == "korvel: " + expected; });
    }

    static void post_mouse(HWND pane, UINT message, POINT at) {
        PostMessageW(pane, message, MK_LBUTTON, MAKELPARAM(at.x, at.y));
    }
    static void click(HWND pane, POINT at) {
        post_mouse(pane, WM_LBUTTONDOWN, at);
        post_mouse(pane, WM_LBUTTONUP, at);
    }
    static void drag(HWND pane, POINT from, POINT to) {
        post_mouse(pane, WM_LBUTTONDOWN, from);
        post_mouse(pane, WM_MOUSEMOVE, {(from.x + to.x) / 2, (from.y + to.y) / 2});
        post_mouse(pane, WM_MOUSEMOVE, to);
        post_mouse(pane, WM_LBUTTONUP, to);
    }

    /// The modal box that the program shows; its text, after OK was pressed.
    std::string dismissed_box() const {
        HWND box = nullptr;
        EXPECT_TRUE(comes([&] {
            box = FindWindowA("#32770", "korvel");
            return box != nullptr && GetDlgItem(box, 0xffff) != nullptr;
        }));
        EXPECT_FALSE(IsWindowEnabled(window_)) << "the box is modal";
        std::array<char, 300> text = {};
        GetDlgItemTextA(box, 0xffff, text.data(), int(text.size()));
        PostMessageW(box, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(comes([&] { return IsWindow(box) == FALSE; }));
        return text.data();
    }

    /// What the screen shows of a pane, row by row from the top.
    struct Pixels {
        int width = 0;
        int height = 0;
        std::vector<std::uint32_t> rgb = {};

        int count(std::uint32_t colour) const {
            return int(std::count(rgb.begin(), rgb.end(), colour));
        }
        int colours() const {
            std::vector<std::uint32_t> sorted = rgb;
            std::sort(sorted.begin(), sorted.end());
            return int(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
        }
    };
    static Pixels shown(HWND window) {
        const RECT area = area_of(window);
        Pixels pixels = {int(area.right - area.left), int(area.bottom - area.top)};
        pixels.rgb.resize(std::size_t(pixels.width) * pixels.height);
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = pixels.width;
        info.bmiHeader.biHeight = -pixels.height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        const HDC screen = GetDC(nullptr);
        const HDC memory = CreateCompatibleDC(screen);
        const HBITMAP bitmap = CreateCompatibleBitmap(screen, pixels.width, pixels.height);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, pixels.width, pixels.height, screen, area.left, area.top, SRCCOPY);
        SelectObject(memory, before);
        GetDIBits(memory, bitmap, 0, UINT(pixels.height), pixels.rgb.data(), &info, DIB_RGB_COLORS);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
        for (std::uint32_t& pixel : pixels.rgb) {
            pixel &= 0xffffff;
        }
        return pixels;
    }

    /// Writes what the screen shows of the program as PPM, for docs/windows.md, if this is wanted.
    void save_screenshot() const {
        if (const char* const file = std::getenv("KORVEL_SCREENSHOT")) {
            const Pixels pixels = shown(window_);
            FILE* const out = std::fopen(file, "wb");
            std::fprintf(out, "P6 %d %d 255\n", pixels.width, pixels.height);
            for (const std::uint32_t pixel : pixels.rgb) {
                std::fputc(int(pixel >> 16), out);
                std::fputc(int(pixel >> 8 & 0xff), out);
                std::fputc(int(pixel & 0xff), out);
            }
            std::fclose(out);
        }
    }

    PROCESS_INFORMATION process_ = {};
    HWND window_ = nullptr;
    HWND map_ = nullptr;
    HWND section_ = nullptr;
    HWND model_ = nullptr;
};

TEST_F(HostProgram, SelectsRaisesTurnsMovesAndCuts) {
    constexpr std::uint32_t plain = 0xe1e8e2;
    constexpr std::uint32_t marked = 0xf0aa3c;
    EXPECT_TRUE(comes([&] { return shown(map_).count(plain) > 10000; }));

    PostMessageW(GetDlgItem(window_, raise_button), BM_CLICK, 0, 0);
    EXPECT_EQ(dismissed_box(), "Select regions of the map first.");

    const Pixels page = shown(map_);
    const auto at = [&](double right, double down) {
        return POINT{LONG(page.width * right), LONG(page.height * down)};
    };
    for (const POINT country : {at(0.518, 0.351), at(0.564, 0.359), at(0.537, 0.405),
                                at(0.566, 0.415), at(0.502, 0.405), at(0.597, 0.422)}) {
        click(map_, country); // in the north of Africa
    }
    const POINT australia = at(0.835, 0.61);
    click(map_, australia);
    EXPECT_TRUE(title_comes("7 selected, 0 solids, 0 moves")) << title();
    click(map_, australia);
    EXPECT_TRUE(title_comes("6 selected, 0 solids, 0 moves")) << title();
    EXPECT_TRUE(comes([&] { return shown(map_).count(marked) > 1000; }));
    EXPECT_LT(shown(section_).colours(), 2);

    PostMessageW(GetDlgItem(window_, raise_button), BM_CLICK, 0, 0);
    EXPECT_TRUE(title_comes("6 selected, 6 solids, 0 moves")) << title();
    EXPECT_TRUE(comes([&] { return shown(section_).colours() > 3; }));
    EXPECT_TRUE(comes([&] { return shown(model_).colours() > 10; }));

    // The mouse turns the model.
    const std::vector<std::uint32_t> before = shown(model_).rgb;
    const POINT middle = {shown(model_).width / 2, shown(model_).height / 2};
    drag(model_, middle, {middle.x - 80, middle.y + 30});
    EXPECT_TRUE(comes([&] { return shown(model_).rgb != before; }));
    EXPECT_EQ(title(), "korvel: 6 selected, 6 solids, 0 moves");

    // It moves vertices; a move that makes faces meet is undone.
    SendMessageW(GetDlgItem(window_, vertex_box), BM_CLICK, 0, 0);
    drag(model_, middle, {middle.x + 2, middle.y - 2});
    EXPECT_TRUE(title_comes("6 selected, 6 solids, 1 moves")) << title();
    drag(model_, middle, {middle.x + 200, middle.y + 200});
    EXPECT_TRUE(dismissed_box().starts_with("The move is undone: the edge between vertices "));
    EXPECT_TRUE(title_comes("6 selected, 6 solids, 1 moves")) << title();

    // The slider cuts elsewhere.
    const std::vector<std::uint32_t> cut = shown(section_).rgb;
    const HWND slider = GetDlgItem(window_, cut_slider);
    SendMessageW(slider, TBM_SETPOS, TRUE, 75);
    PostMessageW(window_, WM_HSCROLL, TB_ENDTRACK, LPARAM(slider));
    EXPECT_TRUE(comes([&] { return shown(section_).rgb != cut; }));
    save_screenshot();

    PostMessageW(window_, WM_CLOSE, 0, 0);
    EXPECT_EQ(WaitForSingleObject(process_.hProcess, 30000), WAIT_OBJECT_0);
}

} // namespace
