#include "kit/files/region_file.h"

namespace korvel::kit {

std::optional<std::string> read_regions(const TextFile& file, CCPloy2DRg& out) {
    CCPloy2DRg checked;
    WordReader words(file);
    const RecordLines lines = read_regions(words, checked);
    out.readpolyrg(stream_of(file).get());
    return message(file, first_change(checked, lines));
}

RecordLines read_regions(WordReader& words, CCPloy2DRg& out) {
    RecordLines lines;
    words.end_before_placement();
    lines.points = read_plane_points(words, out.pt_list);
    const int points = out.pt_list.GetSize();
    // A set without points ends here.
    const int rings = points > 0 ? words.next_count("the number of rings") : 0;
    for (int i = 0; i < rings; ++i) {
        const int members = words.next_count("the number of points of a ring");
        lines.parts.push_back(words.line());
        read_indices(words, members, "the point of a ring", points,
                     next_record(out.ring_list, i, rings).pts);
    }
    const int regions = points > 0 ? words.next_count("the number of regions") : 0;
    for (int i = 0; i < regions; ++i) {
        const int members = words.next_count("the number of rings of a region");
        lines.wholes.push_back(words.line());
        read_indices(words, members, "the ring of a region", rings,
                     next_record(out.region_list, i, regions).rings);
    }
    words.need_end("the end of the regions");
    return lines;
}

std::optional<Finding> first_change(const CCPloy2DRg& set, const RecordLines& lines) {
    for (int i = 0; i < set.pt_list.GetSize(); ++i) {
        for (const double coordinate : {set.pt_list[i].x, set.pt_list[i].y}) {
            if (auto change = change_by_reading(coordinate, lines.points[i])) {
                return change;
            }
        }
    }
    return {};
}

} // namespace korvel::kit
