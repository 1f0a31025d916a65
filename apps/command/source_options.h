#pragma once

#include <memory>
#include <optional>
#include <string>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// How the coordinates of maps are taken: `--grid`, `--grid-origin`, `--reference` and `--project`,
/// and what of files of features is read: `--layer` and `--where`, `--labels` and `--keep-gaps`.
class SourceOptions {
public:
    /// The map projection where `--project` is not given.
    enum class Default { none, automatic };

    void add_options(Options options, Default projection = Default::none);

    /// Throws an input error when an option does not fit.
    void check() const;

    kit::GridChoice grid() const;

    /// Whether a projection or a reference system is asked for.
    bool is_projected() const { return !reference_.empty() || !project_.empty(); }

    /// Reads a file of features, or standard input for the name `-`.
    kit::Features read(const std::string& name) const;

    /// Whether coordinates may change, so that the grid is not one of those that the file has.
    bool may_project() const {
        return project_.empty() ? is_projected() && default_ == Default::automatic
                                : project_ != "none";
    }

    /// Brings features, or a map, into the projection that was asked for, and notes the way back.
    /// Does nothing where there is none.
    void project(kit::Features& features);
    void project(kit::Map& map);

    /// Features in the reference system that the input had.
    kit::Features in_input_system(kit::Features features) const;

    /// The map in an equal-area projection where its coordinates are longitude and latitude and
    /// `--project` is not given; else nothing. The projection is reported, by a line if that
    /// `is_printed`.
    std::optional<kit::Map> measured(const kit::Map& map, bool is_printed = true) const;

    /// Gives regions the names and attributes of `--labels`, and of the points of the input.
    void label(kit::Map& map, const kit::Features* input) const;

    bool keeps_gaps() const { return keeps_gaps_; }

private:
    std::string target(const std::string& reference, const kit::Rectangle& bounds) const;
    void note_projection(const std::string& from, const std::string& to);
    void report_labels(const std::string& file, const kit::LabelReport& report) const;

    std::string grid_;
    std::string grid_origin_;
    std::string reference_;
    std::string project_;
    std::string layer_;
    std::string where_;
    std::string labels_;
    bool keeps_gaps_ = false;

    Default default_ = Default::none;
    std::string input_reference_;
    std::shared_ptr<const kit::MapProjection>
        projection_; // from the input's system, if there is one
};

} // namespace korvel::command
