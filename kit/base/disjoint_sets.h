#pragma once

#include <numeric>
#include <vector>

namespace korvel::kit {

/// Disjoint sets of the numbers 0 to n - 1 (union-find with path halving).
class DisjointSets {
public:
    explicit DisjointSets(int things) : count_(things), parents_(static_cast<std::size_t>(things)) {
        std::iota(parents_.begin(), parents_.end(), 0);
    }

    void join(int a, int b) {
        a = root(a);
        b = root(b);
        count_ -= a != b ? 1 : 0;
        parents_[a] = b;
    }

    /// The representative of an element's set.
    int root(int thing) {
        while (parents_[thing] != thing) {
            thing = parents_[thing] = parents_[parents_[thing]];
        }
        return thing;
    }

    int count() const { return count_; }

private:
    int count_;
    std::vector<int> parents_;
};

} // namespace korvel::kit
