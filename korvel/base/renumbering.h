#pragma once

#include <vector>

#include "korvel/base/indices.h"
#include "korvel/platform/framework.h"

namespace korvel {

/// New numbers for the records of a list that are used: dense, in the old order. Each use is named
/// first, then `number` is called once. Indices that name no record are ignored throughout.
class Renumbering {
public:
    explicit Renumbering(int records) : numbers_(static_cast<std::size_t>(records), -1) {}

    void use(int index) {
        if (is_record(index)) {
            numbers_[index] = 0;
        }
    }
    void use_all(const CArray<int>& indices) {
        for (const int index : indices) {
            use(index);
        }
    }

    /// Numbers the used records and returns how many there are.
    int number() {
        int next = 0;
        for (int& number : numbers_) {
            if (number >= 0) {
                number = next++;
            }
        }
        return next;
    }

    /// The new number, or −1 for a record that is not used and for what is no record.
    int operator[](int index) const { return is_record(index) ? numbers_[index] : -1; }

    /// Removes the records that are not used.
    template <class Records>
    void keep_used(Records& records) const {
        int index = 0;
        remove_elements(records, [&](const auto&) { return numbers_[index++] < 0; });
    }

    /// Replaces each index of a record by its new number. An index that names no record stays.
    void renumber(CArray<int>& indices) const {
        for (int& index : indices) {
            if (is_record(index)) {
                index = numbers_[index];
            }
        }
    }

    /// Fills `target` with the new numbers of the indices in `source`. An index without a new
    /// number is left out.
    void copy_renumbered(const CArray<int>& source, CArray<int>& target) const {
        target.SetSize(source.GetSize());
        int slot = 0;
        for (const int index : source) {
            if ((*this)[index] >= 0) {
                target[slot++] = (*this)[index];
            }
        }
        target.SetSize(slot);
    }

private:
    bool is_record(int index) const {
        return index >= 0 && static_cast<std::size_t>(index) < numbers_.size();
    }

    std::vector<int> numbers_;
};

} // namespace korvel
