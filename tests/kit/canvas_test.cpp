#include "kit/base/rectangle.h"
#include "kit/pictures/picture_canvas.h"

#include <gmock/gmock.h>

#include "kit/base/error.h"
#include "kit/maps/find_regions.h"
#include "kit/pictures/picture_files.h"
#include "kit/pictures/picture_fit.h"
#include "tests/support/pixels.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::OutputFile;
using kit::PictureCanvas;
using kit::PictureFormat;

constexpr COLORREF blue = RGB(10, 20, 250);

class Canvas : public Scratch {};

TEST_F(Canvas, PaintsWithWhatIsSelected) {
    OutputFile out(path("p.png"));
    PictureCanvas canvas(out, PictureFormat::png, {40, 30});
    CBrush brush(blue);
    CPen pen(PS_SOLID, 3, RGB(200, 0, 0));
    CBrush* const first_brush = canvas.SelectObject(&brush);
    ASSERT_NE(first_brush, nullptr);
    EXPECT_EQ(first_brush->colour, white);
    EXPECT_EQ(canvas.SelectObject(first_brush), &brush);
    canvas.SelectObject(&brush);
    EXPECT_EQ(canvas.SetBkColor(black), white);
    EXPECT_EQ(canvas.GetBkColor(), black);

    // Two squares, one in the other, both walked the same way.
    const POINT squares[] = {{2, 2}, {22, 2}, {22, 22}, {2, 22},
                             {8, 8}, {16, 8}, {16, 16}, {8, 16}};
    const int counts[] = {4, 4};
    EXPECT_EQ(canvas.SetPolyFillMode(ALTERNATE), ALTERNATE);
    canvas.PolyPolygon(squares, counts, 2);

    CPen* const default_pen = canvas.SelectObject(&pen);
    EXPECT_EQ(default_pen->colour, black);
    EXPECT_EQ(default_pen->width, 1);
    canvas.MoveTo(30, 5);
    canvas.LineTo(30, 25);
    const POINT end = canvas.MoveTo(0, 0);
    EXPECT_EQ(end.y, 25);
    canvas.finish();
    out.replace();

    const Pixels pixels(path("p.png"));
    EXPECT_EQ(pixels.width(), 40);
    EXPECT_EQ(pixels.height(), 30);
    EXPECT_EQ(pixels.at(0, 0), white);
    EXPECT_EQ(pixels.at(5, 5), blue);
    EXPECT_EQ(pixels.at(12, 12), white) << "the alternate mode leaves the inner square open";
    EXPECT_EQ(pixels.at(2, 12), black) << "a pen of width 1 fills just its pixel";
    EXPECT_EQ(pixels.at(1, 12), white);
    EXPECT_EQ(pixels.at(3, 12), blue);
    for (const int x : {29, 30, 31}) {
        EXPECT_EQ(pixels.at(x, 15), pen.colour);
    }
    EXPECT_EQ(pixels.at(28, 15), white);
}

TEST_F(Canvas, TheEndingChoosesTheFormat) {
    EXPECT_EQ(kit::picture_format("a.b/C.PNG"), PictureFormat::png);
    EXPECT_THROW(kit::picture_format("png"), kit::Error);
    struct Row {
        const char* file;
        const char* start;
        const char* end;
    };
    for (const Row& row : {Row{"p.svg", "<?xml", "</svg>\n"}, Row{"p.pdf", "%PDF-", "%%EOF\n"}}) {
        if (!kit::is_painted(PictureFormat::svg)) {
            EXPECT_THAT([&] { kit::picture_format(row.file); },
                        testing::ThrowsMessage<kit::Error>(testing::HasSubstr("as PNG only")));
            continue;
        }
        OutputFile out(path(row.file));
        PictureCanvas canvas(out, kit::picture_format(row.file), {50, 50}, 16);
        const POINT triangle[] = {{160, 160}, {480, 160}, {160, 480}};
        canvas.Polygon(triangle, 3);
        canvas.finish();
        out.replace();
        EXPECT_THAT(read(row.file), testing::StartsWith(row.start));
        EXPECT_THAT(read(row.file), testing::EndsWith(row.end));
    }
    if (kit::is_painted(PictureFormat::svg)) {
        EXPECT_THAT(read("p.svg"), testing::HasSubstr("M 10.03125 10.03125 L 30.03125 10.03125"));
    }
}

