#include "kit/pictures/gdi_canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace korvel::kit {
namespace {

std::wstring wide_text(const std::string& text);
LONG width_of(HDC device, const std::wstring& text);

} // namespace

GdiCanvas::GdiCanvas(HDC device, int units_per_pixel, GdiObjects* objects)
    : device_(device), units_per_pixel_(units_per_pixel),
      objects_(objects != nullptr ? *objects : own_objects_), saved_state_(SaveDC(device)),
      first_pen_(GetCurrentObject(device, OBJ_PEN)),
      first_brush_(GetCurrentObject(device, OBJ_BRUSH)) {
    GetCurrentPositionEx(device, &position_);
    position_ = {position_.x * units_per_pixel, position_.y * units_per_pixel};
}

// Objects cannot be deleted while they are selected.
GdiCanvas::~GdiCanvas() {
    RestoreDC(device_, saved_state_);
    for (const HGDIOBJ object : {kept_pen_, kept_brush_, kept_font_}) {
        if (object != nullptr) {
            objects_.remove(object);
        }
    }
}

CPen* GdiCanvas::SelectObject(CPen* pen) {
    return std::exchange(pen_, pen);
}

CBrush* GdiCanvas::SelectObject(CBrush* brush) {
    return std::exchange(brush_, brush);
}

int GdiCanvas::SetPolyFillMode(int mode) {
    return ::SetPolyFillMode(device_, mode);
}

COLORREF GdiCanvas::GetBkColor() const {
    return ::GetBkColor(device_);
}

COLORREF GdiCanvas::SetBkColor(COLORREF colour) {
    return ::SetBkColor(device_, colour);
}

POINT GdiCanvas::MoveTo(int x, int y) {
    MoveToEx(device_, pixel(x), pixel(y), nullptr);
    return std::exchange(position_, POINT{x, y});
}

BOOL GdiCanvas::LineTo(int x, int y) {
    position_ = {x, y};
    return select_pen() && ::LineTo(device_, pixel(x), pixel(y)) != 0 ? 1 : 0;
}

BOOL GdiCanvas::Polygon(const POINT* points, int count) {
    return PolyPolygon(points, &count, 1);
}

BOOL GdiCanvas::PolyPolygon(const POINT* points, const int* counts, int polygons) {
    take_points(points, counts, polygons);
    if (counts_.empty()) {
        return 1;
    }
    if (!select_pen() || !select_brush()) {
        return 0;
    }
    return counts_.size() == 1
               ? ::Polygon(device_, points_.data(), counts_[0])
               : ::PolyPolygon(device_, points_.data(), counts_.data(), int(counts_.size()));
}

// What is selected may have been changed since: its values count when something is drawn.
bool GdiCanvas::select_pen() {
    if (pen_ == nullptr) {
        return ::SelectObject(device_, first_pen_) != nullptr;
    }
    const int width = (pen_->width + units_per_pixel_ / 2) / units_per_pixel_;
    const CPen wanted(pen_->style, pen_->width == 0 ? 0 : std::max(1, width), pen_->colour);
    const CPen& kept = pen_of_kept_;
    if (kept_pen_ != nullptr && kept.style == wanted.style && kept.width == wanted.width &&
        kept.colour == wanted.colour) {
        return ::SelectObject(device_, kept_pen_) != nullptr;
    }
    if (!select_made(objects_.create_pen(wanted.style, wanted.width, wanted.colour), kept_pen_)) {
        return false;
    }
    pen_of_kept_ = wanted;
    return true;
}

bool GdiCanvas::select_brush() {
    if (brush_ == nullptr) {
        return ::SelectObject(device_, first_brush_) != nullptr;
    }
    if (kept_brush_ != nullptr && brush_of_kept_.colour == brush_->colour) {
        return ::SelectObject(device_, kept_brush_) != nullptr;
    }
    if (!select_made(objects_.create_brush(brush_->colour), kept_brush_)) {
        return false;
    }
    brush_of_kept_ = *brush_;
    return true;
}

