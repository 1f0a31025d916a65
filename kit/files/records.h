#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

// What the readers of files of records have in common.

namespace korvel::kit {

/// The lines of a file that contain its records.
struct RecordLines {
    std::vector<int> points;
    std::vector<int> parts;  ///< of points: rings, faces
    std::vector<int> wholes; ///< of parts: regions, bodies, groups
};

/// Record `index` of a list that is to hold `declared` of them. The list grows as records come in,
/// so that a count is believed only as far as the file confirms it.
template <class List>
auto& next_record(List& list, int index, int declared) {
    if (index == list.GetSize()) {
        constexpr int first_size = 64;
        const long long doubled = std::max<long long>(first_size, 2LL * index);
        list.SetSize(static_cast<int>(std::min<long long>(declared, doubled)));
    }
    return list[index];
}

/// Reads a counted list of points of the plane; returns their lines.
std::vector<int> read_plane_points(WordReader& words, CArray<VERT2D>& out);

/// Appends a counted list of indices into a list of `size` entries.
inline void read_indices(WordReader& words, int count, const char* what, int size,
                         CArray<int>& out) {
    for (int i = 0; i < count; ++i) {
        out.Add(words.next_index(what, size));
    }
}

/// What the library's readers, which take reals in single precision, make of a coordinate, if it is
/// a whole number that this changes.
std::optional<Finding> change_by_reading(double coordinate, int line);

/// "FILE:LINE: message", if there is a finding.
std::optional<std::string> message(const TextFile& file, const std::optional<Finding>& finding);

} // namespace korvel::kit
