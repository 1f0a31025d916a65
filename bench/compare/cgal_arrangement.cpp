#include <vector>

#include <CGAL/Arr_segment_traits_2.h>
#include <CGAL/Arrangement_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>

#include "bench/compare/peers.h"

namespace korvel::bench {
namespace {

using Kernel = CGAL::Exact_predicates_exact_constructions_kernel;
using Traits = CGAL::Arr_segment_traits_2<Kernel>;
using Arrangement = CGAL::Arrangement_2<Traits>;

std::vector<Traits::Curve_2> segments_of(const CurveArrays& curves);

} // namespace

Run arrange_with_cgal(const CurveArrays& curves) {
    const std::vector<Traits::Curve_2> segments = segments_of(curves);
    Arrangement arrangement;
    Run run;
    run.seconds = seconds_of([&] { CGAL::insert(arrangement, segments.begin(), segments.end()); });
    run.found = static_cast<double>(arrangement.number_of_faces() -
                                    arrangement.number_of_unbounded_faces());
    return run;
}

namespace {

/// Without segments of length 0, which the arrangement does not accept.
std::vector<Traits::Curve_2> segments_of(const CurveArrays& curves) {
    std::vector<Traits::Curve_2> segments;
    int first = 0;
    for (const int count : curves.counts) {
        for (int k = first; k + 1 < first + count; ++k) {
            const tagPOINT a = curves.pts[k];
            const tagPOINT b = curves.pts[k + 1];
            if (a.x != b.x || a.y != b.y) {
                segments.emplace_back(Kernel::Point_2(a.x, a.y), Kernel::Point_2(b.x, b.y));
            }
        }
        first += count;
    }
    return segments;
}

} // namespace
} // namespace korvel::bench
