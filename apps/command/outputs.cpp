#include "apps/command/outputs.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "apps/command/arguments.h"
#include "apps/command/progress_line.h"
#include "kit/kit.h"

namespace korvel::command {

Option Outputs::add_file(Options options, const std::string& contents) {
    return options.add("-o,--output", file_, "FILE", contents);
}

void Outputs::add_picture(Options options) {
    options.add("--picture", picture_, "FILE", "Paint a picture: .png, .svg or .pdf");
    options
        .add("--size", size_, "WxH",
             "Size of the picture in pixels (.pdf: points), 16 to 20000 each")
        .with_default();
}

void Outputs::check() const {
    parse_picture_size("--size", size_);
    if (!picture_.empty()) {
        kit::picture_format(picture_);
    }
    const auto place = [](const std::string& file) {
        std::error_code error;
        return std::filesystem::weakly_canonical(std::filesystem::absolute(file), error);
    };
    if (!file_.empty() && !picture_.empty() && place(file_) == place(picture_)) {
        throw kit::input_error("korvel: " + file_ + ": named both for the picture and by --output");
    }
    for (const std::string& file : {file_, picture_}) {
        if (!file.empty()) {
            kit::OutputFile::check(file);
        }
    }
}

void Outputs::write(const WriteFile& write_file, const Paint& paint) const {
    const Stopwatch time;
    std::optional<kit::OutputFile> file;
    std::optional<kit::OutputFile> picture;
    if (!file_.empty()) {
        file.emplace(file_);
        write_file(*file);
        file->close();
    }
    if (!picture_.empty()) {
        picture.emplace(picture_);
        paint_into(*picture, picture_, paint);
    }
    if (file) {
        file->replace();
    }
    if (picture) {
        picture->replace();
    }
    if (file || picture) {
        const char* const separator = file && picture ? ", " : "";
        std::printf("wrote %s%s%s in %.1f ms\n", file_.c_str(), separator, picture_.c_str(),
                    time.milliseconds());
    }
}

void Outputs::write_picture(const std::string& file, const Paint& paint) const {
    kit::OutputFile picture(file);
    paint_into(picture, file, paint);
    picture.replace();
}

void Outputs::paint_into(kit::OutputFile& out, const std::string& file, const Paint& paint) const {
    const ProgressLine progress("painting");
    const kit::PictureSize size = parse_picture_size("--size", size_);
    kit::PictureCanvas canvas(out, kit::picture_format(file), size,
                              kit::PictureFit::units_per_pixel);
    paint(canvas);
    canvas.finish();
    out.close();
}

} // namespace korvel::command
