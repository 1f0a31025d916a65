// A network of curves with any 32-bit coordinates, as the kit splits it and finds its regions,
// which are then filled with triangles.

#include <cstdlib>

#include "kit/kit.h"
#include "tests/fuzz/curves.h"
#include "tests/fuzz/exercise.h"

namespace {

using namespace korvel::kit;
using korvel::test::Bytes;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void check(const FoundRegions& found) {
    const NetworkReport& report = found.report();
    require(report.segments ==
            report.borders + report.bridges + report.dangling + report.duplicates);
    int dropped = 0;
    for (const Dropped& line : found.dropped()) {
        dropped += static_cast<int>(line.line.size()) - 1;
        text(line);
    }
    require(report.merged > 0 || dropped == report.segments - report.borders);
    const Map& map = found.map();
    require(found.curves_of_rings().size() ==
            static_cast<std::size_t>(map.regions().ring_list.GetSize()));
    map.slivers();
    const NetworkReport again = find_regions(found.noded()).report();
    require(again.crossings == 0 && again.joined_ends == 0);

    const Triangulation triangles = triangulate(map, {.fill = Fill::delaunay, .threads = 1});
    for (const Region region : map) {
        require(region.area() > 0);
        require(triangles.filled(region.index()) == Filled::by_delaunay);
        require(triangles.coverage(region.index()).is_tiling);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    CArray<tagPOINT> points;
    CArray<int> counts;
    korvel::test::load_curves(points, counts, bytes);
    FindOptions options;
    options.tolerance = bytes.choice(4) == 0 ? bytes.choice(8) : 1;
    options.min_area = bytes.choice(4) == 0 ? bytes.choice(100) : 0;
    check(find_regions(Network(points, counts), options));
    options.as_traced = true;
    options.memory = 2'000'000;
    try {
        find_regions(Network(points, counts), options).dropped();
    } catch (const Error&) {
        // Too many crossings.
    }
    return 0;
}
