#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/options.h"
#include "apps/command/selection.h"
#include "apps/command/source_options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The curves of a curve file, or of lines and polygons in a file of features, turned into regions,
/// and the options that this takes.
class CurveInput {
public:
    /// Adds `--tolerance`, `--as-traced`, `--min-area`, `--select` and those of `SourceOptions` to
    /// a command.
    void add_options(Options options,
                     SourceOptions::Default projection = SourceOptions::Default::none);

    /// Throws an input error when an option does not fit. Cheap, so that it can come first.
    void check();

    /// Reads the curves, finds the regions and prints how many of both there are, and what was left
    /// out.
    void load(const kit::TextFile& file);

    /// The same from a file of features.
    void load_features(const std::string& name);

    /// The points of `--select`, also for regions that come from another file.
    const Selection& selection() const { return selection_; }

    /// The regions under these points.
    std::vector<int> select() const;

    /// The region around a point as a map of its own, see `FoundRegions::around`.
    kit::Map around(const kit::Point2& seed) const;

    /// How the regions were found.
    const kit::FoundRegions& found() const { return *found_; }

    /// The regions, with the attributes that they have from polygons and labels.
    const kit::Map& map() const { return map_; }
    kit::Map take_map() { return std::move(map_); }

    SourceOptions& source() { return source_; }
    const SourceOptions& source() const { return source_; }

private:
    void find(kit::Network network, const kit::Features* features);
    void take_attributes(const kit::Features& features);
    void report_sources(const kit::SourceReport& report, const kit::Features& features) const;
    void report() const;
    void report_leftover() const;
    void report_slivers() const;

    kit::FindOptions options_;
    double tolerance_ = 1;
    Option tolerance_option_;
    SourceOptions source_;
    Selection selection_;
    std::string file_;
    std::optional<kit::FoundRegions> found_;
    kit::Map map_;
};

} // namespace korvel::command