// The picture was made with Cairo: `korvel regions data/us-states.curves --picture states.png
// --view 14500,45500,31500,75000 --stretch 3.3 --size 320x180`.
TEST_F(Canvas, PaintsMapsAlikeOnAllSystems) {
    const kit::Network network = kit::Network::read(KORVEL_DATA_DIR "/us-states.curves");
    const kit::Map map = kit::find_regions(network).take_map();
    const kit::Rectangle part = {14500, 45500, 31500, 75000};
    kit::write_picture(map, path("p.png"), {.size = {320, 180}, .part = part, .stretch = 3.3});
    const Pixels expected(KORVEL_DATA_DIR "/../tests/kit/states.png");
    const Pixels painted(path("p.png"));
    ASSERT_EQ(painted.width(), 320);
    const PictureDifference differs =
        difference(expected, [&](int x, int y) { return painted.at(x, y); });
    EXPECT_GT(differs.area_pixels, 30'000);
    EXPECT_EQ(differs.wrong_area_pixels, 0);
    EXPECT_LT(differs.mean_at_edges, 8);
}

TEST_F(Canvas, OutputFilesReplaceOnlyWhenComplete) {
    write("target", "former");
    {
        const OutputFile dropped(path("target"));
        std::fputs("half", dropped.stream());
        EXPECT_EQ(files(), 2);
    }
    EXPECT_EQ(files(), 1);
    EXPECT_EQ(read("target"), "former");
    OutputFile complete(path("target"));
    std::fputs("new", complete.stream());
    complete.replace();
    EXPECT_EQ(read("target"), "new");
    EXPECT_EQ(files(), 1);
}

TEST_F(Canvas, OutputFilesKeepLinksAndPermissions) {
    write("target", "former");
    std::error_code error;
    std::filesystem::create_symlink("target", path("link"), error);
    if (error) {
        GTEST_SKIP() << "no symbolic links here: " << error.message();
    }
    constexpr auto readable = std::filesystem::perms::owner_read |
                              std::filesystem::perms::owner_write |
                              std::filesystem::perms::group_read;
    std::filesystem::permissions(path("target"), readable);
    OutputFile complete(path("link"));
    std::fputs("new", complete.stream());
    complete.replace();
    EXPECT_EQ(read("target"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(std::filesystem::status(path("target")).permissions(), readable);
    EXPECT_EQ(files(), 2);
}

TEST(PictureFit, KeepsTheAspectUnlessStretched) {
    kit::Rectangle box;
    box.take_in(-10, 5);
    box.take_in(90, 55);
    const kit::PictureFit plain(box, {1000, 1000}, 1);
    EXPECT_DOUBLE_EQ(plain.scale, 9.6 * kit::PictureFit::units_per_pixel);
    EXPECT_EQ(plain.ox, 20 * kit::PictureFit::units_per_pixel);
    EXPECT_EQ(plain.oy, 260 * kit::PictureFit::units_per_pixel);
    const kit::PictureFit narrow(box, {1000, 1000}, 0.5);
    EXPECT_DOUBLE_EQ(narrow.scale, 2 * plain.scale);
    EXPECT_EQ(narrow.oy, plain.ox);
    // A single point has no size to fit.
    kit::Rectangle point;
    point.take_in(3, 4);
    EXPECT_EQ(kit::PictureFit(point, {100, 100}, 1).ox, 50 * kit::PictureFit::units_per_pixel);
}

} // namespace
} // namespace korvel::test
