#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/curve_input.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::command {

/// The regions of a curve file or of a polygon-region file, all or those under `--select`.
class RegionInput {
public:
    /// Adds the file, `--tolerance` and `--select` to a command.
    void add_options(CLI::App& command);

    /// Throws an input error when an option does not fit.
    void check() const { curve_input_.check(); }

    /// Reads the file, prints what it holds and fills the empty `set`. Rings turn the way that the
    /// triangulation expects.
    void load(PLYDT& set);

    /// The number of a region of the set in the file, and where it lies.
    std::string name(const PLYDT& set, int region) const;

    const std::string& file() const { return file_; }

private:
    void load_curves(const kit::TextFile& file, PLYDT& set);
    void load_region_set(const kit::TextFile& file, PLYDT& set);
    std::vector<int> select(CCPloy2DRg& regions, const std::vector<RealPoint>& places) const;

    std::string file_;
    CurveInput curve_input_;
    std::vector<int> numbers_; // of the regions before the selection; empty without one
};

} // namespace korvel::command
