#pragma once

// The system's plain types and constants: Win32's own on Windows, the same names elsewhere. A
// host's own framework has them, and may have to be included before anything of the system.

#if defined(_WIN32) && !defined(NOMINMAX)
#define NOMINMAX
#endif

#if defined(KORVEL_USE_HOST_FRAMEWORK)

#include KORVEL_FRAMEWORK_HEADER

#elif defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#else

#include <cstdint>

using BOOL = int;        ///< zero is false, anything else true
using HINSTANCE = void*; ///< identifies a loaded module, by any address inside it

/// An integer point in device units.
struct tagPOINT {
    std::int32_t x;
    std::int32_t y;
};
using POINT = tagPOINT;

using COLORREF = std::uint32_t; ///< 0x00bbggrr

/// Packs a colour from the low eight bits of each argument.
constexpr COLORREF RGB(int r, int g, int b) {
    return static_cast<COLORREF>(r & 0xff) | static_cast<COLORREF>(g & 0xff) << 8 |
           static_cast<COLORREF>(b & 0xff) << 16;
}
constexpr std::uint8_t GetRValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour & 0xff);
}
constexpr std::uint8_t GetGValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour >> 8 & 0xff);
}
constexpr std::uint8_t GetBValue(COLORREF colour) {
    return static_cast<std::uint8_t>(colour >> 16 & 0xff);
}

constexpr int ALTERNATE = 1;  ///< fill mode: inside is where an odd number of sides was crossed
constexpr int PS_SOLID = 0;   ///< pen style: an unbroken line
constexpr unsigned MB_OK = 0; ///< message box with an OK button only
constexpr int IDOK = 1;       ///< the result of the OK button

#endif