// The font is never selected between two calls of the host.
bool GdiCanvas::select_font(double size) {
    const LONG height = std::lround(size);
    if (kept_font_ != nullptr && height_of_kept_ == height) {
        return ::SelectObject(device_, kept_font_) != nullptr;
    }
    LOGFONTW font = {};
    font.lfHeight = -height; // below 0: of the letters, without the space between two lines
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfQuality = ANTIALIASED_QUALITY;
    font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    if (!select_made(objects_.create_font(font), kept_font_)) {
        return false;
    }
    height_of_kept_ = height;
    return true;
}

// What was kept can be deleted once another object is selected.
bool GdiCanvas::select_made(HGDIOBJ made, HGDIOBJ& kept) {
    const bool is_selected = made != nullptr && ::SelectObject(device_, made) != nullptr;
    const HGDIOBJ left_over = is_selected ? std::exchange(kept, made) : made;
    if (left_over != nullptr) {
        objects_.remove(left_over);
    }
    return is_selected;
}

int GdiCanvas::pixel(int unit) const {
    // Windows takes coordinates of 27 bits.
    constexpr int farthest = 1'000'000;
    const int towards_zero = unit / units_per_pixel_;
    const int floor = unit % units_per_pixel_ < 0 ? towards_zero - 1 : towards_zero;
    return std::clamp(floor, -farthest, farthest);
}

// GDI refuses all polygons of a call where one has less than two points.
void GdiCanvas::take_points(const POINT* points, const int* counts, int polygons) {
    points_.clear();
    counts_.clear();
    for (int polygon = 0; polygon < polygons; points += counts[polygon++]) {
        if (counts[polygon] < 2) {
            continue;
        }
        counts_.push_back(counts[polygon]);
        std::transform(points, points + counts[polygon], std::back_inserter(points_),
                       [&](const POINT& point) {
                           return POINT{pixel(point.x), pixel(point.y)};
                       });
    }
}

void GdiCanvas::write_text(const std::string& text, double x, double y, double size,
                           Anchor anchor) {
    const int before = SaveDC(device_);
    const std::wstring wide = wide_text(text);
    if (select_font(size)) {
        TEXTMETRICW font = {};
        GetTextMetricsW(device_, &font);
        LOGPEN pen = {};
        GetObjectW(first_pen_, sizeof pen, &pen);
        const double part = anchor == Anchor::start ? 0 : anchor == Anchor::middle ? 0.5 : 1;
        SetTextAlign(device_, TA_LEFT | TA_BASELINE | TA_NOUPDATECP);
        SetBkMode(device_, TRANSPARENT);
        SetTextColor(device_, pen_ != nullptr ? pen_->colour : pen.lopnColor);
        TextOutW(device_, int(std::lround(x - part * width_of(device_, wide))),
                 int(std::lround(y + (font.tmAscent - font.tmDescent) / 2.0)), wide.data(),
                 int(wide.size()));
    }
    RestoreDC(device_, before);
}

double GdiCanvas::text_width(const std::string& text, double size) {
    const int before = SaveDC(device_);
    const double width = select_font(size) ? width_of(device_, wide_text(text)) : 0;
    RestoreDC(device_, before);
    return width;
}

HPEN GdiObjects::create_pen(int style, int width, COLORREF colour) {
    return CreatePen(style, width, colour);
}

HBRUSH GdiObjects::create_brush(COLORREF colour) {
    return CreateSolidBrush(colour);
}

HFONT GdiObjects::create_font(const LOGFONTW& font) {
    return CreateFontIndirectW(&font);
}

void GdiObjects::remove(HGDIOBJ object) {
    DeleteObject(object);
}

namespace {

std::wstring wide_text(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), length);
    return wide;
}

LONG width_of(HDC device, const std::wstring& text) {
    SIZE size = {};
    GetTextExtentPoint32W(device, text.data(), int(text.size()), &size);
    return size.cx;
}

} // namespace
} // namespace korvel::kit
