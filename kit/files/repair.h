#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/file_kind.h"

namespace korvel::kit {

/// What was done, and how often: "faces turned outward", 12.
struct Repair {
    std::string what;
    int count = 0;
};

/// Adds a repair unless nothing was repaired.
inline void note_repair(const char* what, int count, std::vector<Repair>& out) {
    if (count > 0) {
        out.push_back({what, count});
    }
}

/// Removes the records that are not kept from a list and their lines from another. The result has
/// the new index of each record, -1 for those that went.
template <class List>
std::vector<int> keep_records(const std::vector<bool>& is_kept, List& list,
                              std::vector<int>& lines) {
    std::vector<int> numbers(is_kept.size(), -1);
    int kept = 0;
    for (std::size_t i = 0; i < is_kept.size(); ++i) {
        if (is_kept[i]) {
            if (kept != static_cast<int>(i)) {
                list[kept] = std::move(list[static_cast<int>(i)]);
            }
            lines[static_cast<std::size_t>(kept)] = lines[i];
            numbers[i] = kept++;
        }
    }
    list.SetSize(kept);
    lines.resize(static_cast<std::size_t>(kept));
    return numbers;
}

/// Replaces indices by new ones; those whose new index is -1 go.
inline void renumber(const std::vector<int>& numbers, CArray<int>& indices) {
    int kept = 0;
    for (const int index : indices) {
        if (numbers[static_cast<std::size_t>(index)] >= 0) {
            indices[kept++] = numbers[static_cast<std::size_t>(index)];
        }
    }
    indices.SetSize(kept);
}

/// A coordinate with six decimals if they are exact, or else with as many digits as read back as
/// the same number.
std::string file_digits(double value);

} // namespace korvel::kit
