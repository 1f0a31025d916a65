#include "kit/pictures/picture_canvas.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>

#include "kit/base/error.h"
#include "kit/base/system_files.h"

// What does not depend on the system that paints.

namespace korvel::kit {

namespace {

std::optional<PictureFormat> format_by_extension(std::string extension);

} // namespace

PictureFormat picture_format(const std::filesystem::path& file) {
    const auto format = format_by_extension(text_of(file.extension()));
    if (!format) {
        throw input_error(text_of(file) + ": the name of a picture ends in .png, .svg or .pdf");
    }
    if (!is_painted(*format)) {
        throw input_error(text_of(file) + ": this korvel paints pictures as PNG only");
    }
    return *format;
}

namespace {

std::optional<PictureFormat> format_by_extension(std::string extension) {
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == ".png") {
        return PictureFormat::png;
    }
    if (extension == ".svg") {
        return PictureFormat::svg;
    }
    if (extension == ".pdf") {
        return PictureFormat::pdf;
    }
    return std::nullopt;
}

} // namespace

CPen* PictureCanvas::SelectObject(CPen* pen) {
    CPen* const previous = pen_;
    pen_ = pen != nullptr ? pen : pen_;
    return previous;
}

CBrush* PictureCanvas::SelectObject(CBrush* brush) {
    CBrush* const previous = brush_;
    brush_ = brush != nullptr ? brush : brush_;
    return previous;
}

int PictureCanvas::SetPolyFillMode(int mode) {
    const int previous = fill_mode_;
    fill_mode_ = mode;
    return previous;
}

COLORREF PictureCanvas::SetBkColor(COLORREF colour) {
    const COLORREF previous = background_;
    background_ = colour;
    return previous;
}

POINT PictureCanvas::MoveTo(int x, int y) {
    const POINT previous = position_;
    position_ = {x, y};
    return previous;
}

BOOL PictureCanvas::Polygon(const POINT* points, int count) {
    return PolyPolygon(points, &count, 1);
}

} // namespace korvel::kit
