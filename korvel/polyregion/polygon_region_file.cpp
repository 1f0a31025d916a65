// The polygon-region file: points, rings and regions as plain text.

#include "korvel/base/text_reader.h"
#include "korvel/polyregion/ccploy2drg.h"

namespace {

constexpr int least_point = 4; ///< length of the shortest text of a point, "0 0 "
constexpr int least_list = 2;  ///< of a list without elements, "0\n"

/// Reads a count and then as many lists of indices. A count that cannot be read, or is below 1,
/// leaves the records as they are.
template <class Record>
void read_lists(korvel::TextReader& reader, CArray<Record>& records, CArray<int> Record::*list) {
    int count = 0;
    if (reader.read(count) && count > 0) {
        korvel::read_declared_records(reader, count, least_list, records, [&](Record& record) {
            return korvel::read_declared_ints(reader, record.*list);
        });
    }
}

} // namespace

void CCPloy2DRg::readpolyrg(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    korvel::TextReader reader(stream);
    int points = 0;
    if (!reader.read(points) || points < 1) {
        return;
    }
    korvel::read_declared_records(reader, points, least_point, pt_list, [&](VERT2D& pt) {
        const bool has_x = reader.read(pt.x);
        const bool has_y = reader.read(pt.y);
        return has_x || has_y;
    });
    read_lists(reader, ring_list, &RING::pts);
    read_lists(reader, region_list, &PyToRg::rings);
    creat_top_rel();
}

void CCPloy2DRg::writepolyrg(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    const auto write_list = [&](const CArray<int>& list) {
        std::fprintf(stream, "%d\n", korvel::size_of(list));
        for (const int index : list) {
            std::fprintf(stream, "%d ", index); // a blank after the last one too
        }
        std::fprintf(stream, "\n");
    };
    std::fprintf(stream, "%d\n", korvel::size_of(pt_list));
    if (pt_list.IsEmpty()) {
        return;
    }
    for (const VERT2D& pt : pt_list) {
        std::fprintf(stream, "%f %f\n", pt.x, pt.y);
    }
    std::fprintf(stream, "%d\n", korvel::size_of(ring_list));
    for (const RING& ring : ring_list) {
        write_list(ring.pts);
    }
    std::fprintf(stream, "%d\n", korvel::size_of(region_list));
    for (const PyToRg& region : region_list) {
        write_list(region.rings);
    }
}
