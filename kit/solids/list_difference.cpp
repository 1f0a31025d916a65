#include "kit/solids/list_difference.h"

namespace korvel::kit {

ListDifference::ListDifference(std::span<const int> from, std::span<const int> to,
                               std::span<int> places) {
    const auto has_place = [&](int value) {
        return value >= 0 && static_cast<std::size_t>(value) < places.size();
    };
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (has_place(from[i])) {
            places[static_cast<std::size_t>(from[i])] = static_cast<int>(i);
        }
    }
    const auto is_at = [&](std::size_t place, int value) {
        return place < from.size() && from[place] == value;
    };
    // A place that another list has left is recognised by what is there.
    const auto place_of = [&](int value) {
        const int place = has_place(value) ? places[static_cast<std::size_t>(value)] : -1;
        return place >= 0 && is_at(static_cast<std::size_t>(place), value) ? place : -1;
    };
    for (const int value : to) {
        Part* const last = parts_.empty() ? nullptr : &parts_.back();
        if (last != nullptr && last->from >= 0 &&
            is_at(static_cast<std::size_t>(last->from) + static_cast<std::size_t>(last->count),
                  value)) {
            ++last->count;
            continue;
        }
        const int place = place_of(value);
        if (place < 0) {
            new_entries_.push_back(value);
        }
        if (place < 0 && last != nullptr && last->from < 0) {
            ++last->count;
        } else {
            parts_.push_back({place, 1});
        }
    }
}

std::vector<int> ListDifference::applied(std::span<const int> from) const {
    std::vector<int> made;
    auto next_new = new_entries_.begin();
    for (const Part& part : parts_) {
        if (part.from < 0) {
            made.insert(made.end(), next_new, next_new + part.count);
            next_new += part.count;
        } else {
            const auto first = from.begin() + part.from;
            made.insert(made.end(), first, first + part.count);
        }
    }
    return made;
}

std::size_t ListDifference::bytes() const {
    return parts_.capacity() * sizeof(Part) + new_entries_.capacity() * sizeof(int);
}

} // namespace korvel::kit
