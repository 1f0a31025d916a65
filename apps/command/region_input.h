#pragma once

#include <string>
#include <vector>

#include "apps/command/curve_input.h"
#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The regions of a curve file, a polygon-region file or a file of features, all or those under
/// `--select`.
class RegionInput {
public:
    /// Adds the file and the options of `CurveInput` to a command.
    void add_options(Options options,
                     SourceOptions::Default projection = SourceOptions::Default::none);

    /// Throws an input error when an option does not fit.
    void check() { curve_input_.check(); }

    /// Reads the file, prints what it contains and returns its regions or the selected ones.
    kit::Map load();

    /// The number of a region in the file, and where it lies.
    static std::string name(const kit::Region& region);

    const std::string& file() const { return file_; }
    const SourceOptions& source() const { return curve_input_.source(); }
    bool has_selection() const { return !curve_input_.selection().empty(); }

private:
    kit::Map selected_of_curves();
    kit::Map load_region_set(const kit::TextFile& file);

    std::string file_;
    CurveInput curve_input_;
};

} // namespace korvel::command
