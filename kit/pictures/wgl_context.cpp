#include "kit/pictures/gl_context.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {
namespace {

const char* const window_class = "korvel_kit_off_screen";

HMODULE own_module();
void register_window_class();
std::string wgl_error(const char* what);

} // namespace

/// A window that is never shown, and its context. A member left empty has not been made.
struct GlContext::System {
    HWND window = nullptr;
    HDC device = nullptr;
    HGLRC context = nullptr;

    ~System();
    void open();
};

GlContext::GlContext() : system_(std::make_unique<System>()) {
    system_->open();
}

GlContext::~GlContext() = default;

// Windows finds only what came after version 1.1, and returns small numbers for failures.
GlContext::Function GlContext::function(const char* name) {
    const PROC found = wglGetProcAddress(name);
    const auto number = reinterpret_cast<INT_PTR>(found);
    return number >= -1 && number <= 3 ? nullptr : reinterpret_cast<Function>(found);
}

void GlContext::System::open() {
    register_window_class();
    window = CreateWindowExA(0, window_class, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                             own_module(), nullptr);
    if (window == nullptr) {
        fail(wgl_error("no window without a display"));
    }
    device = GetDC(window);
    PIXELFORMATDESCRIPTOR wanted = {};
    wanted.nSize = sizeof wanted;
    wanted.nVersion = 1;
    wanted.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
    wanted.iPixelType = PFD_TYPE_RGBA;
    wanted.cColorBits = 24;
    const int format = ChoosePixelFormat(device, &wanted);
    if (format == 0 || SetPixelFormat(device, format, &wanted) == FALSE) {
        fail(wgl_error("no pixel format"));
    }
    context = wglCreateContext(device);
    if (context == nullptr || wglMakeCurrent(device, context) == FALSE) {
        fail(wgl_error("no context"));
    }
}

GlContext::System::~System() {
    if (context != nullptr) {
        wglMakeCurrent(nullptr, nullptr);
        wglDeleteContext(context);
    }
    if (window != nullptr) {
        ReleaseDC(window, device);
        DestroyWindow(window);
    }
    // Fails as long as another window of this class exists.
    UnregisterClassA(window_class, own_module());
}

namespace {

// A class of windows goes with the module that registered it: a library that was unloaded leaves no
// window procedure behind.
HMODULE own_module() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&own_module), &module);
    return module;
}

void register_window_class() {
    WNDCLASSA kind = {};
    kind.style = CS_OWNDC;
    kind.lpfnWndProc = DefWindowProcA;
    kind.hInstance = own_module();
    kind.lpszClassName = window_class;
    if (RegisterClassA(&kind) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        GlContext::fail(wgl_error("no class of windows"));
    }
}

std::string wgl_error(const char* what) {
    return std::string(what) + ", Windows error " + std::to_string(GetLastError());
}

} // namespace
} // namespace korvel::kit
