#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/command/options.h"
#include "apps/command/selection.h"
#include "kit/kit.h"

namespace korvel::command {

/// A curve file turned into regions, and the options that this takes.
class CurveInput {
public:
    /// Adds `--tolerance`, `--as-traced`, `--min-area` and `--select` to a command.
    void add_options(Options options);

    /// Throws an input error when an option does not fit. Cheap, so that it can come first.
    void check();

    /// Reads the curves, finds the regions and prints how many of both there are, and what was left
    /// out.
    void load(const kit::TextFile& file);

    /// The points of `--select`, also for regions that come from another file.
    const Selection& selection() const { return selection_; }

    /// The regions under these points.
    std::vector<int> select() const;

    kit::FoundRegions& found() { return *found_; }

private:
    void report() const;
    void report_leftover() const;
    void report_slivers() const;

    kit::FindOptions options_;
    Selection selection_;
    std::string file_;
    std::optional<kit::FoundRegions> found_;
};

} // namespace korvel::command
