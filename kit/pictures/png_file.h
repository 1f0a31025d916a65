#pragma once

#include <memory>

#include "kit/files/output_file.h"
#include "kit/pictures/picture_canvas.h"

namespace korvel::kit {

/// A page of pixels to be written as PNG: four bytes each, blue, green, red and one without
/// meaning, row by row from the top. Functions throw an `Error` of kind output.
class PngPage {
public:
    PngPage(OutputFile& out, PictureSize size);
    ~PngPage();
    PngPage(const PngPage&) = delete;
    PngPage& operator=(const PngPage&) = delete;

    int stride() const; ///< in bytes, from one row to the next
    unsigned char* pixels();
    unsigned char* row(int y) { return pixels() + static_cast<std::ptrdiff_t>(y) * stride(); }
    void write();

private:
    struct Surface;

    OutputFile& out_;
    std::unique_ptr<Surface> surface_;
};

} // namespace korvel::kit
