#pragma once

#include <memory>

#include "kit/files/output_file.h"
#include "kit/pictures/picture_size.h"
#include "kit/pictures/view_frame.h"

namespace korvel::kit {

class GlContext;

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

    /// Makes the page the one that the context draws on: the next OpenGL calls, such as those of
    /// `begin_view` or `draw_view`, go there. `write_png` needs another call before it is drawn on
    /// again.
    void bind();

    /// `bind` and `begin_view`.
    void begin(const ViewFrame& frame);

    /// Writes the page as a PNG. Throws an output error when drawing or writing failed.
    void write_png(OutputFile& out);

private:
    struct Page;

    PictureSize size_;
    std::unique_ptr<GlContext> context_;
    std::unique_ptr<Page> page_;
};

} // namespace korvel::kit
