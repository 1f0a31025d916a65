#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The files that a command writes besides its report: `-o FILE`, `--leftover FILE`, and
/// `--picture FILE` with `--size WxH`. For the name `-` it is standard output, and the report goes
/// to standard error; a picture there is a PNG.
class Outputs {
public:
    /// Adds `-o` to a command; `contents` describes it in the help.
    Option add_file(Options options, const std::string& contents);

    /// Adds `--picture` and `--size`.
    void add_picture(Options options);

    /// Adds `--leftover`.
    void add_leftover(Options options);

    /// Looks for everything that would make `write` fail at the end of a long run. Throws
    /// an input error or an output error.
    void check() const;

    bool has_file() const { return !file_.empty(); }
    const std::string& picture() const { return picture_; }

    using WriteFile = std::function<void(kit::OutputFile& out)>;
    using Paint = std::function<void(kit::PictureCanvas& canvas)>;

    /// Writes the requested files. They replace their targets once all are complete.
    void write(const WriteFile& write_file, const Paint& paint = {},
               const WriteFile& write_leftover = {}) const;

    /// Writes a picture of the requested size into a file of another name.
    void write_picture(const std::string& file, const Paint& paint) const;

private:
    std::vector<std::pair<std::string, std::string>> named() const;
    void check_names() const;
    void paint_into(kit::OutputFile& out, const std::string& file, const Paint& paint) const;

    std::string file_;
    std::string leftover_;
    std::string picture_;
    std::string size_ = default_picture_size;
    Option size_option_;
};

} // namespace korvel::command
