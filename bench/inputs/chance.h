#pragma once

#include <random>

namespace korvel::bench {

/// Random numbers that are the same with every standard library.
class Chance {
public:
    double up_to(double most) { return most * engine_() / std::mt19937::max(); }
    double between(double least, double most) { return least + up_to(most - least); }

private:
    std::mt19937 engine_{1};
};

} // namespace korvel::bench
