#pragma once

#include <filesystem>
#include <string>

#include "kit/pictures/flat_picture.h"
#include "kit/pictures/picture_canvas.h"
#include "kit/pictures/section_picture.h"
#include "korvel/module/korvel.h"

// Pictures of maps, triangles and sections as PNG, SVG and PDF files. Only in a kit with Cairo
// (KORVEL_HAS_CAIRO); `draw` is always there.

namespace korvel::kit {

// Each writes what `draw` draws, at `PictureFit::units_per_pixel` and with labels, completely or
// not at all. The extension of the file selects the format: .png, .svg or .pdf. Throws an `Error`
// of kind input for any other, and of kind output where the file cannot be written. Compressing a
// PNG of the usual size takes longer than drawing most maps.

void write_picture(const Map& map, const std::filesystem::path& file,
                   const MapPictureOptions& options = {});
void write_picture(const CCPloy2DRg& map, const std::filesystem::path& file,
                   const MapPictureOptions& options = {});
void write_picture(const Triangulation& triangles, const std::filesystem::path& file,
                   const MapPictureOptions& options = {});
void write_picture(const PLYDT& triangles, const std::filesystem::path& file,
                   const MapPictureOptions& options = {});
void write_picture(const Section& section, const std::filesystem::path& file,
                   const SectionPictureOptions& options = {});

// The same on a canvas, whose size, units and labels are used instead of those in the options.

void draw(const Map& map, PictureCanvas& canvas, MapPictureOptions options = {});
void draw(const CCPloy2DRg& map, PictureCanvas& canvas, MapPictureOptions options = {});
void draw(const Triangulation& triangles, PictureCanvas& canvas, MapPictureOptions options = {});
void draw(const PLYDT& triangles, PictureCanvas& canvas, MapPictureOptions options = {});
void draw(const Section& section, PictureCanvas& canvas, SectionPictureOptions options = {});

} // namespace korvel::kit
