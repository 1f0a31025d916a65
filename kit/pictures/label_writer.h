#pragma once

#include <string>

namespace korvel::kit {

/// Alignment of a text at its position: to the right of it, centred, to the left of it.
enum class Anchor { start, middle, end };

/// Writes the labels of a picture, which a `CDC` has no function for. `PictureCanvas` is one; a
/// host that wants labels in its own device context derives another.
class LabelWriter {
public:
    virtual ~LabelWriter() = default;

    /// Writes a line of UTF-8 text in the colour of the pen that is selected in the device context,
    /// its height around `y`. Place and size are in pixels.
    virtual void write_text(const std::string& text, double x, double y, double size,
                            Anchor anchor) = 0;

    /// Width of a line of text in pixels.
    virtual double text_width(const std::string& text, double size) = 0;
};

} // namespace korvel::kit
