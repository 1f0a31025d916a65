#pragma once

#include <cstdint>

using BOOL = int;
using HINSTANCE = void*;
using COLORREF = std::uint32_t;

struct tagPOINT {
    std::int32_t x;
    std::int32_t y;
};
using POINT = tagPOINT;

constexpr COLORREF RGB(int r, int g, int b) {
    return static_cast<COLORREF>(r | g << 8 | b << 16);
}
constexpr std::uint8_t GetRValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour);
}
constexpr std::uint8_t GetGValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour >> 8);
}
constexpr std::uint8_t GetBValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour >> 16);
}

constexpr int ALTERNATE = 1;
constexpr int PS_SOLID = 0;
constexpr unsigned MB_OK = 0;
constexpr int IDOK = 1;

class CPen {
public:
    CPen() = default;
    CPen(int pen_style, int pen_width, COLORREF pen_colour)
        : style(pen_style), width(pen_width), colour(pen_colour) {}
    CPen(const CPen&) = delete;
    CPen& operator=(const CPen&) = delete;

    int style = PS_SOLID;
    int width = 0;
    COLORREF colour = 0;
};

class CBrush {
public:
    CBrush() = default;
    explicit CBrush(COLORREF brush_colour) : colour(brush_colour) {}
    CBrush(const CBrush&) = delete;
    CBrush& operator=(const CBrush&) = delete;

    COLORREF colour = 0xffffff;
};

class CDC {
public:
    CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC() = default;
    virtual CPen* SelectObject(CPen* pen) = 0;
    virtual CBrush* SelectObject(CBrush* brush) = 0;
    virtual int SetPolyFillMode(int mode) = 0;
    virtual COLORREF GetBkColor() const = 0;
    virtual COLORREF SetBkColor(COLORREF colour) = 0;
    virtual POINT MoveTo(int x, int y) = 0;
    virtual BOOL LineTo(int x, int y) = 0;
    virtual BOOL Polygon(const POINT* points, int count) = 0;
    virtual BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) = 0;
};
