#pragma once

// Pens, brushes and device contexts as owners of the handles of GDI.

template <class Handle>
class GdiObject {
public:
    GdiObject(Handle handle, bool is_owned) : handle_(handle), is_owned_(is_owned) {}
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;
    ~GdiObject() {
        if (is_owned_) {
            DeleteObject(handle_);
        }
    }
    Handle handle() const { return handle_; }

private:
    Handle handle_;
    bool is_owned_;
};

class CPen : public GdiObject<HPEN> {
public:
    CPen(int style, int width, COLORREF colour)
        : GdiObject(CreatePen(style, width, colour), true) {}
    explicit CPen(HPEN borrowed) : GdiObject(borrowed, false) {}
};

class CBrush : public GdiObject<HBRUSH> {
public:
    explicit CBrush(COLORREF colour) : GdiObject(CreateSolidBrush(colour), true) {}
    explicit CBrush(HBRUSH borrowed) : GdiObject(borrowed, false) {}
};

class CDC {
public:
    explicit CDC(HDC handle)
        : handle_(handle), first_pen_(static_cast<HPEN>(GetCurrentObject(handle, OBJ_PEN))),
          first_brush_(static_cast<HBRUSH>(GetCurrentObject(handle, OBJ_BRUSH))) {}
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    CPen* SelectObject(CPen* pen) {
        CPen* const former = pen_;
        ::SelectObject(handle_, pen->handle());
        pen_ = pen;
        return former;
    }
    CBrush* SelectObject(CBrush* brush) {
        CBrush* const former = brush_;
        ::SelectObject(handle_, brush->handle());
        brush_ = brush;
        return former;
    }
    int SetPolyFillMode(int mode) { return ::SetPolyFillMode(handle_, mode); }
    COLORREF GetBkColor() const { return ::GetBkColor(handle_); }
    COLORREF SetBkColor(COLORREF colour) { return ::SetBkColor(handle_, colour); }
    POINT MoveTo(int x, int y) {
        POINT former{};
        MoveToEx(handle_, x, y, &former);
        return former;
    }
    BOOL LineTo(int x, int y) { return ::LineTo(handle_, x, y); }
    BOOL Polygon(const POINT* points, int count) { return ::Polygon(handle_, points, count); }
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) {
        return ::PolyPolygon(handle_, points, counts, polygons);
    }

private:
    HDC handle_;
    CPen first_pen_;
    CBrush first_brush_;
    CPen* pen_ = &first_pen_;
    CBrush* brush_ = &first_brush_;
};
