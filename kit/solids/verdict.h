#pragma once

#include <array>
#include <string>

namespace korvel::kit {

/// Whether a move leaves solids that can be used, as far as what moved shows.
struct Verdict {
    enum class Kind {
        legal,
        edge_meets_face,     ///< an edge that moved passes through a face or touches it
        edge_without_length, ///< an edge that moved has equal ends
        face_without_area,   ///< nothing can be judged beside such a face
        out_of_range,        ///< a coordinate does not fit single precision, which files have
    };
    Kind kind = Kind::legal;

    // Those that do not apply are −1.
    int edge = -1;
    std::array<int, 2> ends = {-1, -1}; ///< the vertices of the edge
    int face = -1;
    int body = -1;         ///< the first one of the face
    int vertex = -1;       ///< out of range …
    double coordinate = 0; ///< … with this coordinate

    bool is_legal() const { return kind == Kind::legal; }
};

/// "the edge between vertices 3 and 8 would pass through face 5 of body 1 or touch it", …
std::string text(const Verdict& verdict);

} // namespace korvel::kit
