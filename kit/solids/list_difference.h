#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace korvel::kit {

/// What makes one list of ints from another one that is almost the same: parts that are copied, and
/// entries that are new.
class ListDifference {
public:
    /// Of lists in which hardly an entry is repeated. `places` has an element for each value that
    /// may come up, of any contents, which change. Linear.
    ListDifference(std::span<const int> from, std::span<const int> to, std::span<int> places);

    /// Makes the second list from the first.
    std::vector<int> applied(std::span<const int> from) const;

    /// What this holds beside itself.
    std::size_t bytes() const;

private:
    struct Part {
        int from; // its first entry in the first list, or −1 for new ones
        int count;
    };

    std::vector<Part> parts_;
    std::vector<int> new_entries_;
};

} // namespace korvel::kit
