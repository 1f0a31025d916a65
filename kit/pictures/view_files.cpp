#include "kit/pictures/view_files.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <functional>
#include <string>

#include "kit/base/error.h"
#include "kit/base/system_files.h"
#include "kit/files/output_file.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

/// Turns a model, and turns it back in the end.
class Turning {
public:
    explicit Turning(TMOD3D& model) : model_(model), start_(model.vis_angle_1) {}
    ~Turning() { turn_by(0); }
    Turning(const Turning&) = delete;
    Turning& operator=(const Turning&) = delete;

    void turn_by(double degrees) {
        model_.vis_angle_1 = start_ + degrees;
        model_.change_vis_parm();
    }

private:
    TMOD3D& model_;
    double start_;
};

void require_png(const fs::path& file);
void with_screen(const ViewOptions& options, const std::function<void(OffscreenRenderer&)>& job);

} // namespace

void check_view_file(const fs::path& file) {
    require_png(file);
    OutputFile::check(file);
}

void check_turntable_files(const fs::path& file, int count) {
    require_png(file);
    for (const fs::path& picture : turntable_files(file, count)) {
        OutputFile::check(picture);
    }
}

void write_picture(const Solids& solids, const fs::path& file, const ViewOptions& options) {
    const auto held = solids.hold();
    write_picture(solids.model(), file, options);
}

void write_picture(const TMOD3D& model, const fs::path& file, const ViewOptions& options) {
    require_png(file);
    OutputFile out(file);
    with_screen(options, [&](OffscreenRenderer& screen) {
        screen.bind();
        draw_view(model, view_frame(model, options), options);
        screen.write_png(out);
    });
    out.replace();
}

void write_turntable(Solids& solids, const fs::path& file, int count, const ViewOptions& options,
                     const Context& context) {
    write_turntable(solids.model(), file, count, options, context);
}

// No target is replaced before all pictures are complete.
void write_turntable(TMOD3D& model, const fs::path& file, int count, const ViewOptions& options,
                     const Context& context) {
    require_png(file);
    ViewOptions unmarked = options;
    unmarked.marked.reset();
    std::deque<OutputFile> pictures;
    with_screen(options, [&](OffscreenRenderer& screen) {
        Turning turning(model);
        for (const fs::path& picture : turntable_files(file, count)) {
            const int done = static_cast<int>(pictures.size());
            context.report("painting", done, count);
            turning.turn_by(done * 360.0 / count);
            screen.bind();
            draw_view(model, turntable_frame(model, unmarked), unmarked);
            OutputFile& out = pictures.emplace_back(picture);
            screen.write_png(out);
            out.close();
        }
    });
    for (OutputFile& picture : pictures) {
        picture.replace();
    }
}

fs::path numbered_file(const fs::path& file, int number, int digits) {
    const std::string text = std::to_string(number);
    const int zeros = std::max(0, digits - static_cast<int>(text.size()));
    fs::path numbered = file.parent_path();
    if (numbered.has_filename()) {
        numbered += '/'; // on every system, as users write it
    }
    numbered += file.stem();
    numbered += '-';
    numbered += std::string(static_cast<std::size_t>(zeros), '0') + text;
    return numbered += file.extension();
}

std::vector<fs::path> turntable_files(const fs::path& file, int count) {
    const int digits = std::max(2, static_cast<int>(std::to_string(count - 1).size()));
    std::vector<fs::path> files;
    files.reserve(static_cast<std::size_t>(std::max(0, count)));
    for (int i = 0; i < count; ++i) {
        files.push_back(numbered_file(file, i, digits));
    }
    return files;
}

namespace {

void require_png(const fs::path& file) {
    std::string ending = text_of(file.extension());
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (ending != ".png") {
        throw input_error(text_of(file) + ": the name of a picture of a model ends in .png",
                          {.file = text_of(file)});
    }
}

void with_screen(const ViewOptions& options, const std::function<void(OffscreenRenderer&)>& job) {
    if (options.screen != nullptr) {
        job(*options.screen);
        return;
    }
    OffscreenRenderer screen(options.size);
    job(screen);
}

} // namespace
} // namespace korvel::kit
