#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "korvel/platform/framework.h"

namespace korvel::test {

/// A device context that records each call as a line of text.
class RecordingDC : public CDC {
public:
    mutable std::vector<std::string> calls;
    COLORREF background = RGB(1, 2, 3);

    CPen* SelectObject(CPen* pen) override {
        if (pen == &own_pen_) {
            note("pen back");
        } else {
            note("pen ", pen->style, " ", pen->width, " ", rgb(pen->colour));
        }
        return std::exchange(pen_, pen);
    }
    CBrush* SelectObject(CBrush* brush) override {
        if (brush == &own_brush_) {
            note("brush back");
        } else {
            note("brush ", rgb(brush->colour));
        }
        return std::exchange(brush_, brush);
    }
    int SetPolyFillMode(int mode) override {
        note("fill mode ", mode);
        return 0;
    }
    COLORREF GetBkColor() const override {
        note("get background");
        return background;
    }
    COLORREF SetBkColor(COLORREF colour) override {
        note("set background ", rgb(colour));
        return std::exchange(background, colour);
    }
    POINT MoveTo(int x, int y) override {
        note("move ", x, ",", y);
        return {};
    }
    BOOL LineTo(int x, int y) override {
        note("line ", x, ",", y);
        return 1;
    }
    BOOL Polygon(const POINT* points, int count) override {
        note("polygon", positions(points, count));
        return 1;
    }
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override {
        note("polygons");
        for (int i = 0; i < polygons; points += counts[i++]) {
            calls.back() += positions(points, counts[i]) + ";";
        }
        return 1;
    }

private:
    template <class... Parts>
    static std::string text(const Parts&... parts) {
        std::ostringstream out;
        (out << ... << parts);
        return out.str();
    }
    template <class... Parts>
    void note(const Parts&... parts) const {
        calls.push_back(text(parts...));
    }
    static std::string rgb(COLORREF colour) {
        return text(+GetRValue(colour), "-", +GetGValue(colour), "-", +GetBValue(colour));
    }
    static std::string positions(const POINT* points, int count) {
        std::string all;
        for (int k = 0; k < count; ++k) {
            all += text(" ", points[k].x, ",", points[k].y);
        }
        return all;
    }

    CPen own_pen_;
    CBrush own_brush_;
    CPen* pen_ = &own_pen_;
    CBrush* brush_ = &own_brush_;
};

} // namespace korvel::test
