#pragma once

#include <functional>

#include "korvel/platform/export.h"
#include "korvel/platform/thread_override.h"

namespace korvel {

/// Receives how far a call of an exact class has come: the stage, a text of static lifetime, and
/// the units of work done of those in all. `done` never decreases within a stage.
///
/// The function may throw, which ends the call with the exception. The object at work, and the
/// network or model that the call was given, then have valid but unspecified contents: they can be
/// emptied, assigned or destroyed, and any operation may be called on them. The function must not
/// change them itself. Calls of exact classes that it makes do not call it again.
using check_point_function = std::function<void(const char* stage, long long done, long long all)>;

/// Installs a function that long calls of the exact classes in this thread call between units of
/// work, while the object exists. The thread that constructs it destroys it. Of nested objects only
/// the innermost counts; an empty function switches check points off. Results do not depend on it.
///
/// The stages, in their order; one in brackets is repeated for each unit of the stage after it:
///
/// - `CREGION::SetPtsInfo`, and `GetRegion` up to the nodes and rings: "splitting curves", "testing
///   long segments", "finding nodes", "tracing rings", "indexing rings", "finding envelopes",
///   "nesting rings";
/// - `PLYDT::region_tranglate`: ("advancing the front"), "triangulating";
/// - `PLYDT::poly_tranglate`: "advancing the front";
/// - the derivation, which ends `TMOD3D::read_mode`, `inti_mode`, `add_model`, `create3dmode`,
///   `insert_point_on_poly`, `insert_point_on_side`, `deletet` and `clear_no_use_ele`: "finding
///   edges", ("orienting faces"), "orienting bodies", "relating records";
/// - `read_mode` before it: "reading vertices", "reading faces", ("reading a body"), "reading
///   bodies"; `inti_mode`: "refining"; `add_model`: "adding faces";
/// - `found_top_rel`: "relating records";
/// - `comput_mode_aux_parm`: "setting edge equations", ("orienting faces"), "orienting bodies",
///   "setting face equations";
/// - `legal_body_rel_side`: "testing edges".
///
/// "triangulating" is reported exactly once after each region, in the order of `region_list`, with
/// the number of regions done and of all regions. Between two reports `trg_list` grows by the
/// triangles of one region. All other stages are reported once in a while, a short one never.
class KORVEL_PLATFORM_API CheckPointScope {
public:
    explicit CheckPointScope(check_point_function function);
    CheckPointScope(const CheckPointScope&) = delete;
    CheckPointScope& operator=(const CheckPointScope&) = delete;
    CheckPointScope(CheckPointScope&&) = delete;
    CheckPointScope& operator=(CheckPointScope&&) = delete;
    ~CheckPointScope();

private:
    ThreadOverride<check_point_function> override_;
};

/// Calls the function of this thread, if there is one.
KORVEL_PLATFORM_API void check_point(const char* stage, long long done, long long all);

/// Does so after every `step` units: to be called when unit `unit` of `all`, counted from 0, is
/// done. The step makes the units large beside the cost of asking for a function.
inline void check_point_after(long long unit, long long all, int step, const char* stage) {
    if ((unit + 1) % step == 0) {
        check_point(stage, unit + 1, all);
    }
}

} // namespace korvel
