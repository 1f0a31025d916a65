#pragma once

#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The points of `--select X,Y`, each of which selects the region that contains it.
class Selection {
public:
    void add_option(Options options);

    /// Reads the points. Throws an input error when one does not fit.
    void check();

    bool empty() const { return texts_.empty(); }

    /// The regions under the points, in the order of the points; prints which. `by_outline`: holes
    /// are ignored. Warns of points without a region, and throws an input error when all are.
    std::vector<int> regions(const kit::Map& map, const std::string& file,
                             bool by_outline = false) const;

private:
    std::vector<std::string> texts_;
    std::vector<RealPoint> points_;
};

} // namespace korvel::command
