#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// A curve file turned into regions, and the options that this takes.
class CurveInput {
public:
    /// Adds `--tolerance`, `--as-traced`, `--min-area` and `--select` to a command.
    void add_options(Options options);

    /// Throws an input error when an option does not fit. Cheap, so that it can come first.
    void check() const;

    /// Reads the curves, finds the regions and prints how many of both there are, and what was left
    /// out.
    void load(const kit::TextFile& file);

    bool has_selection() const { return !select_.empty(); }
    const std::vector<std::string>& selection() const { return select_; }

    /// The regions under the given points; prints which, and warns of points without one.
    std::vector<int> select() const;

    kit::FoundRegions& found() { return *found_; }

private:
    void report() const;
    void report_leftover() const;
    void report_slivers() const;

    kit::FindOptions options_;
    std::vector<std::string> select_;
    std::vector<tagPOINT> points_; // of `select_`
    std::optional<kit::FoundRegions> found_;
};

} // namespace korvel::command
