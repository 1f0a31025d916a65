#include "kit/pictures/gdi_canvas.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "kit/maps/find_regions.h"
#include "kit/pictures/flat_picture.h"
#include "kit/pictures/picture_files.h"
#include "tests/support/pixels.h"

namespace korvel::test {
namespace {

using kit::GdiCanvas;
using testing::ElementsAre;

constexpr COLORREF pen_ink = RGB(200, 0, 0);
constexpr COLORREF brush_fill = RGB(10, 20, 250);

/// A bitmap to draw on, white at the start.
class Bitmap {
public:
    Bitmap(int width, int height) : width_(width), height_(height) {
        BITMAPINFO format = {};
        format.bmiHeader = {sizeof format.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(device, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
        bits_ = static_cast<const std::uint32_t*>(bits);
        first_ = SelectObject(device, bitmap_);
        PatBlt(device, 0, 0, width, height, WHITENESS);
    }
    ~Bitmap() {
        SelectObject(device, first_);
        DeleteObject(bitmap_);
        DeleteDC(device);
    }
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;

    COLORREF at(int x, int y) const { return GetPixel(device, x, y); }
    std::vector<std::uint32_t> all() const {
        GdiFlush();
        return {bits_, bits_ + std::ptrdiff_t(width_) * height_};
    }

    const HDC device = CreateCompatibleDC(nullptr);

private:
    int width_;
    int height_;
    HBITMAP bitmap_ = nullptr;
    const std::uint32_t* bits_ = nullptr;
    HGDIOBJ first_ = nullptr;
};

/// Counts what it creates and deletes.
class CountedObjects : public kit::GdiObjects {
public:
    HPEN create_pen(int style, int width, COLORREF colour) override {
        return added(GdiObjects::create_pen(style, width, colour));
    }
    HBRUSH create_brush(COLORREF colour) override {
        return added(GdiObjects::create_brush(colour));
    }
    HFONT create_font(const LOGFONTW& font) override {
        return added(GdiObjects::create_font(font));
    }
    void remove(HGDIOBJ object) override {
        EXPECT_EQ(existing.erase(object), 1U) << "deleted, but not created";
        EXPECT_NE(DeleteObject(object), 0);
    }

    std::set<HGDIOBJ> existing;
    int created = 0;

private:
    template <class Handle>
    Handle added(Handle object) {
        ++created;
        existing.insert(object);
        return object;
    }
};

void draw_squares(CDC& dc, COLORREF colour) {
    CPen pen(PS_SOLID, 3, pen_ink);
    CBrush brush(colour);
    CPen* const former_pen = dc.SelectObject(&pen);
    CBrush* const former_brush = dc.SelectObject(&brush);
    const POINT squares[] = {{2, 2}, {22, 2}, {22, 22}, {2, 22},
                             {8, 8}, {16, 8}, {16, 16}, {8, 16}};
    const int counts[] = {4, 4};
    dc.PolyPolygon(squares, counts, 2);
    dc.SelectObject(former_pen);
    dc.SelectObject(former_brush);
}

TEST(GdiCanvas, DeletesEachObjectThatItCreates) {
    constexpr int drawings = 100'000;
    Bitmap page(24, 24);
    CountedObjects objects;
    std::vector<std::uint32_t> first;
    {
        GdiCanvas canvas(page.device, 1, &objects);
        for (int i = 0; i < drawings; ++i) {
            draw_squares(canvas, i % 2 == 0 ? brush_fill : white);
            canvas.LineTo(12, 12);
            if (i == 0) {
                canvas.write_text("1", 4, 4, 6, kit::Anchor::start);
                PatBlt(page.device, 0, 0, 24, 24, WHITENESS);
                draw_squares(canvas, brush_fill);
                first = page.all();
            }
            ASSERT_LE(objects.existing.size(), 3U);
        }
        draw_squares(canvas, brush_fill);
    }
    EXPECT_GE(objects.created, drawings);
    EXPECT_EQ(objects.existing.size(), 0U);
    EXPECT_EQ(page.all(), first);
}

TEST(GdiCanvas, DrawsAgainAfterAnObjectWasRefused) {
    struct : CountedObjects {
        HPEN create_pen(int style, int width, COLORREF colour) override {
            return refuses ? nullptr : CountedObjects::create_pen(style, width, colour);
        }
        bool refuses = false;
    } objects;
    Bitmap page(24, 24);
    GdiCanvas canvas(page.device, 1, &objects);
    CPen pen(PS_SOLID, 1, brush_fill);
    canvas.SelectObject(&pen);
    EXPECT_NE(canvas.LineTo(20, 0), 0);
    objects.refuses = true;
    pen.colour = pen_ink;
    EXPECT_EQ(canvas.LineTo(0, 0), 0);
    objects.refuses = false;
    canvas.MoveTo(20, 0);
    EXPECT_NE(canvas.LineTo(0, 0), 0);
    EXPECT_EQ(page.at(10, 0), pen_ink);
}

TEST(GdiCanvas, LeavesTheDeviceContextAsItWas) {
    Bitmap page(24, 24);
    const HPEN pen = CreatePen(PS_SOLID, 2, brush_fill);
    const HGDIOBJ former = SelectObject(page.device, pen);
    SetBkColor(page.device, pen_ink);
    MoveToEx(page.device, 5, 6, nullptr);
    {
        GdiCanvas canvas(page.device);
        EXPECT_EQ(canvas.GetBkColor(), pen_ink);
        EXPECT_EQ(canvas.SetBkColor(brush_fill), pen_ink);
        EXPECT_EQ(GetBkColor(page.device), brush_fill);
        EXPECT_EQ(canvas.SetPolyFillMode(WINDING), ALTERNATE);
        EXPECT_EQ(canvas.MoveTo(1, 1).y, 6);
        draw_squares(canvas, pen_ink);
        EXPECT_EQ(canvas.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
        canvas.MoveTo(12, 0);
        canvas.LineTo(12, 20);
        EXPECT_EQ(page.at(12, 12), brush_fill) << "its own pen draws until another is selected";
        EXPECT_EQ(canvas.MoveTo(0, 0).y, 20);
    }
    EXPECT_EQ(GetCurrentObject(page.device, OBJ_PEN), pen);
    EXPECT_EQ(GetBkColor(page.device), pen_ink);
    EXPECT_EQ(GetPolyFillMode(page.device), ALTERNATE);
    POINT position = {};
    GetCurrentPositionEx(page.device, &position);
    EXPECT_EQ(position.x, 5);
    SelectObject(page.device, former);
    DeleteObject(pen);
}

TEST(GdiCanvas, TakesWhatIsSelectedWhenItDraws) {
    Bitmap page(24, 24);
    GdiCanvas canvas(page.device, 4);
    CPen pen(PS_SOLID, 4, pen_ink);
    CBrush brush(brush_fill);
    canvas.SelectObject(&pen);
    canvas.SelectObject(&brush);
    const POINT square[] = {{8, 8}, {80, 8}, {80, 80}, {8, 80}};
    canvas.Polygon(square, 4);
    EXPECT_EQ(page.at(2, 10), pen_ink);
    EXPECT_EQ(page.at(1, 10), white);
    EXPECT_EQ(page.at(3, 10), brush_fill);
    pen.colour = brush_fill;
    brush.colour = pen_ink;
    canvas.Polygon(square, 4);
    EXPECT_EQ(page.at(2, 10), brush_fill);
    EXPECT_EQ(page.at(3, 10), pen_ink);
}

TEST(GdiCanvas, TakesAnyCoordinate) {
    Bitmap page(24, 24);
    GdiCanvas canvas(page.device);
    CBrush brush(brush_fill);
    canvas.SelectObject(&brush);
    const POINT all[] = {{INT32_MIN, INT32_MIN},
                         {INT32_MAX, INT32_MIN},
                         {INT32_MAX, INT32_MAX},
                         {INT32_MIN, INT32_MAX}};
    EXPECT_NE(canvas.Polygon(all, 4), 0);
    EXPECT_EQ(page.at(0, 0), brush_fill);
    EXPECT_EQ(page.at(23, 23), brush_fill);
    const int short_ones[] = {1, 0, 3};
    EXPECT_NE(canvas.PolyPolygon(all, short_ones, 3), 0);
    EXPECT_NE(canvas.PolyPolygon(all, short_ones, 2), 0) << "nothing to draw is no failure";
    EXPECT_EQ(GdiCanvas(nullptr).Polygon(all, 4), 0);
}

// The picture that is compared with is that of canvas_test.cpp.
TEST(GdiCanvas, PaintsMapsLikeCairo) {
    const kit::Network network = kit::Network::read(KORVEL_DATA_DIR "/us-states.curves");
    const kit::Map map = kit::find_regions(network).take_map();
    const Pixels expected(KORVEL_DATA_DIR "/../tests/kit/states.png");
    ASSERT_EQ(expected.width(), 320);
    kit::MapPictureOptions options = {
        .size = {320, 180}, .part = kit::Rectangle{14500, 45500, 31500, 75000}, .stretch = 3.3};
    for (const int units_per_pixel : {1, 16}) {
        const Bitmap page(320, 180);
        GdiCanvas canvas(page.device, units_per_pixel);
        options.units_per_pixel = units_per_pixel;
        kit::draw(map, canvas, options);
        const PictureDifference differs =
            difference(expected, [&](int x, int y) { return page.at(x, y); });
        EXPECT_GT(differs.area_pixels, 30'000);
        EXPECT_EQ(differs.wrong_area_pixels, 0) << units_per_pixel;
        EXPECT_LT(differs.mean_at_edges, 30) << units_per_pixel; // hard edges
    }
}

int CALLBACK note_record(HDC /*device*/, HANDLETABLE* /*handles*/, const ENHMETARECORD* record,
                         int /*handles*/, LPARAM notes) {
    auto& calls = *reinterpret_cast<std::vector<std::string>*>(notes);
    const DWORD* const data = record->dParm;
    const auto number = [](DWORD value) { return " " + std::to_string(static_cast<int>(value)); };
    switch (record->iType) {
    case EMR_CREATEPEN: // number, style, width x and y, colour
        calls.push_back("pen" + number(data[2]) + number(data[4]));
        break;
    case EMR_CREATEBRUSHINDIRECT: // number, style, colour
        calls.push_back("brush" + number(data[2]));
        break;
    case EMR_SELECTOBJECT:
        calls.push_back((data[0] & ENHMETA_STOCK_OBJECT) != 0 ? "select stock"
                                                              : "select" + number(data[0]));
        break;
    case EMR_DELETEOBJECT:
        calls.push_back("delete" + number(data[0]));
        break;
    case EMR_SETPOLYFILLMODE:
        calls.push_back("fill mode" + number(data[0]));
        break;
    case EMR_SETBKCOLOR:
        calls.push_back("background" + number(data[0]));
        break;
    case EMR_MOVETOEX:
        calls.push_back("move" + number(data[0]) + number(data[1]));
        break;
    case EMR_LINETO:
        calls.push_back("line" + number(data[0]) + number(data[1]));
        break;
    case EMR_POLYGON16: { // bounds, count, points
        const auto& polygon = *reinterpret_cast<const EMRPOLYGON16*>(record);
        calls.push_back("polygon");
        for (DWORD i = 0; i < polygon.cpts; ++i) {
            calls.back() += number(polygon.apts[i].x) + number(polygon.apts[i].y);
        }
        break;
    }
    case EMR_POLYPOLYGON16:
        calls.push_back("polygons" +
                        number(reinterpret_cast<const EMRPOLYPOLYGON16*>(record)->nPolys));
        break;
    case EMR_SAVEDC:
        calls.emplace_back("save");
        break;
    case EMR_RESTOREDC:
        calls.emplace_back("restore");
        break;
    case EMR_HEADER:
    case EMR_EOF:
        break;
    default:
        calls.push_back("record" + number(record->iType));
    }
    return 1;
}

// The drawing of the library: a pen and a brush of its own for each call, and the former ones
// again.
TEST(GdiCanvas, CallsWindowsForWhatIsDrawnAlone) {
    kit::Network network;
    network.add_curve(std::vector<kit::GridPoint>{{0, 0}, {30, 0}, {30, 20}, {0, 20}, {0, 0}});
    const kit::Map map = kit::find_regions(network).take_map();
    const HDC recorder = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    {
        GdiCanvas canvas(recorder);
        kit::draw(map, canvas, {.size = {40, 30}, .colours = kit::RegionColours::own});
        canvas.MoveTo(1, 2);
        canvas.LineTo(3, 4);
    }
    const HENHMETAFILE recorded = CloseEnhMetaFile(recorder);
    std::vector<std::string> calls;
    EnumEnhMetaFile(nullptr, recorded, note_record, &calls, nullptr);
    DeleteEnhMetaFile(recorded);
    EXPECT_THAT(calls, ElementsAre("save", "fill mode 1", "pen 1 3947580", "select 1", "brush 0",
                                   "select 2", "polygon 2 27 38 27 38 3 2 3", "background 16777215",
                                   "move 1 2", "select stock", "line 3 4", "restore", "delete 1",
                                   "delete 2"));
}

} // namespace
} // namespace korvel::test
