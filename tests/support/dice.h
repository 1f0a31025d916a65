#pragma once

#include <random>
#include <ranges>

namespace korvel::test {

/// Random numbers that are the same with every standard library.
class Dice {
public:
    explicit Dice(unsigned seed = 1) : engine_(seed) {}

    /// An integer from `from` to `to`, both included.
    int operator()(int from, int to) {
        const auto values = static_cast<unsigned>(to) - static_cast<unsigned>(from) + 1;
        return static_cast<int>(from + static_cast<long long>(engine_() % values));
    }
    bool one_in(int n) { return (*this)(1, n) == 1; }

    /// A number from 0 to `most`, both included.
    double up_to(double most) { return most * engine_() / std::mt19937::max(); }
    double between(double least, double most) { return least + up_to(most - least); }

    /// An element of a list that has some.
    template <std::ranges::random_access_range List>
    const auto& pick(const List& list) {
        return list[(*this)(0, static_cast<int>(std::size(list)) - 1)];
    }

private:
    std::mt19937 engine_;
};

} // namespace korvel::test
