#include "kit/files/region_file.h"

#include "kit/base/error.h"

namespace korvel::kit {

bool holds_regions(const TextFile& file) {
    WordReader words(file);
    words.next();
    return words.next().find('.') != std::string_view::npos;
}

std::optional<std::string> read_regions(const TextFile& file, CCPloy2DRg& out) {
    std::optional<Finding> change;
    try {
        CCPloy2DRg checked;
        WordReader words(file);
        const RecordLines lines = read_regions(words, checked);
        change = first_change(checked, lines);
    } catch (const Error& error) {
        if (holds_regions(file)) {
            throw;
        }
        const std::string advice = "a polygon-region file begins with the number of points and "
                                   "real coordinates; is this a curve file?";
        throw input_error(std::string(error.what()) + " (" + advice + ")",
                          {error.file(), error.line(), error.value(), advice});
    }
    out.readpolyrg(stream_of(file).get());
    return message(file, change);
}

RecordLines read_regions(WordReader& words, CCPloy2DRg& out) {
    RecordLines lines;
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
