#pragma once

#include <memory>

#include "kit/files/output_file.h"
#include "kit/pictures/picture_canvas.h"
#include "kit/pictures/view_frame.h"

namespace korvel::kit {

/// A page that OpenGL draws on, without a window: on the graphics hardware where there is any, else
/// in software. Its context is the thread's current one as long as it lives; only one at a time.
class OffscreenRenderer {
public:
    /// Throws an input error for a page larger than OpenGL can draw here, and an output error where
    /// there is no OpenGL for it.
    explicit OffscreenRenderer(PictureSize size);
    ~OffscreenRenderer();
    OffscreenRenderer(const OffscreenRenderer&) = delete;
    OffscreenRenderer& operator=(const OffscreenRenderer&) = delete;

    /// Starts a picture: an empty grey page that shows a part of a view, drawn on in view
    /// coordinates. What is nearer to the viewer hides what is farther.
    void begin(const ViewFrame& frame);

    /// Writes the page as a PNG. Throws an output error when drawing or writing failed.
    void write_png(OutputFile& out);

private:
    struct Context;
    struct Page;

    PictureSize size_;
    std::unique_ptr<Context> context_;
    std::unique_ptr<Page> page_;
};

} // namespace korvel::kit
