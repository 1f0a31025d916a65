#include "kit/maps/find_regions.h"

#include <algorithm>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

int crossings_in(std::uint64_t memory);

/// Sets the crossing limit for the length of a scope.
class CrossingLimit {
public:
    explicit CrossingLimit(int crossings) : former_(CREGION::set_crossing_limit(crossings)) {}
    ~CrossingLimit() { CREGION::set_crossing_limit(former_); }
    CrossingLimit(const CrossingLimit&) = delete;
    CrossingLimit& operator=(const CrossingLimit&) = delete;

private:
    int former_;
};

} // namespace

void find_regions(CurveNetwork& curves, const std::string& file, CREGION& builder,
                  std::uint64_t memory) {
    const int most_crossings = crossings_in(memory);
    {
        const CrossingLimit limit(most_crossings);
        builder.SetPtsInfo(curves.pts, curves.counts);
    }
    if (builder.has_exceeded_crossing_limit()) {
        // The limit counts a crossing on each of its two segments.
        const std::string advice = "split the file, or remove curves that cross many others";
        throw input_error(file + ": the curves have more than " +
                              std::to_string(most_crossings / 2) +
                              " crossings, for which there is not enough memory: " + advice,
                          {.file = file, .advice = advice});
    }
}

namespace {

int crossings_in(std::uint64_t memory) {
    // For a crossing on one segment, measured on grids, with copies of the regions.
    constexpr std::uint64_t bytes_of_crossing = 350;
    constexpr std::uint64_t most = CREGION::no_crossing_limit;
    return static_cast<int>(std::min(memory / bytes_of_crossing, most));
}

} // namespace
} // namespace korvel::kit
