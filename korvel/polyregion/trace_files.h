#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/thread_override.h"

namespace korvel {

/// Switches the trace files of triangulations on or off in the calling thread alone, whatever
/// `PLYDT::set_trace_files` sets, while the object exists. The thread that constructs it destroys
/// it. Overrides nest. Two threads with trace files on write the same two files.
class KORVEL_API TraceFilesOverride {
public:
    /// What has become of the trace files under an override.
    struct State {
        bool are_on = false;
        bool is_lost = false;
    };

    explicit TraceFilesOverride(bool on);
    TraceFilesOverride(const TraceFilesOverride&) = delete;
    TraceFilesOverride& operator=(const TraceFilesOverride&) = delete;
    TraceFilesOverride(TraceFilesOverride&&) = delete;
    TraceFilesOverride& operator=(TraceFilesOverride&&) = delete;
    ~TraceFilesOverride();

    /// Whether a trace file could not be opened, or was not written to its end, while this was the
    /// innermost override of its thread. `PLYDT::has_lost_trace` does not change by it.
    bool has_lost_trace() const;

private:
    ThreadOverride<State> override_;
};

} // namespace korvel
