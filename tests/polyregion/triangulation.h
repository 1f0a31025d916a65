#pragma once

#include <tuple>
#include <vector>

#include "korvel/polyregion/plydt.h"
#include "tests/support/scratch.h"
#include "tests/support/shape.h"

namespace korvel::test {

using Corners = std::tuple<int, int, int>;

inline std::vector<Corners> triangles(const PLYDT& set) {
    std::vector<Corners> list;
    for (const PLYDT::TRG& t : set.trg_list) {
        list.emplace_back(t.va, t.vb, t.vc);
    }
    return list;
}

/// Trace files have fixed names in the current directory.
class Triangulation : public korvel::test::ScratchAsCurrent {
protected:
    Triangulation() { PLYDT::set_trace_files(true); }
    ~Triangulation() override { PLYDT::set_trace_files(true); }
};

/// A triangle and a rectangle with sides 4 and 3, whose candidates all have radius 2.5.
inline const Shape rectangle_and_triangle{
    {{0, 0}, {4, 0}, {4, 3}, {0, 3}, {6, 0}, {8, 0}, {7, 0.5}},
    {{0, 1, 2, 3}, {4, 5, 6}},
    {{1}, {0}}};

} // namespace korvel::test
