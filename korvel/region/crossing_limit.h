#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/thread_override.h"

namespace korvel {

/// Sets the crossing limit of `CREGION` in the calling thread alone, whatever
/// `CREGION::set_crossing_limit` sets, while the object exists. The thread that constructs it
/// destroys it. Overrides nest.
class KORVEL_API CrossingLimitOverride {
public:
    /// A limit, and whether a network had more crossings.
    struct State {
        int most = 0;
        bool was_exceeded = false;
    };

    /// `crossings` counts as in `CREGION::set_crossing_limit`.
    explicit CrossingLimitOverride(int crossings);
    CrossingLimitOverride(const CrossingLimitOverride&) = delete;
    CrossingLimitOverride& operator=(const CrossingLimitOverride&) = delete;
    CrossingLimitOverride(CrossingLimitOverride&&) = delete;
    CrossingLimitOverride& operator=(CrossingLimitOverride&&) = delete;
    ~CrossingLimitOverride();

    /// Whether any analysis was given up, as `CREGION::has_exceeded_crossing_limit` reports of the
    /// last one of an object, while this was the innermost override of its thread.
    bool was_exceeded() const;

private:
    ThreadOverride<State> override_;
};

} // namespace korvel
