#include "apps/command/outputs.h"

#include <algorithm>
#include <filesystem>
#include <list>
#include <system_error>
#include <utility>
#include <vector>

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

void Outputs::add_leftover(Options options) {
    options.add("--leftover", leftover_, "FILE",
                "Write the lines that are on no border as a curve file");
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
    const std::vector<std::pair<std::string, std::string>> named = {
        {file_, "by --output"}, {leftover_, "by --leftover"}, {picture_, "for the picture"}};
    for (auto one = named.begin(); one != named.end(); ++one) {
        for (auto other = named.begin(); other != one; ++other) {
            if (!one->first.empty() && !other->first.empty() &&
                place(one->first) == place(other->first)) {
                throw kit::input_error("korvel: " + other->first + ": named both " + one->second +
                                       " and " + other->second);
            }
        }
    }
    for (const auto& [file, purpose] : named) {
        if (!file.empty()) {
            kit::OutputFile::check(file);
        }
    }
}

void Outputs::write(const WriteFile& write_file, const Paint& paint,
                    const WriteFile& write_leftover) const {
    const Stopwatch time;
    const std::vector<std::pair<std::string, WriteFile>> jobs = {
        {file_, write_file}, {leftover_, write_leftover}, {picture_, [&](kit::OutputFile& out) {
                                                               paint_into(out, picture_, paint);
                                                           }}};
    std::list<kit::OutputFile> written;
    std::string names;
    for (const auto& [file, write_it] : jobs) {
        if (!file.empty()) {
            names.append(names.empty() ? "" : ", ").append(file);
            write_it(written.emplace_back(file));
            written.back().close();
        }
    }
    for (kit::OutputFile& file : written) {
        file.replace();
    }
    if (!written.empty()) {
        std::printf("wrote %s in %.1f ms\n", names.c_str(), time.milliseconds());
    }
}

void Outputs::write_picture(const std::string& file, const Paint& paint) const {
    kit::OutputFile picture(file);
    paint_into(picture, file, paint);
    picture.close();
    picture.replace();
}

void Outputs::paint_into(kit::OutputFile& out, const std::string& file, const Paint& paint) const {
    const ProgressLine progress("painting");
    const kit::PictureSize size = parse_picture_size("--size", size_);
    kit::PictureCanvas canvas(out, kit::picture_format(file), size,
                              kit::PictureFit::units_per_pixel);
    paint(canvas);
    canvas.finish();
}

} // namespace korvel::command
