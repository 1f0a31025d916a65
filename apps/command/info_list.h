#pragma once

#include <string>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// How `info` lists bodies and regions: `--all`, `--sort area|volume` and `--csv`.
struct InfoListOptions {
    bool is_all = false;
    bool is_csv = false;
    std::string sort; ///< empty: in the order of the file

    void add_options(Options options);

    /// Throws an input error when the options do not fit a file of this kind.
    void check(kit::FileKind kind) const;
};

/// Prints what a map or a model contains, and sets the facts. With `--csv` the list is all that is
/// printed. Areas and perimeters are those of `measured`, the same map in a projection or itself.
void describe_regions(const kit::Map& map, const kit::Map& measured,
                      const InfoListOptions& options);
void describe_model(const kit::Solids& solids, const InfoListOptions& options);

/// Prints bounds, and sets the facts "bounds", unless they are empty.
void print_bounds(const kit::Rectangle& box);
void set_bounds(const kit::Rectangle& box);

} // namespace korvel::command
