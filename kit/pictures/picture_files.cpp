#include "kit/pictures/picture_files.h"

#include "kit/pictures/picture_fit.h"

namespace korvel::kit {
namespace {

template <class Subject, class Options>
void write(const Subject& subject, const std::filesystem::path& file, const Options& options) {
    const PictureFormat format = picture_format(file);
    OutputFile out(file);
    PictureCanvas canvas(out, format, options.size, PictureFit::units_per_pixel);
    draw(subject, canvas, options);
    canvas.finish();
    out.replace();
}

template <class Subject, class Options>
void draw_on_page(const Subject& subject, PictureCanvas& canvas, Options& options) {
    options.size = canvas.size();
    options.units_per_pixel = canvas.units_per_pixel();
    draw(subject, static_cast<CDC&>(canvas), options);
}

} // namespace

void write_picture(const Map& map, const std::filesystem::path& file,
                   const MapPictureOptions& options) {
    write(map, file, options);
}

void write_picture(const Triangulation& triangles, const std::filesystem::path& file,
                   const MapPictureOptions& options) {
    write(triangles, file, options);
}

void write_picture(const CCPloy2DRg& map, const std::filesystem::path& file,
                   const MapPictureOptions& options) {
    write(map, file, options);
}

void write_picture(const PLYDT& triangles, const std::filesystem::path& file,
                   const MapPictureOptions& options) {
    write(triangles, file, options);
}

void write_picture(const Section& section, const std::filesystem::path& file,
                   const SectionPictureOptions& options) {
    write(section, file, options);
}

void draw(const Map& map, PictureCanvas& canvas, MapPictureOptions options) {
    draw_on_page(map, canvas, options);
}

void draw(const Triangulation& triangles, PictureCanvas& canvas, MapPictureOptions options) {
    draw_on_page(triangles, canvas, options);
}

void draw(const CCPloy2DRg& map, PictureCanvas& canvas, MapPictureOptions options) {
    draw_on_page(map, canvas, options);
}

void draw(const PLYDT& triangles, PictureCanvas& canvas, MapPictureOptions options) {
    draw_on_page(triangles, canvas, options);
}

void draw(const Section& section, PictureCanvas& canvas, SectionPictureOptions options) {
    options.labels = &canvas;
    draw_on_page(section, canvas, options);
}

} // namespace korvel::kit
