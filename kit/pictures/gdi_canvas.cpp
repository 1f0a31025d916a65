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
    for (const HGDIOBJ object :
         {HGDIOBJ(made_pen_.handle), HGDIOBJ(made_brush_.handle), HGDIOBJ(made_font_.handle)}) {
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
    const CPen wanted(
        pen_->style,
        pen_->width == 0 ? 0 : std::max(1, (pen_->width + units_per_pixel_ / 2) / units_per_pixel_),
        pen_->colour);
    const CPen& made = made_pen_.made_for;
    if (made_pen_.handle != nullptr && made.style == wanted.style && made.width == wanted.width &&
        made.colour == wanted.colour) {
        return ::SelectObject(device_, made_pen_.handle) != nullptr;
    }
    const HPEN handle = objects_.create_pen(wanted.style, wanted.width, wanted.colour);
    if (handle == nullptr || ::SelectObject(device_, handle) == nullptr) {
        return false;
    }
    if (made_pen_.handle != nullptr) {
        objects_.remove(made_pen_.handle);
    }
    made_pen_ = {handle, wanted};
    return true;
}

bool GdiCanvas::select_brush() {
    if (brush_ == nullptr) {
        return ::SelectObject(device_, first_brush_) != nullptr;
    }
    if (made_brush_.handle != nullptr && made_brush_.made_for.colour == brush_->colour) {
        return ::SelectObject(device_, made_brush_.handle) != nullptr;
    }
    const HBRUSH handle = objects_.create_brush(brush_->colour);
    if (handle == nullptr || ::SelectObject(device_, handle) == nullptr) {
        return false;
    }
    if (made_brush_.handle != nullptr) {
        objects_.remove(made_brush_.handle);
    }
    made_brush_ = {handle, *brush_};
    return true;
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

// The font is never selected between two calls.
bool GdiCanvas::select_font(double size) {
    const LONG height = std::lround(size);
    if (made_font_.handle == nullptr || made_font_.height != height) {
        LOGFONTW font = {};
        font.lfHeight = -height; // below 0: of the letters, without the space between two lines
        font.lfWeight = FW_NORMAL;
        font.lfCharSet = DEFAULT_CHARSET;
        font.lfQuality = ANTIALIASED_QUALITY;
        font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
        const HFONT handle = objects_.create_font(font);
        if (handle == nullptr) {
            return false;
        }
        if (made_font_.handle != nullptr) {
            objects_.remove(made_font_.handle);
        }
        made_font_ = {handle, height};
    }
    return ::SelectObject(device_, made_font_.handle) != nullptr;
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
