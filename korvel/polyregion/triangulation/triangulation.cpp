// Triangulation of regions: the order of the work, and its trace files.

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "korvel/platform/check_point.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/polyregion/side_topology.h"
#include "korvel/polyregion/trace_files.h"
#include "korvel/polyregion/triangulation/advancing_front.h"
#include "korvel/polyregion/triangulation/listed_triangles.h"

namespace {

std::atomic<bool> process_traces = true;
std::atomic<bool> process_has_lost_trace = false;
thread_local korvel::ThreadOverride<korvel::TraceFilesOverride::State>* thread_traces = nullptr;

bool traces_are_on() {
    return thread_traces != nullptr ? thread_traces->value.are_on : process_traces.load();
}

void note_lost_trace() {
    if (thread_traces != nullptr) {
        thread_traces->value.is_lost = true;
    } else {
        process_has_lost_trace = true;
    }
}

/// A trace file in the current directory. The work goes on without one that cannot be opened.
class TraceFile {
public:
    explicit TraceFile(const char* name) {
        if (traces_are_on()) {
            file_ = std::fopen(name, "w");
            if (file_ == nullptr) {
                note_lost_trace();
            }
        }
    }
    ~TraceFile() {
        if (file_ != nullptr) {
            const bool failed = std::ferror(file_) != 0;
            if (std::fclose(file_) != 0 || failed) {
                note_lost_trace();
            }
        }
    }
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;
    TraceFile(TraceFile&&) = delete;
    TraceFile& operator=(TraceFile&&) = delete;

    FILE* stream() const { return file_; }

private:
    FILE* file_ = nullptr;
};

template <class CloseExhaustively>
void triangulate(PLYDT& set, PLYDT::PyToRg& region, korvel::ListedTriangles& listed,
                 korvel::AdvancingFront& front, const CloseExhaustively& close_exhaustively);
const RING* lone_triangle(const PLYDT& set, const PLYDT::PyToRg& region);
bool is_sound(const PLYDT& set, const PLYDT::PyToRg& region);

} // namespace

void PLYDT::set_trace_files(bool on) {
    process_traces = on;
    process_has_lost_trace = false;
}

bool PLYDT::has_lost_trace() {
    return process_has_lost_trace;
}

bool PLYDT::makes_all_tests() {
    return traces_are_on();
}

korvel::TraceFilesOverride::TraceFilesOverride(bool on) : override_(thread_traces, {on, false}) {}

korvel::TraceFilesOverride::~TraceFilesOverride() = default;

bool korvel::TraceFilesOverride::has_lost_trace() const {
    return override_.value.is_lost;
}

void PLYDT::region_tranglate() {
    trg_list.RemoveAll();
    creat_top_rel();
    korvel::ListedTriangles listed(trg_list, side_list.GetSize());
    korvel::AdvancingFront front(*this, listed);
    for (int i = 0; i < region_list.GetSize(); ++i) {
        PyToRg& region = region_list[i];
        triangulate(*this, region, listed, front,
                    [&](FILE* trace) { close_front_exhaustively(trace, region); });
        korvel::check_point("triangulating", i + 1, region_list.GetSize()); // after every region
    }
    const TraceFile summary("wwwtrg.dat");
    if (summary.stream() != nullptr) {
        write_summary(summary.stream());
    }
}

void PLYDT::poly_tranglate(PyToRg& rg) {
    korvel::ListedTriangles listed(trg_list, 64);
    if (is_sound(*this, rg)) {
        listed.add_triangles_of(*this, rg);
    }
    korvel::AdvancingFront front(*this, listed);
    triangulate(*this, rg, listed, front,
                [&](FILE* trace) { close_front_exhaustively(trace, rg); });
}

void PLYDT::write_summary(FILE* summary) {
    const auto write_list = [&](const CArray<int>& list) {
        for (const int index : list) {
            std::fprintf(summary, "%d ", index);
        }
        std::fprintf(summary, "\n");
    };
    std::fprintf(summary, "points=%d\n", korvel::size_of(pt_list));
    for (const VERT2D& pt : pt_list) {
        std::fprintf(summary, "%f %f\n", pt.x, pt.y);
    }
    for (int side = 0; side < side_list.GetSize(); ++side) {
        std::fprintf(summary, "side=%d p=%d %d\n", side, side_list[side].p0, side_list[side].p1);
    }
    for (int ring = 0; ring < ring_list.GetSize(); ++ring) {
        std::fprintf(summary, "ring = %d pts = %d\n", ring, korvel::size_of(ring_list[ring].pts));
        write_list(ring_list[ring].pts);
    }
    for (int region = 0; region < region_list.GetSize(); ++region) {
        std::fprintf(summary, "reg = %d rings = %d \n", region,
                     korvel::size_of(region_list[region].rings));
        write_list(region_list[region].rings);
    }
    std::fprintf(summary, "trgs = %d\n", korvel::size_of(trg_list));
    for (const TRG& triangle : trg_list) {
        std::fprintf(summary, "%d %d %d\n", triangle.va, triangle.vb, triangle.vc);
    }
}

namespace {

/// Appends the triangles of one region. The exhaustive form, an operation that only `PLYDT` may
/// call, is passed as a function of the trace.
template <class CloseExhaustively>
void triangulate(PLYDT& set, PLYDT::PyToRg& region, korvel::ListedTriangles& listed,
                 korvel::AdvancingFront& front, const CloseExhaustively& close_exhaustively) {
    const TraceFile trace("trg.dat"); // each region truncates it
    if (const RING* const ring = lone_triangle(set, region)) {
        PLYDT::TRG whole;
        whole.va = ring->pts[0];
        whole.vb = ring->pts[1];
        whole.vc = ring->pts[2];
        set.trg_list.Add(whole); // its radius is not computed
    } else if (!region.rings.IsEmpty() && is_sound(set, region) &&
               (traces_are_on() || !front.close(region))) {
        close_exhaustively(trace.stream());
    }
    listed.add_new_triangles();
}

/// The ring of a region that is a triangle already, or null. Nothing but its three indices counts:
/// neither where the points lie nor whether they exist.
const RING* lone_triangle(const PLYDT& set, const PLYDT::PyToRg& region) {
    if (region.rings.GetSize() != 1 || !korvel::has_element(set.ring_list, region.rings[0])) {
        return nullptr;
    }
    const RING& ring = set.ring_list[region.rings[0]];
    return ring.pts.GetSize() == 3 ? &ring : nullptr;
}

/// Whether every index that the triangulation of a region follows names a record.
bool is_sound(const PLYDT& set, const PLYDT::PyToRg& region) {
    const auto is_sound_side = [&](int side) {
        return korvel::has_element(set.side_list, side) &&
               korvel::has_element(set.pt_list, set.side_list[side].p0) &&
               korvel::has_element(set.pt_list, set.side_list[side].p1);
    };
    return std::all_of(begin(region.rings), end(region.rings), [&](int ring) {
        return korvel::has_element(set.ring_list, ring) &&
               korvel::has_all_points(set.ring_list[ring], set.pt_list) &&
               std::all_of(begin(set.ring_list[ring].sides), end(set.ring_list[ring].sides),
                           is_sound_side);
    });
}

} // namespace
