#pragma once

#include <CLI/CLI.hpp>

#include <cstdio>
#include <functional>
#include <string>

#include "host/canvas/picture_fit.h"
#include "host/sets/region_sets.h"

namespace korvel::host {

/// The files that a command writes besides its report, and how its picture looks: `-o FILE`,
/// `--picture FILE`, `--size WxH`, `--view X,Y,X,Y` and `--stretch F`.
class Outputs {
public:
    /// Adds the options to a command; `contents` says what -o writes.
    void add_options(CLI::App& command, const std::string& contents);

    /// Looks for everything that would make `write` fail at the end of a long run. Throws
    /// InputError or OutputError.
    void check() const;

    using WriteFile = std::function<void(FILE* out)>;
    using Paint = std::function<void(CDC& dc, const PictureFit& fit)>;

    /// Writes what was asked for. Both files take their places once both are complete. The picture
    /// shows `box` unless the user asked for another view.
    void write(const Box& box, const WriteFile& write_file, const Paint& paint) const;

private:
    void write_picture(OutputFile& out, const Box& box, const Paint& paint) const;

    std::string file_;
    std::string picture_;
    std::string size_ = "1600x1000";
    std::string view_;
    double stretch_ = 1;
};

} // namespace korvel::host
