// A map drawn into a device context of the program's own, here one that writes SVG by itself.

#include <cstdio>

#include "kit/kit.h"

using namespace korvel::kit;

/// Draws with what is selected, like the device contexts of a window system.
class SvgContext final : public CDC {
public:
    SvgContext(FILE* out, PictureSize size) : out_(out) {
        std::fprintf(out, "<svg xmlns='http://www.w3.org/2000/svg' width='%d' height='%d'>\n",
                     size.width, size.height);
    }
    void finish() { std::fputs("</svg>\n", out_); }
    CPen* SelectObject(CPen* pen) override { return std::exchange(pen_, pen); }
    CBrush* SelectObject(CBrush* brush) override { return std::exchange(brush_, brush); }
    int SetPolyFillMode(int mode) override { return std::exchange(mode_, mode); }
    COLORREF GetBkColor() const override { return back_; }
    COLORREF SetBkColor(COLORREF colour) override { return std::exchange(back_, colour); }
    POINT MoveTo(int, int) override { return {}; } // maps are polygons alone
    BOOL LineTo(int, int) override { return 0; }
    BOOL Polygon(const POINT* points, int count) override { return PolyPolygon(points, &count, 1); }
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override {
        const COLORREF fill = brush_->colour;
        std::fprintf(out_, "<path fill-rule='evenodd' fill='#%02x%02x%02x' stroke='#444' d='",
                     GetRValue(fill), GetGValue(fill), GetBValue(fill));
        for (int i = 0; i < polygons; ++i, std::fputs("Z", out_)) {
            for (int k = 0; k < counts[i]; ++k, ++points) {
                std::fprintf(out_, "%c%d %d", k == 0 ? 'M' : 'L', int(points->x), int(points->y));
            }
        }
        return std::fputs("'/>\n", out_) >= 0;
    }

private:
    FILE* out_;
    CPen* pen_ = nullptr;
    CBrush* brush_ = nullptr;
    int mode_ = ALTERNATE;
    COLORREF back_ = RGB(255, 255, 255);
};

int main(int argc, char** argv) try {
    if (argc != 3) {
        throw input_error("usage: own_device_context CURVES PICTURE.svg");
    }
    const Map map = find_regions(Network::read(argv[1])).take_map();
    OutputFile file(argv[2]);
    SvgContext svg(file.stream(), {1600, 1000});
    const korvel::kit::Rectangle part = {14500, 45500, 31500, 75000};
    draw(map, svg, {.size = {1600, 1000}, .part = part, .stretch = 3.3});
    svg.finish();
    file.replace(); // the name appears once the file is complete
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
