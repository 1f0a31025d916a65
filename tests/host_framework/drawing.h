#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "korvel/platform/framework.h"

#if !defined(_WIN32)
#include "tests/support/recording_dc.h"
#elif !defined(KORVEL_USE_HOST_FRAMEWORK)
#include "kit/pictures/gdi_canvas.h"
#endif

namespace korvel::test {

#if defined(_WIN32)

/// A picture that is drawn by GDI, through the device context of the framework in use. As a text:
/// how many pixels were painted, and a sum over all that depends on their order.
class Drawing {
public:
    Drawing() {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, edge, edge, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* pixels = nullptr;
        bitmap_ = CreateDIBSection(handle_, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        pixels_ = static_cast<const std::uint32_t*>(pixels);
        SelectObject(handle_, bitmap_);
        PatBlt(handle_, 0, 0, edge, edge, WHITENESS);
        background_ = pixels_[0];
    }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    ~Drawing() {
        DeleteDC(handle_);
        DeleteObject(bitmap_);
    }

    template <class Draw>
    std::string of(Draw draw) {
        {
#if defined(KORVEL_USE_HOST_FRAMEWORK)
            CDC canvas(handle_);
#else
            kit::GdiCanvas canvas(handle_);
#endif
            draw(&canvas);
        }
        GdiFlush();
        int painted = 0;
        std::uint32_t sum = 0;
        for (int i = 0; i < edge * edge; ++i) {
            painted += pixels_[i] != background_ ? 1 : 0;
            sum = sum * 31 + pixels_[i];
        }
        char text[64];
        std::snprintf(text, sizeof text, "%d pixels, sum %08x", painted, sum);
        return painted > 0 ? text : throw std::runtime_error("nothing was painted");
    }

private:
    static constexpr int edge = 1024;
    HDC handle_ = CreateCompatibleDC(nullptr);
    HBITMAP bitmap_ = nullptr;
    const std::uint32_t* pixels_ = nullptr;
    std::uint32_t background_ = 0;
};

#else

/// Every call of a drawing, as a text.
class Drawing {
public:
    template <class Draw>
    std::string of(Draw draw) {
        RecordingDC canvas;
        draw(&canvas);
        std::string text;
        for (const std::string& call : canvas.calls) {
            text += call + "\n";
        }
        return text.empty() ? throw std::runtime_error("nothing was drawn") : text;
    }
};

#endif

} // namespace korvel::test
