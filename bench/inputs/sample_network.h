#pragma once

#include <fstream>
#include <stdexcept>
#include <string>

#include "korvel/region/cregion.h"

namespace korvel::bench {

/// A network in the form that the library takes.
struct Network {
    CArray<tagPOINT> pts;
    CArray<int> counts;
};

/// The first `quarters` quarters of the curves of a file in data/.
inline Network sample_network(const std::string& name, long long quarters) {
    std::ifstream in(KORVEL_DATA_DIR "/" + name + ".curves");
    int curves = 0;
    in >> curves;
    Network network;
    for (int i = 0; i < curves * quarters / 4; ++i) {
        int count = 0;
        in >> count;
        network.counts.Add(count);
        for (int k = 0; k < count; ++k) {
            tagPOINT pt{};
            in >> pt.x >> pt.y;
            network.pts.Add(pt);
        }
    }
    if (!in || network.pts.IsEmpty()) {
        throw std::runtime_error("cannot read the sample network " + name);
    }
    return network;
}

} // namespace korvel::bench
