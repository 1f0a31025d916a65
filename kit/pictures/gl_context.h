#pragma once

#include <memory>
#include <string>

#include "kit/base/error.h"

namespace korvel::kit {

/// An OpenGL context that shows nothing on a screen, from the system: EGL, or WGL on Windows. It is
/// the thread's current one as long as it exists.
class GlContext {
public:
    /// Throws an output error where there is no OpenGL.
    GlContext();
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    using Function = void (*)();

    /// A function of OpenGL by its name; null for none.
    static Function function(const char* name);

    /// Throws an output error: there is no OpenGL to draw with.
    [[noreturn]] static void fail(const std::string& reason) {
        throw output_error("there is no OpenGL to draw with: " + reason);
    }

private:
    struct System;

    std::unique_ptr<System> system_;
};

} // namespace korvel::kit
